#!/usr/bin/env python3
"""Prints the ratios of the stages of a benchmark run to their yardsticks, and how their cost grows.

Usage: kelvar_bench --benchmark_format=json [--benchmark_repetitions=5] [--sites=N]... > run.json
       ratios.py run.json [run.json ...]

Of a stage that was measured several times, ratios are of the medians, and growth is of the least: what else the machine
does only ever adds to a cost, and mostly to that of the longer stage.
"""
import json
import re
import statistics
import sys
from collections import defaultdict

# The name of a stage and of its yardstick; `\\1` is the match of the first group.
YARDSTICKS = [
    (r"collection/(.*)", r"parse/\1"),
    (r"collection/(.*)", r"walk/\1"),
    (r"fold", "fold-sort"),
    (r"fold", "fold-keys"),
    (r"join", "copy-and-sort"),
    (r"table", "table-memcpy"),
    (r"table", "table-snprintf"),
    (r"(first|full-list)/(?!locator)(.*)", r"\1-pairs/\2"),
    (r"(first|full-list)/locator", r"\1-keys/locator"),
    (r"second(?:-after-label)?/(?!locator)(.*)", r"first-pairs/\1"),
    (r"second-after-label/locator", "first-keys/locator"),
    (r"view/locator/plain", "keys/locator"),
    (r"view/locator/plain", "sqlite/locator"),
    (r"view/survey-cpu-time/plain", "sqlite/survey-cpu-time"),
    (r"view/(.*)/plain", r"pairs/\1"),
    (r"view/(.*)/(?:only-.*|filtered|reversed)", r"view/\1/plain"),
]
GROWTH_SIZES = (500_000, 1_000_000)


def measured(paths):
    """name -> size -> (median and least milliseconds, counters)"""
    runs = defaultdict(lambda: defaultdict(list))
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for run in json.load(file)["benchmarks"]:
                if run["run_type"] == "iteration":
                    name, size = re.match(r"(.*?)/(\d+)(?:/|$)", run["name"]).groups()
                    runs[name][int(size)].append(run)
    return {
        name: {
            size: (statistics.median(times), min(times), repeated[0])
            for size, repeated in sizes.items()
            for times in [[run["real_time"] for run in repeated]]
        }
        for name, sizes in runs.items()
    }


def yardsticks_of(name):
    for pattern, yardstick in YARDSTICKS:
        match = re.fullmatch(pattern, name)
        if match:
            yield match.expand(yardstick)


def print_ratios(stages):
    print("| stage | sites | ms | allocations/item | bytes/item | yardstick | ms | ratio |")
    print("| --- | ---: | ---: | ---: | ---: | --- | ---: | ---: |")
    for name, sizes in stages.items():
        for size, (time, _, run) in sorted(sizes.items()):
            row = f"| {name} | {size} | {time:.2f} | {run['allocations/item']:.2f} | {run['bytes/item']:.0f} "
            known = [yard for yard in yardsticks_of(name) if size in stages.get(yard, {})]
            for yard in known:
                reference = stages[yard][size][0]
                print(row + f"| {yard} | {reference:.2f} | {time / reference:.2f} |")
            if not known:
                print(row + "| | | |")


def print_growth(stages):
    half, whole = GROWTH_SIZES
    grown = {name: sizes for name, sizes in stages.items() if half in sizes and whole in sizes}
    if not grown:
        return
    print(f"\n| stage | cost({whole}) / cost({half}) |\n| --- | ---: |")
    for name, sizes in grown.items():
        print(f"| {name} | {sizes[whole][1] / sizes[half][1]:.2f} |")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    stages = measured(sys.argv[1:])
    print_ratios(stages)
    print_growth(stages)


if __name__ == "__main__":
    main()
