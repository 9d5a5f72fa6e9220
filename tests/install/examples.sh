#!/bin/bash
# Checks that the examples print their .txt files, and that README shows one of them: examples.sh KELVAR BIN SOURCE WORK
set -euo pipefail
kelvar=$1 bin=$2 source=$3 work=$4
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/install/lib.sh
. "$here/lib.sh"

rm -rf "$work"
make_project "$kelvar" "$work/project"
for header in "$source"/include/kelvar/*.h; do
  name=$(basename "$header" .h)
  [ "$name" = SummaryTypes ] && continue # enumerations, in every example
  "$bin/example_$name" "$work/project" | diff "$source/examples/api/$name.txt" - || fail "the example of $name.h"
done
# shellcheck disable=SC2016 # the backquotes are Markdown's
diff <(sed -n '/^```cpp$/,/^```$/p' "$source/README.md" | sed '1d;$d') "$source/examples/api/SummaryData.cpp" ||
  fail "README's caller is not examples/api/SummaryData.cpp"
