#!/usr/bin/env python3
"""How long the page as a file takes to open: page_file.py KELVAR PROJECT

Writes it by `kelvar report --format html`, and opens it in headless Chromium, five times. Says how large it is, and the
milliseconds from the start of the navigation until the file is parsed, until it is loaded and until the first rows are
painted, and how much memory its script takes then.
"""

import os
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/browser"))
from driver import Browser  # noqa: E402

# A frame is painted before the second one after it is asked for.
WATCH = """
window.times = {};
const look = () => {
  if (document.querySelector("#rows .row:not(.waiting)")) requestAnimationFrame(() => setTimeout(() => { times.rows = performance.now(); }));
  else requestAnimationFrame(look);
};
document.addEventListener("DOMContentLoaded", () => { times.parsed = performance.now(); });
addEventListener("load", () => { times.loaded = performance.now(); });
requestAnimationFrame(look);
"""


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def main(kelvar, project):
    with tempfile.TemporaryDirectory() as folder, Browser(free_port()) as browser:
        page = Path(folder, "page.html")
        begin = time.perf_counter()
        page.write_bytes(subprocess.run([kelvar, "report", project, "--format", "html"], check=True, capture_output=True).stdout)
        print(f"written in {1000 * (time.perf_counter() - begin):.0f} ms, {page.stat().st_size / 1e6:.2f} MB")
        browser.size(1400, 1200)
        browser.chrome("Page.addScriptToEvaluateOnNewDocument", source=WATCH)
        for _ in range(5):
            browser.open(page.as_uri())
            browser.until("window.times.rows > 0")
            times = browser.js("return { ...times, megabytes: performance.memory.usedJSHeapSize / 1e6 }")
            print("   ".join(f"{name} {value:.0f}" for name, value in times.items()), f"  load {os.getloadavg()[0]:.1f}")


main(*sys.argv[1:])
