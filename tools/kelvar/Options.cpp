#include "Options.h"

#include <utility>

#include "Messages.h"
#include "Project.h"

namespace kelvar_tool {

CLI::Option* addText(CLI::App& app, const std::string& name, const std::string& help,
                     std::function<void(const std::string& text)> take) {
  const CLI::callback_t callback = [take = std::move(take)](const CLI::results_t& texts) {
    take(texts.back());
    return true;
  };
  return app.add_option(name, callback, help)->type_name("");
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

}  // namespace kelvar_tool
