#!/bin/bash
# Checks that the Debian packages install, work and can be removed: packages.sh BUILD SOURCE WORK
# Needs root, and changes the system that it runs on. BUILD was configured with -DCMAKE_INSTALL_PREFIX=/usr.
set -euo pipefail
build=$1 source=$2 work=$3
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/install/lib.sh
. "$here/lib.sh"

names=(kelvar libkelvar-summary-dev libkelvar-summary2.1)
rm -rf "$work"
mkdir -p "$work"
(cd "$build" && cpack -B "$work/packages" >"$work/cpack.log") || fail "cpack: $(tail -5 "$work/cpack.log")"
trap 'dpkg --purge "${names[@]}" >/dev/null 2>&1 || true' EXIT
dpkg -i "$work"/packages/*.deb >"$work/dpkg.log" || fail "dpkg -i"

"$here/../structure/check_hardening.sh" --fortified /usr/bin/kelvar /usr/lib/*/libkelvar_*.so ||
  fail "what is installed is not hardened"

make_project /usr/bin/kelvar "$work/project"
kelvar report "$work/project" | grep solver >/dev/null || fail "kelvar report"
for subcommand in "" -report -annotate; do
  man "kelvar$subcommand" | grep SYNOPSIS >/dev/null || fail "man kelvar$subcommand"
done
# As an interactive shell does it: the loader finds the file by the command's name.
bash -c '. /usr/share/bash-completion/bash_completion; _completion_loader kelvar; complete -p kelvar' |
  grep _kelvar >/dev/null || fail "the completion is not found"

# shellcheck disable=SC2046 # flags are words
"$CXX" -std=c++17 -o "$work/caller" "$source/examples/api/SummaryData.cpp" $(pkg-config --cflags --libs kelvar_summary) ||
  fail "building a caller"
"$work/caller" "$work/project" | diff "$source/examples/api/SummaryData.txt" - || fail "the caller"

# The command and the headers depend on the libraries, which cannot be removed first.
if dpkg -r libkelvar-summary2.1 >/dev/null 2>&1; then fail "the libraries went, and left the command"; fi
dpkg --purge "${names[@]}" >>"$work/dpkg.log" || fail "dpkg --purge"
[ -z "$(find /usr/bin /usr/lib /usr/include /usr/share/man /usr/share/bash-completion -name '*kelvar*')" ] ||
  fail "files stay behind"
trap - EXIT
