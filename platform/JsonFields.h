#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

#include "JsonReader.h"
#include "JsonWriter.h"

/// The rows of the tables that say what a JSON file holds. A row names a key and the member that holds its value; the
/// member's type says how the value is read and written, so that a file is written as it is read.
namespace kelvar_platform::json {

template <class Record, class Value>
Record recordOf(Value Record::*);
template <class Record, class Value>
Value valueOf(Value Record::*);
template <auto member>
using RecordOf = decltype(recordOf(member));
template <auto member>
using ValueOf = decltype(valueOf(member));

inline void read(JsonReader& in, JsonValue& value, double& to) {
  to = in.finite(value);
}
inline void read(JsonReader& in, JsonValue& value, std::string& to) {
  to = in.text(value);
}
inline void read(JsonReader& in, JsonValue& value, std::optional<std::string>& to) {
  to.emplace(in.text(value));
}
inline void read(JsonReader& in, JsonValue& value, std::uint64_t& to) {
  to = in.unsigned64(value);
}
template <std::integral Integer>
void read(JsonReader& in, JsonValue& value, Integer& to) {
  to =
      static_cast<Integer>(in.integer(value, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
}
template <std::integral Integer, std::size_t N>
void read(JsonReader& in, JsonValue& value, std::array<Integer, N>& to) {
  in.readIntegers(value, to);
}

inline void write(JsonWriter& out, std::string_view key, double value) {
  out.number(key, value);
}
inline void write(JsonWriter& out, std::string_view key, const std::string& value) {
  out.text(key, value);
}
inline void write(JsonWriter& out, std::string_view key, const std::optional<std::string>& value) {
  if (value) out.text(key, *value);
}
inline void write(JsonWriter& out, std::string_view key, std::uint64_t value) {
  out.unsigned64(key, value);
}
template <std::integral Integer>
void write(JsonWriter& out, std::string_view key, Integer value) {
  out.integer(key, value);
}
template <std::integral Integer, std::size_t N>
void write(JsonWriter& out, std::string_view key, const std::array<Integer, N>& values) {
  out.integers(key, values);
}

/// Any value that the member can hold. `In` is what the value is read into: the member's record, or what derives from
/// it.
template <auto member, class In = RecordOf<member>>
constexpr JsonField<In, RecordOf<member>> any(std::string_view key, bool required = false) {
  return {key, [](JsonReader& in, JsonValue& value, In& to) { read(in, value, to.*member); },
          [](JsonWriter& out, std::string_view name, const RecordOf<member>& from) { write(out, name, from.*member); },
          required};
}

/// An integer from 0 to `max`.
template <auto member, std::int64_t max>
constexpr JsonField<RecordOf<member>> upTo(std::string_view key) {
  return {key,
          [](JsonReader& in, JsonValue& value, RecordOf<member>& to) {
            to.*member = static_cast<ValueOf<member>>(in.integer(value, 0, max));
          },
          [](JsonWriter& out, std::string_view name, const RecordOf<member>& from) {
            out.integer(name, from.*member, 0, max);
          }};
}

/// The version of the format. There is only one.
template <class In, class Out = In>
constexpr JsonField<In, Out> formatVersion() {
  return {"formatVersion", [](JsonReader& in, JsonValue& value, In&) { in.integer(value, 1, 1); },
          [](JsonWriter& out, std::string_view name, const Out&) { out.integer(name, 1); }, true};
}

/// Writes the members of an object that has been begun.
template <class In, class Out, std::size_t N>
void writeFields(JsonWriter& out, const std::array<JsonField<In, Out>, N>& fields, const Out& record) {
  for (const JsonField<In, Out>& field : fields) {
    if (field.write != nullptr) field.write(out, field.key, record);
  }
}

}  // namespace kelvar_platform::json
