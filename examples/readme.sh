#!/bin/bash
# Runs the commands that README.md shows, and writes their output after them: readme.sh KELVAR [--check]
# A line of a console block that begins with "$ " is a command, which goes on after a backslash at its end; the other
# lines are output. With --check, README.md stays as it is, and the differences are shown.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
kelvar=$(realpath "$(command -v "$1")")
readme=$here/../README.md
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# A folder like a clone of this after `./dev run`.
mkdir -p "$folder/clone/build/release/tools/kelvar"
ln -s "$kelvar" "$folder/clone/build/release/tools/kelvar/kelvar"
ln -s "$here" "$folder/clone/examples"
"$here/run.sh" "$kelvar" "$folder/clone/build/sample" >/dev/null

# A reader has the command in PATH, and sees errors as well as output. `| head` is not a failure.
replay() {
  local line command inside=
  set +o pipefail
  cd "$folder/clone"
  PATH=$PWD/build/release/tools/kelvar:$PATH
  while IFS= read -r line; do
    case $inside$line in
      '```console') inside=1 ;;
      '1```') inside= ;;
    esac
    case $inside$line in
      '1$ '*)
        command=${line#\$ }
        printf '%s\n' "$line"
        while [[ $line = *\\ ]] && IFS= read -r line; do
          command=${command%\\}$line
          printf '%s\n' "$line"
        done
        eval "$command" 2>&1 </dev/null
        ;;
      1 | 1[!\`]*) ;;
      *) printf '%s\n' "$line" ;;
    esac
  done
}
replay <"$readme" | sed 's/ *$//' >"$folder/README.md"

if [ "${2-}" = --check ]; then
  grep -q '^\$ kelvar annotate' "$readme" || { echo "README.md has no commands" >&2 && exit 1; }
  diff "$readme" "$folder/README.md" || { echo "README.md shows other output: examples/readme.sh KELVAR" >&2 && exit 1; }
else
  cp "$folder/README.md" "$readme"
fi
