#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "FirstWords.h"
#include "Rules.h"

namespace kelvar_sources {

/// The rules of one scan, indexed for look-up while sources are read. Immutable, so threads may share it.
class RuleSet {
 public:
  explicit RuleSet(std::vector<Rule> rules);

  [[nodiscard]] const std::vector<Rule>& rules() const noexcept { return rules_; }
  [[nodiscard]] const Rule& rule(std::size_t index) const noexcept { return rules_[index]; }

  /// Rules of calls, objects and arguments whose name ends with this word.
  [[nodiscard]] const std::vector<std::size_t>& named(std::string_view lastWord) const;
  /// The same, ignoring case.
  [[nodiscard]] const std::vector<std::size_t>& namedInAnyCase(const std::string& loweredWord) const;
  /// Whether any name may begin with this byte; saves the look-up of most words.
  [[nodiscard]] bool mayBegin(char first) const noexcept { return begins_[static_cast<unsigned char>(first)]; }
  /// Rules of directives of a model such as `omp`.
  [[nodiscard]] const std::vector<std::size_t>& directivesOf(std::string_view model) const;
  /// Rules of `kelvar:` comments, by word.
  [[nodiscard]] const std::vector<std::size_t>& remarksNamed(std::string_view word) const;
  /// Whether a call of this unqualified name may end a region.
  [[nodiscard]] bool ends(std::string_view lastWord) const { return !endedBy(lastWord).empty(); }
  /// The rules whose regions it ends.
  [[nodiscard]] const std::vector<std::size_t>& endedBy(std::string_view lastWord) const;
  /// Where regions of the rule of this name end.
  [[nodiscard]] RegionEnd::At endOfRule(const std::string& name) const;

  [[nodiscard]] const FirstWords& firstWords() const noexcept { return firstWords_; }

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
  };
  using ByText = std::unordered_map<std::string, std::vector<std::size_t>, TextHash, std::equal_to<>>;

  static const std::vector<std::size_t>& in(const ByText& map, std::string_view key);
  void addName(std::string_view word);

  std::vector<Rule> rules_;
  ByText names_, loweredNames_, directives_, remarks_, endNames_;
  std::array<bool, 256> begins_{};
  std::unordered_map<std::string, RegionEnd::At> ends_;  // by the rule's name
  FirstWords firstWords_;
};

/// The part of a name after the last `::`.
[[nodiscard]] std::string_view lastWordOf(std::string_view name);

}  // namespace kelvar_sources
