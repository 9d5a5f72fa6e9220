#!/bin/sh
# Marks the stages of sample/pixels.cpp in an annotation database: annotate.sh KELVAR DATABASE
set -eu
kelvar=$1
database=$2

# region KIND LABEL FIRST_LINE LAST_LINE
region() {
  "$kelvar" annotate "$database" add --kind "$1" --label "$2" --at "sample/pixels.cpp:$3" >/dev/null
  "$kelvar" annotate "$database" add --kind "end-$1" --label "$2" --at "sample/pixels.cpp:$4" >/dev/null
}

rm -f "$database"
region parallel "brighten" 31 33
region parallel "smooth" 39 42
region parallel "column mean" 48 50
region parallel "count shades" 56 58
region task "one pixel" 57 57
region parallel "correct" 63 64
region parallel "sharpen" 73 76
