"""A real Chromium with one page, driven by keys and mouse."""

import pathlib
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

ARGUMENTS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync",
             "--disable-dev-shm-usage", "--window-size=1200,2600"]
# Each edit gets a frame of its own: what was done in the last one cannot be undone there.
NEW_FRAME = """
document.body.style.margin = 0;
document.body.replaceChildren(document.createElement('iframe'));
const frame = document.body.firstChild;
frame.style = 'border:0;width:100%;height:2400px';
const page = frame.contentDocument;
page.open();
page.write('<!DOCTYPE html><meta charset=utf-8><body contenteditable></body>');
page.close();
frame.contentWindow.eval(arguments[0]);
"""
SCRIPT = pathlib.Path(__file__).with_name("page.js").read_text(encoding="utf-8")
KEYS = {"Ctrl": Keys.CONTROL, "Shift": Keys.SHIFT, "Enter": Keys.ENTER, "Home": Keys.HOME,
        "End": Keys.END, "Backspace": Keys.BACKSPACE, "Delete": Keys.DELETE, "Left": Keys.LEFT,
        "Right": Keys.RIGHT, "Up": Keys.UP, "Down": Keys.DOWN, "Tab": Keys.TAB}
MOST_UNDONE = 12


class Browser:
    """One Chromium. `play` takes a step: "=text" is typed, "@place" selects, "!command value" is
    execCommand, "Click", "DoubleClick" and "Drag" use the mouse on what is selected, "#script" runs
    a line of a host's own, anything else is a key such as "Ctrl+B"."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for argument in [*ARGUMENTS, f"--user-data-dir={self.folder.name}"]:
            options.add_argument(argument)
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.selected = None
        self.driver.get("data:text/html;charset=utf-8,<!DOCTYPE html>")

    def close(self):
        self.driver.quit()
        self.folder.cleanup()

    def ask(self, script, *arguments):
        """What an expression gives in the page."""
        return self.driver.execute_script(f"with (frames[0]) return {script}", *arguments)

    def open(self, html):
        """Shows a page in a new document, without the undo steps of the last one. What it shows, and
        its HTML as the browser writes it."""
        return self.driver.execute_script(NEW_FRAME + "return frame.contentWindow.suite.open(arguments[1])",
                                          SCRIPT, html)

    def state(self):
        """What the page shows, its HTML, and how many inputs there were since it was opened."""
        return self.ask("suite.state()")

    def select(self, place, index):
        self.selected = self.ask("suite.select(arguments[0], arguments[1])", place, index)
        return self.selected

    def count(self, place):
        return self.ask("suite.count(arguments[0])", place)

    def play(self, step, index):
        if step.startswith("="):
            ActionChains(self.driver, duration=0).send_keys(step[1:]).perform()
        elif step.startswith("@"):
            self.select(step[1:], index)
        elif step.startswith("!"):
            name, _, value = step[1:].partition(" ")
            self.ask("document.execCommand(arguments[0], false, arguments[1])", name, value)
        elif step.startswith("#"):
            self.ask("eval(arguments[0])", step[1:])
        elif step in ("Click", "DoubleClick", "Drag"):
            self.point(step)
        else:
            self.press(step)

    def press(self, step):
        *held, key = [KEYS.get(name, name.lower()) for name in step.split("+")]
        chain = ActionChains(self.driver, duration=0)
        for name in held:
            chain.key_down(name)
        chain.send_keys(key)
        for name in held:
            chain.key_up(name)
        chain.perform()

    def point(self, step):
        chain = ActionChains(self.driver, duration=0)
        pointer = chain.w3c_actions.pointer_action
        start, end = self.selected["from"], self.selected["to"]
        middle = [(a + b) // 2 for a, b in zip(start, end)]
        if step == "Drag":
            pointer.move_to_location(*map(int, start)).pointer_down()
            pointer.move_to_location(*map(int, middle)).move_to_location(*map(round, end))
            pointer.pointer_up()
        else:
            pointer.move_to_location(*map(int, middle))
            for _ in range(2 if step == "DoubleClick" else 1):
                pointer.click()
        chain.perform()

    def undo(self, original, inputs):
        """The HTML after as many undo keys as there were inputs; `original` ends it earlier."""
        html = None
        for _ in range(min(inputs, MOST_UNDONE)):
            self.press("Ctrl+Z")
            html = self.ask("suite.html()")
            if html == original:
                break
        return html
