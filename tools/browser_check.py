#!/usr/bin/env python3
"""Takes every deck of the repository to its page, through a real browser, and back.

    browser_check.py TESSALY

Chromium parses each page as it would in an editor (body.innerHTML), may edit it, and serialises it;
the command takes what it wrote back to a deck. A page that is as it was must give the deck as it
was; one with a text made bold, italic or underlined may differ in these tags alone. Prints how many
decks came back whole; exit status 1 if one did not, 77 if there is no browser.
"""

import base64
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent
SKIPPED = 77
TAGS = {"bold": "b", "italic": "i", "underline": "u"}

# What the browser does with each page: edits of a text without formats, and such as are undone.
SCRIPT = """
const edits = {
  unchanged() {},
  typed(text) {
    getSelection().collapse(text, text.data.search(/\\p{L}{2}/u) + 1);
    document.execCommand('insertText', false, 'x');
    document.execCommand('delete');
  },
};
for (const command of ['bold', 'italic', 'underline']) {
  edits[command] = () => document.execCommand(command);
  edits['not ' + command] = () => edits[command]() && edits[command]();
}
function plainText() {
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const text = walker.currentNode;
    if (/\\p{L}{2}/u.test(text.data) && !text.parentNode.closest('b, i, u, strong, em, h2, span'))
      return text;
  }
}
const answers = [];
for (const page of JSON.parse(atob(document.body.firstChild.data))) {
  const answer = {};
  for (const name in edits) {
    document.body.innerHTML = page;
    const text = plainText();
    if (text) {
      getSelection().setBaseAndExtent(text, 0, text, text.length);
      edits[name](text);
    }
    answer[name] = document.body.outerHTML;
  }
  answers.push(answer);
}
document.body.removeAttribute('contenteditable');
const bytes = new TextEncoder().encode(JSON.stringify(answers));
document.body.textContent = btoa([...bytes].map((b) => String.fromCharCode(b)).join(''));
"""


def convert(tessaly, text, to):
    """The bytes that the command makes of `text`; None if it refuses."""
    strict = ["--strict"] if to == "plain" else []
    done = subprocess.run([tessaly, "convert", "-", "--to", to, *strict], input=text,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    return done.stdout if done.returncode == 0 else None


def is_whole(edit, deck, found):
    """Whether `found` is what an edit of this name may leave of `deck`."""
    if edit in TAGS and found is not None and found != deck:
        for tag in (f"<{TAGS[edit]}>", f"</{TAGS[edit]}>"):
            found = found.replace(tag.encode(), b"")
            deck = deck.replace(tag.encode(), b"")
    return found == deck


def browse(browser, pages):
    """What the browser makes of each page, by the name of the edit."""
    carried = base64.b64encode(json.dumps([page.decode() for page in pages]).encode()).decode()
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder, "pages.html")
        page.write_text(f'<!DOCTYPE html><meta charset="utf-8"><body contenteditable>{carried}'
                        f"</body><script>{SCRIPT}</script>", encoding="utf-8")
        done = subprocess.run(
            [browser, "--headless", "--no-sandbox", "--disable-gpu", f"--user-data-dir={folder}",
             "--virtual-time-budget=60000", "--dump-dom", page.as_uri()],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False, timeout=240)
    answer = done.stdout.decode().partition("<body>")[2].partition("</body>")[0]
    return json.loads(base64.b64decode(answer)) if answer else None


def main():
    tessaly = sys.argv[1]
    browser = shutil.which("chromium") or shutil.which("google-chrome")
    if browser is None:
        print("No Chromium here: skipped")
        return SKIPPED
    decks, pages = [], []
    for path in sorted([*TOP.glob("examples/**/*.wml"), *TOP.glob("tests/**/*.wml")]):
        page = convert(tessaly, path.read_bytes(), "plain")
        if page is not None:
            decks.append(path)
            pages.append(page)
    answers = browse(browser, pages)
    if answers is None:
        print(f"{browser} gives no page: skipped")
        return SKIPPED
    whole = dict.fromkeys(answers[0], 0)
    for path, answer in zip(decks, answers):
        for edit, page in answer.items():
            if is_whole(edit, path.read_bytes(), convert(tessaly, page.encode(), "markup")):
                whole[edit] += 1
            else:
                print(f"{path.relative_to(TOP)}: changed ({edit})")
    for edit, count in whole.items():
        print(f"tried: {edit}: {count} of {len(decks)} decks came back whole from the browser")
    return 0 if all(count == len(decks) for count in whole.values()) else 1


if __name__ == "__main__":
    sys.exit(main())
