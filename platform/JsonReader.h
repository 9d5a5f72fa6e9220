#pragma once

#include <simdjson.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "FileText.h"
#include "JsonPlace.h"

namespace kelvar_platform {

class JsonReader;
using JsonValue = simdjson::ondemand::value;

/// One known key of an object, and how its value gets into the record that the object describes.
template <class Record>
struct JsonField {
  std::string_view key;
  void (*read)(JsonReader& in, JsonValue& value, Record& out);
  bool required = false;
};

/// Walks a JSON file from its first byte to its last, every value once and in the order of the file. Strict: what a
/// known key holds must be as it is asked for, and what is ignored must still be JSON, with no key twice in one object.
/// Whatever does not fit throws a ReadError that names the place. One file after the other may be read, in memory that
/// is kept for the next: to clear that anew would cost as much as reading into it.
class JsonReader {
 public:
  JsonReader() = default;
  JsonReader(const JsonReader&) = delete;  // values point into it
  JsonReader& operator=(const JsonReader&) = delete;

  /// The one object of `file`, up to the end of the file.
  template <class Record, std::size_t N>
  void readDocument(const std::string& file, const std::array<JsonField<Record>, N>& fields, Record& out);
  /// The one object of `line`, which is all of a line of `file`; bytes in a refusal count from its beginning.
  template <class Record, std::size_t N>
  void readLine(const std::string& file, std::string_view line, const std::array<JsonField<Record>, N>& fields,
                Record& out);
  template <class Record, std::size_t N>
  void readObject(JsonValue& value, const std::array<JsonField<Record>, N>& fields, Record& out);
  /// Calls `onElement` with each value of a list.
  template <class OnElement>
  void readList(JsonValue& value, OnElement onElement);
  /// A list of exactly N integers.
  template <class Integer, std::size_t N>
  void readIntegers(JsonValue& value, std::array<Integer, N>& out);

  double finite(JsonValue& value);
  std::int64_t integer(JsonValue& value, std::int64_t min, std::int64_t max);
  std::uint64_t unsigned64(JsonValue& value);
  /// Valid until the next document is read.
  std::string_view text(JsonValue& value);

  /// Throws: at the place of the value that is being read, `expected` was expected.
  [[noreturn]] void refuse(std::string expected) const;

 private:
  /// An object or a list, for as long as it is being read.
  class Container {
   public:
    explicit Container(JsonReader& reader);
    ~Container() { reader_.place_.leave(); }
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

   private:
    JsonReader& reader_;
  };
  using Object = simdjson::ondemand::object;

  Object openDocument(const std::string& file);
  /// Of the text that was taken in.
  Object openText(const std::string& file);
  /// `end` is what is expected behind the document.
  void closeDocument(const char* end);
  Object asObject(JsonValue& value);
  simdjson::ondemand::array asList(JsonValue& value);
  template <class Record, std::size_t N>
  void readFields(Object object, const std::array<JsonField<Record>, N>& fields, Record& out);
  std::string_view unescapedKey(simdjson::ondemand::field& field);
  /// Puts characters in place of the escapes of `text`, which begins at `raw`. False where one is none.
  [[nodiscard]] bool unescape(simdjson::ondemand::raw_json_string raw, std::string_view& text);
  void ignore(JsonValue& value);
  void ignoreNumber(JsonValue& value);
  /// The keys from `first` on are those of one object that has been read to its end.
  void checkUnknownKeys(std::size_t first);
  /// Gives the parser's answer, or refuses the place where it stands.
  template <class T>
  void take(simdjson::simdjson_result<T> result, T& out);
  /// The same for the walk itself, without a copy: the processor would wait for what it has just written.
  template <class T>
  [[nodiscard]] T& taken(simdjson::simdjson_result<T>& result);
  [[noreturn]] void refuseText() const;
  [[noreturn]] void refuseByte(std::size_t byte, std::string expected) const;
  [[noreturn]] void refuseHere(std::string expected);

