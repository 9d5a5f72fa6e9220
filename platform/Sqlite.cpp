#include "Sqlite.h"

#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "Diagnosis.h"
#include "StateName.h"

namespace kelvar_platform {

namespace {

/// How long to wait for another writer's transaction.
constexpr int kBusyMilliseconds = 2000;

struct Expectation {
  int result;  ///< extended or primary
  const char* expected;
};

/// Extended results come before their primary ones: the first match is used.
constexpr Expectation kExpectations[] = {
    {SQLITE_READONLY_ROLLBACK, "a database whose last edit was finished"},
    {SQLITE_READONLY_DIRECTORY, "a folder that can be written, for the database's journal"},
    {SQLITE_READONLY_CANTINIT, "a folder that can be written, for the database's journal"},
    {SQLITE_NOTADB, "an SQLite 3 database"},
    {SQLITE_CORRUPT, "an undamaged database"},
    // Also the result for absurd table sizes in a damaged file, so it does not mean that the process is out of memory.
    {SQLITE_NOMEM, "a database that fits into memory"},
    {SQLITE_BUSY, "a database that is not locked"},
    {SQLITE_LOCKED, "a database that is not locked"},
    {SQLITE_PERM, "a file that may be opened"},
    {SQLITE_AUTH, "a file that may be opened"},
    {SQLITE_CANTOPEN, "a file that can be opened"},
    {SQLITE_READONLY, "a file that can be written"},
    {SQLITE_FULL, "room for the edit"},
    {SQLITE_TOOBIG, "texts that SQLite can store"},
    {SQLITE_IOERR, "a file that can be read and written"},
};

const char* expectationOf(int extended) {
  for (const Expectation& expectation : kExpectations) {
    if (expectation.result == extended || expectation.result == (extended & 0xFF)) return expectation.expected;
  }
  return "the tables of an annotation database";
}

/// SQLite would block on a pipe, and reports of a directory only that it cannot be opened.
void requireFile(const std::string& path, Connection::Access access) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    if (access == Connection::Access::create) return;
    throw ReadError({path, "", "a file (" + error.message() + ")"});
  }
  if (error) throw ReadError({path, "", "a file that can be opened (" + error.message() + ")"});
  if (!std::filesystem::is_regular_file(status)) throw ReadError({path, "", "a regular file"});
}

/// For a path that is too long, SQLite reports only that the file cannot be opened. Its limit applies to the resolved
/// path with the suffix of the journal.
void requirePathThatFits(const std::string& path) {
  constexpr std::string_view kJournal = "-journal";
  const auto most = static_cast<std::size_t>(sqlite3_vfs_find(nullptr)->mxPathname) - kJournal.size();
  const std::filesystem::path absolute = absolutePath(path);
  std::error_code error;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(absolute, error);
  const std::size_t size = (error ? absolute : resolved).native().size();
  if (size <= most) return;
  throw ReadError(
      {path, "", "an absolute path of at most " + std::to_string(most) + " bytes, found " + std::to_string(size)});
}

constexpr int flagsOf(Connection::Access access) {
  constexpr int kAlways = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  if (access == Connection::Access::read) return kAlways | SQLITE_OPEN_READONLY;
  return kAlways | SQLITE_OPEN_READWRITE | (access == Connection::Access::create ? SQLITE_OPEN_CREATE : 0);
}

/// The file is untrusted: no code in it is run.
void distrust(sqlite3* database) {
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  // Otherwise a missing column would be read as a text with its name.
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
}

}  // namespace

Connection::Connection(std::string path, Access access) : path_(std::move(path)) {
  requireFile(path_, access);
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(absolutePath(path_).c_str(), &database, flagsOf(access), nullptr);
  database_.reset(database);  // must be closed even if opening failed
  if (result != SQLITE_OK) {
    requirePathThatFits(path_);
    // SQLite then retries read-only, and reports that failure instead of why the file could not be created.
    std::error_code ignored;
    const bool missing = !std::filesystem::exists(path_, ignored);
    if (access == Access::create && missing) refuse("", "a folder in which a file can be created");
    fail("");
  }
  sqlite3_busy_timeout(database, kBusyMilliseconds);
  distrust(database);
  run("PRAGMA cell_size_check = ON");
}

void Connection::requireWholePages() const {
  sqlite3_file* file = nullptr;
  sqlite3_int64 size = 0;
  if (sqlite3_file_control(handle(), nullptr, SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file)) != SQLITE_OK ||
      file->pMethods == nullptr || file->pMethods->xFileSize(file, &size) != SQLITE_OK) {
    refuse("", "a file whose size can be read");
  }
  if (size % number("PRAGMA page_size") != 0) refuse("byte " + std::to_string(size), "a complete page");
}

void Connection::fail(const std::string& place) const {
  if (!database_) throw std::bad_alloc();
  const int result = sqlite3_extended_errcode(database_.get());
  const bool bySystem = (result & 0xFF) == SQLITE_CANTOPEN || (result & 0xFF) == SQLITE_IOERR;
  const int system = bySystem ? sqlite3_system_errno(database_.get()) : 0;
  const std::string reason = system != 0 ? std::generic_category().message(system) : sqlite3_errmsg(database_.get());
  refuse(place, std::string(expectationOf(result)) + " (" + reason + ")");
}

void Connection::refuse(const std::string& place, const std::string& expected) const {
  throw ReadError({path_, place, expected});
}

void Connection::run(const char* sql, const std::string& place) const {
  if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(place);
}

std::int64_t Connection::number(const char* sql, const std::string& place) const {
  Statement statement(*this, sql, place);
  return statement.step() ? statement.integer(0) : 0;
}

Statement::Statement(const Connection& connection, std::string_view sql, std::string place)
    : connection_(connection), place_(std::move(place)) {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(connection.handle(), sql.data(), static_cast<int>(sql.size()), &statement, nullptr));
  statement_.reset(statement);
}

void Statement::bind(int parameter, std::int64_t value) {
  check(sqlite3_bind_int64(statement_.get(), parameter, value));
}

void Statement::bind(int parameter, std::string_view text) {
  const char* bytes = text.empty() ? "" : text.data();  // a null would be bound as NULL
  check(sqlite3_bind_text64(statement_.get(), parameter, bytes, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

bool Statement::step() {
  const int result = sqlite3_step(statement_.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) connection_.fail(place_);
  return result == SQLITE_ROW;
}

void Statement::finish() {
  while (step()) continue;
  check(sqlite3_reset(statement_.get()));
}

std::string_view Statement::text(int column) const {
  const unsigned char* bytes = sqlite3_column_text(statement_.get(), column);
  if (bytes == nullptr) connection_.fail(place_);
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

void Statement::check(int result) const {
  if (result != SQLITE_OK) connection_.fail(place_);
}

Transaction::Transaction(const Connection& connection, Kind kind) : connection_(connection) {
  connection_.run(kind == Kind::read ? "BEGIN" : "BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  // SQLite may have rolled back already.
  if (open_) sqlite3_exec(connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
  connection_.run("COMMIT");
  open_ = false;
}

}  // namespace kelvar_platform
