#include <type_traits>

#include "sitenotes.h"

namespace sitenotes {

static_assert(std::is_trivially_copyable_v<locator_t> && sizeof(locator_t) == 16, "copied in every comparison");

locator_t::locator_t(const toolbelt::path_t& file, int line, int column) noexcept
    : file_(file), line_(line), column_(column) {}

bool locator_t::is_null() const noexcept {
  return line_ == 0 && column_ == 0 && file_.empty();
}

const toolbelt::path_t& locator_t::get_file() const noexcept {
  return file_;
}

int locator_t::get_line() const noexcept {
  return line_;
}

int locator_t::get_column() const noexcept {
  return column_;
}

int locator_t::display_order(const locator_t& other) const noexcept {
  const bool haveSameFile = file_ == other.file_;
  if (!haveSameFile) {  // neighbours in a sorted list mostly have the same file: no call for them
    if (const int order = file_.compare_leaf(other.file_); order != 0) return order;
  }
  if (line_ != other.line_) return line_ < other.line_ ? -1 : 1;
  if (column_ != other.column_) return column_ < other.column_ ? -1 : 1;
  return haveSameFile ? 0 : file_.compare(other.file_);
}

}  // namespace sitenotes
