#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelvar_platform {

/// An open SQLite database. Errors of SQLite become a ReadError with the file and the place that the caller gave; if
/// there is no memory for the connection itself, std::bad_alloc. One thread at a time may use it and its statements.
class Connection {
 public:
  enum class Access { read, write, create };

  /// Opens the file at `path`. The path is always that of a file: `:memory:` and `file:…` have no special meaning.
  Connection(std::string path, Access access);
  Connection(const Connection&) = delete;  // statements and transactions refer to it
  Connection& operator=(const Connection&) = delete;

  /// The path as given.
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] sqlite3* handle() const noexcept { return database_.get(); }

  void run(const char* sql, const std::string& place = {}) const;
  /// The first value of the first row; 0 if there is none.
  [[nodiscard]] std::int64_t number(const char* sql, const std::string& place = {}) const;

  /// Throws when the file ends within a page: SQLite would read zeros for the missing part. Call it within a
  /// transaction.
  void requireWholePages() const;

  /// Throws the error of the last call to SQLite.
  [[noreturn]] void fail(const std::string& place) const;
  /// Throws a ReadError for this file.
  [[noreturn]] void refuse(const std::string& place, const std::string& expected) const;

 private:
  struct Close {
    void operator()(sqlite3* database) const noexcept { sqlite3_close(database); }
  };

  std::string path_;
  std::unique_ptr<sqlite3, Close> database_;
};

/// A prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  /// `place` is named in every refusal of this statement.
  Statement(const Connection& connection, std::string_view sql, std::string place = {});

  void bind(int parameter, std::int64_t value);
  /// The text is bound byte by byte, and must live until the last step.
  void bind(int parameter, std::string_view text);
  /// Whether there is another row.
  [[nodiscard]] bool step();
  /// Runs the statement to its end and resets it, so that other values can be bound.
  void finish();

  /// SQLITE_INTEGER, SQLITE_TEXT and so on. Must be called before the value is read.
  [[nodiscard]] int type(int column) const noexcept { return sqlite3_column_type(statement_.get(), column); }
  /// The integer of a column, or nothing if it holds another type. Looks the column up once.
  [[nodiscard]] std::optional<std::int64_t> ifInteger(int column) const noexcept {
    sqlite3_value* const value = sqlite3_column_value(statement_.get(), column);
    if (sqlite3_value_type(value) != SQLITE_INTEGER) return std::nullopt;
    return sqlite3_value_int64(value);
  }
  [[nodiscard]] std::int64_t integer(int column) const noexcept {
    return sqlite3_column_int64(statement_.get(), column);
  }
  /// Valid until the next step.
  [[nodiscard]] std::string_view text(int column) const;

  [[nodiscard]] const Connection& connection() const noexcept { return connection_; }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
  };

  void check(int result) const;

  const Connection& connection_;
  std::string place_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// Rolled back unless it is committed.
class Transaction {
 public:
  enum class Kind { read, write };

  Transaction(const Connection& connection, Kind kind);
  ~Transaction();
  Transaction(const Transaction&) = delete;  // it ends only once
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  const Connection& connection_;
  bool open_ = true;
};

}  // namespace kelvar_platform
