#include "EditTable.h"

#include <limits>
#include <set>
#include <string>

#include "Diagnosis.h"
#include "StateName.h"
#include "TableRow.h"
#include "Utf8.h"

namespace kelvar_platform {

namespace {

constexpr std::int64_t kApplicationId = 1802270322;
constexpr std::int64_t kVersion = 1;

constexpr const char* kSchema = R"(
CREATE TABLE edit (
  revision INTEGER PRIMARY KEY AUTOINCREMENT,            -- one row an edit, in the order of the edits
  sequence INTEGER NOT NULL CHECK (sequence > 0),        -- the annotated site, the same across its edits
  alive    INTEGER NOT NULL CHECK (alive IN (0, 1)),     -- 0: this edit deleted the site
  disabled INTEGER NOT NULL CHECK (disabled IN (0, 1)),
  kind     INTEGER NOT NULL CHECK (kind BETWEEN 0 AND 18),
  label    TEXT NOT NULL,
  file     TEXT NOT NULL,
  line     INTEGER NOT NULL CHECK (line BETWEEN 0 AND 2147483647),
  "column" INTEGER NOT NULL CHECK ("column" BETWEEN 0 AND 2147483647)
) STRICT;
CREATE INDEX edit_of_sequence ON edit (sequence, revision);
CREATE TABLE state (
  path     TEXT PRIMARY KEY,                             -- a result path
  revision INTEGER NOT NULL CHECK (revision >= 0)        -- the database as it was after this edit; 0: before the first
) STRICT;
PRAGMA application_id = 1802270322;
PRAGMA user_version = 1;
)";

/// The columns in the order of the queries.
enum EditColumn : int { kRevision, kSequence, kAlive, kDisabled, kKind, kLabel, kFile, kLine, kColumn };
constexpr std::string_view kSelectEdits =
    "SELECT revision, sequence, alive, disabled, kind, label, file, line, edit.\"column\" FROM edit ORDER BY revision";

constexpr std::int64_t kMostInt = std::numeric_limits<int>::max();
constexpr Range kRevisions{"revision", 1, Range::kUnbounded};
constexpr Range kSequences{"sequence", 1, Range::kUnbounded};
constexpr Range kAliveFlags{"alive", 0, 1};
constexpr Range kDisabledFlags{"disabled", 0, 1};
constexpr Range kKinds{"kind", 0, sitenotes::annotation_t::all_kinds - 1};
constexpr Range kLines{"line", 0, kMostInt};
constexpr Range kColumns{"column", 0, kMostInt};
constexpr Range kStateRevisions{"revision", 0, Range::kUnbounded};

constexpr const char* kExpectedPath =
    "path without ., .. or a trailing slash, absolute where it does not lie below the database's folder";

EditRow editAt(const Statement& statement, std::int64_t number) {
  const Row row{statement, "edit", "revision", kRevision, number};
  return {.revision = row.integer(kRevision, kRevisions),
          .sequence = row.integer(kSequence, kSequences),
          .alive = row.integer(kAlive, kAliveFlags) != 0,
          .disabled = row.integer(kDisabled, kDisabledFlags) != 0,
          .kind = static_cast<sitenotes::annotation_t::kind_t>(row.integer(kKind, kKinds)),
          .label = row.text(kLabel, "label"),
          .file = row.text(kFile, "file"),
          .line = static_cast<int>(row.integer(kLine, kLines)),
          .column = static_cast<int>(row.integer(kColumn, kColumns))};
}

void requireNumber(const Connection& connection, const char* name, std::int64_t expected) {
  const std::int64_t found = connection.number(("PRAGMA " + std::string(name)).c_str());
  if (found != expected) connection.refuse(name, std::to_string(expected) + ", found " + std::to_string(found));
}

void requireTable(const Connection& connection, const char* name) {
  if (!hasTable(connection, name)) connection.refuse(name, "a table of this name");
}

/// Throws unless the database is marked as an annotation database of our version and has tables `edit` and `state`.
void requireAnnotationDatabase(const Connection& connection) {
  requireNumber(connection, "application_id", kApplicationId);
  requireNumber(connection, "user_version", kVersion);
  connection.requireWholePages();
  requireTable(connection, "edit");
  requireTable(connection, "state");
}

/// In the order of revisions.
void readEdits(const Connection& connection, const std::function<void(const EditRow&)>& take) {
  std::int64_t newest = 0;
  readRows(connection, "edit", kSelectEdits, [&](const Statement& statement, std::int64_t number) {
    const EditRow row = editAt(statement, number);
    if (row.revision <= newest)
      connection.refuse("edit, revision " + std::to_string(row.revision), "one row for each revision");
    newest = row.revision;
    take(row);
  });
}

void readStates(const Connection& connection, const std::function<void(const StateRow&)>& take) {
  std::set<std::string, std::less<>> paths;
  readRows(connection, "state", "SELECT path, revision FROM state",
           [&](const Statement& statement, std::int64_t number) {
             const Row row{statement, "state", "path", 0, number};
             const StateRow state{.path = row.text(0, "path"), .revision = row.integer(1, kStateRevisions)};
             if (!isStateName(state.path)) row.refuse(kExpectedPath);  // no result would find it
             if (!paths.emplace(state.path).second) row.refuse("one row for each path");
             take(state);
           });
}

}  // namespace

