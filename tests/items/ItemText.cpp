#include "items/ItemText.h"

#include <sstream>

using namespace kelvar_2_1_7;

namespace {

std::string textOf(const std::string& word) {
  if (word == "__too_deep__") return "__too deep__";
  return word == "_" ? std::string() : word;
}

/// Gives the detail the record that `word` names; false where it names none. Figures tell details apart.
bool addRecord(support::FakeDetail& detail, const std::string& word, int figure) {
  if (word == "survey") detail.survey({.cpuTime = static_cast<double>(figure)});
  if (word == "vec") detail.vectorization({.selfTime = static_cast<double>(figure)});
  if (word == "suit") detail.suitability({.selfTime = static_cast<double>(figure)});
  if (word == "corr") detail.correctness({.errors = figure});
  if (word == "map") detail.map({{figure, 0, 0}});
  return word == "survey" || word == "vec" || word == "suit" || word == "corr" || word == "map";
}

}  // namespace

SummaryItems ItemText::list(const std::string& text) {
  SummaryItems items;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) items.append(item(line));
  return items;
}

std::unique_ptr<SummaryItemImpl> ItemText::item(const std::string& line) {
  std::istringstream words(line);
  std::string identity;
  std::string label;
  std::string place;
  words >> identity >> label >> place;

  int kind = 0;
  int status = kCurrent;
  bool selected = false;
  support::FakeDetail& detail = details_.emplace_back(textOf(label), textOf(place));
  bool hasRecords = false;
  for (std::string word; words >> word;) {
    if (word == "selected") {
      selected = true;
    } else if (addRecord(detail, word, static_cast<int>(details_.size()))) {
      hasRecords = true;
    } else if (word[0] == 'k') {
      kind = std::stoi(word.substr(1));
    } else if (word[0] == 's') {
      status = std::stoi(word.substr(1));
    } else {
      detail.kind(static_cast<digestio::SummaryDetailKind>(std::stoi(word.substr(1))));
    }
  }

  const auto annotationKind = static_cast<support::Kind>(kind);
  detail.reports(annotationKind);
  boost::shared_ptr<sitenotes::annotation_t> annotation;
  const unsigned long handle = identity.size() > 1 ? std::stoul(identity.substr(1)) : 0;
  if (identity[0] == '@') annotation = support::annotation(textOf(label), textOf(place), annotationKind);
  auto item = annotation && !hasRecords ? support::itemFrom(annotation, handle, static_cast<SummaryDataStatus>(status))
                                        : support::itemFrom(detail, annotation, handle);
  item->setSelected(selected);
  return item;
}