  std::string file_;
  FileText text_;
  simdjson::ondemand::parser parser_;
  simdjson::ondemand::document document_;
  std::pmr::monotonic_buffer_resource unescaped_;  ///< texts and keys that had escapes
  JsonPlace place_;
  std::vector<std::string_view> unknownKeys_;  ///< of all objects that are open, the innermost last
};

template <class T>
void JsonReader::take(simdjson::simdjson_result<T> result, T& out) {
  if (std::move(result).get(out) != simdjson::SUCCESS) [[unlikely]]
    refuseHere("JSON");
}

template <class T>
T& JsonReader::taken(simdjson::simdjson_result<T>& result) {
  if (result.error() != simdjson::SUCCESS) [[unlikely]]
    refuseHere("JSON");
  T&& value = std::move(result).value_unsafe();
  return value;
}

template <class Record, std::size_t N>
void JsonReader::readDocument(const std::string& file, const std::array<JsonField<Record>, N>& fields, Record& out) {
  readFields(openDocument(file), fields, out);
  closeDocument("the end of the file");
}

template <class Record, std::size_t N>
void JsonReader::readLine(const std::string& file, std::string_view line,
                          const std::array<JsonField<Record>, N>& fields, Record& out) {
  text_.take(line);
  readFields(openText(file), fields, out);
  closeDocument("the end of the line");
}

template <class Record, std::size_t N>
void JsonReader::readObject(JsonValue& value, const std::array<JsonField<Record>, N>& fields, Record& out) {
  readFields(asObject(value), fields, out);
}

/// The index of a key in the table, N if it is none of it. `raw` is what follows the key's opening quote. Keys mostly
/// come in the table's order, so the search begins where the last one ended.
template <class Record, std::size_t N>
std::size_t findKey(const std::array<JsonField<Record>, N>& fields, const char* raw, std::size_t likely) noexcept {
  const auto stands = [raw](std::string_view key) {
    return std::memcmp(raw, key.data(), key.size()) == 0 && raw[key.size()] == '"';
  };
  if (likely < N && stands(fields[likely].key)) return likely;
  std::size_t index = 0;
  while (index < N && !stands(fields[index].key)) ++index;
  return index;
}

template <class Record, std::size_t N>
void JsonReader::readFields(Object object, const std::array<JsonField<Record>, N>& fields, Record& out) {
  static_assert(N <= 32, "one bit for each key");
  const Container container(*this);
  const std::size_t firstUnknown = unknownKeys_.size();
  std::uint32_t seen = 0;
  std::size_t likely = 0;
  for (simdjson::simdjson_result<simdjson::ondemand::field> next : object) {
    simdjson::ondemand::field& field = taken(next);
    std::size_t index = findKey(fields, field.key().raw(), likely);
    if (index == N) [[unlikely]] {
      const std::string_view key = unescapedKey(field);  // may be a known one that is written with escapes
      index = 0;
      while (index < N && fields[index].key != key) ++index;
      if (index == N) {
        unknownKeys_.push_back(key);
        place_.at(key);
        ignore(field.value());
        continue;
      }
    }
    place_.at(fields[index].key);
    const std::uint32_t bit = std::uint32_t{1} << index;
    if ((seen & bit) != 0) refuse("a key that stands once");
    seen |= bit;
    likely = index + 1;
    fields[index].read(*this, field.value(), out);
  }
  for (std::size_t i = 0; i < N; ++i) {
    if (!fields[i].required || (seen >> i & 1) != 0) continue;
    place_.at(fields[i].key);
    refuse("a value");
  }
  if (unknownKeys_.size() != firstUnknown) checkUnknownKeys(firstUnknown);
}

template <class OnElement>
void JsonReader::readList(JsonValue& value, OnElement onElement) {
  simdjson::ondemand::array list = asList(value);
  const Container container(*this);
  std::size_t index = 0;
  for (simdjson::simdjson_result<JsonValue> next : list) {
    JsonValue& element = taken(next);
    place_.at(index++);
    onElement(element);
  }
}

template <class Integer, std::size_t N>
void JsonReader::readIntegers(JsonValue& value, std::array<Integer, N>& out) {
  using Limits = std::numeric_limits<Integer>;
  std::size_t count = 0;
  readList(value, [&](JsonValue& element) {
    if (count == N) refuse("the end of a list of " + std::to_string(N));
    out[count++] = static_cast<Integer>(integer(element, Limits::min(), Limits::max()));
  });
  if (count != N) refuse("a list of " + std::to_string(N));
}

}  // namespace kelvar_platform
