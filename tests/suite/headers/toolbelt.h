/// A suite's general helpers: paths that are costly to copy, and handles.
///
/// These five headers offer what the library may count on, and no more: no names of enumerators, no `noexcept`, no
/// moves, no comparison of paths. Two suites share them. One hands out references and has `const` where it can; the
/// other, SUITE_BY_VALUE, hands out values, has scoped enumerations, and `const` only where the library may expect it.
#pragma once

#include <memory>
#include <string>

#ifdef SUITE_BY_VALUE
#define SUITE_PART(type) type
#define SUITE_TEXT std::string
#define SUITE_CONST
#define SUITE_ENUM enum class
#else
#include <boost/shared_ptr.hpp>
#define SUITE_PART(type) const type&
#define SUITE_TEXT const char*
#define SUITE_CONST const
#define SUITE_ENUM enum
#endif

namespace toolbelt {

#ifdef SUITE_BY_VALUE
/// A handle that offers little: it can be copied, tested and followed.
template <class T>
class sptr_t {
 public:
  sptr_t() = default;
  explicit sptr_t(T* object) : object_(object) {
    std::unique_ptr<T> owned(object);
    holders_ = object != nullptr ? new int(0) : nullptr;
    hold();
    static_cast<void>(owned.release());
  }
  sptr_t(const sptr_t& other) : object_(other.object_), holders_(other.holders_) { hold(); }
  sptr_t& operator=(const sptr_t&) = delete;
  ~sptr_t() {
    if (object_ == nullptr || --*holders_ != 0) return;
    delete object_;
    delete holders_;
  }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  void hold() {
    if (object_ != nullptr) ++*holders_;
  }
  T* object_ = nullptr;
  int* holders_ = nullptr;
};
#else
template <class T>
using sptr_t = boost::shared_ptr<T>;
#endif

/// Copies allocate and may throw. There is no cheaper move.
class path_t {
 public:
  path_t();
  explicit path_t(std::string text);
  path_t(const path_t& other);
  path_t& operator=(const path_t& other);
  ~path_t();

  /// What follows the last '/'.
  SUITE_PART(std::string) get_leaf() SUITE_CONST;

 private:
  std::string folder_;
  std::string leaf_;
};

}  // namespace toolbelt
