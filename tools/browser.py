"""Chromium without a window, driven over its debugging pipe with the standard library alone."""

import json
import os
import shutil
import subprocess
import tempfile

PROGRAM = next(filter(None, map(shutil.which, ("chromium", "chromium-browser", "google-chrome"))), None)


class Browser:
    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()
        command = [PROGRAM, "--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
                   "--remote-debugging-pipe", f"--user-data-dir={self._folder.name}"]
        # It reads the pipe that is its descriptor 3 and writes to 4.
        self._process = subprocess.Popen(
            ["sh", "-c", 'exec "$@" 3<&%d 4>&%d' % (to_browser, from_browser), "sh", *command],
            pass_fds=(to_browser, from_browser), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self._rest, self._number, self._session, self.requests = b"", 0, None, []
        target = self.send("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.send("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Network"):
            self.send(domain + ".enable")
        self.send("Emulation.setDeviceMetricsOverride", width=1400, height=1000,
                  deviceScaleFactor=1, mobile=False)

    def close(self):
        self._process.kill()
        self._process.wait()
        os.close(self._out)
        os.close(self._in)
        self._folder.cleanup()

    def _receive(self):
        while b"\0" not in self._rest:
            piece = os.read(self._in, 1 << 20)
            if not piece:
                raise EOFError("the browser has ended")
            self._rest += piece
        message, _, self._rest = self._rest.partition(b"\0")
        message = json.loads(message)
        if message.get("method") == "Network.requestWillBeSent":
            self.requests.append(message["params"]["request"]["url"])
        return message

    def send(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._out, json.dumps(message).encode() + b"\0")
        while (answer := self._receive()).get("id") != self._number:
            pass
        if "error" in answer:
            raise RuntimeError(f"{method}: {answer['error']}")
        return answer["result"]

    def open(self, address):
        self.requests.clear()
        self.send("Page.navigate", url=address)
        while self._receive().get("method") != "Page.loadEventFired":
            pass

    def value(self, expression):
        """What JavaScript gives, also as a promise."""
        result = self.send("Runtime.evaluate", expression=expression, returnByValue=True,
                           awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(json.dumps(result["exceptionDetails"])[:500])
        return result["result"].get("value")

    def point_at(self, selector):
        x, y = self.value(f"""(() => {{
            const element = document.querySelector({json.dumps(selector)})
            element.scrollIntoView({{block: 'nearest'}})
            const box = element.getBoundingClientRect()
            return [box.x + box.width / 2, box.y + box.height / 2] }})()""")
        self.send("Input.dispatchMouseEvent", type="mouseMoved", x=x, y=y)
        return {"x": x, "y": y}

    def click(self, selector):
        place = self.point_at(selector)
        for event in ("mousePressed", "mouseReleased"):
            self.send("Input.dispatchMouseEvent", type=event, button="left", clickCount=1, **place)

    def press(self, key, code):
        text = {"text": "\r"} if key == "Enter" else {}
        for event in ("keyDown", "keyUp"):
            self.send("Input.dispatchKeyEvent", type=event, key=key, code=key,
                      windowsVirtualKeyCode=code, **text)

    def show_in(self, scheme):
        self.send("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": scheme}])
