#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "FileDescriptor.h"
#include "JsonPlace.h"

namespace kelvar_platform {

/// Writes one JSON file value by value. Throws a ReadError where the disk refuses, and where a value is none that our
/// reader takes; both under the name that the file is going to have.
class JsonWriter {
 public:
  /// Writes to `path`, which must not be there yet, what will stand at `name`.
  JsonWriter(std::string path, std::string name);
  /// Removes a file that was not closed.
  ~JsonWriter();
  JsonWriter(const JsonWriter&) = delete;  // owns what is on the disk
  JsonWriter& operator=(const JsonWriter&) = delete;

  /// A key is empty for the outermost object and for an element of a list.
  void beginObject(std::string_view key);
  void endObject() { end('}'); }
  void beginList(std::string_view key);
  void endList() { end(']'); }

  void text(std::string_view key, std::string_view value);
  void number(std::string_view key, double value);
  void unsigned64(std::string_view key, std::uint64_t value);
  void integer(std::string_view key, std::int64_t value);
  /// Refuses a value that is not from `min` to `max`.
  void integer(std::string_view key, std::int64_t value, std::int64_t min, std::int64_t max);
  template <std::integral Integer, std::size_t N>
  void integers(std::string_view key, const std::array<Integer, N>& values) {
    beginList(key);
    for (const Integer value : values) integer({}, value);
    endList();
  }

  /// Ends the file and sees to it that it is on the disk.
  void close();

 private:
  void begin(std::string_view key, char bracket);
  void end(char bracket);
  void startValue(std::string_view key);
  template <class Number>
  void appendNumber(Number value);
  void flush();
  [[noreturn]] void refuse(std::string expected) const;
  [[noreturn]] void refuseByErrno() const;

  std::string path_;
  std::string name_;
  FileDescriptor file_;
  std::string buffer_;
  JsonPlace place_;
  std::array<std::size_t, JsonPlace::kMaxDepth + 1> counts_{};  ///< values so far, by depth
};

}  // namespace kelvar_platform
