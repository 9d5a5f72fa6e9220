#!/usr/bin/env python3
"""How many sites keep their number over the history of a project: history.py KELVAR REPOSITORY...

For pairs of commits that are 10, 50 and 200 apart in a chain of parents, the older tree is scanned, then the newer one
with the same database. The trees are those of a repository, so that the scan may ask git. What became of each site in
truth is told by the changes in between, commit by commit, as `git diff -p -M -w` has them: a line is shifted, edited
within a hunk, or taken away.

Prints a row for each repository and distance, and one for all of them: the sites that survived, how many of them kept
their number, how many came out at another place, how many the scan left open (it named them, and could not tell where
they are), and of the sites that were deleted, how many live on as another. A site whose line was taken away and put
elsewhere in one commit is left out: whether that is the same site, no change says. So is one of which the code is around
another marker of the file, and other code is where the changes lead.
"""

import argparse
import difflib
import re
import shutil
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

DIRECTIVE = re.compile(r"^\s*(?:#\s*pragma\s+|[!cC*]\$)(omp|acc)\b\s*(.*)$", re.IGNORECASE)
CALL = re.compile(r"\b(Kokkos::\w+(?:::\w+)?|tbb::parallel_\w+|RAJA::\w+)\s*(?:<[^;]*>)?\(")
KINDS = ("parallel", "teams", "taskloop", "task", "critical", "atomic", "barrier", "taskwait", "flush", "ordered")


def marker(line):
    """What sort of marker a line holds; None where it holds none."""
    found = DIRECTIVE.match(line)
    if found:
        words = found.group(2).lower().split("(")[0].split()
        if words[:1] == ["end"]:
            return None
        return next((kind for kind in KINDS if kind in words), None)
    found = CALL.search(line)
    return found.group(1) if found else None


def plain(line):
    return "".join(line.split())


def git(repo, *arguments):
    done = subprocess.run(["git", "-C", str(repo), *arguments], capture_output=True, check=True)
    return done.stdout.decode("utf-8", "replace")


MOST_LINES_BY_COUNT = 200
# Of the lines around a site: less is other code, more is the same.
LEAST_ALIKE, MOST_ALIKE = 0.5, 0.75


class Hunk:
    def __init__(self, old, old_count, new):
        # Without lines, a hunk of -U0 names the line before it.
        self.old = old if old_count else old + 1
        self.new = new
        self.removed, self.added = [], []


def chain(repo, last_parent, count):
    """Commits from the newest on, each with one of its parents behind it."""
    if not last_parent:
        return git(repo, "rev-list", "--first-parent", "HEAD", "-n", str(count)).split()
    commits = [git(repo, "rev-parse", "HEAD").strip()]
    parents = {}
    for line in git(repo, "rev-list", "--parents", "HEAD").splitlines():
        commit, *rest = line.split()
        parents[commit] = rest
    while parents.get(commits[-1]) and len(commits) < count:
        commits.append(parents[commits[-1]][-1])
    return commits


def changes(repo, commits):
    """What each commit changed, for neighbours of a chain, oldest first: a list of (old name, new name, hunks)."""
    for older, newer in zip(reversed(commits[1:]), reversed(commits[:-1])):
        commit = git(repo, "diff-tree", "-r", "-p", "-M", "-w", "-U0", "--no-color", older, newer)
        files, hunk, old = [], None, None
        in_hunk = (0, 0)
        for line in commit.split("\n"):
            left, right = in_hunk
            if left and line.startswith("-"):
                hunk.removed.append(line[1:])
                in_hunk = (left - 1, right)
            elif right and line.startswith("+"):
                hunk.added.append(line[1:])
                in_hunk = (left, right - 1)
            elif line.startswith("diff --git "):
                files.append([None, None, []])
            elif line.startswith("rename from "):
                files[-1][0] = line[12:]
            elif line.startswith("rename to "):
                files[-1][1] = line[10:]
            elif line.startswith("--- ") and files:
                old = line[4:].rstrip("\t")
                files[-1][0] = old[2:] if old.startswith("a/") else None
            elif line.startswith("+++ ") and files:
                new = line[4:].rstrip("\t")
                files[-1][1] = new[2:] if new.startswith("b/") else None
            elif line.startswith("@@ ") and files:
                numbers = re.match(r"@@ -(\d+)(?:,(\d+))? \+(\d+)(?:,(\d+))? @@", line)
                a, b, c, d = (int(n) if n is not None else 1 for n in numbers.groups())
                hunk = Hunk(a, b, c)
                files[-1][2].append(hunk)
                in_hunk = (b, d)
        yield files


def signature(lines, index):
    """A marker with the lines behind it, which tell it from its like."""
    behind = [plain(line) for line in lines[index + 1 : index + 6] if plain(line)]
    return (plain(lines[index]), *behind[:3])


def alike(a, b):
    return difflib.SequenceMatcher(None, "\n".join(a), "\n".join(b), False).ratio()


