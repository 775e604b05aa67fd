"""A headless browser that is driven over the DevTools protocol, through a pipe; with the standard library only."""
import base64
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

NAMES = ("chromium", "chromium-browser", "google-chrome", "chrome")


def find_browser():
    """The path of a browser, or None. KP_BROWSER may name one."""
    for name in (os.environ.get("KP_BROWSER"), *NAMES):
        if name and shutil.which(name):
            return shutil.which(name)
    return None


class Browser:
    """One page. Whatever takes longer than its time raises TimeoutError."""

    def __init__(self, path, seconds=30):
        self.seconds = seconds
        self.problems = []  # exceptions, errors on the console and requests for anything but the page
        self.url = None
        self.number = 0
        self.pending = b""
        self.folder = tempfile.mkdtemp(prefix="kp_browser_")
        child_in, self.to_child = os.pipe()
        self.from_child, child_out = os.pipe()

        def pipes():  # the protocol's places
            moved_in, moved_out = os.dup(child_in), os.dup(child_out)  # neither of them is 3 or 4 now
            os.dup2(moved_in, 3)
            os.dup2(moved_out, 4)

        self.process = subprocess.Popen(
            [path, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-extensions",
             "--user-data-dir=" + self.folder, "--remote-debugging-pipe", "about:blank"],
            preexec_fn=pipes, close_fds=False, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(child_in)
        os.close(child_out)
        self.session = None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        os.close(self.to_child)
        os.close(self.from_child)
        shutil.rmtree(self.folder, ignore_errors=True)

    def call(self, method, **params):
        self.number += 1
        message = {"id": self.number, "method": method, "params": params}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.to_child, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + self.seconds
        while True:
            answer = self.receive(deadline)
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']['message']}")
                return answer["result"]

    def receive(self, deadline):
        while b"\0" not in self.pending:
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self.from_child], [], [], left)[0]:
                raise TimeoutError(f"the browser did not answer in {self.seconds} s")
            piece = os.read(self.from_child, 1 << 16)
            if not piece:
                raise RuntimeError("the browser has ended")
            self.pending += piece
        text, self.pending = self.pending.split(b"\0", 1)
        message = json.loads(text)
        if "method" in message:
            self.note(message["method"], message["params"])
        return message

    def note(self, method, params):
        if method == "Runtime.exceptionThrown":
            details = params["exceptionDetails"]
            self.problems.append(details.get("exception", {}).get("description") or details["text"])
        elif method == "Runtime.consoleAPICalled" and params["type"] in ("error", "warning", "assert"):
            self.problems.append(f"console: {params['args']}")
        elif method == "Log.entryAdded" and params["entry"]["level"] in ("error", "warning"):
            self.problems.append(f"log: {params['entry']['text']}")
        elif method == "Network.requestWillBeSent":
            url = params["request"]["url"]
            if url != "about:blank" and url.split("#")[0] != self.url and not url.startswith("data:"):
                self.problems.append(f"asks for {url}")
        elif method == "Page.javascriptDialogOpening":
            self.problems.append(f"dialog: {params['message']}")
            self.call("Page.handleJavaScriptDialog", accept=True)

    def load(self, path, fragment=""):
        """Opens a file anew; returns the seconds until it was loaded and its script had run."""
        self.call("Page.navigate", url="about:blank")
        self.wait("location.href === 'about:blank'")
        self.url = "file://" + os.path.abspath(path)
        start = time.monotonic()
        self.call("Page.navigate", url=self.url + fragment)
        self.wait("location.href !== 'about:blank' && document.readyState === 'complete'")
        return time.monotonic() - start

    def script(self, expression):
        """The value of an expression on the page; promises are awaited."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"]["exception"].get("description", expression))
        return result["result"].get("value")

    def has(self, expression):
        """Whether an expression gives something that counts as true, such as an element."""
        return self.script(f"Boolean({expression})")

    def wait(self, expression):
        """Waits until an expression gives something that counts as true."""
        deadline = time.monotonic() + self.seconds
        while time.monotonic() < deadline:
            if self.has(expression):
                return
            time.sleep(0.02)
        raise TimeoutError(f"never true: {expression}")

    def click(self, expression):
        """Presses the mouse on the element that an expression gives."""
        x, y = self.script(f"(() => {{ const e = {expression}; e.scrollIntoView({{ block: 'center' }});"
                           "const r = e.getClientRects()[0];"
                           "return [r.left + Math.min(r.width / 2, 40), r.top + r.height / 2]; })()")
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def key(self, *names):
        for name in names:
            text = {"Enter": "\r", " ": " "}.get(name, name if len(name) == 1 else "")
            code = {"Enter": 13, "Tab": 9, "ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39, "ArrowDown": 40,
                    "Home": 36, "End": 35}.get(name, 0)
            self.call("Input.dispatchKeyEvent", type="keyDown", key=name, text=text, windowsVirtualKeyCode=code)
            self.call("Input.dispatchKeyEvent", type="keyUp", key=name, windowsVirtualKeyCode=code)

    def type(self, text):
        self.call("Input.insertText", text=text)

    def view(self, width, height, dark=False, media=""):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", media=media,
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])

    def screenshot(self, scale=1):
        """What the window shows, as PNG."""
        width, height = self.script("[innerWidth, innerHeight]")
        clip = {"x": self.script("scrollX"), "y": self.script("scrollY"), "width": width, "height": height,
                "scale": scale}
        return base64.b64decode(self.call("Page.captureScreenshot", format="png", clip=clip)["data"])
