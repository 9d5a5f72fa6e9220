#!/bin/sh
# Holds the figures of the sample's sites and functions against those that other tools lead to: recompute.sh KELVAR SOURCES
set -eu
kelvar=$1
sources=$2
captured=$sources/examples/captured
project=$(mktemp -d)
trap 'rm -rf "$project"' EXIT
"$sources/examples/run.sh" "$kelvar" "$project" >/dev/null

# The sites as they are annotated, FILE:FIRST-LAST: each label has an end behind its beginning.
"$kelvar" annotate "$project/annotations.db" list >"$project/sites"
sites=$(awk -F '\t' '{ split($4, at, ":") }
  $2 ~ /^end-/ { print begin[$3] "-" at[2]; next }
  { begin[$3] = at[1] ":" at[2] }' "$project/sites")

# recompute KIND FILE BINARY
recompute() {
  # shellcheck disable=SC2086 # one word a site
  python3 "$sources/tests/import/recompute.py" "$@" $sites --project "$project"
}
# shares KIND FILE BINARY: an import of all functions, since the sample's leaves out the small ones.
shares() {
  "$kelvar" import survey "--$1" "$2" --binary "$3" --into "$project" 2>/dev/null
  python3 "$sources/tests/import/shares.py" "$1" "$2" "$project"
}
recompute perf "$captured/perf.txt.gz" "$captured/pixels.debug"
recompute lackey "$captured/lackey.txt.gz" "$captured/pixels.debug"
shares perf "$captured/perf.txt.gz" "$captured/pixels.debug"

if ! command -v callgrind_annotate >/dev/null; then
  echo "recompute.sh: callgrind's figures are not recomputed: valgrind is missing" >&2
  exit 0
fi
cp -R "$sources/examples/sample" "$project/sample"
cd "$project"
c++ -std=c++17 -O2 -g -pthread sample/pixels.cpp -o pixels
valgrind --quiet --tool=callgrind --dump-instr=yes --callgrind-out-file=callgrind.out ./pixels 64 2 >/dev/null
shares callgrind callgrind.out pixels
recompute callgrind callgrind.out pixels
