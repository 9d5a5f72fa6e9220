#include "Place.h"

#include <limits>
#include <optional>

#include "Messages.h"
#include "Names.h"

namespace kelvar_tool {

namespace {

bool allDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Cuts a final field of digits, with the colon before it, off `text`.
std::optional<std::string_view> takeField(std::string_view& text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos || colon == 0 || !allDigits(text.substr(colon + 1))) return std::nullopt;
  const std::string_view field = text.substr(colon + 1);
  text.remove_suffix(field.size() + 1);
  return field;
}

}  // namespace

Place placeIn(std::string_view option, const std::string& text) {
  constexpr int kGreatest = std::numeric_limits<int>::max();
  std::string_view file = text;
  const auto last = takeField(file);
  const auto before = last ? takeField(file) : std::nullopt;
  const auto line = decimal(before ? *before : last.value_or(""), kGreatest);
  const auto column = before ? decimal(*last, kGreatest) : 0;
  if (!line || !column) {
    throw UsageError(std::string(option) + ": expected FILE:LINE or FILE:LINE:COLUMN, with numbers up to " +
                     std::to_string(kGreatest) + ", not " + inQuotes(text));
  }
  return {.file = std::string(file), .line = static_cast<int>(*line), .column = static_cast<int>(*column)};
}

std::string text(const Place& place) {
  std::string out = place.file + ":" + std::to_string(place.line);
  if (place.column != 0) out += ":" + std::to_string(place.column);
  return out;
}

}  // namespace kelvar_tool
