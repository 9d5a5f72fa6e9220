#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#include "JsonReader.h"

/// How the members of a record are read: what the tables of known keys refer to.
namespace kelvar_platform::json {

template <auto member, class Record>
using MemberType = std::remove_reference_t<decltype(std::declval<Record&>().*member)>;

/// An integer that fits the member; for an enumeration, the int32 that it is.
template <auto member, class Record>
void integer(JsonReader& in, JsonValue& value, Record& out) {
  using Limits = std::numeric_limits<MemberType<member, Record>>;
  out.*member = static_cast<MemberType<member, Record>>(in.integer(value, Limits::min(), Limits::max()));
}

template <auto member, std::int64_t max, class Record>
void integerUpTo(JsonReader& in, JsonValue& value, Record& out) {
  out.*member = static_cast<MemberType<member, Record>>(in.integer(value, 0, max));
}

template <auto member, class Record>
void unsigned64(JsonReader& in, JsonValue& value, Record& out) {
  out.*member = in.unsigned64(value);
}

template <auto member, class Record>
void finite(JsonReader& in, JsonValue& value, Record& out) {
  out.*member = in.finite(value);
}

template <auto member, class Record>
void text(JsonReader& in, JsonValue& value, Record& out) {
  out.*member = std::string(in.text(value));
}

template <auto member, class Record>
void integers(JsonReader& in, JsonValue& value, Record& out) {
  in.readIntegers(value, out.*member);
}

/// The one version of the formats there is.
template <class Record>
void formatVersion(JsonReader& in, JsonValue& value, Record&) {
  in.integer(value, 1, 1);
}

}  // namespace kelvar_platform::json
