/// The suite's general helpers, as the library sees them. A suite that has its own header of this name puts
/// it first on the include path.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <string_view>

namespace toolbelt {

/// A shared handle: the last copy deletes the object.
template <class T>
using sptr_t = boost::shared_ptr<T>;

/// A file path as a source position names it: any bytes, nothing normalised, possibly empty.
/// Paths are copied in every comparison, so a path is a pointer to a text that the process keeps once and never frees.
/// Copies are cheap and may be made on any thread.
class path_t {
 public:
  /// The empty path.
  path_t() noexcept;
  /// The path with this text. May allocate when the text is new to the process.
  path_t(std::string_view text);

  /// The whole path. Lives as long as the process.
  [[nodiscard]] const std::string& get_text() const noexcept;
  /// What follows the last '/', or the whole path if there is none. Lives as long as the process.
  [[nodiscard]] const std::string& get_leaf() const noexcept;
  [[nodiscard]] bool empty() const noexcept;
  /// Whether two paths have the same text.
  [[nodiscard]] friend bool operator==(const path_t& a, const path_t& b) noexcept {
    return a.entry_ == b.entry_;  // each text is kept once
  }

  /// Negative, zero or positive as this leaf is before, equal to or after the other's, byte by byte.
  [[nodiscard]] int compare_leaf(const path_t& other) const noexcept;
  /// The same for the whole texts.
  [[nodiscard]] int compare(const path_t& other) const noexcept;

 private:
  struct Entry;
  const Entry* entry_;
};

}  // namespace toolbelt
