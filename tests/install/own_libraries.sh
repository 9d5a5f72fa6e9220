#!/bin/bash
# Checks that a suite's libraries can replace the platform: own_libraries.sh SOURCE WORK
# Builds the suite that the probes use, the library with its headers and on it, and a caller of the installed package.
set -euo pipefail
source=$1 work=$2
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/install/lib.sh
. "$here/lib.sh"
suite=$source/tests/suite headers=$source/tests/suite/headers

rm -rf "$work"
mkdir -p "$work/caller"

cat >"$work/suiteConfig.cmake" <<CMAKE
add_library(suite::collaborators SHARED IMPORTED)
set_target_properties(suite::collaborators PROPERTIES IMPORTED_LOCATION $work/libsuite.so IMPORTED_NO_SONAME ON)
CMAKE
cat >"$work/caller/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(caller LANGUAGES CXX)
find_package(kelvar_summary 2.1 REQUIRED)
add_executable(caller $suite/caller.cpp)
target_include_directories(caller PRIVATE $suite)
target_link_libraries(caller kelvar::summary)
CMAKE

"$CXX" -std=c++17 -shared -fPIC -I"$headers" "$suite/Suite.cpp" -o "$work/libsuite.so" ||
  fail "building the suite"
cmake -S "$source" -B "$work/build" -Dsuite_DIR="$work" -DKELVAR_COLLABORATORS=suite::collaborators \
  -DKELVAR_COLLABORATORS_PACKAGE=suite -DKELVAR_COLLABORATOR_HEADERS="$headers" \
  -DCMAKE_BUILD_TYPE=Debug >"$work/log" || fail "configuring on the suite"
cmake --build "$work/build" -j 2 >>"$work/log" || fail "building on the suite: $(tail -20 "$work/log")"
cmake --install "$work/build" --prefix "$work/prefix" >>"$work/log" || fail "installing"
for header in courier digestio resdir sitenotes toolbelt; do
  cmp "$headers/$header.h" "$(find "$work/prefix" -name $header.h)" || fail "the suite's $header.h is not installed"
done
[ -z "$(find "$work/prefix" -name '*platform*')" ] || fail "the platform is installed, though a suite replaces it"

cmake -S "$work/caller" -B "$work/caller/build" -Dsuite_DIR="$work" -DCMAKE_PREFIX_PATH="$work/prefix" >>"$work/log" ||
  fail "find_package"
cmake --build "$work/caller/build" >>"$work/log" || fail "building the caller: $(tail -20 "$work/log")"
[ "$("$work/caller/build/caller")" = "first a.cpp:10
second a.cpp:20
third b.cpp:5 surveyed" ] || fail "the caller on the suite's libraries"
