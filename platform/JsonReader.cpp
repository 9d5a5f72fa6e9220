#include "JsonReader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "Diagnosis.h"
#include "JsonFault.h"

namespace kelvar_platform {

namespace {

std::size_t digitsFrom(std::string_view text, std::size_t first) {
  const std::size_t end = text.find_first_not_of("0123456789", first);
  return (end == std::string_view::npos ? text.size() : end) - first;
}

/// Whether all of `token` is a number as JSON writes it, of any size.
bool isNumber(std::string_view token) {
  std::size_t at = token.starts_with('-') ? 1 : 0;
  const std::size_t whole = digitsFrom(token, at);
  if (whole == 0 || (whole > 1 && token[at] == '0')) return false;
  at += whole;
  if (at < token.size() && token[at] == '.') {
    const std::size_t fraction = digitsFrom(token, ++at);
    if (fraction == 0) return false;
    at += fraction;
  }
  if (at < token.size() && (token[at] == 'e' || token[at] == 'E')) {
    ++at;
    if (at < token.size() && (token[at] == '+' || token[at] == '-')) ++at;
    const std::size_t exponent = digitsFrom(token, at);
    if (exponent == 0) return false;
    at += exponent;
  }
  return at == token.size();
}

std::string integerFrom(const std::string& min, const std::string& max) {
  return "an integer from " + min + " to " + max;
}

}  // namespace

JsonReader::Container::Container(JsonReader& reader) : reader_(reader) {
  constexpr std::size_t kMaxDepth = JsonPlace::kMaxDepth;
  if (reader.place_.depth() == kMaxDepth) reader.refuse("a nesting of at most " + std::to_string(kMaxDepth));
  reader.place_.enter();
}

JsonReader::Object JsonReader::openDocument(const std::string& file) {
  file_ = file;
  text_.read(file);
  return openText(file);
}

JsonReader::Object JsonReader::openText(const std::string& file) {
  file_ = file;
  unescaped_.release();
  unknownKeys_.clear();  // a refusal leaves them
  const std::string_view text = text_.view();
  auto error = parser_.iterate(text.data(), text.size(), text_.allocated()).get(document_);
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  if (error != simdjson::SUCCESS) refuseText();
  Object object;
  error = document_.get_object().get(object);
  if (error == simdjson::INCORRECT_TYPE) {
    simdjson::ondemand::json_type type{};
    take(document_.type(), type);
    refuse("an object");
  }
  if (error != simdjson::SUCCESS) refuseText();
  return object;
}

void JsonReader::closeDocument(const char* end) {
  const char* rest = nullptr;
  if (document_.current_location().get(rest) == simdjson::SUCCESS) refuseHere(end);
}

JsonReader::Object JsonReader::asObject(JsonValue& value) {
  Object object;
  const auto error = value.get_object().get(object);
  if (error == simdjson::INCORRECT_TYPE) refuse("an object");
  if (error != simdjson::SUCCESS) refuseHere("JSON");
  return object;
}

simdjson::ondemand::array JsonReader::asList(JsonValue& value) {
  simdjson::ondemand::array list;
  const auto error = value.get_array().get(list);
  if (error == simdjson::INCORRECT_TYPE) refuse("a list");
  if (error != simdjson::SUCCESS) refuseHere("JSON");
  return list;
}

double JsonReader::finite(JsonValue& value) {
  double number = 0;
  if (value.get_double().get(number) != simdjson::SUCCESS || !std::isfinite(number)) refuse("a finite number");
  return number;
}

std::int64_t JsonReader::integer(JsonValue& value, std::int64_t min, std::int64_t max) {
  std::int64_t number = 0;
  if (value.get_int64().get(number) != simdjson::SUCCESS || number < min || number > max) {
    refuse(integerFrom(std::to_string(min), std::to_string(max)));
  }
  return number;
}

std::uint64_t JsonReader::unsigned64(JsonValue& value) {
  std::uint64_t number = 0;
  std::int64_t minusZero = 0;  // an integer as good as 0, though not to the parser
  if (value.get_uint64().get(number) == simdjson::SUCCESS) return number;
  if (value.get_int64().get(minusZero) == simdjson::SUCCESS && minusZero == 0) return 0;
  refuse(integerFrom("0", std::to_string(std::numeric_limits<std::uint64_t>::max())));
}

std::string_view JsonReader::text(JsonValue& value) {
  const std::string_view token = value.raw_json_token();
  if (!token.starts_with('"')) refuse("a text");
  simdjson::ondemand::raw_json_string raw;
  take(value.get_raw_json_string(), raw);
  std::string_view text = token.substr(1, token.rfind('"') - 1);  // blanks may follow the text in its token
  if (!unescape(raw, text)) refuse("a text whose escapes are characters");
  return text;
}

void JsonReader::ignore(JsonValue& value) {
  using simdjson::ondemand::json_type;
  json_type type{};
  take(value.type(), type);
  bool truth = false;
  switch (type) {
    case json_type::object:
      return readFields(asObject(value), std::array<JsonField<bool>, 0>{}, truth);
    case json_type::array:
      return readList(value, [this](JsonValue& element) { ignore(element); });
    case json_type::string:
      static_cast<void>(text(value));
      return;
    case json_type::number:
      return ignoreNumber(value);
    case json_type::boolean:
      return take(value.get_bool(), truth);
    case json_type::null:
      return take(value.is_null(), truth);
  }
}

void JsonReader::ignoreNumber(JsonValue& value) {
  std::string_view token = value.raw_json_token();
  token = token.substr(0, token.find_last_not_of(kJsonBlanks) + 1);
  if (!isNumber(token)) refuseHere("JSON");  // else the parser steps over it, were it past what a double holds
}

// The parser would do this in a buffer of its own, and does not look whether it got that.
bool JsonReader::unescape(simdjson::ondemand::raw_json_string raw, std::string_view& text) {
  if (text.find('\\') == std::string_view::npos) return true;
  auto* room = static_cast<std::uint8_t*>(unescaped_.allocate(text.size() + simdjson::SIMDJSON_PADDING, 1));
  return parser_.unescape(raw, room).get(text) == simdjson::SUCCESS;
}

std::string_view JsonReader::unescapedKey(simdjson::ondemand::field& field) {
  const simdjson::ondemand::raw_json_string raw = field.key();
  const char* end = raw.raw();
  while (*end != '"') end += *end == '\\' ? 2 : 1;  // the parser has found one
  std::string_view key(raw.raw(), static_cast<std::size_t>(end - raw.raw()));
  if (!unescape(raw, key)) {
    refuseByte(static_cast<std::size_t>(raw.raw() - text_.view().data()), "a key whose escapes are characters");
  }
  return key;
}

void JsonReader::checkUnknownKeys(std::size_t first) {
  const auto begin = unknownKeys_.begin() + static_cast<std::ptrdiff_t>(first);
  std::sort(begin, unknownKeys_.end());
  const auto twice = std::adjacent_find(begin, unknownKeys_.end());
  if (twice != unknownKeys_.end()) {
    place_.at(*twice);
    refuse("a key that stands once");
  }
  unknownKeys_.erase(begin, unknownKeys_.end());
}

void JsonReader::refuse(std::string expected) const {
  throw ReadError({.file = file_, .place = place_.text(), .expected = std::move(expected)});
}

void JsonReader::refuseByte(std::size_t byte, std::string expected) const {
  throw ReadError({.file = file_, .place = "byte " + std::to_string(byte), .expected = std::move(expected)});
}

void JsonReader::refuseText() const {
  const JsonFault fault = firstFault(text_.view());
  refuseByte(fault.byte, fault.expected);
}

void JsonReader::refuseHere(std::string expected) {
  const std::string_view text = text_.view();
  const char* location = nullptr;
  const bool located = document_.current_location().get(location) == simdjson::SUCCESS;
  refuseByte(located ? static_cast<std::size_t>(location - text.data()) : text.size(), std::move(expected));
}

}  // namespace kelvar_platform
