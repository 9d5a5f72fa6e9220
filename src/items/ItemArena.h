#pragma once

#include <memory>
#include <utility>

#include "items/SummaryItemImpl.h"

namespace kelvar_2_1_7 {

/// Memory for the items that one list makes, side by side in large chunks. Programs have a million sites and
/// every result makes items for all of them: one by one, they would cost more to find room for than to fill.
/// A chunk goes with its last item, wherever that item went meanwhile and however many others it had. Not for two
/// threads at a time, like the data object that the items belong to.
class ItemArena {
 public:
  ItemArena() noexcept = default;
  ~ItemArena() { retire(); }
  ItemArena(ItemArena&& other) noexcept : chunk_(std::exchange(other.chunk_, nullptr)) {}
  ItemArena& operator=(ItemArena&& other) noexcept {
    std::swap(chunk_, other.chunk_);
    return *this;
  }

  template <class... Arguments>
  [[nodiscard]] std::unique_ptr<SummaryItemImpl> make(Arguments&&... arguments) {
    void* const place = take();
    if (place == nullptr) return std::make_unique<SummaryItemImpl>(std::forward<Arguments>(arguments)...);
    Taken taken{place};
    std::unique_ptr<SummaryItemImpl> item(::new (place) SummaryItemImpl(std::forward<Arguments>(arguments)...));
    item->inArena_ = true;
    taken.place = nullptr;
    return item;
  }

  /// Gives back the memory of an item that is no more.
  static void giveBack(void* place) noexcept;

 private:
  struct Chunk;

  /// Room whose item has not come to be yet.
  struct Taken {
    void* place;
    ~Taken() {
      if (place != nullptr) giveBack(place);
    }
  };

  /// Room for one item; null where items are better off one by one.
  void* take();
  /// Makes no more items in the chunk.
  void retire() noexcept;

  Chunk* chunk_ = nullptr;  // the one that is being filled
};

}  // namespace kelvar_2_1_7
