# How every target of the project is compiled.
option(BUILD_SHARED_LIBS "Build the library and the platform layer as shared objects" ON)
option(KELVAR_BUILD_TOOLS "Build the kelvar command" ${PROJECT_IS_TOP_LEVEL})
option(KELVAR_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(KELVAR_BUILD_BENCH "Build the benchmarks" OFF)
option(KELVAR_BUILD_FUZZ "Build the fuzzers, which takes clang" OFF)
option(KELVAR_WERROR "Treat warnings as errors" OFF)
option(KELVAR_COVERAGE "Count which lines and branches run" OFF)
set(KELVAR_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler names them: address,undefined or thread")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(KELVAR_CCACHE ccache)
if(KELVAR_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELVAR_CCACHE})
endif()

add_library(kelvar_build_options INTERFACE)
target_compile_options(kelvar_build_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${KELVAR_WERROR}>:-Werror>)
# g++ 12 takes what it inlines of `"text" + std::string` for an overlapping copy (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kelvar_build_options INTERFACE -Wno-restrict)
endif()
if(KELVAR_SANITIZE)
  target_compile_options(kelvar_build_options INTERFACE -fsanitize=${KELVAR_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  target_link_options(kelvar_build_options INTERFACE -fsanitize=${KELVAR_SANITIZE})
endif()
if(KELVAR_COVERAGE)
  target_compile_options(kelvar_build_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(kelvar_build_options INTERFACE --coverage)
endif()
if(KELVAR_BUILD_FUZZ)
  target_compile_options(kelvar_build_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# A library calls its own functions directly; they cannot be interposed.
target_link_options(kelvar_build_options INTERFACE LINKER:-Bsymbolic-functions)

# The library reads untrusted files, so its binaries are hardened; sanitizers have their own checks.
include(CheckPIESupported)
check_pie_supported()
target_compile_options(kelvar_build_options INTERFACE -fstack-protector-strong
  $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>)
target_link_options(kelvar_build_options INTERFACE LINKER:-z,relro,-z,now,-z,noexecstack)
if(NOT KELVAR_SANITIZE)
  target_compile_options(kelvar_build_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
target_compile_definitions(kelvar_build_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
