#include "ScanOutput.h"

#include <array>
#include <map>

#include "Messages.h"
#include "Names.h"
#include "Place.h"
#include "text/JsonText.h"

namespace kelvar_tool {

namespace {

constexpr std::array<const char*, 8> kWhat{"new",  "moved",   "edited",    "relabelled",
                                           "gone", "revived", "ambiguous", "unclosed"};

std::string placeText(const std::string& file, int line, int column) {
  return file.empty() ? "-" : escaped(text(Place{.file = file, .line = line, .column = column}));
}

std::string kindText(const ScanEvent& event) {
  return annotationKindNames()[static_cast<std::size_t>(event.kind)];
}

void appendPlace(JsonText& json, const char* key, const std::string& file, int line, int column) {
  if (file.empty()) return;
  json.beginObject(key);
  json.value("file", file);
  json.value("line", std::int64_t{line});
  if (column != 0) json.value("column", std::int64_t{column});
  json.endObject();
}

}  // namespace

std::string linesOf(const ScanPlan& plan) {
  std::string lines;
  for (const ScanEvent& event : plan.events) {
    lines += kWhat[static_cast<std::size_t>(event.what)];
    lines += '\t' + std::to_string(event.sequence) + '\t' + kindText(event) + '\t' + escaped(event.label) + '\t' +
             placeText(event.oldFile, event.oldLine, event.oldColumn) + '\t' +
             placeText(event.newFile, event.newLine, event.newColumn) + '\t' + event.step + '\n';
  }
  return lines;
}

std::string jsonOf(const ScanPlan& plan) {
  std::string text;
  JsonText json(text);
  json.beginObject("");
  json.beginList("changes");
  for (const ScanEvent& event : plan.events) {
    json.beginObject("");
    json.value("change", std::string(kWhat[static_cast<std::size_t>(event.what)]));
    json.value("sequence", event.sequence);
    json.value("kind", kindText(event));
    json.value("label", event.label);
    appendPlace(json, "from", event.oldFile, event.oldLine, event.oldColumn);
    appendPlace(json, "to", event.newFile, event.newLine, event.newColumn);
    if (event.step != "-") json.value("step", event.step);
    json.endObject();
  }
  json.endList();
  json.endObject();
  return text + '\n';
}

std::string tableOf(const std::vector<kelvar_sources::Rule>& rules) {
  std::string lines = "name\tpattern\tkind\tlabel\tend\tlooked for\n";
  for (const kelvar_sources::Rule& rule : rules) {
    const std::string kind = rule.kind ? annotationKindNames()[static_cast<std::size_t>(*rule.kind)] : "none";
    lines += rule.name + '\t' + patternText(rule) + '\t' + kind + '\t' + labelText(rule) + '\t' + endText(rule) + '\t' +
             (rule.onRequest ? "with --only" : "always") + '\n';
  }
  return lines;
}

void sayCounts(const ScanPlan& plan, const ScanInput& input) {
  std::map<std::string, std::size_t> byRule;
  std::map<std::string, int> kindless;
  std::size_t passedOver = 0;
  for (const ScannedFile& file : input.files) {
    if (!file.complaint.empty()) say(file.complaint);
    if (!file.read && file.complaint.empty()) ++passedOver;
    for (const kelvar_sources::FoundSite& site : file.sites.sites) {
      if (!site.isEnd) ++byRule[site.anchor.rule];
    }
    for (const auto& [name, count] : file.sites.kindless) kindless[name] += count;
  }
  for (const kelvar_sources::Rule& rule : input.rules.rules()) {
    const auto count = byRule.find(rule.name);
    if (count != byRule.end()) say(std::to_string(count->second) + " by " + rule.name);
  }
  for (const auto& [name, count] : kindless)
    say(std::to_string(count) + " of " + escaped(name) + " have no annotation kind, so they are no sites");
  if (plan.anchored > 0)
    say(std::to_string(plan.anchored) + " sites that were placed by hand are found again from now on");
  if (passedOver > 0) say(std::to_string(passedOver) + " binary files passed over");
}

}  // namespace kelvar_tool
