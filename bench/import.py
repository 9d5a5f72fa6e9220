#!/usr/bin/env python3
"""How long imports take, and how much memory: import.py KELVAR DIRECTORY

Makes a program and the files of profilers below DIRECTORY, and prints for each question the best of three runs, as
seconds, processor seconds and peak memory:

- 10,000 distinct addresses of a program with more than 100 MB of debug information, by `kelvar import survey --perf`
  and by `llvm-symbolizer --inlines`, the two in turn;
- 1,000,000 samples of perf at these addresses, without the time that the addresses take;
- 200,000 functions of callgrind, by `kelvar import survey --callgrind` and by `callgrind_annotate`.

With --binary, addresses are those of another program's functions. Files come from the page cache.
"""

import argparse
import os
import random
import re
import shutil
import subprocess
import time
from pathlib import Path

# Compiled once; other units are the same assembly under another namespace, which takes a tenth of the time.
UNIT = r"""
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>
namespace unit_0000 {
template <int N> struct Thing {
  std::string name;
  double weight = N;
  int key = 0;
  bool operator<(const Thing& other) const { return weight < other.weight; }
};
template <int N> double use(int count) {
  using Things = std::vector<Thing<N>>;
  Things things;
  for (int i = 0; i < count; ++i) things.push_back({std::to_string(i), i * 0.5, i % N});
  std::stable_sort(things.begin(), things.end());
  std::sort(things.begin(), things.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  std::map<std::string, Thing<N>> byName;
  std::unordered_map<int, Things> byKey;
  std::set<Thing<N>> all;
  for (const auto& thing : things) {
    byName[thing.name] = thing;
    byKey[thing.key].push_back(thing);
    all.insert(thing);
  }
  std::vector<std::function<double(const Thing<N>&)>> calls{
      [](const Thing<N>& thing) { return thing.weight; },
      [count](const Thing<N>& thing) { return thing.weight * count; }};
  double sum = 0;
  for (const auto& call : calls)
    sum += std::accumulate(things.begin(), things.end(), 0.0, [&](double s, const auto& t) { return s + call(t); });
  auto shared = std::make_shared<std::map<int, Thing<N>>>();
  for (const auto& [name, thing] : byName) shared->emplace(thing.key, thing);
  return sum + static_cast<double>(shared->size() + all.size() + byKey.size());
}
template <int... N> double useAll(int count, std::integer_sequence<int, N...>) { return (use<N + 1>(count) + ...); }
double entry(int count) { return useAll(count, std::make_integer_sequence<int, 24>()); }
}
"""
ADDRESSES = 10_000
SAMPLES = 1_000_000
FUNCTIONS = 200_000
WANTED = 100 << 20


def debug_size(binary):
    out = subprocess.run(["readelf", "-SW", binary], capture_output=True, text=True, check=True).stdout
    return sum(int(size, 16) for size in re.findall(r"\.debug_\w+\s+PROGBITS\s+\w+ \w+ (\w+)", out))


def large_program(directory):
    """A program of as many units as make up the debug information that is wanted."""
    binary = directory / "large"
    if binary.exists():
        return binary
    (directory / "unit.cpp").write_text(UNIT)
    command = ["g++", "-std=c++20", "-O2", "-g", "-S", "-o", "unit.s", "unit.cpp"]
    subprocess.run(command, cwd=directory, check=True)
    assembly = (directory / "unit.s").read_text()
    objects = []
    while not binary.exists() or debug_size(binary) < WANTED:
        for _ in range(8 if not objects else 2):
            objects.append(f"unit{len(objects)}.o")
            text = assembly.replace("unit_0000", f"unit_{len(objects):04}")
            subprocess.run(["as", "-o", objects[-1], "-"], cwd=directory, input=text, text=True, check=True)
        entries = "".join(f"namespace unit_{i + 1:04} {{ double entry(int); }}\n" for i in range(len(objects)))
        calls = " + ".join(f"unit_{i + 1:04}::entry(n)" for i in range(len(objects)))
        (directory / "main.cpp").write_text(f"{entries}int main(int n, char**) {{ return int({calls}); }}\n")
        subprocess.run(["g++", "-g", "-o", binary.name, "main.cpp", *objects], cwd=directory, check=True)
    for name in objects:
        (directory / name).unlink()
    return binary


def addresses_of(binary):
    """Distinct addresses, even ones among those of all functions, in an order of chance."""
    out = subprocess.run(["nm", "-S", "--defined-only", binary], capture_output=True, text=True, check=True).stdout
    ranges = sorted({(int(f[0], 16), int(f[1], 16)) for f in (line.split() for line in out.splitlines())
                     if len(f) == 4 and f[2] in "tTwW"})
    chance = random.Random(23)
    weights = [size for _, size in ranges]
    found = {}
    while len(found) < ADDRESSES:
        for begin, size in chance.choices(ranges, weights, k=ADDRESSES):
            if len(found) < ADDRESSES:
                found[begin + chance.randrange(size)] = None
    return list(found)


