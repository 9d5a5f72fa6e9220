#!/usr/bin/env python3
"""Whether rows depend on the order in which the analyses listed their details: row_order.py KELVAR PROJECT"""

import json
import random
import subprocess
import sys
from pathlib import Path

ORDERINGS = range(15)


def rows(kelvar, project, ordering):
    command = [kelvar, "report", project, "--format", "json", "--sort", str(ordering)]
    return json.loads(subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout)["items"]


def main(kelvar, project):
    want = [rows(kelvar, project, ordering) for ordering in ORDERINGS]
    assert len(want[0]) > 1
    for seed in range(4):
        for file in sorted(Path(project).rglob("collection.json")):
            collection = json.loads(file.read_text(encoding="utf-8"))
            random.Random(seed).shuffle(collection["details"])
            file.write_text(json.dumps(collection), encoding="utf-8")
        for ordering in ORDERINGS:
            assert rows(kelvar, project, ordering) == want[ordering], (seed, ordering)


if __name__ == "__main__":
    main(*sys.argv[1:])
