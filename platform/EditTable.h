#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Annotations.h"
#include "Sqlite.h"
#include "sitenotes.h"

namespace kelvar_platform {

/// One row of the table `edit`. The texts are valid until the next row is read.
struct EditRow {
  std::int64_t revision = 0;
  std::int64_t sequence = 0;
  bool alive = true;
  bool disabled = false;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string_view label;
  std::string_view file;
  int line = 0;
  int column = 0;
};

[[nodiscard]] Site siteOf(const EditRow& row);
/// Without a revision. The texts are those of the site.
[[nodiscard]] EditRow rowOf(const Site& site);

/// One row of the table `state`.
struct StateRow {
  std::string_view path;
  std::int64_t revision = 0;
};

/// Whether this is a database before its first edit: a file without tables, such as an empty one. Throws if it is
/// marked as a database of something else.
[[nodiscard]] bool isBlank(const Connection& connection);
/// Creates the tables in such a database, and marks it as an annotation database.
void createTables(const Connection& connection);

/// Throws what a reader of `path` would throw for this row, so that nothing is written that cannot be read.
void requireWritable(const std::string& path, const std::string& place, const EditRow& row);

/// Passes on every edit in the order of the revisions, then every recorded state. Throws unless this is an annotation
/// database of our version, and at the first row that breaks a rule. The file's own constraints are not trusted: they
/// can be switched off while a file is written. Called within a transaction; a writer calls it before it writes, so
/// that it never extends a file that cannot be read.
void readDatabase(const Connection& connection, const std::function<void(const EditRow&)>& takeEdit,
                  const std::function<void(const StateRow&)>& takeState);

/// Appends rows within a transaction.
class EditWriter {
 public:
  explicit EditWriter(const Connection& connection);

  /// The database chooses the row's revision, which is returned.
  std::int64_t append(const EditRow& row);

 private:
  Statement statement_;
};

}  // namespace kelvar_platform
