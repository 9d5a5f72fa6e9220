#!/usr/bin/env python3
"""Fails an #include that goes up or sideways: check_includes.py SOURCE_DIR

The folders form a DAG; what stands here is the whole of it. A header of another folder than those named is a fault,
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
    "tools": ["include", "platform", "src/vocabulary"],
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def sources(folder):
    return sorted(path for path in folder.rglob("*") if path.suffix in (".h", ".cpp"))


def folder_of(name, including, root):
    """The folder that `name` lies in when `including` includes it; None where nobody has it."""
    if (including.parent / name).exists():
        own = including.parent.relative_to(root)
        return next(folder for folder in SEES if own.is_relative_to(folder))
    for folder in SEES:
        if (root / folder / name).exists():
            return folder
        if (root / "src" / name).exists() and ("src/" + name).startswith(folder + "/"):
            return folder
    return next((f for f in SEES if any(path.as_posix().endswith("/" + name) for path in sources(root / f))), None)


def faults(root):
    for folder, sees in SEES.items():
        for path in sources(root / folder):
            for name in INCLUDE.findall(path.read_text(encoding="utf-8")):
                target = folder_of(name, path, root)
                if target is None:
                    yield f"{path.relative_to(root)}: \"{name}\" is nowhere"
                elif target != folder and target not in sees:
                    yield f"{path.relative_to(root)}: \"{name}\" lies in {target}, which {folder} may not see"


def main():
    found = list(faults(Path(sys.argv[1]).resolve()))
    print("\n".join(found) or "no include goes up or sideways")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
