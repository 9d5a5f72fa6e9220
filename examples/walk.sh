#!/bin/sh
# Measures the sample, mends its race and its long stride, and measures it again: walk.sh KELVAR [FOLDER]
# docs/walk.md explains the steps. Fails where the second run does not show what was mended. Ends with 77 where the
# tools are missing.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
kelvar=$(cd "$(dirname "$(command -v "$1")")" && pwd)/$(basename "$1")
for tool in clang++ valgrind patch; do
  command -v "$tool" >/dev/null || { echo "walk.sh: $tool is missing" >&2 && exit 77; }
done
work=${2-$(mktemp -d)}
[ -n "${2-}" ] || trap 'rm -rf "$work"' EXIT
mkdir -p "$work"
cd "$work"
cp -R "$here/sample" sample
flags=$("$kelvar" collect --flags clang | sed -n 2p)

# build, scan and measure as run NAME. Races are looked for with less to do, since helgrind is slow.
measure() {
  # shellcheck disable=SC2086
  clang++ -std=c++17 -O2 $flags -pthread sample/pixels.cpp -o pixels
  "$kelvar" annotate project/annotations.db scan sample
  "$kelvar" collect project --run "$1" --only survey --only vectorization --only suitability -- ./pixels 1024 30
  "$kelvar" collect project --run "$1" --only dependencies --only map -- ./pixels 32 1
}

# value NAME LABEL COLUMN: a figure of an annotated site.
value() {
  "$kelvar" report "project/runs/$1" --format csv --columns "label,annotationKind,$3" |
    awk -F, -v label="$2" '$1 == label && $2 == "parallel" { print $3 }'
}

measure before
patch -s -p1 <"$here/mended.patch"
measure after
"$kelvar" runs project

# expect WHAT NAME LABEL COLUMN TEST...: the figure takes the place of {} in the test.
failed=0
expect() {
  figure=$(value "$2" "$3" "$4")
  echo "$1: $3, $2: $4 is ${figure:-nothing}"
  test "${figure:-0}" "$5" "$6" || { echo "walk.sh: expected $5 $6" >&2 && failed=1; }
}
expect "the race" before "count shades" dependencies.errors -gt 0
expect "the race is gone" after "count shades" dependencies.errors -eq 0
expect "the loop is scalar" before "column mean" surveyVectorization.state -eq 0
expect "the loop is vectorised" after "column mean" surveyVectorization.state -gt 0
expect "no unit stride" before "column mean" map.strides.0 -lt 100
expect "unit stride" after "column mean" map.strides.0 -gt 100

# gate STATUS BEFORE AFTER OPTION...: compares two runs as a build would that guards its loops.
gate() {
  want=$1 before=$2 after=$3
  shift 3
  status=0
  "$kelvar" compare "project/runs/$before" --with "project/runs/$after" --fail-on race --fail-on vectorization "$@" || status=$?
  test "$status" -eq "$want" || { echo "walk.sh: expected status $want, not $status" >&2 && failed=1; }
}
gate 0 before after
gate 4 after before --fail-on slower --threshold 50
exit "$failed"
