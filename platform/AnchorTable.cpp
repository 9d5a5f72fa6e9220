#include "AnchorTable.h"

#include <string>
#include <string_view>

#include "Diagnosis.h"
#include "TableRow.h"
#include "Utf8.h"

namespace kelvar_platform {

namespace {

constexpr const char* kSchema = R"(
CREATE TABLE IF NOT EXISTS anchor (                    -- what was around a site when it was last found
  sequence INTEGER PRIMARY KEY,
  revision INTEGER NOT NULL,             -- the edit that put it there; an older one than the site's newest: moved by hand
  rule     TEXT NOT NULL,                -- the marker that found it; empty: a person placed it
  text     TEXT NOT NULL,                -- its line (a directive with its continuations), runs of blanks as one
  function TEXT NOT NULL,                -- the enclosing function; empty: none
  before   TEXT NOT NULL,                -- up to three significant lines, a newline between two
  after    TEXT NOT NULL,
  label    TEXT NOT NULL                 -- the label in the source; empty: it has none of its own
) STRICT;
CREATE TABLE IF NOT EXISTS source (                    -- the files as they were at the last scan
  file TEXT PRIMARY KEY, digest TEXT NOT NULL, lines INTEGER NOT NULL
) STRICT;
)";

enum AnchorColumn : int { kSequence, kRevision, kRule, kText, kFunction, kBefore, kAfter, kLabel };
constexpr std::string_view kSelectAnchors =
    "SELECT sequence, revision, rule, text, function, before, after, label FROM anchor ORDER BY sequence";

/// The columns that hold texts, in the order of the table.
struct TextColumn {
  int column;
  const char* name;
  std::string AnchorRow::*member;
};
constexpr TextColumn kTexts[] = {
    {kRule, "rule", &AnchorRow::rule},
    {kText, "text", &AnchorRow::text},
    {kFunction, "function", &AnchorRow::function},
    {kBefore, "before", &AnchorRow::before},
    {kAfter, "after", &AnchorRow::after},
    {kLabel, "label", &AnchorRow::label},
};

constexpr Range kSequences{"sequence", 1, Range::kUnbounded};
constexpr Range kRevisions{"revision", 1, Range::kUnbounded};
constexpr Range kLineCounts{"lines", 0, Range::kUnbounded};

}  // namespace

void readAnchors(const Connection& connection, const std::function<bool(std::int64_t, std::int64_t)>& isEdit,
                 const std::function<void(AnchorRow&&)>& take) {
  if (!hasTable(connection, "anchor")) return;
  readRows(connection, "anchor", kSelectAnchors, [&](const Statement& statement, std::int64_t number) {
    const Row row{statement, "anchor", "sequence", kSequence, number};
    AnchorRow anchor;
    anchor.sequence = row.integer(kSequence, kSequences);
    anchor.revision = row.integer(kRevision, kRevisions);
    for (const TextColumn& text : kTexts) anchor.*text.member = row.text(text.column, text.name);
    if (!isEdit(anchor.sequence, anchor.revision)) row.refuse("revision of an edit of this sequence");
    take(std::move(anchor));
  });
}

void readSources(const Connection& connection, const std::function<void(SourceRow&&)>& take) {
  if (!hasTable(connection, "source")) return;
  std::string before;
  readRows(connection, "source", "SELECT file, digest, lines FROM source ORDER BY file",
           [&](const Statement& statement, std::int64_t number) {
             const Row row{statement, "source", "file", 0, number};
             SourceRow source{.file = std::string(row.text(0, "file")),
                              .digest = std::string(row.text(1, "digest")),
                              .lines = row.integer(2, kLineCounts)};
             if (number > 1 && source.file <= before) row.refuse("one row a file");
             before = source.file;
             take(std::move(source));
           });
}

void requireWritable(const std::string& path, const AnchorRow& row) {
  for (const TextColumn& text : kTexts) {
    if (isUtf8(row.*text.member)) continue;
    throw ReadError({path, "anchor, sequence " + std::to_string(row.sequence), expectedText(text.name)});
  }
}

void requireWritable(const std::string& path, const SourceRow& row) {
  if (!isUtf8(row.file)) throw ReadError({path, "source", expectedText("file")});
}

void createAnchorTables(const Connection& connection) {
  connection.run(kSchema);
}

AnchorWriter::AnchorWriter(const Connection& connection)
    : anchor_(connection, "INSERT OR REPLACE INTO anchor VALUES (?, ?, ?, ?, ?, ?, ?, ?)", "anchor"),
      source_(connection, "INSERT OR REPLACE INTO source VALUES (?, ?, ?)", "source"),
      forget_(connection, "DELETE FROM source WHERE file = ?", "source") {}

void AnchorWriter::write(const AnchorRow& row) {
  anchor_.bind(kSequence + 1, row.sequence);
  anchor_.bind(kRevision + 1, row.revision);
  for (const TextColumn& text : kTexts) anchor_.bind(text.column + 1, std::string_view(row.*text.member));
  anchor_.finish();
}

void AnchorWriter::write(const SourceRow& row) {
  source_.bind(1, std::string_view(row.file));
  source_.bind(2, std::string_view(row.digest));
  source_.bind(3, row.lines);
  source_.finish();
}

void AnchorWriter::forget(const std::string& file) {
  forget_.bind(1, std::string_view(file));
  forget_.finish();
}

}  // namespace kelvar_platform
