#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvar_sources {

/// Checks at memory speed whether a text contains any of the words that markers begin with. Most files of a tree
/// contain none and need not be lexed. Words also match inside longer words: a yes may be wrong, a no never is.
class FirstWords {
 public:
  /// Shorter words are searched for one by one, which is slower.
  static constexpr std::size_t kShortest = 6;

  /// `models` are the words after `#pragma`.
  FirstWords(const std::vector<std::string>& words, const std::vector<std::string>& models);

  [[nodiscard]] bool anyIn(std::string_view text) const;

 private:
  [[nodiscard]] bool isWordAt(std::string_view text, std::size_t at) const;
  [[nodiscard]] bool isModelBehind(std::string_view text, std::size_t at) const;

  std::vector<std::string> words_;   // no shorter than kShortest
  std::vector<std::string> shorts_;  // the others
  std::vector<std::string> models_;
  std::vector<std::uint8_t> shift_;  // by two bytes: how far the next word's end may be; 0: look here
};

}  // namespace kelvar_sources
