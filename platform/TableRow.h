#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include "Sqlite.h"

namespace kelvar_platform {

/// Which integers a column may hold.
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

/// The row that a statement is at. `key`, the column that tells rows apart, is what a refusal names it by.
struct Row {
  const Statement& values;
  const char* table;
  const char* keyName;
  int key;
  std::int64_t number;  // names the row where its key is not fit to

  [[nodiscard]] std::string place() const;
  [[noreturn]] void refuse(const std::string& expected) const { values.connection().refuse(place(), expected); }
  [[nodiscard]] std::int64_t integer(int column, const Range& range) const;
  /// Valid until the next step.
  [[nodiscard]] std::string_view text(int column, const char* name) const;
};

/// Hands `take` each row of the table and its number, from 1. Rows are counted in the table's index and read from the
/// table: a damaged page that leads past some of them, or to some twice, does not go unnoticed.
void readRows(const Connection& connection, const std::string& table, std::string_view select,
              const std::function<void(const Statement&, std::int64_t)>& take);

/// Whether the database has a table of this name. Views and virtual tables run what the file's writer wants: they are
/// none.
[[nodiscard]] bool hasTable(const Connection& connection, const char* name);

}  // namespace kelvar_platform
