#!/bin/bash
# Checks that the shipped binaries are hardened: check_hardening.sh [--fortified] FILE...
set -euo pipefail
export LC_ALL=C
fortified=
[ "$1" != --fortified ] || { fortified=1 && shift; }

status=0
has() { # has WHAT PATTERN COMMAND...: whether the command prints that of the file
  "${@:3}" "$file" | grep -E "$2" >/dev/null || { echo "$file: no $1" && status=1; }
}
for file in "$@"; do
  has "position-independent code" 'Type: +DYN' readelf -hW
  has "read-only relocations" 'GNU_RELRO' readelf -lW
  has "binding at the start" 'Flags: .*NOW' readelf -dW
  has "stack without code" 'GNU_STACK .* RW +0x' readelf -lW
  has "stack protector" '__stack_chk_fail' nm -D --undefined-only
  # The C library's start-up code is not marked, so the linker marks no file as a whole: marked functions are counted.
  if [ "$(uname -m)" = x86_64 ] && [ "$(objdump -d "$file" | grep -c endbr64)" -lt 50 ]; then
    echo "$file: no marks where branches may lead" && status=1
  fi
done
# Not each file calls what can be checked.
if [ -n "$fortified" ] && ! nm -D --undefined-only "$@" | grep -v __stack_chk_fail | grep _chk@ >/dev/null; then
  echo "$*: no checked calls of the C library" && status=1
fi
exit $status
