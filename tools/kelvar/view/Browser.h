#pragma once

#include <string>

namespace kelvar_tool {

/// Has the desktop's browser open an address that nobody else may learn: command lines can be read by every user of the
/// machine, so what is opened is a file of this user's that leads there. It is removed with this object.
class Browser {
 public:
  /// Where there is no browser, nothing happens: the address is printed anyway.
  explicit Browser(const std::string& address);
  ~Browser();
  Browser(const Browser&) = delete;  // owns the file
  Browser& operator=(const Browser&) = delete;

 private:
  std::string file_;
};

}  // namespace kelvar_tool
