#!/bin/bash
# Checks that an installed copy can be moved, linked and used: installed_copy.sh BUILD SOURCE WORK
# Installs BUILD, moves the copy to another name, and builds callers against it that know nothing else: one with three
# lines of CMake, one with pkg-config alone. Checks its manual pages and its completion, and runs README's commands for
# a caller.
set -euo pipefail
build=$1 source=$2 work=$3
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/install/lib.sh
. "$here/lib.sh"

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/first" >"$work/install.log" || fail "cmake --install"
mv "$work/first" "$work/moved here"
prefix="$work/moved here"
# An absolute path would point to the copy before the move, or to the build tree.
if grep -rIl --exclude-dir=man -e "$work/first" -e "$build" "$prefix" >"$work/absolute"; then
  fail "absolute paths in $(cat "$work/absolute")"
fi

project="$work/project"
make_project "$prefix/bin/kelvar" "$project"
expected=$(cat "$source/examples/api/SummaryData.txt")

cmake_caller() {
  mkdir -p "$work/cmake"
  cat >"$work/cmake/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(caller LANGUAGES CXX)
find_package(kelvar_summary 2.1 REQUIRED)
add_executable(caller $source/examples/api/SummaryData.cpp)
target_link_libraries(caller kelvar::summary)
CMAKE
  cmake -S "$work/cmake" -B "$work/cmake/build" -DCMAKE_PREFIX_PATH="$prefix" >"$work/cmake.log" || fail "find_package"
  cmake --build "$work/cmake/build" >>"$work/cmake.log" || fail "building with CMake: $(tail -5 "$work/cmake.log")"
  [ "$("$work/cmake/build/caller" "$project")" = "$expected" ] || fail "the caller built with CMake"
}

# The prefix has a blank, which pkg-config quotes for a shell.
pkgconfig_caller() {
  local libdir flags
  libdir=$(dirname "$(find "$prefix" -name kelvar_summary.pc)")
  flags=$(PKG_CONFIG_PATH=$libdir pkg-config --cflags --libs "kelvar_summary >= 2.1")
  eval "$CXX -std=c++17 -o '$work/caller' '$source/examples/api/SummaryData.cpp' $flags" || fail "building with pkg-config"
  [ "$("$work/caller" "$project")" = "$expected" ] || fail "the caller built with pkg-config"
}

# The commands as README prints them, in a folder like a clone of this after a build.
readme_caller() {
  mkdir -p "$work/clone/build" "$work/home"
  ln -s "$build" "$work/clone/build/release"
  cp -R "$project" "$work/clone/build/mine"
  cp "$source/examples/api/SummaryData.cpp" "$work/clone/caller.cpp"
  # shellcheck disable=SC2016 # the backquotes are Markdown's
  sed -n '/^```sh$/,/^```$/p' "$source/README.md" | sed -n '/^cmake --install/,/^```$/p' | sed '$d' >"$work/clone/commands"
  [ -s "$work/clone/commands" ] || fail "README has no commands that build a caller with pkg-config"
  (
    # shellcheck disable=SC2317 # README calls it
    c++() { "$CXX" "$@"; }
    cd "$work/clone"
    HOME=$work/home
    unset LD_LIBRARY_PATH PKG_CONFIG_PATH
    # shellcheck source=/dev/null
    . ./commands
  ) >"$work/readme.log" 2>&1 || fail "README's commands: $(cat "$work/readme.log")"
  grep -v -e '^-- ' "$work/readme.log" | diff - <(echo "$expected") || fail "README's caller"
}

too_old_and_too_new() {
  for version in 2.0 2.2 3.0; do
    echo "cmake_minimum_required(VERSION 3.25)
project(caller LANGUAGES NONE)
find_package(kelvar_summary $version REQUIRED)" >"$work/cmake/CMakeLists.txt"
    if cmake -S "$work/cmake" -B "$work/cmake/other" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null 2>&1; then
      fail "release 2.1 taken for $version"
    fi
  done
}

# Every subcommand has its page, and every option that the command explains is in it and is completed.
pages_and_completion() {
  local subcommand page inner
  # shellcheck source=/dev/null
  . "$prefix/share/bash-completion/completions/kelvar"
  PATH="$prefix/bin:$PATH"
  COMP_WORDS=(kelvar)
  for subcommand in $(_kelvar_subcommands); do
    page=$work/kelvar-$subcommand.txt
    man --warnings -l "$prefix/share/man/man1/kelvar-$subcommand.1" >"$page" 2>"$page.warnings" || true
    [ ! -s "$page.warnings" ] || fail "kelvar-$subcommand(1): $(cat "$page.warnings")"
    explained "$page" "kelvar $subcommand" "$(_kelvar_options "$subcommand")"
    for inner in $(_kelvar_subcommands "$subcommand"); do
      explained "$page" "kelvar $subcommand file $inner" "$(_kelvar_options "$subcommand" "$inner")"
    done
  done
  grep -qx report <<<"$(complete_line "kelvar re")" || fail "subcommands are not completed"
  grep -qx survey-cpu-time <<<"$(complete_line "kelvar report --sort survey-c")" || fail "orderings are not completed"
  grep -qx end-task <<<"$(complete_line "kelvar annotate a.db add --kind end-t")" || fail "annotation kinds are not completed"
}

# explained PAGE LINE OPTIONS: whether each is in the page and completes the line.
explained() {
  local option
  [ -n "$3" ] || fail "$2 has no options, not even --help"
  for option in $3; do
    grep -q -e "$option" "$1" || fail "$1 says nothing of $option"
    grep -qx -e "$option" <<<"$(complete_line "$2 $option")" || fail "$2 $option is not completed"
  done
}

# complete_line LINE: what is offered for its last word.
complete_line() {
  read -ra COMP_WORDS <<<"$1"
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMPREPLY=()
  _kelvar
  printf '%s\n' "${COMPREPLY[@]}"
}

cmake_caller
pkgconfig_caller
readme_caller
too_old_and_too_new
pages_and_completion
