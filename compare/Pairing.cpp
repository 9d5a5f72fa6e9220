// Each step makes a key for every remaining site of both sides, sorts both lists of keys and walks them in parallel.
// Keys begin with a hash, so that most comparisons look at one number only.
#include "Pairing.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <tuple>

#include "FindAgain.h"
#include "Renames.h"

namespace kelvar_compare {

namespace {

using Sites = std::vector<const Identity*>;

/// The fields that steps compare. A step leaves the fields that it ignores at their defaults.
struct Key {
  std::size_t hash = 0;
  std::uint64_t number = 0;
  std::string_view label = {};
  std::string_view leaf = {};
  int line = 0;
  int kind = 0;
  int analyses = 0;

  auto operator<=>(const Key&) const = default;
};

// The annotation kind of functions and loops is a filler without meaning.
int kindOf(const Identity& site) noexcept {
  constexpr int kNotAnnotated = 100;
  return site.sort == Sort::annotated ? static_cast<int>(site.kind) : kNotAnnotated + static_cast<int>(site.sort);
}

std::size_t mixed(std::string_view text, std::size_t more) noexcept {
  return std::hash<std::string_view>()(text) ^ (more * 0x9e3779b97f4a7c15U);
}

using KeyOf = std::optional<Key> (*)(const Identity& site);

std::optional<Key> sequenceKey(const Identity& site) {
  if (site.sequence == 0) return std::nullopt;
  return Key{.hash = site.database, .number = site.sequence};
}

std::optional<Key> labelKey(const Identity& site) {
  if (site.label.empty()) return std::nullopt;
  return Key{.hash = mixed(site.label, 0), .label = site.label, .kind = kindOf(site)};
}

std::optional<Key> labelInFileKey(const Identity& site) {
  if (site.label.empty()) return std::nullopt;
  return Key{.hash = mixed(site.label, 0), .label = site.label, .leaf = site.file.get_leaf(), .kind = kindOf(site)};
}

std::optional<Key> labelOfAnalysesKey(const Identity& site) {
  std::optional<Key> key = labelInFileKey(site);
  if (key) key->analyses = site.analyses;
  return key;
}

std::optional<Key> labelAtPlaceKey(const Identity& site) {
  if (site.file.empty() || site.line == 0) return std::nullopt;
  std::optional<Key> key = labelOfAnalysesKey(site);
  if (key) key->line = site.line;
  return key;
}

std::optional<Key> placeKey(const Identity& site) {
  if (site.file.empty() || site.line == 0) return std::nullopt;
  const std::string_view leaf = site.file.get_leaf();
  return Key{
      .hash = mixed(leaf, static_cast<std::size_t>(site.line)), .leaf = leaf, .line = site.line, .kind = kindOf(site)};
}

class Pairer {
 public:
  Pairer(const Sites& before, const Sites& after)
      : before_(before), after_(after), taken_(before.size(), false), partners_(after.size()) {}

  std::vector<Partner> run(const AnchorsOf& anchorsOf) {
    byKey(sequenceKey, PairedBy::sequence, Repeated::pairInOrder);
    byKey(labelKey, PairedBy::label, Repeated::leave);
    byKey(labelInFileKey, PairedBy::label, Repeated::leave);
    byKey(labelOfAnalysesKey, PairedBy::label, Repeated::leave);
    byAnchors(anchorsOf);
    byKey(labelAtPlaceKey, PairedBy::place, Repeated::pairInOrder);
    byKey(placeKey, PairedBy::place, Repeated::leave);
    return std::move(partners_);
  }

 private:
  struct Keyed {
    Key key;
    std::size_t index;
    bool operator<(const Keyed& other) const { return std::tie(key, index) < std::tie(other.key, other.index); }
  };

  template <class Left>
  static std::vector<Keyed> keysOf(const Sites& sites, KeyOf keyOf, const Left& left) {
    std::vector<Keyed> keys;
    for (std::size_t index = 0; index < sites.size(); ++index) {
      if (!left(index)) continue;
      if (const auto key = keyOf(*sites[index])) keys.push_back({*key, index});
    }
    std::sort(keys.begin(), keys.end());
    return keys;
  }

  [[nodiscard]] bool isLeftBefore(std::size_t index) const { return !taken_[index]; }
  [[nodiscard]] bool isLeftAfter(std::size_t index) const { return partners_[index].by == PairedBy::nothing; }

  void pair(std::size_t before, std::size_t after, PairedBy by) {
    taken_[before] = true;
    partners_[after] = {.before = before, .by = by};
  }

  /// What to do with a key that several sites of a side have: leave these sites, or pair them in order.
  enum class Repeated { leave, pairInOrder };

