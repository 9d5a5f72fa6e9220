#include "Options.h"

#include <utility>

#include "Messages.h"
#include "Project.h"
#include "RunFolder.h"

namespace kelvar_tool {

CLI::Option* addText(CLI::App& app, const std::string& name, const std::string& help,
                     std::function<void(const std::string& text)> take) {
  const CLI::callback_t callback = [name, take = std::move(take)](const CLI::results_t& texts) {
    if (texts.size() > 1) throw UsageError(name + ": expected once, not " + std::to_string(texts.size()) + " times");
    take(texts.front());
    return true;
  };
  return app.add_option(name, callback, help)->type_name("")->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option* addPath(CLI::App& app, const std::string& name, const std::string& value, const std::string& help,
                     std::string& path) {
  return addText(app, name, help,
                 [name, &path](const std::string& text) {
                   if (text.empty()) throw UsageError(name + ": expected a path, not an empty text");
                   path = normalPath(text);
                 })
      ->type_name(value);
}

void addRun(CLI::App& app, const std::string& help, std::optional<std::string>& run) {
  addText(app, "--run", help, [&run](const std::string& text) {
    if (!kelvar_import::isRunName(text)) {
      throw UsageError(std::string("--run: expected ") + kelvar_import::kRunNameRule + ", not " + inQuotes(text));
    }
    run = text;
  })->type_name("NAME");
}

}  // namespace kelvar_tool
