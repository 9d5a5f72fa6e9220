#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include "Sqlite.h"

namespace kelvar_platform {

/// The range of integers that a column may hold.
struct Range {
  static constexpr std::int64_t kUnbounded = std::numeric_limits<std::int64_t>::max();

  const char* name;
  std::int64_t low;
  std::int64_t high;

  [[nodiscard]] bool holds(std::int64_t value) const noexcept { return low <= value && value <= high; }
  /// `line from 0 to 2147483647`
  [[nodiscard]] std::string sentence() const;
};

/// `label as UTF-8 text`
[[nodiscard]] std::string expectedText(const char* name);

/// The current row of a statement. Errors name it by the column `key`.
struct Row {
  const Statement& values;
  const char* table;
  const char* keyName;
  int key;
  std::int64_t number;  // names the row if its key is invalid

  [[nodiscard]] std::string place() const;
  [[noreturn]] void refuse(const std::string& expected) const { values.connection().refuse(place(), expected); }
  [[nodiscard]] std::int64_t integer(int column, const Range& range) const;
  /// Valid until the next step.
  [[nodiscard]] std::string_view text(int column, const char* name) const;
};

/// Calls `take` with each row of the table and its number, from 1. The number of rows is checked against the table's
/// index, so that damaged pages which skip or repeat rows are noticed.
void readRows(const Connection& connection, const std::string& table, std::string_view select,
              const std::function<void(const Statement&, std::int64_t)>& take);

/// Whether the database has a table of this name. Views and virtual tables do not count: they could run code that the
/// file's writer chose.
[[nodiscard]] bool hasTable(const Connection& connection, const char* name);

}  // namespace kelvar_platform
