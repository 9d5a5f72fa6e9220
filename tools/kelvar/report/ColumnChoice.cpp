#include <algorithm>
#include <cstddef>

#include "Columns.h"
#include "Messages.h"
#include "Names.h"

namespace kelvar_tool {

namespace {

bool isNamed(const Column& column, std::string_view name) {
  const std::string_view full = column.name;
  return full.starts_with(name) && (full.size() == name.size() || full[name.size()] == '.');
}

std::vector<std::string> names() {
  std::vector<std::string> all;
  for (const Column& column : allColumns()) {
    for (std::size_t end = column.name.find('.'); end != std::string::npos; end = column.name.find('.', end + 1)) {
      all.push_back(column.name.substr(0, end));
    }
    all.push_back(column.name);
  }
  return all;
}

void take(std::vector<const Column*>& chosen, const Column& column) {
  if (std::find(chosen.begin(), chosen.end(), &column) == chosen.end()) chosen.push_back(&column);
}

}  // namespace

std::string columnNames() {
  std::string all;
  for (const Column& column : allColumns()) all += (all.empty() ? "" : ",") + column.name;
  return all;
}

std::vector<const Column*> columnsNamed(std::string_view option, const std::string& text) {
  std::vector<const Column*> chosen;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    const std::string name = text.substr(start, end - start);
    bool known = false;
    for (const Column& column : allColumns()) {
      if (name.empty() || !isNamed(column, name)) continue;
      known = true;
      take(chosen, column);
    }
    if (!known) {
      throw UsageError(std::string(option) + ": expected names of columns, separated by commas, not " + inQuotes(name) +
                       proposal(name, names()) + "; there are: " + columnNames());
    }
    start = end + 1;
  }
  return chosen;
}

std::vector<const Column*> columnsOfTable(const kelvar::SummaryData& data, bool verbose) {
  std::vector<const Column*> chosen;
  for (const Column& column : allColumns()) {
    const bool there = !column.ofKind || data.summaryDataStatus(column.kind) != kelvar::kNotPresent;
    const bool ofMatch = column.name.ends_with("status") || column.name.ends_with("count");
    if (there && (column.shown || (verbose && ofMatch))) chosen.push_back(&column);
  }
  return chosen;
}

}  // namespace kelvar_tool
