#!/usr/bin/env python3
"""How long the page waits for its data: page.py KELVAR PROJECT

Starts `kelvar view` on the project and asks what the page asks, over HTTP as a browser does: the time until the first
rows are there, from the start of the command on; then the pictures, every ordering in both directions, and each filter. Every
question differs from the one before, so none is answered from what the server has. Prints milliseconds.
"""

import http.client
import os
import re
import statistics
import subprocess
import sys
import time
import urllib.parse


class View:
    def __init__(self, kelvar, project):
        self.process = subprocess.Popen([kelvar, "view", project, "--no-open"], stdout=subprocess.PIPE, text=True)
        port, self.token = re.fullmatch(r"http://127\.0\.0\.1:(\d+)/\?token=(\w+)", self.process.stdout.readline().strip()).groups()
        self.connection = http.client.HTTPConnection("127.0.0.1", int(port))

    def ask(self, path, **values):
        self.connection.request("GET", path + "?" + urllib.parse.urlencode(values), headers={"X-Kelvar-Token": self.token})
        answer = self.connection.getresponse()
        body = answer.read()
        if answer.status != 200:
            raise SystemExit(f"{path} {values}: {answer.status} {body.decode()}")
        return len(body)

    def processor_time(self):
        """Milliseconds so far: what is left of the time where others load the machine."""
        fields = open(f"/proc/{self.process.pid}/stat", encoding="ascii").read().rsplit(")", 1)[1].split()
        return 1000 * (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def rows(self, **values):
        begin = time.perf_counter()
        self.ask("/data/rows", **{"from": 0, "count": 100}, **values)
        return 1000 * (time.perf_counter() - begin)


def say(name, times):
    print(f"{name:30} median {statistics.median(times):7.0f}   worst {max(times):7.0f}")


def main(kelvar, project):
    begin = time.perf_counter()
    view = View(kelvar, project)
    loaded = time.perf_counter()
    program = view.ask("/data/program")
    view.rows(sort=3, kind="site")
    begun = time.perf_counter()
    pictures = view.ask("/data/pictures")
    drawn = time.perf_counter()
    print(f"{'first rows':30} {1000 * (begun - begin):14.0f}   of which until it serves {1000 * (loaded - begin):.0f}; processor time {view.processor_time():.0f}; program {program} bytes; load {os.getloadavg()[0]:.1f}")
    print(f"{'pictures':30} {1000 * (drawn - begun):14.0f}   {pictures} bytes")
    say("sort", [view.rows(sort=sort, reverse=reverse, kind="site") for sort in range(15) for reverse in (0, 1)])
    say("kind", [view.rows(sort=3, kind=kind) for kind in ("all", "function", "loop", "task", "site")])
    say("analysis", [view.rows(sort=3, kind="all", analysis=analysis) for analysis in (0, 1, 2, 3, 4)])
    say("match", [view.rows(sort=3, kind="site", match=match) for match in ("exact", "moved", "none")])
    say("find", [view.rows(sort=3, kind="site", text=text) for text in ("site_1", "FILE0001", "none such", "s")])
    view.process.terminate()
    view.process.wait()


main(*sys.argv[1:])
