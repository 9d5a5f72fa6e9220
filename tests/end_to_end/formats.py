#!/usr/bin/env python3
"""Holds the formats of a report against one another: formats.py KELVAR SCHEMA figures|order PROJECT

figures: text, JSON and CSV tell the same, and JSON is what the schema says.
order:   rows do not depend on the order in which the analyses listed their details.
"""

import csv
import io
import json
import random
import re
import subprocess
import sys
from pathlib import Path

import jsonschema

KINDS = ["survey", "surveyVectorization", "suitability", "dependencies", "map"]
MARKS = dict(zip(["not present", "unusable", "no match current", "approximate match current",
                  "exact match current", "current"], "-!?~=+"))
FILLERS = [13, 20, 33, 16, 16]


def report(kelvar, project, *options):
    return subprocess.run([kelvar, "report", project, *options], stdout=subprocess.PIPE, check=True).stdout


def cell(item, kind):
    """What the text prints of an analysis' values; None for a filler."""
    get = (item[kind] or {}).get
    if kind == "survey" and get("cpuTime") is not None:
        return "%7.2f %1d %2d " % (get("cpuTime"), get("priority"), get("id"))
    if kind == "surveyVectorization" and get("selfTime") is not None:
        return "%1d %7.2f %7.2f %6d %1d " % tuple(map(get, ["state", "selfTime", "totalTime", "id", "priority"]))
    if kind == "suitability" and get("selfTime") is not None:
        if item["annotationKind"] != "parallel":
            return "%6.2fs%26s" % (get("selfTime"), "")
        letters = "".join(pair[get("flags") >> bit & 1] for bit, pair in enumerate(["lh", "lh", "nc", "lh", "lh"]))
        return "%6.2fs %2d %s %7.2f %7.2f " % (get("selfTime"), get("cores"), letters, get("siteMaxGain"),
                                               get("totalMaxGain"))
    if kind == "dependencies" and get("errors") is not None:
        return "%7d %7d " % (get("errors"), sum(get("warnings")))
    if kind == "map" and get("strides") is not None:
        return "%7d / %7d / %7d " % tuple(get("strides"))
    return None


def until_zero(text):
    return text.encode().split(b"\0")[0]


def text_row(item, kinds):
    names = {"site": (item["annotationKind"] or "").replace("-", " "), "hot-spot": "HotSpotHotSpotVectorization",
             "loop": "(null)"}
    at = item["storedPlace"]
    leaf = at["file"].rsplit("/", 1)[-1] if at else ""
    place = until_zero(leaf) + b"".join(b":%d" % n for n in [at["line"], at["column"]][:1 + (at["column"] != 0)]) \
        if leaf else b""
    row = b"%s %d " % (MARKS[item["status"]].encode(), sum(item[kind]["count"] for kind in KINDS))
    row += b"%-13.13s %-16.16s %-28.28s " % (names[item["detailKind"]].encode(), until_zero(item["label"]), place)
    for kind, filler in zip(KINDS, FILLERS):
        if kind in kinds:
            text = cell(item, kind)
            row += b"%s %d " % (MARKS[item[kind]["status"]].encode(), item[kind]["count"])
            row += text[:255].encode() if text is not None else b" " * filler
    return row + b"\n"


def at_path(item, path):
    for key in path.split("."):
        item = item if item is None else item[int(key)] if key.isdigit() else item[key]
    return item


def check_figures(kelvar, schema, project):
    data = json.loads(report(kelvar, project, "--format", "json"))
    schema = json.loads(Path(schema).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    jsonschema.Draft202012Validator(schema).validate(data)
    assert data["items"], "nothing to compare"

    kinds = [kind for kind in KINDS if data["analyses"][kind]["status"] != "not present"]
    text = report(kelvar, project, "--verbose")
    rows = b"".join(text_row(item, kinds) for item in data["items"])
    figures = data["program"]
    if figures["programMaxGain"] is None:  # then the text must say that it is none
        figures["programMaxGain"] = float(re.search(rb"prog max gain: (-?(?:inf|nan))\n", text)[1])
    program = "num procs: %(processors)d\nparadigm: %(threadingParadigm)d\nprog max gain: %(programMaxGain)f\n"
    aggregate = "\naggregate results: %(count)d\n"
    host = "\nhostname: %(hostName)s\ncpu count: %(cpuCount)d\ncpu freq: %(cpuFrequency)d\n"
    assert rows + b"\n" + (program % figures).encode() + (aggregate % data["aggregate"]).encode() in text, text
    assert (host % data["aggregate"]).encode() in text, text
    for kind, name in zip(KINDS, ["survey", "surveyvectorization", "suitability", "dependencies", "map"]):
        assert ("%s - %s\n" % (name, data["analyses"][kind]["status"])).encode() in text, kind

    raw = report(kelvar, project, "--format", "csv")
    table = list(csv.reader(io.StringIO(raw.decode("utf-8"), newline=""), strict=True))
    assert len(table) == 1 + len(data["items"]), "rows of CSV"
    for row, item in zip(table[1:], data["items"]):
        for name, value in zip(table[0], row, strict=True):
            want = at_path(item, name)
            same = value == "" if want is None else value == want if isinstance(want, str) else type(want)(value) == want
            assert same, (name, value, want)
    names = ",".join(reversed(table[0]))
    assert raw.split(b"\r\n")[0].decode() == ",".join(table[0])
    assert report(kelvar, project, "--format", "csv", "--columns", names, "--top", "1").startswith(names.encode())


def check_order(kelvar, schema, project):
    files = sorted(Path(project).rglob("collection.json"))
    assert files

    def orders():
        return [json.loads(report(kelvar, project, "--format", "json", "--sort", str(ordering)))["items"]
                for ordering in range(15)]
    want = orders()
    assert len(want[0]) > 1
    for seed in range(4):
        for file in files:
            collection = json.loads(file.read_text(encoding="utf-8"))
            random.Random(seed).shuffle(collection["details"])
            file.write_text(json.dumps(collection), encoding="utf-8")
        for ordering, (got, first) in enumerate(zip(orders(), want)):
            differing = next((i for i, (a, b) in enumerate(zip(got, first)) if a != b), None)
            assert got == first, (seed, ordering, differing, len(got), len(first))


if __name__ == "__main__":
    {"figures": check_figures, "order": check_order}[sys.argv[3]](sys.argv[1], sys.argv[2], sys.argv[4])
    print("ok")
