#!/bin/bash
# Checks that the library exports what it marks and needs only the collaborators' operations: check_symbols.sh
# LIBRARY [--update]. Compares with exported_symbols.txt and undefined_symbols.txt beside it; --update rewrites these
# for review as a diff.
set -euo pipefail
export LC_ALL=C
library=$1 update=${2-}
here=$(cd "$(dirname "$0")" && pwd)

# Vtables and type information are there by the compiler's choice, as weak symbols or others; they have to be ours.
exported() { nm -DC --defined-only "$library" | sed -n 's/^[0-9a-f]* [TBDR] //p' | grep -vE '^(vtable|typeinfo)' | sort -u; }
foreign() { nm -DC --defined-only "$library" | cut -d' ' -f2- | grep -vE '^. (typeinfo (name )?for |vtable for )?kelvar_2_1_7::'; }
# What has a version belongs to the C and C++ libraries; lower-case w is looked for and not needed.
undefined() { nm -DC --undefined-only "$library" | sed -n 's/^ *U //p' | grep -vE '@|^boost::' | sort -u; }

status=0
compare() { # compare NAME: standard input against NAME beside this script
  local actual
  actual=$(cat)
  [ "$update" != --update ] || echo "$actual" >"$here/$1"
  diff "$here/$1" <(echo "$actual") || { echo "$library: differs from $1" && status=1; }
}
compare exported_symbols.txt < <(exported)
compare undefined_symbols.txt < <(undefined)
if foreign; then
  echo "$library: exports what is not of its own namespace"
  status=1
fi
exit $status
