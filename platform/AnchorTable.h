#pragma once

#include <functional>

#include "AnchoredSites.h"
#include "Sqlite.h"

namespace kelvar_platform {

/// Pass on the rows of the tables `anchor` and `source` in the order of their keys; none if the database lacks the
/// table. They throw at the first invalid row, since the file's own constraints are not trusted. `isEdit` must say
/// whether the sequence has an edit of that revision. Call them within a transaction.
void readAnchors(const Connection& connection,
                 const std::function<bool(std::int64_t sequence, std::int64_t revision)>& isEdit,
                 const std::function<void(AnchorRow&&)>& take);
void readSources(const Connection& connection, const std::function<void(SourceRow&&)>& take);

/// Throws what a reader would throw for this row.
void requireWritable(const std::string& path, const AnchorRow& row);
void requireWritable(const std::string& path, const SourceRow& row);

/// Creates the tables that are missing.
void createAnchorTables(const Connection& connection);

/// Writes rows of both tables within a transaction. A row replaces the one with its key. The tables must exist.
class AnchorWriter {
 public:
  explicit AnchorWriter(const Connection& connection);

  void write(const AnchorRow& row);
  void write(const SourceRow& row);
  /// Deletes the row of a source file.
  void forget(const std::string& file);

 private:
  Statement anchor_;
  Statement source_;
  Statement forget_;
};

}  // namespace kelvar_platform
