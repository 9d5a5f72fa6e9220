#!/bin/sh
# Makes the sample's project from its annotations and the captured output of the tools, and shows what to mend first:
# run.sh KELVAR [OUT_DIR]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
kelvar=$(command -v "$1")
case $kelvar in
/*) ;;
*) kelvar=$(pwd)/$kelvar ;;
esac
if [ $# -ge 2 ]; then
  project=$2
  mkdir -p "$project"
else
  project=$(mktemp -d)
  trap 'rm -rf "$project"' EXIT
fi

# The files are newer than the runs of the tools: this is the time of those.
SOURCE_DATE_EPOCH=$(cat "$here/captured/epoch")
export SOURCE_DATE_EPOCH
rm -f "$project/annotations.db"
"$kelvar" annotate "$project/annotations.db" scan "$here/sample" --source-root "$here" >"$project/scan.log" 2>&1
"$here/import.sh" "$kelvar" "$here/captured" "$project" 2>"$project/import.log" || {
  cat "$project/import.log" >&2
  exit 1
}
"$kelvar" show "$project" --source-root "$here"
[ $# -ge 2 ] || exit 0
sources=$(dirname "$0")
echo
echo "One site, with its source:  $1 show $project 'column mean' --source-root $sources"
echo "The same in a browser:      $1 view $project --source-root $sources"
echo "The report for programs:    $1 report $project"
