#include "Scan.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "AnchoredSites.h"
#include "Diagnosis.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "RulesFile.h"
#include "ScanOutput.h"
#include "ScanPlan.h"
#include "StagedDirectory.h"

namespace kelvar_tool {

namespace {

using kelvar_sources::Rule;

struct ScanRequest {
  SourceRequest sources;
  std::string rulesFile;
  std::vector<std::string> only;
  bool listRules = false;
  bool noNew = false;
  bool dryRun = false;
  bool check = false;
  bool json = false;
};

/// The built-in rules and those of --rules.
std::vector<Rule> allRules(const ScanRequest& request) {
  std::vector<Rule> rules = kelvar_sources::builtInRules();
  if (request.rulesFile.empty()) return rules;
  try {
    const std::vector<Rule> own = kelvar_sources::rulesIn(sourceBytes(request.rulesFile), rules);
    rules.insert(rules.end(), own.begin(), own.end());
  } catch (const kelvar_sources::RulesError& error) {
    const std::string sentence = error.what();
    throw UsageError(escaped(request.rulesFile) + ": " + escaped(sentence));
  }
  return rules;
}

/// The rules to search for.
std::vector<Rule> wantedRules(const ScanRequest& request) {
  std::vector<Rule> rules = allRules(request);
  for (const std::string& name : request.only) {
    if (std::any_of(rules.begin(), rules.end(), [&](const Rule& rule) { return rule.name == name; })) continue;
    std::vector<std::string> names;
    names.reserve(rules.size());
    for (const Rule& rule : rules) names.push_back(rule.name);
    throw UsageError("--only: unknown rule " + inQuotes(name) + proposal(name, names));
  }
  std::erase_if(rules, [&](const Rule& rule) {
    if (request.only.empty()) return rule.onRequest;
    return std::find(request.only.begin(), request.only.end(), rule.name) == request.only.end();
  });
  return rules;
}

void printPlan(const ScanPlan& plan, bool json) {
  print(json ? jsonOf(plan) : linesOf(plan));
}

ExitStatus scan(const ScanRequest& request, const std::string& database) {
  if (request.listRules) {
    print(tableOf(allRules(request)));
    return kDone;
  }
  if (request.sources.sources.empty()) throw UsageError("SOURCE: expected a file or a directory");
  const kelvar_sources::RuleSet rules(wantedRules(request));
  const SourceTree tree(request.sources);
  const std::vector<ScannedFile> files = scanned(tree.files(), rules);
  const ScanInput input{.tree = tree, .files = files, .rules = rules, .makeNew = !request.noNew};
  bool changes = false;
  const auto decide = [&](const kelvar_platform::AnchoredSites& sites) {
    ScanPlan plan = planOf(input, sites);
    changes = !plan.edits.empty();
    printPlan(plan, request.json);
    sayCounts(plan, input);
    return plan.edits;
  };
  if (request.dryRun || request.check) {
    std::error_code error;
    const bool there = std::filesystem::exists(database, error) || error;
    static_cast<void>(decide(there ? kelvar_platform::readAnchoredSites(database) : kelvar_platform::AnchoredSites()));
  } else {
    const std::filesystem::path project = std::filesystem::path(database).parent_path();
    if (!project.empty()) kelvar_platform::makeDirectories(project);  // a project begins with a scan
    kelvar_platform::editAnchoredSites(database, decide);
  }
  for (const std::string& complaint : tree.complaints()) say(complaint);
  const bool unread = !tree.complaints().empty() ||
                      std::any_of(files.begin(), files.end(), [](const auto& file) { return !file.complaint.empty(); });
  if (unread) return kUnreadable;
  return request.check && changes ? kStale : kDone;
}

void addRepeated(CLI::App& app, const char* name, const char* value, const char* help,
                 std::vector<std::string>& texts) {
  addTexts(app, name, help, Follows::one, [&texts, name](const std::string& text) {
    if (text.empty()) throw UsageError(std::string(name) + ": expected a text, not an empty one");
    texts.push_back(text);
  }).value(value);
}

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar annotate annotations.db scan src\n"
    "  kelvar annotate annotations.db scan src --check      status 4 if the database is behind the sources\n"
    "  kelvar annotate annotations.db scan src --rules wrappers.yaml --exclude 'third_party/*'\n"
    "  kelvar annotate annotations.db scan --list-rules\n"
    "\n"
    "A line for each change, with fields separated by tabs: new, moved, edited, relabelled, gone, revived, ambiguous\n"
    "or unclosed; sequence, kind, label, old place or -, new place or -, and the step that decided. Counts by rule go\n"
    "to standard error.\n"
    "Exit status: 0 done; 1 a source or the database could not be read or written; 2 a usage error; 3 out of memory,\n"
    "or the system failed; 4 with --check, if something would be written.";

}  // namespace

void addScan(CLI::App& annotate, const std::string& database, Action& chosen) {
  CLI::App& app = addSubcommand(annotate, "scan", "Find the markers in source files, and find sites again");
  const auto request = std::make_shared<ScanRequest>();
  addTexts(app, "SOURCE", "Files and directories", Follows::asManyAsThereAre,
           [&sources = request->sources.sources](const std::string& text) {
             if (text.empty()) throw UsageError("SOURCE: expected a path, not an empty text");
             sources.push_back(text);
           });
  addPath(app, "--source-root", "DIR", "File names in the database are relative to DIR", request->sources.sourceRoot);
  addPath(app, "--rules", "FILE", "A project's own markers, in YAML", request->rulesFile);
  addRepeated(app, "--only", "RULE", "Search only for the markers of this rule; may be repeated", request->only);
  addRepeated(app, "--exclude", "GLOB", "Leave out files and folders that match; may be repeated",
              request->sources.excluded);
  addFlag(app, "--no-new", request->noNew, "Find known sites again, but add no new ones");
  addFlag(app, "--dry-run", request->dryRun, "Print what would change, and write nothing");
  addFlag(app, "--check", request->check, "The same; ends with status 4 if something would be written");
  addFlag(app, "--list-rules", request->listRules, "Print the table of markers");
  addJson(app, request->json);
  setWork(
      app, kExamples, [request, &database] { return scan(*request, database); }, chosen);
}

}  // namespace kelvar_tool
