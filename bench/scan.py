#!/usr/bin/env python3
"""How long a scan takes: scan.py KELVAR DIRECTORY

Makes sources below DIRECTORY, and prints the best of three runs for each question: 10,000,000 lines with 5,000 markers,
scanned for the first time and again, where one file of four has markers, and where all have; 100,000 sites that are found again after an edit of every file, as markers
without an end, as regions with theirs, and all in one file. Files come from the page cache.
"""

import argparse
import shutil
import subprocess
import time
from pathlib import Path


def plain_tree(directory, files_a_marked_one):
    """2,000 files of 5,000 lines, 40 bytes a line, with 5,000 markers in the marked ones."""
    directory.mkdir(parents=True)
    for file in range(2000):
        lines = []
        markers = 0 if file % files_a_marked_one else 10 if files_a_marked_one == 4 else 2 + file % 2
        marked = {(2 * i + 1) * 5000 // (2 * markers) for i in range(markers)}
        for number in range(5000):
            if number in marked:
                lines.append("#pragma omp barrier                     ")
            elif number % 50 == 0:
                lines.append(f"}} void function_{number:05}(double *values) {{")
            else:
                lines.append(f"  values[{number:05}] += {number * 7 % 9973:05} * factor;   ")
        (directory / f"file{file:04}.c").write_text("\n".join(lines) + "\n")


def marker_tree(directory, files, sites, text, edited):
    """Each function has ten sites, and what is behind each is its own."""
    shutil.rmtree(directory, ignore_errors=True)
    directory.mkdir(parents=True)
    for file in range(files):
        lines = ["int first;"] * (40 if edited else 1)
        for site in range(sites // files):
            if site % 10 == 0:
                lines.append(f"}} void function_{file}_{site}(int i) {{" if site else "void first_function(int i) {")
            clause = " if (i)" if edited and site % 10 == 3 and "parallel" in text else ""
            lines.append(text.replace("CLAUSE", clause))
            lines.append(f"  work({file}, {site // 3});" if "parallel" not in text else f"  {{ work({file}, {site // 3}); }}")
            lines.append(f"  more({site % 7}{', 1' if edited and site % 10 == 5 else ''});")
        lines.append("}")
        (directory / f"file{file:04}.c").write_text("\n".join(lines) + "\n")


def scan(kelvar, database, tree, *options):
    begun = time.perf_counter()
    done = subprocess.run([kelvar, "annotate", str(database), "scan", ".", *options], cwd=tree, capture_output=True, check=True)
    return time.perf_counter() - begun, done.stdout.decode().splitlines()


def best(run):
    results = [run() for _ in range(3)]
    return min(results, key=lambda result: result[0])


def counted(events):
    counts = {}
    for event in events:
        counts[event.split("\t")[0]] = counts.get(event.split("\t")[0], 0) + 1
    return ", ".join(f"{count:,} {what}" for what, count in sorted(counts.items())) or "nothing changes"


def report(name, result):
    print(f"{name:48}{result[0]:7.2f} s  {counted(result[1])}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kelvar")
    parser.add_argument("directory", type=Path)
    parser.add_argument("--sites", type=int, default=100_000)
    options = parser.parse_args()
    kelvar = str(Path(options.kelvar).resolve())
    root = options.directory.resolve()
    database = root / "annotations.db"
    before = root / "before.db"

    def fresh(tree):
        database.unlink(missing_ok=True)
        return scan(kelvar, database, tree)

    def again(tree):
        shutil.copyfile(before, database)
        return scan(kelvar, database, tree)

    for share, name in ((4, "markers in one file of four"), (1, "markers in every file")):
        plain = root / f"plain{share}"
        if not plain.exists():
            plain_tree(plain, share)
        report(f"10,000,000 lines, {name}", best(lambda: fresh(plain)))
        report("the same again", best(lambda: scan(kelvar, database, plain)))
    sites = f"{options.sites:,}"
    for name, files, text, count in (
        (f"{sites} markers in 100 files", 100, "  #pragma omp taskwait", options.sites),
        (f"{sites} sites, half of them ends", 100, "  #pragma omp parallelCLAUSE", options.sites // 2),
        (f"{sites} markers in one file", 1, "  #pragma omp taskwait", options.sites),
    ):
        tree = root / "markers"
        marker_tree(tree, files, count, text, False)
        report(name + ", new", best(lambda: fresh(tree)))
        shutil.copyfile(database, before)
        report("the same again", best(lambda: again(tree)))
        marker_tree(tree, files, count, text, True)
        report("found again after an edit", best(lambda: again(tree)))
    shutil.rmtree(root / "markers")


if __name__ == "__main__":
    main()
