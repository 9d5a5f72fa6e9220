#include "SiteHistory.h"

#include "EditTable.h"
#include "Sqlite.h"

namespace kelvar_platform {

std::vector<SiteEdit> siteHistory(const std::string& database, std::int64_t sequence) {
  const Connection connection(database, Connection::Access::read);
  Transaction transaction(connection, Transaction::Kind::read);
  std::vector<SiteEdit> edits;
  const auto take = [&](const EditRow& row) {
    if (row.sequence != sequence) return;
    edits.push_back({.revision = row.revision, .site = siteOf(row)});
  };
  readDatabase(connection, take, [](const StateRow&) {});
  transaction.commit();
  return edits;
}

}  // namespace kelvar_platform
