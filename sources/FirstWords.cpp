// The search of Wu and Manber: all words are cut to their first six bytes. A table says how far the window can move, by
// the two bytes at its end; mostly by five bytes.
#include "FirstWords.h"

#include <algorithm>

#include "Lines.h"

namespace kelvar_sources {

namespace {

constexpr std::string_view kPragma = "pragma";
constexpr std::string_view kPragmaOperator = "Pragma";
static_assert(kPragma.size() >= FirstWords::kShortest);

std::size_t pairOf(std::string_view text, std::size_t at) {
  return static_cast<std::size_t>(static_cast<unsigned char>(text[at])) << 8U |
         static_cast<std::size_t>(static_cast<unsigned char>(text[at + 1]));
}

}  // namespace

FirstWords::FirstWords(const std::vector<std::string>& words, const std::vector<std::string>& models)
    : models_(models), shift_(std::size_t{1} << 16U, static_cast<std::uint8_t>(kShortest - 1)) {
  std::vector<std::string> all = words;
  if (!models.empty()) all.insert(all.end(), {std::string(kPragma), std::string(kPragmaOperator)});
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  for (const std::string& word : all) {
    (word.size() < kShortest ? shorts_ : words_).push_back(word);
    if (word.size() < kShortest) continue;
    for (std::size_t i = 0; i + 1 < kShortest; ++i) {
      std::uint8_t& shift = shift_[pairOf(word, i)];
      shift = std::min(shift, static_cast<std::uint8_t>(kShortest - 2 - i));
    }
  }
}

bool FirstWords::anyIn(std::string_view text) const {
  const bool anyShort = std::any_of(shorts_.begin(), shorts_.end(),
                                    [&](const std::string& word) { return text.find(word) != std::string_view::npos; });
  if (anyShort) return true;
  for (std::size_t end = kShortest; end <= text.size();) {
    const std::uint8_t shift = shift_[pairOf(text, end - 2)];
    if (shift == 0 && isWordAt(text, end - kShortest)) return true;
    end += std::max<std::size_t>(shift, 1);
  }
  return false;
}

bool FirstWords::isWordAt(std::string_view text, std::size_t at) const {
  const std::string_view here = text.substr(at);
  const auto found = std::find_if(words_.begin(), words_.end(), [&](const std::string& word) {
    return here.starts_with(word) && (word != kPragma || isModelBehind(text, at + word.size()));
  });
  return found != words_.end();
}

bool FirstWords::isModelBehind(std::string_view text, std::size_t at) const {
  while (at < text.size() && (isBlank(text[at]) || text[at] == '\\' || text[at] == '(' || text[at] == '"')) ++at;
  return std::any_of(models_.begin(), models_.end(),
                     [&](const std::string& model) { return text.substr(at).starts_with(model); });
}

}  // namespace kelvar_sources
