#include "TableRow.h"

#include <optional>

#include "Utf8.h"

namespace kelvar_platform {

std::string Range::sentence() const {
  const std::string from = std::string(name) + " from " + std::to_string(low);
  return high == kUnbounded ? from + " up" : from + " to " + std::to_string(high);
}

std::string expectedText(const char* name) {
  return std::string(name) + " as UTF-8 text";
}

std::string Row::place() const {
  const std::string named = std::string(table) + ", " + keyName + " ";
  if (values.type(key) == SQLITE_INTEGER) return named + std::to_string(values.integer(key));
  if (values.type(key) == SQLITE_TEXT) return named + '"' + std::string(values.text(key)) + '"';
  return std::string(table) + ", row " + std::to_string(number);
}

std::int64_t Row::integer(int column, const Range& range) const {
  const std::optional<std::int64_t> value = values.ifInteger(column);
  if (!value || !range.holds(*value)) refuse(range.sentence());
  return *value;
}

std::string_view Row::text(int column, const char* name) const {
  if (values.type(column) != SQLITE_TEXT) refuse(expectedText(name));
  const std::string_view value = values.text(column);
  if (!isUtf8(value)) refuse(expectedText(name));
  return value;
}

void readRows(const Connection& connection, const std::string& table, std::string_view select,
              const std::function<void(const Statement&, std::int64_t)>& take) {
  const std::int64_t count = connection.number(("SELECT count(*) FROM " + table).c_str(), table);
  Statement statement(connection, select, table);
  std::int64_t number = 0;
  while (statement.step()) take(statement, ++number);
  if (number != count) connection.refuse(table, std::to_string(count) + " rows, found " + std::to_string(number));
}

bool hasTable(const Connection& connection, const char* name) {
  Statement query(connection, "SELECT count(*) FROM pragma_table_list(?) WHERE schema = 'main' AND type = 'table'");
  query.bind(1, std::string_view(name));
  return query.step() && query.integer(0) == 1;
}

}  // namespace kelvar_platform
