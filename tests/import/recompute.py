#!/usr/bin/env python3
"""Recomputes what an import says of annotated regions, by llvm-symbolizer or addr2line alone:

recompute.py perf SCRIPT_TEXT BINARY REGION...      samples and their weight, from perf script with ip, dso, mmap events
recompute.py callgrind OUT BINARY REGION...         costs on the lines of the region, inlined there, and called from there
recompute.py lackey TRACE BINARY REGION...          accesses, but for each instruction's first

A REGION is FILE:FIRST-LAST, the file by the end of its path. What is printed: region, count, weight. With --project
PROJECT behind the regions, the figures of the result in it are held against these.
"""

import bz2
import collections
import gzip
import json
import lzma
import re
import shutil
import subprocess
import sys

PIE_BASE = 0x108000


def lines_of(path):
    opener = {"gz": gzip.open, "xz": lzma.open, "bz2": bz2.open}.get(path.rsplit(".", 1)[-1], open)
    with opener(path, "rt", encoding="utf-8", errors="replace") as text:
        yield from (line.rstrip("\n") for line in text)


class Program:
    """Chains of places, as another symbolizer has them; all addresses asked for at once."""

    def __init__(self, binary):
        self.binary = binary
        out = subprocess.run(["readelf", "-hlW", binary], capture_output=True, text=True, check=True).stdout
        self.pie = "Type:" in out and "DYN" in re.search(r"Type:\s+(\w+)", out).group(1)
        self.segments = [tuple(int(x, 16) for x in m.groups()[:3]) + (int(m.group(4), 16), "E" in m.group(5))
                         for m in re.finditer(r"LOAD\s+(0x\w+) (0x\w+) 0x\w+ (0x\w+) (0x\w+) ([RWE ]+)", out)]
        out = subprocess.run(["nm", "-n", "--defined-only", binary], capture_output=True, text=True, check=True).stdout
        self.starts = [int(line.split()[0], 16) for line in out.splitlines() if line.split()[1] in "tTwWi"]
        self.chains = {}

    def code(self, address):
        return any(x and v <= address < v + m for (_, v, _, m, x) in self.segments)

    def of_offset(self, offset):
        for (o, v, f, _, x) in self.segments:
            if x and o <= offset < o + f:
                return offset - o + v
        return None

    def ask(self, addresses):
        addresses = [a for a in sorted(addresses) if a not in self.chains]
        if not addresses:
            return
        tool = shutil.which("llvm-symbolizer") or shutil.which("llvm-symbolizer-14")
        text = "".join(f"{a:#x}\n" for a in addresses)
        if tool:
            out = subprocess.run([tool, "--inlines", "--no-demangle", "--output-style=JSON", "-e", self.binary],
                                 input=text, capture_output=True, text=True, check=True).stdout
            for address, line in zip(addresses, out.splitlines()):
                self.chains[address] = [(s["FileName"], s["Line"]) for s in json.loads(line)["Symbol"]]
        else:
            out = subprocess.run(["addr2line", "-i", "-a", "-e", self.binary], input=text, capture_output=True,
                                 text=True, check=True).stdout
            for block in re.split(r"^(?=0x)", out, flags=re.MULTILINE)[1:]:
                head, *places = block.splitlines()
                pairs = [re.match(r"(.*):(\d+|\?)", p).groups() for p in places]
                self.chains[int(head, 16)] = [(f, int(n) if n != "?" else 0) for f, n in pairs]

    def resolve(self, addresses):
        """What has no line belongs to the nearest before it in its function."""
        self.ask(addresses)
        at = {a: a for a in addresses}
        lost = [a for a in addresses if not self.chains[a] or self.chains[a][0][1] == 0]
        floor = {a: max((s for s in self.starts if s <= a), default=a) for a in lost}
        for _ in range(4096):
            lost = [a for a in lost if at[a] > floor[a] and self.chains[at[a]][0][1] == 0]
            if not lost:
                break
            for a in lost:
                at[a] -= 1
            self.ask({at[a] for a in lost})
        return {a: self.chains[at[a]] if self.chains[at[a]] and self.chains[at[a]][0][1] else self.chains[a]
                for a in addresses}


