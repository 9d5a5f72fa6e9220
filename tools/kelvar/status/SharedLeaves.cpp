#include "SharedLeaves.h"

#include <algorithm>
#include <set>

#include "Messages.h"
#include "PathTail.h"

namespace kelvar_tool {

namespace {

using kelvar_page::isPathTail;
using sitenotes::locator_t;

// Whether the two have the same leaf and, judging by their paths, are different files.
bool areTwoFiles(const toolbelt::path_t& a, const toolbelt::path_t& b) {
  return a.compare_leaf(b) == 0 && !isPathTail(a.get_text(), b.get_text()) && !isPathTail(b.get_text(), a.get_text());
}

std::string placeOf(const locator_t& at) {
  return inQuotes(at.get_file().get_text() + ":" + std::to_string(at.get_line()));
}

// The place that the analysis' data was joined with: that of the annotation at the time, if it is known.
locator_t joinedPlace(const Row& row, digestio::SummaryDataKind kind) {
  const auto annotation = row.item.collectionAnnotation(kind);
  return annotation ? annotation->get_locator() : row.stored;
}

}  // namespace

void SharedLeaves::look(const Row& row) {
  if (row.item.detailKind() != digestio::kAnnotatedSite) return;
  for (const digestio::SummaryDataKind kind : kelvar_2_1_7::kAllKinds) {
    const locator_t joined = joinedPlace(row, kind);
    if (row.seen[kind].is_null() || !areTwoFiles(row.seen[kind].get_file(), joined.get_file())) continue;
    folded_.push_back("warning: " + inQuotes(row.item.label()) + " is at " + placeOf(joined) + ", and " +
                      std::string(recordName(kind)) + " saw it at " + placeOf(row.seen[kind]) +
                      ": two files with the same name were taken for one");
  }
  const toolbelt::path_t& file = row.stored.get_file();
  if (file.empty()) return;
  const Sort sort(row.item.annotationKind(), file.get_leaf());
  std::vector<std::string_view>& files = files_[sort];
  if (std::find(files.begin(), files.end(), file.get_text()) == files.end()) files.emplace_back(file.get_text());
}

std::vector<std::string> SharedLeaves::warnings() const {
  std::vector<std::string> sentences = folded_;
  std::set<std::string_view> said;
  for (const auto& [sort, files] : files_) {
    const auto other = std::find_if(files.begin(), files.end(), [&, first = files.front()](std::string_view file) {
      return !isPathTail(file, first) && !isPathTail(first, file);
    });
    if (other == files.end() || !said.insert(sort.second).second) continue;
    sentences.push_back("warning: " + inQuotes(files.front()) + " and " + inQuotes(*other) +
                        " have the same name: their sites could be confused");
  }
  return sentences;
}

}  // namespace kelvar_tool
