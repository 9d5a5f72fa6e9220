"""Headless Chromium over the WebDriver protocol, with the standard library alone."""

import base64
import json
import subprocess
import time
import urllib.error
import urllib.request


class Browser:
    def __init__(self, port):
        self.base = f"http://127.0.0.1:{port}"
        self.driver = subprocess.Popen(["chromedriver", f"--port={port}"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        options = {"args": ["--headless=new", "--no-sandbox", "--disable-gpu"]}
        wanted = {"goog:loggingPrefs": {"browser": "ALL"}, "goog:chromeOptions": options}
        self.wait(lambda: urllib.request.urlopen(self.base + "/status"), OSError)
        self.session = "/session/" + self.call("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})["sessionId"]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.call("DELETE", self.session)
        finally:
            self.driver.terminate()
            self.driver.wait()

    @staticmethod
    def wait(answer, refused=(), seconds=30):
        """What `answer` comes to, once that is true and does not raise what it may."""
        end = time.monotonic() + seconds
        while True:
            try:
                value = answer()
                if value:
                    return value
            except refused:
                pass
            if time.monotonic() > end:
                raise AssertionError("waited in vain")
            time.sleep(0.05)

    def call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            return json.load(urllib.request.urlopen(request))["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(error.read().decode()[:400]) from error

    def open(self, address):
        self.call("POST", self.session + "/url", {"url": "about:blank"})
        self.call("POST", self.session + "/url", {"url": address})
        self.wait(lambda: self.js("return document.documentElement.dataset.ready === '1'"))

    def js(self, text, *values):
        return self.call("POST", self.session + "/execute/sync", {"script": text, "args": list(values)})

    def until(self, text, *values):
        return self.wait(lambda: self.js("return " + text, *values))

    def keys(self, *keys):
        presses = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.call("POST", self.session + "/actions", {"actions": [{"type": "key", "id": "keys", "actions": presses}]})

    def chrome(self, command, **values):
        return self.call("POST", self.session + "/goog/cdp/execute", {"cmd": command, "params": values})

    def size(self, width, height):
        self.call("POST", self.session + "/window/rect", {"width": width, "height": height})

    def colours(self, scheme):
        self.chrome("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def complaints(self):
        entries = self.call("POST", self.session + "/se/log", {"type": "browser"})
        return [entry["message"] for entry in entries if entry["level"] in ("SEVERE", "WARNING")]

    def screenshot(self, path):
        with open(path, "wb") as out:
            out.write(base64.b64decode(self.call("GET", self.session + "/screenshot")))
