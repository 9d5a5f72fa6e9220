#!/bin/sh
# Makes project/annotations.db beside the results: the sites as they were when the results were collected, then the
# edits since. annotate.sh KELVAR, in the folder of the project
set -eu
kelvar=$1
site() { "$kelvar" annotate project/annotations.db add --kind "$1" --label "$2" --at "$3" >/dev/null 2>&1; }
edit() { "$kelvar" annotate project/annotations.db "$@"; }

site parallel solver src/solver.cpp:118:5
site end-parallel solver src/solver.cpp:140
site task 'assemble row' src/mesh.cpp:30:9
site critical sum src/mesh.cpp:44
site teams grid src/grid.cpp:12
site reduction norm src/solver.cpp:131
site barrier wait src/grid.cpp:60
site flush '' src/grid.cpp:61
site atomic 'never seen' src/io.cpp:8
site taskwait 'on its way out' src/io.cpp:9
for result in survey survey/surveyvectorization suitability dependencies map; do
  edit snapshot "project/$result"
done
edit move 1 --at src/solver.cpp:120:5
edit disable 9
edit remove 10
