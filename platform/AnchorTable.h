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
/// Each takes the place of the row with its key.
void writeAnchor(const Connection& connection, const AnchorRow& row);
void writeSource(const Connection& connection, const SourceRow& row);
void forgetSource(const Connection& connection, const std::string& file);

}  // namespace kelvar_platform
