#pragma once

#include <functional>

#include "AnchoredSites.h"
#include "Sqlite.h"

namespace kelvar_platform {

/// Hands out the rows of the tables `anchor` and `source`, by their keys; nothing where the database has no such table.
/// Throws at the first row that breaks a rule: no reader takes on trust what the file enforces. `isEdit` answers
/// whether the sequence has an edit of that revision. To be asked within a transaction.
void readAnchors(const Connection& connection,
                 const std::function<bool(std::int64_t sequence, std::int64_t revision)>& isEdit,
                 const std::function<void(AnchorRow&&)>& take);
void readSources(const Connection& connection, const std::function<void(SourceRow&&)>& take);

/// Throws what a reader would have against this row.
void requireWritable(const std::string& path, const AnchorRow& row);
void requireWritable(const std::string& path, const SourceRow& row);

/// Makes both tables where they are missing.
void createAnchorTables(const Connection& connection);

/// Writes rows of both tables, which have to be there, within a transaction. Each takes the place of the one with its
/// key.
class AnchorWriter {
 public:
  explicit AnchorWriter(const Connection& connection);

  void write(const AnchorRow& row);
  void write(const SourceRow& row);
  /// Takes the row of a source file away.
  void forget(const std::string& file);

 private:
  Statement anchor_;
  Statement source_;
  Statement forget_;
};

}  // namespace kelvar_platform
