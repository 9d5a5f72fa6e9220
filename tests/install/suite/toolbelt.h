// A suite's own paths: plain texts, all inline.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

namespace toolbelt {

template <class T>
using sptr_t = boost::shared_ptr<T>;

class path_t {
 public:
  path_t() = default;
  explicit path_t(std::string text) : text_(std::move(text)), leaf_(text_.substr(text_.rfind('/') + 1)) {}

  const std::string& get_text() const noexcept { return text_; }
  const std::string& get_leaf() const noexcept { return leaf_; }
  bool empty() const noexcept { return text_.empty(); }
  int compare_leaf(const path_t& other) const noexcept { return leaf_.compare(other.leaf_); }
  int compare(const path_t& other) const noexcept { return text_.compare(other.text_); }

 private:
  std::string text_;
  std::string leaf_;
};

}  // namespace toolbelt
