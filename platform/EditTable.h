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

/// Whether this is a database as it is before its first edit: a file without any table, such as an empty one.
[[nodiscard]] bool hasNoTables(const Connection& connection);
/// Makes the tables in such a database, and marks it as an annotation database.
void createTables(const Connection& connection);

/// Throws unless the database is marked as an annotation database of our version and has tables `edit` and `state`.
void requireAnnotationDatabase(const Connection& connection);

/// Throws what a reader of the file at `path` would have against this row, so that nothing is written which cannot be
/// read.
void requireWritable(const std::string& path, const std::string& place, const EditRow& row);

/// Hands out every row in the order of the revisions; throws at the first that breaks a rule, whatever the file itself
/// enforces. Rules can be switched off while a file is written, so nothing is taken on trust.
void readEdits(const Connection& connection, const std::function<void(const EditRow&)>& take);
/// The same for the recorded states.
void readStates(const Connection& connection, const std::function<void(const StateRow&)>& take);

/// Reads the newest row of a sequence for `take`; false where there is none.
bool readNewestEdit(const Connection& connection, std::int64_t sequence,
                    const std::function<void(const EditRow&)>& take);

/// Appends the row; its revision is the database's to choose.
void appendEdit(const Connection& connection, const EditRow& row);

}  // namespace kelvar_platform