Site siteOf(const EditRow& row) {
  return {.sequence = row.sequence,
          .alive = row.alive,
          .disabled = row.disabled,
          .kind = row.kind,
          .label = std::string(row.label),
          .file = std::string(row.file),
          .line = row.line,
          .column = row.column};
}

EditRow rowOf(const Site& site) {
  return {.sequence = site.sequence,
          .alive = site.alive,
          .disabled = site.disabled,
          .kind = site.kind,
          .label = site.label,
          .file = site.file,
          .line = site.line,
          .column = site.column};
}

void createTables(const Connection& connection) {
  connection.run(kSchema);
}

bool isBlank(const Connection& connection) {
  if (connection.number("SELECT count(*) FROM sqlite_schema") != 0) return false;
  requireNumber(connection, "application_id", 0);  // a database without tables may still be marked as another format
  requireNumber(connection, "user_version", 0);
  return true;
}

void requireWritable(const std::string& path, const std::string& place, const EditRow& row) {
  const auto require = [&](bool holds, const std::string& expected) {
    if (!holds) throw ReadError({path, place, expected});
  };
  require(kSequences.holds(row.sequence), kSequences.sentence());
  require(kKinds.holds(row.kind), kKinds.sentence());
  require(isUtf8(row.label), expectedText("label"));
  require(isUtf8(row.file), expectedText("file"));
  require(kLines.holds(row.line), kLines.sentence());
  require(kColumns.holds(row.column), kColumns.sentence());
}

void readDatabase(const Connection& connection, const std::function<void(const EditRow&)>& takeEdit,
                  const std::function<void(const StateRow&)>& takeState) {
  requireAnnotationDatabase(connection);
  readEdits(connection, takeEdit);
  readStates(connection, takeState);
}

EditWriter::EditWriter(const Connection& connection)
    : statement_(connection,
                 "INSERT INTO edit (sequence, alive, disabled, kind, label, file, line, \"column\") "
                 "VALUES (?, ?, ?, ?, ?, ?, ?, ?) RETURNING revision",
                 "edit") {}

std::int64_t EditWriter::append(const EditRow& row) {
  statement_.bind(kSequence, row.sequence);
  statement_.bind(kAlive, std::int64_t{row.alive});
  statement_.bind(kDisabled, std::int64_t{row.disabled});
  statement_.bind(kKind, std::int64_t{row.kind});
  statement_.bind(kLabel, row.label);
  statement_.bind(kFile, row.file);
  statement_.bind(kLine, std::int64_t{row.line});
  statement_.bind(kColumn, std::int64_t{row.column});
  // A copy of the table may have lost its primary key. A row without a revision would make the file unreadable.
  if (!statement_.step() || statement_.type(0) != SQLITE_INTEGER)
    statement_.connection().refuse("edit", "revision as the key");
  const std::int64_t revision = statement_.integer(0);
  statement_.finish();
  return revision;
}

}  // namespace kelvar_platform
