#pragma once

#include <filesystem>
#include <string>

#include "Record.h"

/// What the readers' tests share: inputs as texts, records as texts.
namespace kelvar_import {

/// A folder of one test's own, gone when the test is done.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  [[nodiscard]] std::string path(const std::string& name) const { return (path_ / name).native(); }
  /// The path of a new file that holds `text`.
  std::string file(const std::string& name, const std::string& text) const;

 private:
  std::filesystem::path path_;
};

/// What the source that is named as on the command line makes of the file: a line a record, `WEIGHTS NOTE | PLACES`,
/// with ` #N` for one of several of a report; or the sentence that refuses it, with the file's name left out.
[[nodiscard]] std::string recordsOf(const std::string& option, const std::string& file, const std::string& binary = {});

}  // namespace kelvar_import
