"""The decks, their pages, and what xmllint says of them."""

import functools
import os
import pathlib
import subprocess
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[2]
DTD = TOP / "ravikit/DTD/wml.dtd"
OURS = ["tests/browser/decks", "tests/ravikit/decks", "examples"]


class Converter:
    """The command that is tested."""

    def __init__(self, command):
        self.command = command

    def run(self, text, to, *options):
        done = subprocess.run([self.command, "convert", "-", "--to", to, *options], input=text,
                              capture_output=True, check=False, timeout=60)
        if done.returncode < 0 or b"Sanitizer" in done.stderr or b"runtime error:" in done.stderr:
            raise RuntimeError(f"tessaly convert: {done.returncode}: {done.stderr.decode()}")
        return done.stdout if done.returncode == 0 else None

    def page(self, deck):
        page = self.run(deck, "plain", "--strict")
        return None if page is None else page.decode()

    def deck(self, page):
        return self.run(page.encode(), "markup")


class Deck:
    def __init__(self, path, converter):
        self.path = path
        self.name = path.name
        self.bytes = path.read_bytes()
        self.page = converter.page(self.bytes)

    @functools.cached_property
    def is_valid(self):
        return is_valid(self.bytes)

    @property
    def is_small(self):
        """A deck of one idea, of which there are many."""
        return "tests/ravikit" in str(self.path)

    @property
    def is_utf8(self):
        """Whether source and result can be compared as text."""
        try:
            return b"\xef\xbb\xbf" != self.bytes[:3] and self.bytes.decode() is not None
        except UnicodeDecodeError:
            return False


@functools.cache
def catalog():
    """A file by which xmllint finds our DTD where a deck names the public one."""
    entries = "".join(f'<public publicId="-//WAPFORUM//DTD WML {version}//EN" uri="{DTD.as_uri()}"/>'
                      for version in ("1.1", "1.2", "1.3"))
    file = tempfile.NamedTemporaryFile("w", suffix=".xml")
    file.write(f'<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">{entries}</catalog>')
    file.flush()
    return file


def is_valid(text):
    done = subprocess.run(["xmllint", "--noout", "--nonet", "--loaddtd", "--dtdvalid", str(DTD), "-"],
                          input=text, capture_output=True, check=False,
                          env={**os.environ, "XML_CATALOG_FILES": catalog().name})
    return done.returncode == 0


def load(folders, converter):
    """All decks of `folders` that have a page."""
    roots = [pathlib.Path(folder) for folder in folders] or [TOP / folder for folder in OURS]
    paths = sorted({path for root in roots for path in root.glob("**/*.wml")})
    return [deck for deck in (Deck(path, converter) for path in paths) if deck.page is not None]
