#!/usr/bin/env python3
"""Whether `kelvar compare` tells a change from noise: noise.py KELVAR DIRECTORY [--tries N] [--runs N]

Makes a program of eight stages below DIRECTORY, and one whose third stage does a tenth more. A try measures the program
on two sides and the slower one on a third, each five times and in turn, by `kelvar collect --only survey`. It prints for
how many tries the two equal sides were called different, the slower stage was called slower, and another was called.
"""

import argparse
import json
import subprocess
from pathlib import Path

SLOWER = 3
EXPECTED = (f"stage {SLOWER}", f"stage_{SLOWER}", "main", "the whole")
SIDES = {"a": "plain", "b": "plain", "c": "slower"}
CALLS = ("slower", "faster")
PROGRAM = r"""
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <numeric>
#include <string>
#include <unordered_map>
#include <vector>
namespace {
std::uint64_t state = 1;
std::uint64_t random_number() { return state = state * 6364136223846793005U + 1442695040888963407U; }
double sink = 0;
constexpr std::size_t kSize = 1 << 16;
std::vector<double> a(kSize, 1.5), b(kSize, 0.25);
std::vector<std::uint32_t> order(1 << 22);

__attribute__((noinline)) void stage_1(int n) {
  // kelvar: parallel "stage 1"
  for (int i = 0; i < n; ++i)
    for (std::size_t j = 0; j < kSize; ++j) a[j] = a[j] * 0.999 + b[j];
  // kelvar: end "stage 1"
}
__attribute__((noinline)) void stage_2(int n) {
  // kelvar: parallel "stage 2"
  std::uint32_t at = 0;
  for (int i = 0; i < n * 1000; ++i) at = order[at];
  sink += at;
  // kelvar: end "stage 2"
}
__attribute__((noinline)) void stage_3(int n) {
  // kelvar: parallel "stage 3"
  for (int i = 0; i < n; ++i)
    for (std::size_t j = 0; j < 1000; ++j) sink += std::sqrt(a[j] + static_cast<double>(i));
  // kelvar: end "stage 3"
}
__attribute__((noinline)) void stage_4(int n) {
  // kelvar: parallel "stage 4"
  std::vector<std::uint64_t> keys(1000);
  for (int i = 0; i < n; ++i) {
    for (auto& key : keys) key = random_number() >> 20U;
    std::sort(keys.begin(), keys.end());
    sink += static_cast<double>(keys[500]);
  }
  // kelvar: end "stage 4"
}
__attribute__((noinline)) void stage_5(int n) {
  // kelvar: parallel "stage 5"
  std::unordered_map<std::uint64_t, int> counts;
  for (int i = 0; i < n * 1000; ++i) ++counts[(random_number() >> 40U) % 5000];
  sink += static_cast<double>(counts.size());
  // kelvar: end "stage 5"
}
__attribute__((noinline)) void stage_6(int n) {
  // kelvar: parallel "stage 6"
  std::map<std::string, int> words;
  for (int i = 0; i < n * 100; ++i) ++words[std::to_string((random_number() >> 40U) % 3000)];
  sink += static_cast<double>(words.size());
  // kelvar: end "stage 6"
}
__attribute__((noinline)) void stage_7(int n) {
  // kelvar: parallel "stage 7"
  std::uint32_t sum = 0;
  for (int i = 0; i < n * 1000; ++i) sum = (sum << 5U | sum >> 27U) ^ static_cast<std::uint32_t>(i) * 2654435761U;
  sink += sum;
  // kelvar: end "stage 7"
}
__attribute__((noinline)) void stage_8(int n) {
  // kelvar: parallel "stage 8"
  for (int i = 0; i < n; ++i) sink += std::accumulate(order.begin(), order.begin() + (1 << 16), 0.0);
  // kelvar: end "stage 8"
}
}  // namespace
int main() {
  std::iota(order.begin(), order.end(), 0U);
  for (std::size_t i = order.size() - 1; i > 0; --i) std::swap(order[i], order[random_number() % i]);
  for (int round = 0; round < 10; ++round) {
    stage_1(360);
    stage_2(130);
    stage_3(90 * WORK);
    stage_4(400);
    stage_5(2000);
    stage_6(1600);
    stage_7(20000);
    stage_8(400);
  }
  std::printf("%g\n", sink);
}
"""


def call(command, folder, wanted=(0,)):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    if done.returncode not in wanted:
        raise SystemExit(f"{command}: status {done.returncode}\n{done.stderr}")
    return done.stdout


class Told:
    """What was said of each row, and of the whole: its verdict and its change in per cent."""

    def __init__(self, kelvar, root, before, after):
        compared = json.loads(call([kelvar, "compare", *before, "--with", *after, "--format", "json"], root))
        times = [(site["label"], site["time"]) for site in compared["sites"] if "time" in site]
        self.rows = [
            (label, time["verdict"], time["changePercent"]) for label, time in [*times, ("the whole", compared["whole"])]
        ]

    def called(self, besides=()):
        return [row for row in self.rows if row[1] in CALLS and row[0] not in besides]

    def of(self, label):
        return next(row for row in self.rows if row[0] == label)


def text(row):
    label, verdict, change = row
    return f"{label} {change:+.1f} % {verdict}"


def build(kelvar, root):
    root.mkdir(parents=True, exist_ok=True)
    (root / "stages.cpp").write_text(PROGRAM)
    for name, work in (("plain", 100), ("slower", 110)):
        flags = ["-std=c++17", "-O2", "-g", "-fno-omit-frame-pointer", f"-DWORK={work}"]
        call(["g++", *flags, "-o", name, "stages.cpp"], root)
    call([kelvar, "annotate", "project/annotations.db", "scan", "stages.cpp"], root)


def measure(kelvar, root, attempt, count):
    """The runs of each side, taken in turn: what changes slowly on the machine falls on all of them."""
    runs = {side: [f"{attempt}{side}{run}" for run in range(count)] for side in SIDES}
    for run in range(count):
        for side, program in SIDES.items():
            collect = [kelvar, "collect", "project", "--only", "survey", "--run", runs[side][run]]
            call([*collect, "--", f"./{program}"], root)
    return {side: [f"project/runs/{name}" for name in names] for side, names in runs.items()}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kelvar")
    parser.add_argument("directory", type=Path)
    parser.add_argument("--tries", type=int, default=20)
    parser.add_argument("--runs", type=int, default=5)
    options = parser.parse_args()
    kelvar = str(Path(options.kelvar).resolve())
    root = options.directory.resolve()
    build(kelvar, root)
    differ = found = beside = 0
    for attempt in range(options.tries):
        runs = measure(kelvar, root, attempt, options.runs)
        equal = Told(kelvar, root, runs["a"], runs["b"]).called()
        slower = Told(kelvar, root, runs["a"], runs["c"])
        stage = slower.of(f"stage {SLOWER}")
        others = slower.called(besides=EXPECTED)
        differ += bool(equal)
        found += stage[1] == "slower"
        beside += bool(others)
        print(f"{attempt + 1:2}: {text(stage)}", *(f"| equal: {text(row)}" for row in equal),
              *(f"| beside: {text(row)}" for row in others), flush=True)
    print(f"of {options.tries} tries: equal sides called different {differ}, stage {SLOWER} called slower {found}, "
          f"another called beside it {beside}")


if __name__ == "__main__":
    main()
