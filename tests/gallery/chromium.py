"""A browser to be driven: chromium without a window, told what to do over a pair of pipes."""

import base64
import json
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds; machines that are busy with other tests are slow


class BrowserError(Exception):
    pass


class Chromium:
    """A running browser with one page. Ends with the `with` that it is made in."""

    def __init__(self, program):
        self._profile = tempfile.mkdtemp(prefix="styles-browser-")
        to_browser, self._to = os.pipe()
        self._from, from_browser = os.pipe()
        self._process = subprocess.Popen(
            [program, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-extensions",
             "--force-device-scale-factor=1", "--lang=en", f"--user-data-dir={self._profile}",
             "--remote-debugging-pipe", "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True,
            close_fds=False, preexec_fn=lambda: self._hand_over(to_browser, from_browser))
        os.close(to_browser)
        os.close(from_browser)
        self._buffer = b""
        self._last_id = 0
        self._session = None
        self.events = []
        targets = self.call("Target.getTargets")["targetInfos"]
        page = next(target["targetId"] for target in targets if target["type"] == "page")
        self._session = self.call("Target.attachToTarget", targetId=page, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")
        self.call("Emulation.setFocusEmulationEnabled", enabled=True)

    def _hand_over(self, to_browser, from_browser):
        # Both are moved out of the way first: one may be where the other has to go.
        read = os.dup(to_browser)
        write = os.dup(from_browser)
        high_read, high_write = os.dup(read), os.dup(write)
        os.dup2(high_read, 3)
        os.dup2(high_write, 4)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            os.killpg(self._process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self._process.wait()
        os.close(self._to)
        os.close(self._from)
        shutil.rmtree(self._profile, ignore_errors=True)

    def _read(self, deadline):
        while b"\0" not in self._buffer:
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self._from], [], [], left)[0]:
                raise BrowserError("the browser does not answer")
            block = os.read(self._from, 1 << 16)
            if not block:
                raise BrowserError("the browser has ended")
            self._buffer += block
        message, self._buffer = self._buffer.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **params):
        """Has the browser do something; what happens meanwhile is kept in `events`."""
        self._last_id += 1
        message = {"id": self._last_id, "method": method, "params": params}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._to, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + PATIENCE
        while True:
            answer = self._read(deadline)
            if answer.get("id") == self._last_id:
                if "error" in answer:
                    raise BrowserError(f"{method}: {answer['error']['message']}")
                return answer["result"]
            if "method" in answer:
                self.events.append(answer)

    def open(self, address):
        """Opens a page and waits until it is loaded and its scripts have run."""
        self.call("Page.navigate", url="about:blank")
        self.events.clear()
        self.call("Page.navigate", url=address)
        self.wait_for("document.readyState === 'complete' && location.protocol !== 'about:'")
        # Keys and clicks that come before the first picture may be lost.
        self.evaluate("new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => done())))")

    def evaluate(self, expression):
        """The value of an expression of JavaScript; a promise is waited for."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise BrowserError(f"{expression}: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def wait_for(self, condition):
        deadline = time.monotonic() + PATIENCE
        while not self.evaluate(condition):
            if time.monotonic() > deadline:
                raise BrowserError(f"this does not come about: {condition}")
            time.sleep(0.02)

    def press(self, key, shift=False):
        """Presses a key, as the user of a keyboard does: "ArrowDown", "Enter", "a"."""
        codes = {"Enter": 13, "Tab": 9, "Escape": 27, " ": 32, "End": 35, "Home": 36, "ArrowLeft": 37, "ArrowUp": 38,
                 "ArrowRight": 39, "ArrowDown": 40}
        event = {"key": key, "windowsVirtualKeyCode": codes.get(key) or ord(key.upper()), "modifiers": 8 if shift else 0}
        text = "\r" if key == "Enter" else key if len(key) == 1 else None
        self.call("Input.dispatchKeyEvent", type="keyDown" if text else "rawKeyDown", **event, **({"text": text} if text else {}))
        self.call("Input.dispatchKeyEvent", type="keyUp", **event)

    def type(self, text):
        self.call("Input.insertText", text=text)

    def click(self, element):
        """Clicks the middle of the element that an expression gives."""
        x, y = self.evaluate(
            f"(() => {{ const e = {element}; e.scrollIntoView({{block: 'center'}}); const b = e.getBoundingClientRect();"
            " return [b.x + b.width / 2, b.y + b.height / 2]; })()")
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def set_window(self, width, height):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def set_theme(self, theme):
        """"light" or "dark", as the user's system says."""
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": theme}])

    def screenshot(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"]))
