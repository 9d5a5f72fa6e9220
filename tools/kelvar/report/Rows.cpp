#include "Rows.h"

#include "Messages.h"
#include "text/Unicode.h"

namespace kelvar_tool {

namespace {

re2::RE2::Options quiet() {
  re2::RE2::Options options;
  options.set_log_errors(false);  // we report a bad pattern ourselves
  return options;
}

}  // namespace

RowPattern::RowPattern(std::string_view option, const std::string& text)
    : expression_(std::make_shared<re2::RE2>(text, quiet())) {
  if (expression_->ok()) return;
  throw UsageError(std::string(option) + ": expected a regular expression, not " + inQuotes(text) + ": " +
                   escaped(expression_->error()));
}

bool RowPattern::finds(const Row& row) const {
  const auto in = [&](const std::string& text) { return re2::RE2::PartialMatch(wellFormed(text), *expression_); };
  return in(row.item.label()) || in(row.current.get_file().get_text()) || in(row.stored.get_file().get_text());
}

void forEachRow(const kelvar::SummaryData& data, const RowChoice& choice, const std::function<void(const Row&)>& take) {
  int taken = 0;
  const int count = data.num_items();
  for (int index = 0; index < count && (!choice.top || taken < *choice.top); ++index) {
    const Row row(*data.item(index));
    if (choice.pattern && !choice.pattern->finds(row)) continue;
    take(row);
    ++taken;
  }
}

}  // namespace kelvar_tool
