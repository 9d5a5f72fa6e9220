#pragma once

// Two settings add members to the parser's types. A JsonReader that one library makes is filled by another, so they are
// the same for all: threads as the package's own CMake target sets them, and no checks of callers, which are for
// debugging.
#ifndef SIMDJSON_THREADS_ENABLED
#define SIMDJSON_THREADS_ENABLED 1
#endif
#define SIMDJSON_DEVELOPMENT_CHECKS 0
#include <simdjson.h>