def share(a, b):
    """How many of the lines of the two are in both."""
    return 2 * len(set(a) & set(b)) / max(1, len(set(a)) + len(set(b)))


def partner(hunk, index, moved):
    """The added line that a removed marker became within its hunk. `moved` has the signatures of all that the commit
    added."""
    kind = marker(hunk.removed[index])
    removed = [i for i, line in enumerate(hunk.removed) if marker(line) == kind]
    added = [i for i, line in enumerate(hunk.added) if marker(line) == kind]
    if kind is None or not added:
        return None
    own = signature(hunk.removed, index)
    # In a hunk that rewrites whole functions, as many markers as before need not be the same ones.
    if len(removed) == len(added) and len(hunk.removed) + len(hunk.added) <= MOST_LINES_BY_COUNT:
        found = added[removed.index(index)]
        there = signature(hunk.added, found)
        # Where another marker that the commit added is more like it, the block moved, and another took its place.
        if own == there or alike(own, there) >= max(alike(own, one) for one in moved):
            return found
        return "unsure"
    matcher = difflib.SequenceMatcher(None, [plain(x) for x in hunk.removed], [plain(x) for x in hunk.added], False)
    for a, b, size in matcher.get_matching_blocks():
        if a <= index < a + size:
            # A lone marker among lines that are all others is no match, since most markers are alike.
            return b + index - a if size > 1 or signature(hunk.added, b) == own else "unsure"
    return "unsure"


def follow(sites, files):
    """Takes all sites, by number, over one commit."""
    by_old = {entry[0]: entry for entry in files if entry[0]}
    added = {plain(line) for entry in files for hunk in entry[2] for line in hunk.added if marker(line)}
    moved = {
        signature(hunk.added, i)
        for entry in files
        for hunk in entry[2]
        for i, line in enumerate(hunk.added)
        if marker(line)
    }
    for number, place in list(sites.items()):
        if not isinstance(place, tuple) or place[0] not in by_old:
            continue
        _, new_name, hunks = by_old[place[0]]
        line, shift, found = place[1], 0, None
        for hunk in hunks:
            if line < hunk.old:
                break
            if line < hunk.old + len(hunk.removed):
                found = hunk
                break
            shift += len(hunk.added) - len(hunk.removed)
        if found is None and new_name is not None:
            sites[number] = (new_name, line + shift)
            continue
        index = line - found.old if found else None
        becomes = partner(found, index, moved) if found and new_name else None
        if isinstance(becomes, int):
            sites[number] = (new_name, found.new + becomes)
        elif becomes == "unsure" or (found and plain(found.removed[index]) in added):
            sites[number] = "unsure"
        else:
            sites[number] = "deleted"


def scan(kelvar, database, tree):
    """The sites after a scan, by number, and those that it left open, since it could not tell where they are."""
    done = subprocess.run([kelvar, "annotate", str(database), "scan", "."], cwd=tree, capture_output=True, check=False)
    events = (line.split("\t") for line in done.stdout.decode("utf-8", "replace").splitlines())
    left_open = {int(event[1]) for event in events if event[0] == "ambiguous"}
    listing = subprocess.run([kelvar, "annotate", str(database), "list"], cwd=tree, capture_output=True, check=True)
    sites = {}
    for line in listing.stdout.decode("utf-8", "replace").splitlines():
        number, kind, _, place = line.split("\t")[:4]
        if kind.startswith("end-"):
            continue
        name, at = re.match(r"(.*?):(\d+)(?::\d+)?$", place).groups()
        sites[int(number)] = (name, int(at))
    return sites, left_open


SOURCES = {".c", ".cc", ".cpp", ".cxx", ".h", ".hh", ".hpp", ".hxx", ".cu", ".cuh", ".f", ".f90", ".inl", ".tcc"}


def checkout(repo, commit, tree):
    """Makes a work tree with the source files of a commit; the repository may lack others. The scan can ask git there."""
    shutil.rmtree(tree, ignore_errors=True)
    tree.mkdir()
    git(tree, "init", "-q")
    objects = repo.resolve() / git(repo, "rev-parse", "--git-path", "objects").strip()
    (tree / ".git/objects/info/alternates").write_text(f"{objects}\n")
    git(tree, "update-ref", "--no-deref", "HEAD", commit)
    git(tree, "read-tree", commit)
    entries = []
    for entry in git(repo, "ls-tree", "-r", "-z", commit).split("\0"):
        if not entry.startswith("100"):
            continue
        about, name = entry.split("\t", 1)
        if Path(name).suffix.lower() in SOURCES:
            entries.append((about.split()[2], name))
    batch = subprocess.run(["git", "-C", str(repo), "cat-file", "--batch"], capture_output=True, check=True,
                           input="\n".join(blob for blob, _ in entries).encode())
    out, at = batch.stdout, 0
    for _, name in entries:
        end = out.index(b"\n", at)
        head = out[at:end].split()
        if head[-1] == b"missing":
            at = end + 1
            continue
        size = int(head[2])
        path = tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(out[end + 1:end + 1 + size])
        at = end + 2 + size


