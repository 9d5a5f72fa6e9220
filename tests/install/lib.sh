# shellcheck shell=bash
# Shared by the scripts beside it. Sourced, never run.

# Callers are built with the generator and the compiler of the build under test: a machine need have no others.
export CMAKE_GENERATOR=${CMAKE_GENERATOR:-Ninja} CXX=${CXX:-c++}

# fail WHAT: says what broke, and ends.
fail() {
  echo "FAILED: $1" >&2
  exit 1
}

# make_project KELVAR DIR: two regions with a survey and a dependency analysis; the first has moved by two lines since.
make_project() {
  local database=$2/annotations.db
  mkdir -p "$2/survey" "$2/dependencies"
  "$1" annotate "$database" add --kind parallel --label solver --at /src/solver.cpp:118 >/dev/null
  "$1" annotate "$database" add --kind critical --label "sum up" --at /src/sum.cpp:40 >/dev/null
  "$1" annotate "$database" snapshot "$2/survey"
  "$1" annotate "$database" move 1 --at /src/solver.cpp:120
  cat >"$2/survey/result.json" <<'JSON'
{"formatVersion": 1, "hostName": "node17", "cpuCount": 16, "collectionStartTime": 100, "collectionEndTime": 142}
JSON
  cat >"$2/survey/collection.json" <<'JSON'
{"formatVersion": 1, "dataKind": "survey", "processors": 16, "details": [
  {"label": "sum up", "annotationKind": 5, "file": "/src/sum.cpp", "line": 40,
   "survey": {"cpuTime": 1.25, "priority": 2, "id": 2}},
  {"label": "solver", "file": "/src/solver.cpp", "line": 118, "survey": {"cpuTime": 12.5, "priority": 1, "id": 1}}]}
JSON
  cat >"$2/dependencies/result.json" <<'JSON'
{"formatVersion": 1, "cpuCount": 16, "collectionStartTime": 200, "collectionEndTime": 209}
JSON
  cat >"$2/dependencies/collection.json" <<'JSON'
{"formatVersion": 1, "dataKind": "dependencies", "details": [
  {"label": "solver", "file": "/src/solver.cpp", "line": 118, "dependencies": {"errors": 2, "warnings": [1, 0]}}]}
JSON
}