def inside(chain, region):
    name, first, last = region
    return any(first <= line <= last and (path == name or path.endswith("/" + name)) for path, line in chain)


def perf_samples(path, program, leaf):
    """Of each sample its weight and the addresses of its stack that lie in the program."""
    maps, stack, weight = [], None, 0.0
    for line in lines_of(path):
        m = re.search(r"PERF_RECORD_MMAP2? -?\d+/\d+: \[0x(\w+)\(0x(\w+)\) @ (?:0x)?(\w+) .*\]: r-xp (.*)", line)
        if m:
            if m.group(4).rsplit("/", 1)[-1] == leaf:
                maps.append(tuple(int(x, 16) for x in m.groups()[:3]))
            continue
        if "PERF_RECORD_" in line:
            continue
        head = re.match(r".*\s\d+\.\d+:\s+(\d+)\s+\S+:\S*\s*(.*)$", line)
        frame = line if not head else head.group(2)
        if head:
            if stack is not None:
                yield weight, stack
            stack, weight, depth = [], int(head.group(1)) / 1e9, 0
        m = re.match(r"\s*([0-9a-f]+) (.*) \((\S.*)\)$", frame)
        if m:
            address = int(m.group(1), 16)
            if m.group(3).rsplit("/", 1)[-1] == leaf:
                start = next((s for s in maps if s[0] <= address < s[0] + s[1]), None)
                at = program.of_offset(address - start[0] + start[2]) if start else program.of_offset(address)
                if not start and not program.pie:
                    # Linked where it runs; in stacks, perf prints the place in the file.
                    moved = (s[0] - s[2] for s in maps if s[2] <= address < s[2] + s[1])
                    at = address if program.code(address) else address + next(moved, 0)
                if at is not None:
                    stack.append(at - (1 if depth else 0))
            depth += 1
    if stack is not None:
        yield weight, stack


def perf(path, program, regions, leaf):
    samples = list(perf_samples(path, program, leaf))
    chains = program.resolve({a for _, stack in samples for a in stack})
    for region in regions:
        hit = [w for w, stack in samples if any(inside(chains[a], region) for a in stack)]
        yield len(hit), sum(hit)


