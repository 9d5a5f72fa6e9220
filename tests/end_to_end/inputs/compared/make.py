"""Makes two versions of a project, each measured five times: make.py KELVAR, in the folder above.

compared/old1 to old5 and compared/new1 to new5 have a database each; the new sites are a few lines further down. In the
new version `blur` takes a fifth longer, its loop is no longer vectorised, the race in `count` is gone and one in `merge`
came, `fold` walks with another stride, `trim` was removed and `save` is new. compared/same and compared/again are the old
version measured twice. Times are off by up to a per cent, always the same way.
"""
import json
import os
import shutil
import subprocess
import sys

KELVAR = sys.argv[1]
SITES = [("blur", 10, 2.0), ("count", 30, 1.0), ("fold", 50, 0.8), ("merge", 70, 0.5), ("trim", 90, 0.1),
         ("scale", 110, 0.3), ("load", 130, 0.4)]
NEW = [(label, line + 4, time * (1.2 if label == "blur" else 1)) for label, line, time in SITES if label != "trim"]
NEW.append(("save", 154, 0.2))
# Neighbours of one kind may be taken for one site.
KINDS = {label: (0, 4)[number % 2] for number, label in enumerate([*(site[0] for site in SITES), "save"])}
KIND_NAMES = {0: "parallel", 4: "taskloop"}


def off(run, site):
    return 1 + ((run * 37 + site * 53 + run * site * 11) % 21 - 10) / 1000


def write(folder, kind, details):
    os.makedirs(folder, exist_ok=True)
    head = {"formatVersion": 1, "dataKind": kind, "details": details}
    with open(f"{folder}/collection.json", "w", encoding="utf-8") as out:
        json.dump(head, out)
    if kind != "surveyvectorization":
        with open(f"{folder}/result.json", "w", encoding="utf-8") as out:
            json.dump({"formatVersion": 1}, out)


def result(folder, sites, run, new):
    def at(label, line, **figures):
        return {"label": label, "file": "src/pixels.cpp", "line": line, **figures}

    def detail(label, line, **figures):
        return at(label, line, annotationKind=KINDS[label], **figures)

    write(f"{folder}/survey", "survey",
          [detail(label, line, survey={"cpuTime": round(time * off(run, number), 6), "priority": 1, "id": number})
           for number, (label, line, time) in enumerate(sites)])
    line = sites[0][1] + 2
    write(f"{folder}/survey/surveyvectorization", "surveyvectorization",
          [at("loop in blur", line, detailKind=2, surveyVectorization={
              "state": 0 if new else 1, "selfTime": 1.5, "totalTime": 1.5, "id": 1, "priority": 1})])
    races = {"count": 0 if new else 2, "merge": 1 if new else 0}
    lines = {label: line for label, line, _ in sites}
    write(f"{folder}/dependencies", "dependencies",
          [detail(label, lines[label], dependencies={"errors": errors, "warnings": [0, 0]})
           for label, errors in races.items()])
    write(f"{folder}/map", "map",
          [detail("fold", lines["fold"], map={"strides": [10, 90, 0] if new else [100, 0, 0]})])


def annotate(folder, sites):
    for label, line, _ in sites:
        subprocess.run([KELVAR, "annotate", f"{folder}/annotations.db", "add", "--kind", KIND_NAMES[KINDS[label]],
                        "--label", label, "--at", f"src/pixels.cpp:{line}"],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


for name, sites, first, new in (("old", SITES, 1, False), ("new", NEW, 6, True), ("same", SITES, 1, False),
                                ("again", SITES, 6, False)):
    for run in range(5):
        folder = f"compared/{name}{run + 1}"
        result(folder, sites, first + run, new)
        if run == 0:
            annotate(folder, sites)
        else:
            shutil.copy(f"compared/{name}1/annotations.db", folder)
