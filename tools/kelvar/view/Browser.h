#pragma once

#include <string>

namespace kelvar_tool {

/// Opens an address in the desktop's browser without showing it to other users: they could read it on a command line,
/// so the browser opens a private file that redirects to the address. The file is removed with this object.
class Browser {
 public:
  /// Does nothing if there is no browser.
  explicit Browser(const std::string& address);
  ~Browser();
  Browser(const Browser&) = delete;  // owns the file
  Browser& operator=(const Browser&) = delete;

 private:
  std::string file_;
};

}  // namespace kelvar_tool
