#!/bin/sh
# Builds the sample, runs the five analyses on it with the tools of this machine, imports what they wrote, and prints
# the report: collect.sh KELVAR PROJECT [OUTPUTS_DIR]
# Needs clang++ and valgrind. Uses perf if it is permitted, else callgrind; ThreadSanitizer if it links, else helgrind.
# OUTPUTS_DIR gets the output of the tools, small enough to be stored with the sample, as in captured/.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
kelvar=$(command -v "$1")
case $kelvar in
/*) ;;
*) kelvar=$(pwd)/$kelvar ;;
esac
project=$2
for tool in clang++ valgrind objcopy; do
  command -v "$tool" >/dev/null || { echo "collect.sh: $tool is missing" >&2 && exit 1; }
done
work=$(mktemp -d)
# The output of tools goes to logs; the end of the log of a tool that failed is shown.
leave() {
  [ "$1" -eq 0 ] || tail -n 5 "$work"/*.log >&2 2>/dev/null || true
  rm -rf "$work"
}
trap 'leave $?' EXIT
outputs=${3:-$work/outputs}
mkdir -p "$project" "$outputs"
outputs=$(cd "$outputs" && pwd)
project=$(cd "$project" && pwd)
(cd "$outputs" && rm -f perf.txt.gz callgrind.out.gz tsan.txt.gz helgrind.xml.gz) # the others come anew

# The path of this folder must not appear in the captured output.
cp -R "$here/sample" "$work/sample"
cd "$work"
build="clang++ -std=c++17 -g -gdwarf-4 -fno-omit-frame-pointer -pthread -fdebug-prefix-map=$work=. sample/pixels.cpp"

echo "vectorization: the remarks of clang" >&2
$build -O2 -no-pie -fsave-optimization-record -foptimization-record-file=remarks.yaml -o pixels 2>build.log
gzip -9nc remarks.yaml >"$outputs/clang-remarks.yaml.gz"

echo "survey: perf, else callgrind" >&2
# With stacks, so that a site's time holds what it calls; frame pointers make them cheap. Its text takes the places of
# the objects with it, so that inlined calls can be told without perf.data.
perf record -q -g -e cpu-clock:u -F 500 -o perf.data ./pixels 2048 40 >run.log 2>&1 || rm -f perf.data
if [ -e perf.data ] &&
  perf script -f -i perf.data --no-inline --show-mmap-events --show-task-events -F +pid >perf.txt 2>>run.log &&
  [ "$(wc -l <perf.txt)" -gt 500 ]; then
  # No path of this machine, and no library that another machine would have in another version.
  sed "s|$work/|/|; s|/usr/lib/[^/ ]*-linux-gnu/|/|" perf.txt | gzip -9nc >"$outputs/perf.txt.gz"
else
  # With addresses, so that inlined calls can be told.
  valgrind --quiet --tool=callgrind --dump-instr=yes --callgrind-out-file=callgrind.out ./pixels 128 4 >run.log 2>&1
  sed "s|$work/|/|" callgrind.out | gzip -9nc >"$outputs/callgrind.out.gz"
fi

echo "dependencies: ThreadSanitizer, else helgrind" >&2
if $build -O1 -fsanitize=thread -o pixels-tsan 2>>build.log; then
  # Verbose, so that a run without findings differs from no run. The exit status depends on the findings.
  TSAN_OPTIONS="verbosity=1 log_path=tsan" ./pixels-tsan 128 2 >run.log 2>&1 || true
  cat tsan.* | sed "s|$work/||; s|[(]BuildId: [0-9a-f]*[)]||" | gzip -9nc >"$outputs/tsan.txt.gz"
else
  valgrind --quiet --tool=helgrind --xml=yes --xml-file=helgrind.xml ./pixels 64 1 >run.log 2>&1
  sed "s|$work/||" helgrind.xml | gzip -9nc >"$outputs/helgrind.xml.gz"
fi

echo "map: lackey" >&2
valgrind --tool=lackey --trace-mem=yes --log-file=lackey.txt ./pixels 48 1 >run.log 2>&1
objcopy --only-keep-debug --compress-debug-sections=zlib pixels "$outputs/pixels.debug"
# Only the accesses of the program's own instructions are stored, by their addresses: those of the loader and of
# libraries have no source in the sample, and are 99 % of the trace.
awk '/^I/ { own = $2 ~ /^0*4[0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f],/ } /^I/ || /^ / { if (own) print }' lackey.txt |
  gzip -9nc >"$outputs/lackey.txt.gz"

date +%s >"$outputs/epoch"
rm -f "$project/annotations.db"
"$kelvar" annotate "$project/annotations.db" scan "$here/sample" --source-root "$here" >"$project/scan.log" 2>&1
"$here/import.sh" "$kelvar" "$outputs" "$project"
"$kelvar" report --verbose "$project"
