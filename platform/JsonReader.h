#pragma once

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
#include "JsonParser.h"
#include "JsonPlace.h"

namespace kelvar_platform {

class JsonReader;
class JsonWriter;
using JsonValue = simdjson::ondemand::value;

/// One known key of an object: how its value is read into `In`, and how it is written from `Out`.
template <class In, class Out = In>
struct JsonField {
  std::string_view key;
  void (*read)(JsonReader& in, JsonValue& value, In& to);
  void (*write)(JsonWriter& out, std::string_view key, const Out& from) = nullptr;  ///< null if it is written elsewhere
  bool required = false;
};

/// Walks a JSON file from its first byte to its last, each value once and in the order of the file. Strict: the value
/// of a known key must have the expected type and range, and unknown keys must still be valid JSON, without duplicate
/// keys in an object. Anything else throws a ReadError that names the place. A reader reuses its memory for the next
/// file: clearing new memory would cost as much as reading.
class JsonReader {
 public:
  JsonReader() = default;
  JsonReader(const JsonReader&) = delete;  // values point into it
  JsonReader& operator=(const JsonReader&) = delete;

  /// Reads `file`, which holds one object.
  template <class In, class Out, std::size_t N>
  void readDocument(const std::string& file, const std::array<JsonField<In, Out>, N>& fields, In& to);
  /// Reads `line`, a whole line of `file` that holds one object. Byte positions in errors count from its beginning.
  template <class In, class Out, std::size_t N>
  void readLine(const std::string& file, std::string_view line, const std::array<JsonField<In, Out>, N>& fields,
                In& to);
  template <class In, class Out, std::size_t N>
  void readObject(JsonValue& value, const std::array<JsonField<In, Out>, N>& fields, In& to);
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

  /// Throws a ReadError at the current value: `expected` was expected there.
  [[noreturn]] void refuse(std::string expected) const;

 private:
  /// An open object or list.
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
  /// Opens the text in `text_`.
  Object openText(const std::string& file);
  /// `end` is what is expected after the document.
  void closeDocument(const char* end);
  Object asObject(JsonValue& value);
  simdjson::ondemand::array asList(JsonValue& value);
  template <class In, class Out, std::size_t N>
  void readFields(Object object, const std::array<JsonField<In, Out>, N>& fields, In& to);
  std::string_view unescapedKey(simdjson::ondemand::field& field);
  /// Replaces the escapes of `text`, which begins at `raw`. False if an escape is not valid.
  [[nodiscard]] bool unescape(simdjson::ondemand::raw_json_string raw, std::string_view& text);
  void ignore(JsonValue& value);
  void ignoreNumber(JsonValue& value);
  /// Checks the keys from `first` on, those of one object at its end, for duplicates.
  void checkUnknownKeys(std::size_t first);
  /// Stores the parser's result in `out`, or refuses the place where the parser stopped.
  template <class T>
  void take(simdjson::simdjson_result<T> result, T& out);
  /// The same for the walk itself, without a copy, which would stall on the stores just made.
  template <class T>
  [[nodiscard]] T& taken(simdjson::simdjson_result<T>& result);
  [[noreturn]] void refuseDuplicateKey() const;
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

template <class In, class Out, std::size_t N>
void JsonReader::readDocument(const std::string& file, const std::array<JsonField<In, Out>, N>& fields, In& to) {
  readFields(openDocument(file), fields, to);
  closeDocument("the end of the file");
}

template <class In, class Out, std::size_t N>
void JsonReader::readLine(const std::string& file, std::string_view line,
                          const std::array<JsonField<In, Out>, N>& fields, In& to) {
  text_.take(line);
  readFields(openText(file), fields, to);
  closeDocument("the end of the line");
}

template <class In, class Out, std::size_t N>
void JsonReader::readObject(JsonValue& value, const std::array<JsonField<In, Out>, N>& fields, In& to) {
  readFields(asObject(value), fields, to);
}

/// The index of a key in the table, N if the table does not have it. `raw` points behind the key's opening quote. Keys
/// mostly come in the table's order, so the search begins after the last key.
template <class In, class Out, std::size_t N>
std::size_t findKey(const std::array<JsonField<In, Out>, N>& fields, const char* raw, std::size_t likely) noexcept {
  const auto matches = [raw](std::string_view key) {
    return std::memcmp(raw, key.data(), key.size()) == 0 && raw[key.size()] == '"';
  };
  if (likely < N && matches(fields[likely].key)) return likely;
  std::size_t index = 0;
  while (index < N && !matches(fields[index].key)) ++index;
  return index;
}

template <class In, class Out, std::size_t N>
void JsonReader::readFields(Object object, const std::array<JsonField<In, Out>, N>& fields, In& to) {
  static_assert(N <= 32, "one bit for each key");
  const Container container(*this);
  const std::size_t firstUnknown = unknownKeys_.size();
  std::uint32_t seen = 0;
  std::size_t likely = 0;
  for (simdjson::simdjson_result<simdjson::ondemand::field> next : object) {
    simdjson::ondemand::field& field = taken(next);
    std::size_t index = findKey(fields, field.key().raw(), likely);
    if (index == N) [[unlikely]] {
      const std::string_view key = unescapedKey(field);  // may be a known key written with escapes
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
    if ((seen & bit) != 0) refuseDuplicateKey();
    seen |= bit;
    likely = index + 1;
    fields[index].read(*this, field.value(), to);
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
