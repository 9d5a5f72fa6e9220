#!/usr/bin/env python3
"""The page in headless Chromium, as a file and served: page_test.py KELVAR SAMPLE SOURCE_ROOT [SCREENSHOT_DIR]"""

import contextlib
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from driver import Browser

KELVAR, SAMPLE, SOURCES = sys.argv[1:4]
SHOTS = sys.argv[4] if len(sys.argv) > 4 else None
ROWS = "[...document.querySelectorAll('#rows .label')].map(cell => cell.textContent)"
HOSTILE = ["</script><script>document.title='owned'</script>", "\"'><img src=x onerror=\"document.title='owned'\">",
           "\u202egnp.exe", "a\0b", "x" * (1 << 20), "<!--<script>", "@DATA@"]

# Text on a ground of too little contrast, by the ratio that WCAG 2 asks of it.
CONTRAST = """
const light = (c) => { c /= 255; return c <= .03928 ? c / 12.92 : ((c + .055) / 1.055) ** 2.4; };
const lum = ([r, g, b]) => .2126 * light(r) + .7152 * light(g) + .0722 * light(b);
const parts = (text) => (text.match(/[\\d.]+/g) ?? [0, 0, 0, 0]).map(Number);
const srgb = (text) => text.startsWith("color(") ? parts(text.replace("srgb", "")).map((v, i) => i < 3 ? 255 * v : v) : parts(text);
const ground = (e) => { for (; e; e = e.parentElement) { const c = srgb(getComputedStyle(e).backgroundColor); if (c.length < 4 || c[3] === 1) return c; } return [255, 255, 255]; };
const low = [];
for (const e of document.querySelectorAll("body *")) {
  if (![...e.childNodes].some((n) => n.nodeType === 3 && n.data.trim()) || !e.getClientRects().length || e.closest("svg, script, option")) continue;
  const [a, b] = [lum(srgb(getComputedStyle(e).color)), lum(ground(e))].sort((x, y) => y - x);
  if ((a + .05) / (b + .05) < 4.5) low.push(e.tagName + "." + e.className + ": " + e.textContent.slice(0, 30) + " " + ((a + .05) / (b + .05)).toFixed(2));
}
return low;
"""


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def run(*arguments, **options):
    return subprocess.run([KELVAR, *arguments], check=True, capture_output=True, **options).stdout