class Blocks:
    """The lines around a place in a tree, without their blanks."""

    def __init__(self, tree):
        self.tree, self.files = tree, {}

    def lines(self, name):
        if name not in self.files:
            path = self.tree / name
            text = path.read_text("utf-8", "replace") if path.exists() else ""
            self.files[name] = text.split("\n")
        return self.files[name]

    def around(self, place):
        name, line = place
        return [plain(text) for text in self.lines(name)[max(0, line - 9) : line + 12]]


def is_elsewhere(block, place, blocks):
    """Whether the code around a site is at another marker of the file. Markers are much alike: where blocks change
    places, a diff takes the marker of one for that of another, and what follows it is led astray."""
    there = blocks.around(place)
    if block == there or alike(block, there) >= LEAST_ALIKE:
        return False
    name = place[0]
    others = (i for i, line in enumerate(blocks.lines(name), 1) if marker(line) and (name, i) != place)
    likely = (other for other in map(blocks.around, ((name, i) for i in others)) if share(block, other) >= LEAST_ALIKE)
    return any(alike(block, other) >= MOST_ALIKE for other in likely)


def leave_out_moved(truth, around, blocks):
    for number, place in truth.items():
        if isinstance(place, tuple) and is_elsewhere(around[number], place, blocks):
            truth[number] = "unsure"


def row(name, distance, sums):
    def percent(part, whole):
        return 100 * sums[part] / sums[whole] if sums[whole] else 0

    print(f"{name:24}{distance:6}{sums['survived']:10}{percent('kept', 'survived'):9.2f}{percent('wrong', 'survived'):9.2f}"
          f"{percent('open', 'survived'):8.2f}{sums['deleted']:9}{percent('returned', 'deleted'):12.2f}{sums['unsure']:8}",
          flush=True)


def measure(kelvar, repo, commits, scratch, verbose):
    """`commits` are a piece of a chain, the newest first."""
    tree = Path(scratch) / "tree"
    database = Path(scratch) / "annotations.db"
    database.unlink(missing_ok=True)
    checkout(repo, commits[-1], tree)
    truth = dict(scan(kelvar, database, tree)[0])
    old = Blocks(tree)
    around = {number: old.around(place) for number, place in truth.items()}
    for files in changes(repo, commits):
        follow(truth, files)
    checkout(repo, commits[0], tree)
    leave_out_moved(truth, around, Blocks(tree))
    found, left_open = scan(kelvar, database, tree)
    counts = Counter()
    for number, place in truth.items():
        if place == "unsure":
            counts["unsure"] += 1
        elif place == "deleted":
            counts["deleted"] += 1
            returned = number in found and number not in left_open
            counts["returned"] += returned
            if verbose and returned:
                print(f"  returned {number}: at {found[number]}", file=sys.stderr)
        else:
            counts["survived"] += 1
            if number not in found:
                outcome = "lost"
            elif found[number] == place:
                outcome = "kept"
            else:
                outcome = "open" if number in left_open else "wrong"
            counts[outcome] += 1
            if verbose and outcome != "kept":
                print(f"  {outcome} {number}: truly at {place}, found at {found.get(number)}", file=sys.stderr)
    return counts


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kelvar")
    parser.add_argument("repositories", nargs="+", type=Path)
    parser.add_argument("--pairs", type=int, default=4, help="pairs of commits for each distance")
    parser.add_argument("--distances", type=int, nargs="+", default=[10, 50, 200])
    parser.add_argument("--stride", type=int, default=200, help="commits between the newer ones of two pairs")
    parser.add_argument("--last-parent", action="store_true", help="go through merges by what they bring in")
    parser.add_argument("--verbose", action="store_true", help="name each site that is not where it should be")
    options = parser.parse_args()
    kelvar = str(Path(options.kelvar).resolve())
    print(f"{'project':24}{'apart':>6}{'survived':>10}{'kept %':>9}{'wrong %':>9}{'open %':>8}{'deleted':>9}{'returned %':>12}{'unsure':>8}")
    totals = {distance: Counter() for distance in options.distances}
    for repo in options.repositories:
        commits = chain(repo, options.last_parent, options.pairs * options.stride + max(options.distances) + 1)
        name = repo.parent.name if repo.name == "repo" else repo.name
        for distance in options.distances:
            sums = Counter()
            for pair in range(options.pairs):
                newer = pair * options.stride
                if newer + distance >= len(commits):
                    break
                with tempfile.TemporaryDirectory() as scratch:
                    sums += measure(kelvar, repo, commits[newer : newer + distance + 1], scratch, options.verbose)
            totals[distance] += sums
            if sums["survived"]:
                row(name, distance, sums)
    for distance, sums in totals.items():
        row("all", distance, sums)


if __name__ == "__main__":
    main()
