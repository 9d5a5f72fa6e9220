#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "Model.h"
#include "PageJson.h"
#include "RowQuery.h"

namespace kelvar_page {

/// The data of the front end, as JSON. Figures are texts ready to show; only what the page draws or counts is a number.

/// The item with this key; null when there is none (any more).
[[nodiscard]] kelvar::SummaryItem* itemOf(const Model& model, const std::string& key);

/// The program: its findings and kinds, and the names of a row's fields.
void writeProgram(PageJson& json, const Model& model, const std::string& project);
/// The tree of times, and the points of time against gain. Walks over all rows.
void writePictures(PageJson& json, const Model& model);
/// The names of a row's fields, as a list; a row is a list of their values.
void writeFields(PageJson& json);
void writeRow(PageJson& json, const Model& model, const Site& site);

/// Stores texts that many rows share, such as file names, once; rows in a file of its own refer to them by index.
class SharedTexts {
 public:
  [[nodiscard]] std::int64_t placeOf(const std::string& text);
  /// Writes the texts, and the names of the fields that refer to them.
  void write(PageJson& json) const;

 private:
  std::unordered_map<std::string, std::int64_t> places_;
  std::vector<const std::string*> texts_;
};
void writeRow(PageJson& json, const Model& model, const Site& site, SharedTexts& shared);
/// At most `count` rows of the view from `from` on, and the total.
void writeRows(PageJson& json, const Model& model, const RowView& view, int from, int count);
/// The evidence of one site, and its edits if `annotations` names a database.
void writeSite(PageJson& json, const Model& model, const Site& site, const std::string& annotations);
/// The lines of a file with their figures and notes; false when no row is in the file or it cannot be read.
[[nodiscard]] bool writeSource(PageJson& json, const Model& model, const std::string& file);

}  // namespace kelvar_page
