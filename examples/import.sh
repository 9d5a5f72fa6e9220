#!/bin/sh
# Imports what the tools wrote into a project that has its annotations: import.sh KELVAR OUTPUTS_DIR PROJECT
# The survey comes first: the loops take their times from it, and the model its shares.
set -eu
kelvar=$1
outputs=$2
project=$3

# run KIND OPTION FILE [MORE...]
run() {
  kind=$1
  option=$2
  file=$3
  shift 3
  "$kelvar" import "$kind" "$option" "$outputs/$file" "$@" --into "$project"
}

for pair in "survey --perf perf.txt.gz" "survey --callgrind callgrind.out.gz"; do
  # shellcheck disable=SC2086 # three words
  set -- $pair
  [ -e "$outputs/$3" ] && { run "$@" --at-least 0.5; break; }
done
run vectorization --clang-remarks clang-remarks.yaml.gz
for pair in "dependencies --tsan tsan.txt.gz" "dependencies --helgrind helgrind.xml.gz"; do
  # shellcheck disable=SC2086 # three words
  set -- $pair
  [ -e "$outputs/$3" ] && { run "$@"; break; }
done
run map --lackey lackey.txt.gz --binary "$outputs/pixels.debug" --at-least 0.5
"$kelvar" import suitability --model --cores 4 --into "$project"
