#!/bin/sh
# Makes the sample's project from its annotations and its results, and prints its report:
# run.sh KELVAR [OUT_DIR]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
case $1 in */*) kelvar=$(cd "$(dirname "$1")" && pwd)/$(basename "$1") ;; *) kelvar=$1 ;; esac
project=${2:-$(mktemp -d)}
mkdir -p "$project"

"$here/annotate.sh" "$kelvar" "$project/annotations.db"
cp -R "$here/results/." "$project/"
for result in survey survey/surveyvectorization suitability dependencies map; do
  "$kelvar" annotate "$project/annotations.db" snapshot "$project/$result"
done
"$kelvar" report --verbose "$project"
[ $# -ge 2 ] || rm -rf "$project"
