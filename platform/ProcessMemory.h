#pragma once

#include "PlatformExport.h"

namespace kelvar_platform {

/// Tunes the process' allocator for lists of a million entries. Called by programs, before their first thread starts
/// and before they set a new-handler; not by libraries. Has no effect if the allocator or the kernel does not support
/// it.
PLATFORM_EXPORT void expectLargeLists() noexcept;

/// Returns freed memory to the kernel. For a program that frees most of its memory and goes on.
PLATFORM_EXPORT void returnFreedMemory() noexcept;

}  // namespace kelvar_platform
