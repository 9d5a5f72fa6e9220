#pragma once

#include "PlatformExport.h"

namespace kelvar_platform {

/// Sets the process' allocator up for lists of a million entries, which come and go. For programs, before their first
/// thread and before they say what is to happen without memory; a library leaves this to who uses it. Where the
/// allocator or the kernel has no part in it, nothing changes.
PLATFORM_EXPORT void expectLargeLists() noexcept;

}  // namespace kelvar_platform