  void byKey(KeyOf keyOf, PairedBy by, Repeated repeated) {
    const std::vector<Keyed> ours = keysOf(before_, keyOf, [&](std::size_t index) { return isLeftBefore(index); });
    if (ours.empty()) return;
    const std::vector<Keyed> theirs = keysOf(after_, keyOf, [&](std::size_t index) { return isLeftAfter(index); });
    const auto endOf = [](const std::vector<Keyed>& keys, std::size_t from) {
      std::size_t end = from;
      while (end < keys.size() && keys[end].key == keys[from].key) ++end;
      return end;
    };
    for (std::size_t a = 0, b = 0; a < ours.size() && b < theirs.size();) {
      if (ours[a].key < theirs[b].key) {
        ++a;
      } else if (theirs[b].key < ours[a].key) {
        ++b;
      } else {
        const std::size_t endA = endOf(ours, a);
        const std::size_t endB = endOf(theirs, b);
        const bool alone = endA - a == 1 && endB - b == 1;
        for (std::size_t i = 0; (alone || repeated == Repeated::pairInOrder) && a + i < endA && b + i < endB; ++i) {
          pair(ours[a + i].index, theirs[b + i].index, by);
        }
        a = endA;
        b = endB;
      }
    }
  }

  struct Anchored {
    std::size_t file;
    int line;
    std::size_t index;
    kelvar_sources::Fingerprint print;
  };

  template <class Left>
  static bool anyAnnotated(const Sites& sites, const Left& left) {
    for (std::size_t index = 0; index < sites.size(); ++index) {
      if (sites[index]->sequence != 0 && left(index)) return true;
    }
    return false;
  }

  template <class Left>
  static std::vector<Anchored> anchored(const Sites& sites, const AnchorsOf& anchorsOf, const Left& left,
                                        std::map<std::string_view, std::size_t>& files) {
    std::vector<Anchored> found;
    for (std::size_t index = 0; index < sites.size(); ++index) {
      const Identity& site = *sites[index];
      if (site.sequence == 0 || !left(index)) continue;
      const Anchors& anchors = anchorsOf(site.database);
      const auto anchor = anchors.find(site.sequence);
      if (anchor == anchors.end()) continue;
      const std::size_t file = files.try_emplace(site.file.get_text(), files.size()).first->second;
      found.push_back({file, site.line, index, anchor->second});
    }
    std::sort(found.begin(), found.end(), [](const Anchored& a, const Anchored& b) {
      return std::tie(a.file, a.line, a.index) < std::tie(b.file, b.line, b.index);
    });
    return found;
  }

  void byAnchors(const AnchorsOf& anchorsOf) {
    const auto leftBefore = [&](std::size_t index) { return isLeftBefore(index); };
    const auto leftAfter = [&](std::size_t index) { return isLeftAfter(index); };
    if (!anyAnnotated(before_, leftBefore) || !anyAnnotated(after_, leftAfter)) return;
    std::map<std::string_view, std::size_t> files;
    const std::vector<Anchored> ours = anchored(before_, anchorsOf, leftBefore, files);
    const std::vector<Anchored> theirs = anchored(after_, anchorsOf, leftAfter, files);
    if (ours.empty() || theirs.empty()) return;
    std::vector<kelvar_sources::KnownSite> known;
    for (const Anchored& one : ours) known.push_back({one.file, one.line, true, one.print});
    std::vector<kelvar_sources::SeenSite> seen;
    std::vector<bool> exists(files.size(), false);
    for (const Anchored& one : theirs) {
      seen.push_back({one.file, one.line, one.print});
      exists[one.file] = true;
    }
    std::vector<std::size_t> names(files.size());
    for (std::size_t file = 0; file < names.size(); ++file) names[file] = file;
    const std::vector<std::size_t> renamed = kelvar_sources::renamedFiles(known, seen, exists, names);
    const auto found = kelvar_sources::findAgain(known, seen, renamed, std::vector<bool>(files.size(), false));
    for (std::size_t at = 0; at < ours.size(); ++at) {
      const std::size_t partner = found.known[at].seen;
      if (partner != kelvar_sources::FindResult::kNone) {
        pair(ours[at].index, theirs[partner].index, PairedBy::anchor);
      }
    }
  }

  const Sites& before_;
  const Sites& after_;
  std::vector<bool> taken_;
  std::vector<Partner> partners_;
};

}  // namespace

std::string_view nameOf(PairedBy by) noexcept {
  static constexpr std::array<std::string_view, 5> kNames{"", "sequence", "label", "anchor", "place"};
  return kNames[static_cast<std::size_t>(by)];
}

std::vector<Partner> pairSites(const Sites& before, const Sites& after, const AnchorsOf& anchorsOf) {
  return Pairer(before, after).run(anchorsOf);
}

}  // namespace kelvar_compare
