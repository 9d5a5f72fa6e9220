#!/bin/sh
# Holds the figures of the sample's sites against those that another symbolizer leads to: recompute.sh KELVAR SOURCES
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
# shellcheck disable=SC2086 # one word a site
for source in perf lackey; do
  python3 "$sources/tests/import/recompute.py" $source "$captured/$source.txt.gz" "$captured/pixels.debug" \
    $sites --project "$project"
done
