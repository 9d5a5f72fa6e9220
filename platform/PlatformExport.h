#pragma once

/// Marks what the command may call across the shared object's boundary.
#define PLATFORM_EXPORT __attribute__((visibility("default")))