def executable_segment(binary):
    out = subprocess.run(["readelf", "-lW", binary], capture_output=True, text=True, check=True).stdout
    offset, address, size = re.search(r"LOAD\s+(0x\w+) (0x\w+) 0x\w+ (0x\w+) 0x\w+ R E", out).groups()
    return int(offset, 16), int(address, 16), int(size, 16)


def perf_text(path, binary, addresses, samples):
    offset, address, size = executable_segment(binary)
    base = 0x555500000000
    with open(path, "w", encoding="ascii") as file:
        file.write(f"large 7/7  1.000000: PERF_RECORD_MMAP2 7/7: [{base + offset:#x}({size:#x}) @ {offset:#x} "
                   f"fe:00 1 0]: r-xp {binary}\n")
        for i in range(samples):
            at = addresses[i * 7919 % len(addresses)] - address + offset + base
            file.write(f"large     7/7     {1 + i * 1e-4:.6f}:     100000 cpu-clock:u:      {at:x} [unknown] ({binary})\n")


def callgrind_text(path):
    """Each function has eight lines, and calls two others."""
    with open(path, "w", encoding="ascii") as file:
        file.write("version: 1\ncreator: callgrind-3.19.0\npid: 7\npositions: line\nevents: Ir\n")
        file.write(f"summary: {FUNCTIONS * 8 * 100}\n\nob=(1) /a/program\n")
        named = set()

        def name(number):
            new = number not in named
            named.add(number)
            return f"({number}) space::function_{number:06}(int, double const*)" if new else f"({number})"

        for function in range(1, FUNCTIONS + 1):
            if function % 100 == 1:
                file.write(f"fl=({function // 100 + 1}) /a/source/file{function // 100:04}.cpp\n")
            file.write(f"fn={name(function)}\n")
            for line in range(8):
                file.write(f"{function % 100 * 10 + line} 100\n")
            for callee in (function + 1, function + 997):
                if callee <= FUNCTIONS:
                    file.write(f"cfn={name(callee)}\ncalls=1 0\n{function % 100 * 10} 800\n")
        file.write(f"totals: {FUNCTIONS * 8 * 100}\n")


def run(command, text=None):
    """Seconds, processor seconds and peak memory in MB."""
    begun = time.perf_counter()
    with subprocess.Popen(command, stdin=open(text, "rb") if text else subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) as process:
        said = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(said.decode())
    return time.perf_counter() - begun, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def best(*runs):
    """The best of three of each: runs that are compared take turns, so that other load meets both."""
    results = [[] for _ in runs]
    for _ in range(3):
        for result, one in zip(results, runs):
            result.append(one())
    return [min(result, key=lambda figures: figures[1]) for result in results]


def report(name, figures):
    print(f"{name:44}{figures[0]:7.2f} s {figures[1]:7.2f} s of processor {figures[2]:6.0f} MB", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kelvar")
    parser.add_argument("directory", type=Path)
    parser.add_argument("--binary", type=Path)
    options = parser.parse_args()
    kelvar = str(Path(options.kelvar).resolve())
    root = options.directory.resolve()
    root.mkdir(parents=True, exist_ok=True)
    binary = options.binary.resolve() if options.binary else large_program(root)
    addresses = addresses_of(binary)
    perf_text(root / "addresses.txt", binary, addresses, ADDRESSES)
    perf_text(root / "samples.txt", binary, addresses, SAMPLES)
    callgrind_text(root / "callgrind.out")
    (root / "asked.txt").write_text("".join(f"{address:#x}\n" for address in addresses))

    def imported(source, file):
        return lambda: run([kelvar, "import", "survey", source, str(root / file), "--into", str(root / "project")])

    symbolizer = shutil.which("llvm-symbolizer") or shutil.which("llvm-symbolizer-14")
    print(f"{binary.name}: {debug_size(binary) / (1 << 20):.0f} MB of debug information; load {os.getloadavg()[0]:.1f}")
    ours, theirs, samples = best(
        imported("--perf", "addresses.txt"),
        lambda: run([symbolizer, "--inlines", "--output-style=JSON", "-e", str(binary)], root / "asked.txt"),
        imported("--perf", "samples.txt"))
    report("10,000 addresses, import", ours)
    report("10,000 addresses, llvm-symbolizer --inlines", theirs)
    report("1,000,000 samples, import", samples)
    report("1,000,000 samples, without the addresses", (samples[0] - ours[0], samples[1] - ours[1], samples[2]))
    ours, theirs = best(imported("--callgrind", "callgrind.out"),
                        lambda: run(["callgrind_annotate", str(root / "callgrind.out")]))
    report("200,000 functions, import", ours)
    report("200,000 functions, callgrind_annotate", theirs)
    print(f"load {os.getloadavg()[0]:.1f}")


if __name__ == "__main__":
    main()