@contextlib.contextmanager
def serving(folder, *more):
    server = subprocess.Popen([KELVAR, "view", folder, "--no-open", *more], stdout=subprocess.PIPE, text=True)
    try:
        yield server
    finally:
        server.send_signal(signal.SIGINT)
        server.wait(10)
        server.stdout.close()


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.browser = Browser(free_port()).__enter__()
        cls.browser.size(1400, 1200)
        page = Path(cls.folder.name, "page.html")
        page.write_bytes(run("report", SAMPLE, "--format", "html", "--source-root", SOURCES))
        cls.server = subprocess.Popen([KELVAR, "view", SAMPLE, "--source-root", SOURCES, "--no-open"], stdout=subprocess.PIPE, text=True)
        cls.served = cls.server.stdout.readline().strip()
        cls.pages = {"file": page.as_uri(), "served": cls.served}

    @classmethod
    def tearDownClass(cls):
        cls.server.send_signal(signal.SIGINT)
        assert cls.server.wait(5) == 0
        cls.browser.__exit__()
        cls.folder.cleanup()

    def test_sorts_by_every_ordering_as_the_library_does(self):
        for _, address in self.pages.items():
            for order in range(15):
                report = json.loads(run("report", SAMPLE, "--format", "json", "--sort", str(order), "--columns", "label,annotationKind",
                                        "--hide-detail-kind", "1", "--hide-detail-kind", "2"))
                want = [item["label"] for item in report["items"] if not item["annotationKind"].startswith("end")]
                self.browser.open(f"{address}#kind=site&sort={order}")
                self.assertEqual(self.browser.js("return " + ROWS), want, order)

    def test_sorts_by_a_click_and_turns_around_by_another(self):
        for _, address in self.pages.items():
            self.browser.open(address)
            for title in self.browser.js("return [...document.querySelectorAll('#head button')].map(b => b.dataset.order)"):
                self.browser.js("document.querySelector(`#head [data-order='${arguments[0]}']`).click()", title)
                self.browser.until(f"document.querySelector(`#head [data-order='{title}']`).parentElement.getAttribute('aria-sort') !== 'none'")
            self.browser.js("document.querySelector(\"#head [data-order='2']\").click()")
            self.browser.until(f"{ROWS}[0] === 'brighten'")
            self.browser.js("document.querySelector(\"#head [data-order='2']\").click()")
            self.browser.until(f"{ROWS}[0] === 'smooth'")

    def test_the_menu_has_every_ordering_in_both_directions_and_a_link_keeps_it(self):
        choose = "const [id, key, value] = arguments; const e = document.getElementById(id); e[key] = value; e.dispatchEvent(new Event('change'))"
        state = "[document.getElementById('sort').value, document.getElementById('reverse').checked].join()"
        for _, address in self.pages.items():
            self.browser.open(address)
            self.assertEqual(self.browser.js("return document.getElementById('sort').options.length"), 15)
            for order in range(15):
                self.browser.js(choose, "sort", "value", str(order))
                for reverse in (True, False):
                    self.browser.js(choose, "reverse", "checked", reverse)
                    self.browser.until("(new URLSearchParams(location.hash.slice(1)).get('sort') ?? '3') + ',' "
                                       "+ (new URLSearchParams(location.hash.slice(1)).get('reverse') === '1') === arguments[0]", f"{order},{str(reverse).lower()}")
            self.browser.js(choose, "sort", "value", "9")
            self.browser.js(choose, "reverse", "checked", True)
            self.browser.until("location.hash.includes('sort=9') && location.hash.includes('reverse=1')")
            self.browser.open(self.browser.js("return location.href"))
            self.assertEqual(self.browser.js("return " + state), "9,true")

    def test_filters_and_keeps_its_state_in_the_address(self):
        for _, address in self.pages.items():
            self.browser.open(address + "#kind=site")
            self.browser.js("const t = document.getElementById('text'); t.value = 'SHADES'; t.dispatchEvent(new Event('input'))")
            self.browser.until(f"{ROWS}.join() === 'count shades'")
            self.browser.open(address + "#kind=site&text=PIXELS.cpp")
            self.assertEqual(self.browser.js(f"return {ROWS}.length"), 7)
            self.browser.open(address + "#kind=site&text=shades")
            self.browser.js("document.querySelector('#rows .row').click()")
            self.browser.until("document.querySelectorAll('#source tr').length > 50")
            self.assertIn("++bins", self.browser.js("return document.querySelector('#source [data-line=\"57\"]').textContent"))
            link = self.browser.js("return location.href")
            facts = self.browser.js("return document.getElementById('detail').textContent")
            self.assertIn("matches: seen at pixels.cpp:56, where the site is now", facts)
            self.browser.open(link)
            self.browser.until(f"{ROWS}.join() === 'count shades'")
            self.browser.until("document.getElementById('detail').textContent === arguments[0]", facts)
            self.browser.js("history.back()")
            for kind, many in (("task", 1), ("function", 10), ("loop", 10)):
                self.browser.open(f"{address}#kind={kind}")
                self.assertGreaterEqual(self.browser.js(f"return {ROWS}.length"), many, kind)

    def test_is_used_by_the_keyboard_alone(self):
        down, end, enter, tab = "\ue015", "\ue010", "\ue007", "\ue004"
        for _, address in self.pages.items():
            self.browser.open(address + "#kind=site")
            self.browser.js("document.getElementById('scroll').focus()")
            self.browser.keys(down, down)
            self.browser.until("document.getElementById('detail-title').textContent === 'smooth'")
            self.browser.keys(end)
            self.browser.until("document.getElementById('detail-title').textContent === 'sharpen'")
            self.browser.keys(enter)
            self.browser.until("document.activeElement.id === 'detail'")
            self.browser.js("document.activeElement.blur()")
            reached = set()
            for _ in range(60):
                self.browser.keys(tab)
                reached.add(self.browser.js("const e = document.activeElement; return e.id || e.className.baseVal || e.className || e.dataset.order"))
            for one in ("text", "kind", "sort", "scroll", "source", "3"):
                self.assertIn(one, reached)

    def test_both_pictures_mark_where_to_begin_at_any_width(self):
        outside = """const plot = document.getElementById("plot").getBoundingClientRect();
          return [...document.querySelectorAll("#plot text, #plot circle")].map((one) => one.getBoundingClientRect())
            .filter((one) => one.left < plot.left || one.right > plot.right || one.top < plot.top || one.bottom > plot.bottom).length;"""
        for width in (1400, 800, 480):
            self.browser.size(width, 1200)
            self.browser.open(self.pages["file"])
            self.browser.until("document.querySelector('#tree .first b').textContent === 'column mean'")
            self.assertEqual(self.browser.js("return document.querySelector('#plot .name.first').textContent"), "column mean: begin here")
            self.assertIn("races", self.browser.js("return document.querySelector('#tree .races').ariaLabel"))
            self.assertEqual(self.browser.js(outside), 0, width)
            self.assertEqual(self.browser.js("const t = document.getElementById('tree'); return [t.scrollWidth - t.clientWidth, t.scrollHeight - t.clientHeight]"), [0, 0], width)
        self.browser.size(1400, 1200)

    def test_is_accessible_in_dark_and_light_wide_and_narrow(self):
        for name, address in self.pages.items():
            for scheme in ("light", "dark"):
                for width in (1400, 480):
                    self.browser.size(width, 1200)
                    self.browser.colours(scheme)
                    self.browser.open(address + "#kind=site&site=s7")
                    self.browser.until("document.querySelectorAll('#source tr').length > 50")
                    self.assertEqual(self.browser.js(CONTRAST), [], scheme)
                    self.assertLessEqual(self.browser.js("return document.documentElement.scrollWidth"), width)
                    if width > 1000:
                        self.assertLessEqual(self.browser.js("const grid = document.getElementById('grid'); return grid.scrollWidth - grid.clientWidth"), 0)
                    if SHOTS and name == "file":
                        self.browser.screenshot(f"{SHOTS}/page-{scheme}-{width}.png")
            for node in self.browser.chrome("Accessibility.getFullAXTree")["nodes"]:
                role = node.get("role", {}).get("value")
                if role in ("button", "combobox", "searchbox", "checkbox", "grid", "region", "columnheader") and not node.get("ignored"):
                    self.assertTrue(node.get("name", {}).get("value"), node)
        self.browser.size(1400, 1200)
        self.browser.colours("light")

    def test_what_comes_from_files_is_text(self):
        folder = Path(self.folder.name, "hostile")
        (folder / "survey").mkdir(parents=True, exist_ok=True)
        details = [{"detailKind": 1, "label": label, "file": f"src/{label[:40]}.cpp", "line": at + 1, "survey": {"cpuTime": 1.0 + at, "priority": 1, "id": at}}
                   for at, label in enumerate(HOSTILE)]
        (folder / "survey/result.json").write_text('{"formatVersion": 1}')
        (folder / "survey/collection.json").write_text(json.dumps({"formatVersion": 1, "dataKind": "survey", "details": details}))
        page = Path(self.folder.name, "hostile.html")
        page.write_bytes(run("report", folder, "--format", "html"))
        with serving(folder) as server:
            for address in (page.as_uri(), server.stdout.readline().strip()):
                self.browser.open(address + "#kind=all&sort=3&reverse=1")
                self.assertEqual(self.browser.js("return [...document.querySelectorAll('#head > div')].map(one => one.textContent.slice(0, 5))"),
                                 ["Site", "Kind", "Where", "Time ", "Share", "Own"])  # no other analysis, and no annotation
                self.assertEqual(self.browser.js(f"return {ROWS}.map(text => text.slice(0, 40))"),
                                 [label.replace("\0", "\ufffd")[:40] for label in HOSTILE])
                for at in range(len(HOSTILE)):
                    self.browser.js("document.querySelectorAll('#rows .row')[arguments[0]].click()", at)
                    self.browser.until("document.getElementById('detail-title').textContent.slice(0, 40) === arguments[0]",
                                       HOSTILE[at].replace("\0", "\ufffd")[:40])
                self.assertIn("No result of: vectorization, suitability, dependencies, memory access", self.browser.js("return document.getElementById('facts').textContent"))
                self.assertNotEqual(self.browser.js("return document.title"), "owned")
                self.assertEqual(self.browser.js("return document.images.length + document.scripts.length"), 2)
                self.assertEqual([text for text in self.browser.complaints() if " 404 " not in text and "favicon" not in text], [])

    def test_follows_when_results_change(self):
        folder = Path(self.folder.name, "changing")
        folder.mkdir()
        database = folder / "annotations.db"
        run("annotate", database, "add", "--kind", "task", "--label", "first", "--at", "a.cpp:1")
        with serving(folder) as server:
            self.browser.open(server.stdout.readline().strip())
            self.browser.until(f"{ROWS}.join() === 'first'")
            run("annotate", database, "relabel", "1", "second")
            self.browser.until(f"{ROWS}.join() === 'second'")


    def test_shows_what_changed_to_another_project_as_text(self):
        after = Path(self.folder.name, "after")
        shutil.copytree(SAMPLE, after)
        collection = after / "dependencies" / "collection.json"
        found = json.loads(collection.read_text())
        for detail in found["details"]:
            detail["dependencies"]["errors"] = 0 if detail["dependencies"]["errors"] else 3
        found["details"].append({"label": HOSTILE[0], "file": "x.cpp", "line": 3, "dependencies": {"errors": 1, "warnings": [0, 0]}})
        collection.write_text(json.dumps(found))
        with serving(SAMPLE, "--with", str(after), "--source-root", SOURCES) as server:
            address = server.stdout.readline().strip()
            self.browser.open(address)
            self.browser.complaints()  # of the page before, whose server has ended
            self.assertFalse(self.browser.js("return document.getElementById('compare').hidden"))
            text = self.browser.js("return document.getElementById('compare-alone').textContent")
            self.assertIn(HOSTILE[0], text)
            self.assertNotEqual(self.browser.js("return document.title"), "owned")
            self.assertIn("3", self.browser.js("return document.querySelector('#compare-changed .bad').textContent"))
            label = self.browser.js("const link = document.querySelector('#compare-changed button'); link.click(); return link.textContent")
            self.browser.until("document.getElementById('detail-title').textContent === arguments[0]", label)
            for scheme in ("light", "dark"):
                self.browser.colours(scheme)
                self.browser.open(address)
                self.assertEqual(self.browser.js(CONTRAST), [], scheme)
                if SHOTS:
                    self.browser.screenshot(f"{SHOTS}/compare-{scheme}.png")
            self.browser.colours("")
            self.assertEqual(self.browser.complaints(), [])
        self.browser.open(self.served)
        self.assertTrue(self.browser.js("return document.getElementById('compare').hidden"))


if __name__ == "__main__":
    os.environ["SOURCE_DATE_EPOCH"] = "0"
    unittest.main(argv=sys.argv[:1], verbosity=1)
