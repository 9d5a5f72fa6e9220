#!/usr/bin/env python3
"""Holds the shares of functions in an imported survey against those of the tools' own reports:

shares.py perf FILE PROJECT           perf report --no-children of a perf.data; of the text of perf script, its innermost frames
shares.py callgrind FILE PROJECT      callgrind_annotate

PROJECT has FILE as its survey, with every function. Of the ten that the tool finds hottest: the name without parameters
and templates, the tool's share, the import's, in percent. Ends with 1 where one differs by more than a thousandth of it
and KNOWN of the whole, with 77 where the tool is missing.
"""

import collections
import gzip
import json
import re
import shutil
import subprocess
import sys

# Percent. Hand-written functions of C libraries jump into each other: callgrind counts for the one that was called, the
# import and perf for the one that the instruction lies in.
KNOWN = 0.05


def run(*command):
    if not shutil.which(command[0]):
        print(f"shares.py: skipped, {command[0]} is missing", file=sys.stderr)
        sys.exit(77)
    return subprocess.run(command, capture_output=True, text=True, errors="replace", check=True).stdout


def plain(name):
    """`int ns::f<int>(char)` is `ns::f`."""
    name = re.sub(r"'\d+$", "", name.split(" [clone")[0])  # the depth of a recursion, as callgrind tells it
    name = re.sub(r"\(anonymous namespace\)", "{anonymous}", name)
    name = name.replace("operator()", "operator{}").replace("operator<", "operator{").replace("operator>", "operator}")
    changed = 1
    while changed:
        name, changed = re.subn(r"<[^<>]*>|\([^()]*\)( const)?", "", name)
    name = re.sub(r"\{anonymous\}(::)?", "", name).strip().split(" ")[-1]
    return name.replace("operator{}", "operator()").replace("operator{", "operator<").replace("operator}", "operator>")


def of_perf(path):
    functions = collections.Counter()
    with open(path, "rb") as file:
        is_data = file.read(8) == b"PERFILE2"
    if is_data:
        out = run("perf", "report", "--no-children", "--stdio", "-g", "none", "-F", "period,sym", "-t", "\t", "-f", "-i", path)
        for period, name in re.findall(r"^ *(\d+) *\t *\[.\] (.*?) *$", out, re.MULTILINE):
            functions[plain(name)] += int(period)
        return functions
    period = 0
    with (gzip.open if path.endswith(".gz") else open)(path, "rt", errors="replace") as text:
        for line in text:
            sample = re.match(r"\S.*\s\d+\.\d+:\s+(\d+)\s+\S+:", line)
            frame = re.match(r"\s+[0-9a-f]+ (.*) \(\S.*\)$", line)
            if sample and "PERF_RECORD_" not in line:
                period = int(sample.group(1))
            elif frame:
                functions[plain(re.sub(r"\+0x[0-9a-f]+$", "", frame.group(1)))] += period
                period = 0  # of the frames behind it, callers
    return functions


def of_callgrind(path):
    functions = collections.Counter()
    out = run("callgrind_annotate", "--threshold=100", "--auto=no", "--show-percs=no", path)
    for cost, name in re.findall(r"^ *([\d,]+)  \S*?:((?!:).*?)(?: \[[^\]]*\])?$", out, re.MULTILINE):
        functions[plain(name)] += int(cost.replace(",", ""))
    return functions


def imported(project):
    functions = collections.Counter()
    with open(f"{project}/survey/collection.json", encoding="utf-8") as file:
        for detail in json.load(file)["details"]:
            if detail["detailKind"] == 1:
                functions[detail["label"]] += detail["survey"]["cpuTime"]
    with open(f"{project}/survey-lines.tsv", encoding="utf-8") as file:
        return functions, float(file.readline().split("\t")[0])


def main(kind, path, project):
    functions = {"perf": of_perf, "callgrind": of_callgrind}[kind](path)
    whole = sum(functions.values())
    if not whole:
        sys.exit(f"shares.py: expected functions in the report of {path}")
    ours, our_whole = imported(project)
    differ = 0
    for name, weight in functions.most_common(10):
        theirs, mine = 100 * weight / whole, 100 * ours[name] / our_whole
        differs = abs(theirs - mine) > max(KNOWN, theirs / 1000)
        differ += differs
        print(f"{name}\t{theirs:.4f}\t{mine:.4f}\t{'differs' if differs else 'same'}")
    return 1 if differ else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
