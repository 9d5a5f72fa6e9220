#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Sqlite.h"
#include "sitenotes.h"

namespace kelvar_platform {

/// One row of the table `edit`. The texts live until the next row is read.
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

/// One row of the table `state`.
struct StateRow {
  std::string_view path;
  std::int64_t revision = 0;
};

/// Whether this is a database as it is before its first edit: a file without any table, such as an empty one. Throws
/// where that is marked as something else.
[[nodiscard]] bool isBlank(const Connection& connection);
/// Makes the tables in such a database, and marks it as an annotation database.
void createTables(const Connection& connection);

/// Throws what a reader of the file at `path` would have against this row, so that nothing is written which cannot be
/// read.
void requireWritable(const std::string& path, const std::string& place, const EditRow& row);

/// Hands out every edit in the order of the revisions, then every recorded state. Throws unless this is an annotation
/// database of our version, and at the first row that breaks a rule, whatever the file itself enforces: rules can be
/// switched off while a file is written, so nothing is taken on trust. To be asked within a transaction; a writer asks
/// before it writes, so that it adds to nothing that cannot be read.
void readDatabase(const Connection& connection, const std::function<void(const EditRow&)>& takeEdit,
                  const std::function<void(const StateRow&)>& takeState);

/// Appends the row; its revision is the database's to choose, and is what comes back.
std::int64_t appendEdit(const Connection& connection, const EditRow& row);

}  // namespace kelvar_platform
