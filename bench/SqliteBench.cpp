#include <sqlite3.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "Measure.h"
#include "Program.h"

namespace kelvar_bench {

namespace {

using kelvar_2_1_7::SummaryItems;

struct Close {
  void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

/// Fails if the yardstick has no rows: it would measure nothing.
void require(bool done) {
  if (!done) std::abort();
}

Statement prepare(sqlite3* database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  require(sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) == SQLITE_OK);
  return Statement(statement);
}

/// The program's joined list as a table in memory.
Database rowsOf(const SummaryItems& list) {
  sqlite3* opened = nullptr;
  require(sqlite3_open(":memory:", &opened) == SQLITE_OK);
  Database database(opened);
  const char* schema = "CREATE TABLE item (leaf TEXT, line INTEGER, col INTEGER, path TEXT, cpu REAL); BEGIN";
  require(sqlite3_exec(opened, schema, nullptr, nullptr, nullptr) == SQLITE_OK);
  const Statement row = prepare(opened, "INSERT INTO item VALUES (?, ?, ?, ?, ?)");
  for (const auto& item : list) {
    const sitenotes::locator_t& place = item->place();
    const auto* survey = item->surveyDetail();
    sqlite3_bind_text(row.get(), 1, place.get_file().get_leaf().c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_int(row.get(), 2, place.get_line());
    sqlite3_bind_int(row.get(), 3, place.get_column());
    sqlite3_bind_text(row.get(), 4, place.get_file().get_text().c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_double(row.get(), 5, survey != nullptr ? survey->cpuTime() : -1.0);
    require(sqlite3_step(row.get()) == SQLITE_DONE);
    sqlite3_reset(row.get());
  }
  require(sqlite3_exec(opened, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK);
  return database;
}

sqlite3* database(std::size_t sites) {
  static Database kept;
  static std::size_t keptSites = 0;
  if (keptSites != sites) {
    kept = rowsOf(program(sites).joined());
    keptSites = sites;
  }
  return kept.get();
}

std::int64_t count(std::size_t sites) {
  const Statement counting = prepare(database(sites), "SELECT count(*) FROM item");
  require(sqlite3_step(counting.get()) == SQLITE_ROW);
  return sqlite3_column_int64(counting.get(), 0);
}

std::int64_t readAll(sqlite3* from, const char* sql) {
  const Statement rows = prepare(from, sql);
  std::int64_t sum = 0;
  while (sqlite3_step(rows.get()) == SQLITE_ROW) sum += sqlite3_column_int64(rows.get(), 0);
  return sum;
}

}  // namespace

void registerSqlite(std::size_t sites) {
  const auto items = [=] { return count(sites); };
  const auto prepared = [=] { return database(sites); };
  measure("sqlite/locator", sites, items, prepared,
          [](sqlite3* from) { return readAll(from, "SELECT rowid FROM item ORDER BY leaf, line, col, path"); });
  measure("sqlite/survey-cpu-time", sites, items, prepared,
          [](sqlite3* from) { return readAll(from, "SELECT rowid FROM item ORDER BY cpu DESC"); });
}

}  // namespace kelvar_bench
