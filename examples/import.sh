#!/bin/sh
# Imports the output of the tools into a project that has its annotations: import.sh KELVAR OUTPUTS_DIR PROJECT
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

if [ -e "$outputs/perf.txt.gz" ]; then
  run survey --perf perf.txt.gz --at-least 0.5
else
  run survey --callgrind callgrind.out.gz --at-least 0.5
fi
run vectorization --clang-remarks clang-remarks.yaml.gz
if [ -e "$outputs/tsan.txt.gz" ]; then
  run dependencies --tsan tsan.txt.gz
else
  run dependencies --helgrind helgrind.xml.gz
fi
run map --lackey lackey.txt.gz --binary "$outputs/pixels.debug" --at-least 0.5
"$kelvar" import suitability --model --cores 4 --into "$project"
