#include "Options.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "Messages.h"
#include "Project.h"
#include "RunFolder.h"

namespace kelvar_tool {

namespace {

CLI::Option* addOption(CLI::App& app, const std::string& name, const std::string& help, CLI::callback_t take) {
  return app.add_option(name, std::move(take), help)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace

Option& Option::value(const std::string& name) {
  option_->type_name(name);
  return *this;
}

Option& Option::required() {
  option_->required();
  return *this;
}

Option& Option::excludes(const Option& other) {
  option_->excludes(other.option_);
  return *this;
}

Option& Option::inOrder() {
  option_->trigger_on_parse();
  return *this;
}

CLI::App& addSubcommand(CLI::App& parent, const std::string& name, const std::string& help) {
  return *parent.add_subcommand(name, help);
}

void expectSubcommand(CLI::App& app, const std::string& examples) {
  app.footer(examples);
  app.require_subcommand(1);
}

void setWork(CLI::App& app, const std::string& examples, Action work, Action& chosen) {
  app.footer(examples);
  app.callback([work = std::move(work), &chosen] { chosen = work; });
}

Option addText(CLI::App& app, const std::string& name, const std::string& help, TakeText take) {
  const auto takeOne = [name, take = std::move(take)](const CLI::results_t& texts) {
    if (texts.size() > 1) throw UsageError(name + ": expected once, not " + std::to_string(texts.size()) + " times");
    take(texts.front());
    return true;
  };
  return Option(addOption(app, name, help, takeOne)->type_name(""));
}

Option addTexts(CLI::App& app, const std::string& name, const std::string& help, Follows follows, TakeText take) {
  const auto takeAll = [take = std::move(take)](const CLI::results_t& texts) {
    for (const std::string& text : texts) take(text);
    return true;
  };
  return Option(addOption(app, name, help, takeAll)->type_name("")->expected(follows == Follows::one ? 1 : -1));
}

Option addPath(CLI::App& app, const std::string& name, const std::string& value, const std::string& help,
               std::string& path) {
  return addText(app, name, help,
                 [name, &path](const std::string& text) {
                   if (text.empty()) throw UsageError(name + ": expected a path, not an empty text");
                   path = normalPath(text);
                 })
      .value(value);
}

void addFlag(CLI::App& app, const std::string& name, bool& flag, const std::string& help) {
  app.add_flag(name, flag, help);
}

void addFlag(CLI::App& app, const std::string& name, std::function<void()> take, const std::string& help) {
  app.add_flag_callback(name, std::move(take), help);
}

void addRun(CLI::App& app, const std::string& help, std::optional<std::string>& run) {
  addText(app, "--run", help, [&run](const std::string& text) {
    if (!kelvar_import::isRunName(text)) {
      throw UsageError(std::string("--run: expected ") + kelvar_import::kRunNameRule + ", not " + inQuotes(text));
    }
    run = text;
  }).value("NAME");
}

void addJson(CLI::App& app, bool& json) {
  addText(app, "--format", "text or json", [&json](const std::string& text) {
    if (text != "text" && text != "json") throw UsageError("--format: expected text or json, not " + inQuotes(text));
    json = text == "json";
  }).value("FORMAT");
}

}  // namespace kelvar_tool
