#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "Model.h"
#include "PageJson.h"
#include "RowQuery.h"

namespace kelvar_page {

/// What the front end asks for, as JSON. It gets texts to show, and numbers only where it draws: how a figure is
/// written is decided here.

/// The item that a key names; null where there is none any more.
[[nodiscard]] kelvar::SummaryItem* itemOf(const Model& model, const std::string& key);

/// The program: its findings and kinds, and the fields of a row. Needs nothing but what the model holds.
void writeProgram(PageJson& json, const Model& model, const std::string& project);
/// The tree of times and the points of time against gain: a walk over all rows.
void writePictures(PageJson& json, const Model& model);
/// The names of a row's fields, as a list; a row is a list of their values.
void writeFields(PageJson& json);
void writeRow(PageJson& json, const Model& model, const Site& site);

/// The texts that many rows share, such as their file, each once: rows of a file name them by their place here.
class SharedTexts {
 public:
  [[nodiscard]] std::int64_t placeOf(const std::string& text);
  /// The texts, and which fields of a row name them.
  void write(PageJson& json) const;

 private:
  std::unordered_map<std::string, std::int64_t> places_;
  std::vector<const std::string*> texts_;
};
void writeRow(PageJson& json, const Model& model, const Site& site, SharedTexts& shared);
/// `count` rows of the view from `from` on, and how many there are.
void writeRows(PageJson& json, const Model& model, const RowView& view, int from, int count);
/// Evidence, and with a database the edits, of one site.
void writeSite(PageJson& json, const Model& model, const Site& site, const std::string& annotations);
/// The lines of a file that rows name and what is known of them; false where it is not to be had.
[[nodiscard]] bool writeSource(PageJson& json, const Model& model, const std::string& file);

}  // namespace kelvar_page
