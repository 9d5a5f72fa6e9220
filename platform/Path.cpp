#include <algorithm>
#include <array>
#include <boost/endian/conversion.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <type_traits>

#include "toolbelt.h"

namespace toolbelt {

static_assert(std::is_trivially_copyable_v<path_t> && sizeof(path_t) == sizeof(void*), "copied in every comparison");

namespace {

/// The first bytes of a text, as numbers that compare as the bytes do. Shorter texts are padded with zero bytes, so
/// texts with equal beginnings may still differ.
using Beginning = std::array<std::uint64_t, 3>;

Beginning beginningOf(std::string_view text) noexcept {
  Beginning words{};
  if (!text.empty()) std::memcpy(words.data(), text.data(), std::min(text.size(), sizeof words));
  for (std::uint64_t& word : words) word = boost::endian::big_to_native(word);
  return words;
}

std::string_view leafOf(std::string_view path) noexcept {
  return path.substr(path.rfind('/') + 1);
}

int signOf(int order) noexcept {
  return (order > 0) - (order < 0);
}

}  // namespace

/// One interned text. Never moved or freed, since paths may outlive everything else. The members that a comparison
/// reads are in the first cache line, with the beginning of the leaf.
struct alignas(64) path_t::Entry {
  /// `interned` is the entry of this path's leaf; null for a path that is its own leaf.
  Entry(std::string_view path, const Entry* interned)
      : leaf(interned != nullptr ? interned : this), leafBeginning(beginningOf(leafOf(path))), text(path) {}
  Entry(const Entry&) = delete;  // an entry is known by its address
  Entry& operator=(const Entry&) = delete;

  static const Entry* empty() noexcept;
  static const Entry* intern(std::string_view text);

  const Entry* leaf;
  Beginning leafBeginning;
  std::string text;
};

namespace {

/// Every text that a path was ever made of. Lookups share the lock: most texts are already in the pool.
template <class Entry>
class Pool {
 public:
  const Entry* find(std::string_view text) const {
    const std::shared_lock lock(mutex_);
    const auto known = entries_.find(text);
    return known == entries_.end() ? nullptr : known->second.get();
  }

  /// The entry of a text, with `leaf` as its leaf if it is new. Another thread may have added it meanwhile.
  const Entry* add(std::string_view text, const Entry* leaf) {
    auto entry = std::make_unique<const Entry>(text, leaf);
    const std::string_view key = entry->text;
    const std::unique_lock lock(mutex_);
    return entries_.try_emplace(key, std::move(entry)).first->second.get();
  }

 private:
  mutable std::shared_mutex mutex_;
  boost::unordered_flat_map<std::string_view, std::unique_ptr<const Entry>, std::hash<std::string_view>> entries_;
};

}  // namespace

const path_t::Entry* path_t::Entry::empty() noexcept {
  // Built in static storage: it cannot fail to allocate, and outlives the destruction of other static objects.
  alignas(Entry) static std::byte room[sizeof(Entry)];
  static const Entry* const entry = ::new (room) Entry({}, nullptr);
  return entry;
}

const path_t::Entry* path_t::Entry::intern(std::string_view text) {
  static Pool<Entry>& pool = *new Pool<Entry>;  // never deleted: see Entry
  if (text.empty()) return empty();
  if (const Entry* known = pool.find(text)) return known;
  const std::string_view leaf = leafOf(text);
  return pool.add(text, leaf.size() == text.size() ? nullptr : intern(leaf));
}

path_t::path_t() noexcept : entry_(Entry::empty()) {}

path_t::path_t(std::string_view text) : entry_(Entry::intern(text)) {}

const std::string& path_t::get_text() const noexcept {
  return entry_->text;
}

const std::string& path_t::get_leaf() const noexcept {
  return entry_->leaf->text;
}

bool path_t::empty() const noexcept {
  return entry_->text.empty();
}

int path_t::compare_leaf(const path_t& other) const noexcept {
  if (entry_ == other.entry_) return 0;  // often equal in sorted lists; the entries may not be in the cache
  const Entry& a = *entry_;
  const Entry& b = *other.entry_;
  if (a.leaf == b.leaf) return 0;
  for (std::size_t i = 0; i < a.leafBeginning.size(); ++i) {
    if (a.leafBeginning[i] != b.leafBeginning[i]) return a.leafBeginning[i] < b.leafBeginning[i] ? -1 : 1;
  }
  return signOf(a.leaf->text.compare(b.leaf->text));
}

int path_t::compare(const path_t& other) const noexcept {
  return entry_ == other.entry_ ? 0 : signOf(entry_->text.compare(other.entry_->text));
}

}  // namespace toolbelt
