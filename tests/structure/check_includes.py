#!/usr/bin/env python3
"""Fails an #include that goes up or sideways: check_includes.py SOURCE_DIR

The folders form a DAG, which is listed here. A header of another folder than those named is a fault,
and so is a quoted header that no folder has.
"""

import re
import sys
from pathlib import Path

# Who may look at whom, besides itself. Texts such as "items/SummaryItems.h" and names alone both count.
SEES = {
    "src/vocabulary": [],
    "include": ["src/vocabulary"],
    "src/items": ["include", "src/vocabulary"],
    "src/results": ["src/items", "include", "src/vocabulary"],
    "src/view": ["src/items", "include", "src/vocabulary"],
    "src/data": ["src/results", "src/view", "src/items", "include", "src/vocabulary"],
    "src/loader": ["include", "src/vocabulary"],
    "platform": ["src/vocabulary"],
    "readers": ["platform", "src/vocabulary"],
    "sources": ["src/vocabulary"],
    "page": ["include", "platform", "src/vocabulary"],
    "compare": ["sources", "src/vocabulary"],
    "tools": ["compare", "page", "include", "readers", "sources", "platform", "src/vocabulary"],
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def faults(root):
    files = {folder: [p for p in (root / folder).rglob("*") if p.suffix in (".h", ".cpp")] for folder in SEES}
    for folder, sees in SEES.items():
        for path in sorted(files[folder]):
            for name in INCLUDE.findall(path.read_text(encoding="utf-8")):
                lies_in = [f for f in SEES if any(file.as_posix().endswith("/" + name) for file in files[f])]
                if not {folder, *sees}.intersection(lies_in):
                    where = " and ".join(lies_in) or "no folder"
                    yield f"{path.relative_to(root)}: \"{name}\" lies in {where}, and {folder} may not see that"


def main():
    found = list(faults(Path(sys.argv[1]).resolve()))
    print("\n".join(found) or "no include goes up or sideways")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