def callgrind(path, program, regions, leaf):
    costs, mine, skip, address, names = collections.Counter(), False, None, 0, {}
    calls, function, callee = collections.Counter(), None, None
    owns, arcs = collections.Counter(), collections.Counter()  # by function; by caller and callee
    for line in lines_of(path):
        if line.startswith("ob="):
            m = re.match(r"ob=(?:\((\d+)\))?\s*(.*)", line)
            name = names.setdefault(m.group(1), m.group(2)) if m.group(1) else m.group(2)
            mine = name.rsplit("/", 1)[-1] == leaf
        elif line.startswith("cob="):
            m = re.match(r"cob=\((\d+)\)\s+(.+)", line)
            if m:
                names[m.group(1)] = m.group(2)
        elif re.match(r"c?fn=", line):
            name = re.match(r"c?fn=(\(\d+\)|.*)", line).group(1)
            if line.startswith("c"):
                callee = name
            else:
                function = name
        elif re.match(r"calls=|jump=|jcnd=", line):
            skip = line[0]
        elif re.match(r"[0-9+*-]", line):
            at, _, *cost = line.split()
            address = {"+": lambda: address + int(at[1:]), "-": lambda: address - int(at[1:]),
                       "*": lambda: address}.get(at[0], lambda: int(at, 16))()
            if not skip and mine:
                costs[address] += int(cost[0]) if cost else 0
                owns[function, address] += int(cost[0]) if cost else 0
            elif skip == "c":
                arcs[function, callee] += int(cost[0])
                if mine:
                    calls[address, function, callee] += int(cost[0])
            skip = None
    chains = program.resolve(set(costs) | {a for a, _, _ in calls})
    callees = collections.defaultdict(set)
    for caller, callee in arcs:
        callees[caller].add(callee)
    for region in regions:
        hit = {a for a in chains if inside(chains[a], region)}
        own = {f for f, a in owns if a in hit}
        # What comes back to the region by a call is counted there already: directly, or by a function that it calls.
        outer = collections.Counter()
        for (a, _, f), cost in calls.items():
            if a in hit and f not in own:
                outer[f] += cost
        back = {}  # how much of each function is the region's
        for f in own:
            ours = sum(c for (g, a), c in owns.items() if g == f and a in hit)
            ours += sum(c for (a, g, h), c in calls.items() if g == f and a in hit and h not in own)
            whole = sum(c for (g, _), c in owns.items() if g == f) + sum(c for (g, _), c in arcs.items() if g == f)
            back[f] = ours / max(1, whole)
        called = 0
        for first, cost in outer.items():
            # No more comes along a way than the least of its calls costs.
            most, wave = {first: cost}, [first]
            for f in wave:
                for g in callees[f] - own:
                    if min(most[f], arcs[f, g]) > most.get(g, 0):
                        most[g] = min(most[f], arcs[f, g])
                        wave.append(g)
            called += max(0, cost - sum(min(c, most[g]) * back[h] for (g, h), c in arcs.items() if h in own and g in most))
        yield sum(costs[a] > 0 for a in hit), (sum(costs[a] for a in hit) + called) / 1e6


def lackey(path, program, regions, _):
    accesses, at = collections.Counter(), None
    for line in lines_of(path):
        m = re.match(r"(I | L| S| M) +([0-9a-f]+),\d+$", line)
        if not m:
            continue
        if m.group(1) == "I ":
            at = int(m.group(2), 16) - (PIE_BASE if program.pie else 0)
            at = at if program.code(at) else None
        elif at is not None:
            accesses[at] += 1
    chains = program.resolve(set(accesses))
    for region in regions:
        hit = sum(n - 1 for a, n in accesses.items() if inside(chains[a], region))
        yield hit, float(hit)


def reported(project, kind, region):
    """The result's figure for the region: its time or its accesses."""
    folder = "map" if kind == "lackey" else "survey"
    with open(f"{project}/{folder}/collection.json", encoding="utf-8") as file:
        details = json.load(file)["details"]
    for detail in details:
        if detail["detailKind"] == 0 and detail["line"] == region[1] and detail["file"].endswith(region[0]):
            return float(sum(detail["map"]["strides"])) if kind == "lackey" else detail["survey"]["cpuTime"]
    return None


def main(arguments):
    project = None
    if "--project" in arguments:
        at = arguments.index("--project")
        project = arguments[at + 1]
        del arguments[at:at + 2]
    kind, path, binary, *texts = arguments
    regions = [(m.group(1), int(m.group(2)), int(m.group(3)))
               for m in (re.match(r"(.*):(\d+)-(\d+)$", t) for t in texts) if m]
    if not regions or len(regions) != len(texts):
        sys.exit("recompute.py: expected regions: FILE:FIRST-LAST")
    program = Program(binary)
    leaf = binary.rsplit("/", 1)[-1].removesuffix(".debug")
    differ = 0
    for region, (count, weight) in zip(regions, {"perf": perf, "callgrind": callgrind, "lackey": lackey}[kind](
            path, program, regions, leaf)):
        row = f"{region[0]}:{region[1]}-{region[2]}\t{count}\t{weight:.9g}"
        if project:
            figure = reported(project, kind, region)
            tolerance = max(1e-9, weight * 1e-6) if kind != "callgrind" else weight * 0.01
            differs = figure is None or abs(figure - weight) > tolerance
            differ += differs
            row += f"\t{figure}\t{'differs' if differs else 'same'}"
        print(row)
    return 1 if differ else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
