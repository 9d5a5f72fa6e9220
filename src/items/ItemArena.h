#pragma once

#include <cstddef>

namespace kelvar_2_1_7::item_arena {

/// Memory for items, next to each other in chunks. A program has a million sites, and each result makes an item for
/// every one of them: the general allocator would take longer to find room for an item than it takes to fill it.
///
/// Each thread fills a chunk of its own, so items that are made one after the other lie one after the other. A chunk
/// is freed with the last item in it, on whatever thread; the slot of a deleted item is not reused until then.
/// `size` is the same in every call: that of an item.
[[nodiscard]] void* allocate(std::size_t size);
void release(void* item) noexcept;

}  // namespace kelvar_2_1_7::item_arena
