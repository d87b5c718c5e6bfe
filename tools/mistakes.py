#!/usr/bin/env python3
"""Makes single mistakes in valid decks, as authors make them, and counts what is said of each.

A mistake counts if xmllint with our DTD calls the deck wrong. For each class it prints how many
errors a mistake brings and how often the first of them stands on the mistake's line: that of what
was changed, or of the other tag of the same element.
"""

import argparse
import collections
import dataclasses
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent
DTD = TOP / "ravikit/DTD/wml.dtd"
TAG = re.compile(r"<(/?)([a-z]+)((?:\s+[\w:]+\s*=\s*(?:\"[^\"]*\"|'[^']*'))*)\s*(/?)>")
ATTRIBUTE = re.compile(r"\s([\w:]+)=(\"[^\"]*\"|'[^']*')")
TEXT = re.compile(r">([^<>&]*[a-z]{3,}[^<>&]*)<")


@dataclasses.dataclass
class Tag:
    begin: int
    end: int
    name: str
    is_end: bool
    is_empty: bool
    attributes: str
    partner: "Tag" = None


@dataclasses.dataclass
class Mistake:
    kind: str
    deck: str
    text: str
    lines: set


class Deck:
    def __init__(self, path):
        self.name = path.name
        self.text = path.read_bytes().decode("utf-8")
        hidden = re.sub(r"<!--.*?-->|<!\[CDATA\[.*?\]\]>|<\?.*?\?>|<!DOCTYPE[^\[>]*(\[.*?\]\s*)?>",
                        lambda m: re.sub(r"[^\n]", " ", m[0]), self.text, flags=re.S)
        self.body = hidden
        self.tags, stack = [], []
        for match in TAG.finditer(hidden):
            tag = Tag(match.start(), match.end(), match[2], bool(match[1]), bool(match[4]), match[3])
            self.tags.append(tag)
            if tag.is_end:
                tag.partner = stack.pop()
                tag.partner.partner = tag
            elif not tag.is_empty:
                stack.append(tag)
        self.texts = [m for m in TEXT.finditer(hidden)]

    def line(self, offset):
        return len(re.findall(r"\r\n|\r|\n", self.text[:offset])) + 1

    def lines(self, tag):
        return {self.line(t.begin) for t in (tag, tag.partner) if t}


def misspelt(name, choice):
    at = choice.randrange(len(name))
    ways = [name[:at] + name[at + 1:], name[:at] + name[at] * 2 + name[at + 1:],
            name[:at] + "x" + name[at + 1:]]
    if len(name) > 1:
        at = min(at, len(name) - 2)
        ways.append(name[:at] + name[at + 1] + name[at] + name[at + 2:])
    return choice.choice([way for way in ways if way and way != name] or ["x" + name])


class Maker:
    """Each method gives (begin, end, instead, lines) or nothing."""

    def __init__(self, deck, choice):
        self.deck, self.choice = deck, choice
        self.starts = [t for t in deck.tags if not t.is_end and not t.is_empty and len(t.name) > 1]
        self.ends = [t for t in deck.tags if t.is_end and len(t.name) > 1]
        self.empties = [t for t in deck.tags if t.is_empty]
        self.paragraphs = [t for t in deck.tags if t.name == "p" and t.partner and not t.is_end]
        self.with_attributes = [t for t in deck.tags if t.attributes]

    def pick(self, things):
        return self.choice.choice(things) if things else None

    def at_tag(self, tag, instead, begin=None, end=None):
        return tag and (tag.begin if begin is None else begin, tag.end if end is None else end,
                        instead, self.deck.lines(tag))

    def source(self, tag):
        return self.deck.text[tag.begin:tag.end]

    # Tags.
    def misspelt_end_tag(self):
        tag = self.pick(self.ends)
        return tag and self.at_tag(tag, f"</{misspelt(tag.name, self.choice)}>")

    def misspelt_start_tag(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, f"<{misspelt(tag.name, self.choice)}{tag.attributes}>")

    def misspelt_empty_tag(self):
        tag = self.pick(self.empties)
        return tag and self.at_tag(tag, f"<{misspelt(tag.name, self.choice)}{tag.attributes}/>")

    def capital_start_tag(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, f"<{tag.name.upper()}{tag.attributes}>")

    def end_tag_without_opening(self):
        tag = self.pick(self.ends)
        return tag and self.at_tag(tag, self.source(tag)[1:])

    def end_tag_without_closing(self):
        tag = self.pick(self.ends)
        return tag and self.at_tag(tag, self.source(tag)[:-1])

    def start_tag_without_closing(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, self.source(tag)[:-1])

    def start_tag_without_opening(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, self.source(tag)[1:])

    def blank_in_start_tag(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, "< " + self.source(tag)[1:])

    def no_end_tag(self):
        return self.at_tag(self.pick(self.ends), "")

    def no_start_tag(self):
        return self.at_tag(self.pick(self.starts), "")

    def end_tag_twice(self):
        tag = self.pick(self.ends)
        return tag and self.at_tag(tag, self.source(tag) * 2)

    def empty_tag_left_open(self):
        tag = self.pick(self.empties)
        return tag and self.at_tag(tag, f"<{tag.name}{tag.attributes}>")

    def crossing_tags(self):
        text = self.pick(self.deck.texts)
        return text and (text.start(1), text.end(1), f"<b><i>{text[1]}</b></i>",
                         {self.deck.line(text.start(1)), self.deck.line(text.end(1))})

    def html_element(self):
        text = self.pick(self.deck.texts)
        name = self.choice.choice(["font", "center", "span", "h1", "li"])
        return text and (text.start(1), text.end(1), f"<{name}>{text[1]}</{name}>",
                         {self.deck.line(text.start(1)), self.deck.line(text.end(1))})

    def paragraph_in_paragraph(self):
        tag = self.pick(self.paragraphs)
        return tag and (tag.end, tag.end, "<p>nested</p>", self.deck.lines(tag))

    # Attributes.
    def attribute(self):
        tag = self.pick(self.with_attributes)
        found = tag and self.pick(list(ATTRIBUTE.finditer(self.source(tag))))
        return (tag, found) if found else (None, None)

    def at_attribute(self, change):
        tag, found = self.attribute()
        if not tag:
            return None
        source = self.source(tag)
        line = self.deck.line(tag.begin + found.start(1))
        return (tag.begin, tag.end, source[:found.start(1)] + change(found[1], found[2]) +
                source[found.end():], {line} | self.deck.lines(tag))

    def misspelt_attribute(self):
        return self.at_attribute(lambda name, value: misspelt(name, self.choice) + "=" + value)

    def no_closing_quote(self):
        return self.at_attribute(lambda name, value: f"{name}={value[:-1]}")

    def no_closing_quote_after_words(self):
        return self.at_attribute(lambda name, value: f"{name}={value[0]}two words here")

    def no_opening_quote(self):
        return self.at_attribute(lambda name, value: f"{name}={value[1:]}")

    def no_quotes(self):
        return self.at_attribute(lambda name, value: f"{name}={value[1:-1] or 'x'}")

    def no_value(self):
        return self.at_attribute(lambda name, value: name)

    def no_equals_sign(self):
        return self.at_attribute(lambda name, value: f"{name}{value}")

    def attribute_twice(self):
        return self.at_attribute(lambda name, value: f"{name}={value} {name}={value}")

    def no_attribute(self):
        return self.at_attribute(lambda name, value: "")

    def bad_value(self):
        return self.at_attribute(lambda name, value: f'{name}="no such value"')

    def html_attribute(self):
        tag = self.pick(self.starts)
        return tag and self.at_tag(tag, f'<{tag.name}{tag.attributes} bgcolor="red">')

    # Text.
    def in_text(self, what):
        text = self.pick(self.deck.texts)
        if not text:
            return None
        at = self.choice.randrange(text.start(1), text.end(1) + 1)
        return at, at, what, {self.deck.line(at)}

    def bare_ampersand(self):
        return self.in_text(self.choice.choice([" & ", "&", " R&D "]))

    def bare_less_than(self):
        return self.in_text(self.choice.choice([" < ", " <3 "]))

    def html_entity(self):
        return self.in_text(self.choice.choice(["&mdash;", "&eacute;", "&copy;", "&euro;"]))

    def entity_without_semicolon(self):
        return self.in_text("&amp ")

    def server_page(self):
        return self.in_text(self.choice.choice(['<%= name %>', '<% if (x < 3) { %>', '<?= $name ?>']))

    def php_without_end(self):
        return self.in_text('<?php echo "x"; >')

    def mark_in_the_middle(self):
        return self.in_card("\ufeff")

    def in_card(self, what):
        tag = self.pick([t for t in self.deck.tags if t.is_end and t.name == "p"])
        return tag and (tag.end, tag.end, what, {self.deck.line(tag.end)})

    def text_in_card(self):
        return self.in_card(self.choice.choice(["loose text", "text with <b>bold</b> in it",
                                                "one <br/>two <a href='#x'>three</a>"]))

    def paragraph_tags_left_out(self):
        tag = self.pick(self.paragraphs)
        if not tag:
            return None
        inside = self.deck.text[tag.end:tag.partner.begin]
        lines = set(range(self.deck.line(tag.begin), self.deck.line(tag.partner.end) + 1))
        return tag.begin, tag.partner.end, inside, lines

    def timer_after_text(self):
        return self.in_card('<timer value="5"/>')

    # Comments and the prolog.
    def comment_without_end(self):
        tag = self.pick(self.paragraphs)
        return tag and (tag.begin, tag.begin, "<!-- a comment ", self.deck.lines(tag))

    def dashes_in_comment(self):
        tag = self.pick(self.paragraphs)
        return tag and (tag.begin, tag.begin, "<!-- one -- two -->", self.deck.lines(tag))

    def doctype(self):
        return re.search(r"<!DOCTYPE\s+wml\s+PUBLIC\s+(\"[^\"]*\")\s+(\"[^\"]*\")\s*>", self.deck.text)

    def at_doctype(self, change):
        found = self.doctype()
        lines = found and set(range(self.deck.line(found.start()), self.deck.line(found.end()) + 2))
        return found and (found.start(), found.end(), change(found), lines)

    def doctype_without_begin(self):
        return self.at_doctype(lambda found: found[2] + ">")

    def doctype_without_end(self):
        return self.at_doctype(lambda found: found[0][:-1])

    def doctype_without_quote(self):
        return self.at_doctype(lambda found: f"<!DOCTYPE wml PUBLIC {found[1][:-1]} {found[2]}>")

    def second_id(self):
        ids = [(t, m) for t in self.with_attributes for m in ATTRIBUTE.finditer(self.source(t))
               if m[1] == "id"]
        if not ids:
            return None
        tag, found = self.pick(ids)
        others = [t for t in self.starts if " id=" not in t.attributes and t.begin != tag.begin]
        other = self.pick(others)
        return other and (other.begin, other.end, f"<{other.name}{other.attributes} id={found[2]}>",
                          self.deck.lines(other) | self.deck.lines(tag))


KINDS = [name for name in vars(Maker) if not name.startswith("_") and name not in
         ("pick", "at_tag", "source", "attribute", "at_attribute", "in_text", "in_card", "doctype",
          "at_doctype")]


def decks():
    paths = [*TOP.glob("examples/weather/*.wml"), *TOP.glob("tests/ravikit/decks/v-*.wml")]
    for path in sorted(paths):
        try:
            if b"&" in path.read_bytes()[:200] or b"<!ENTITY" in path.read_bytes():
                continue
            yield Deck(path)
        except (UnicodeDecodeError, IndexError):
            continue  # another encoding, or tags that only a parser understands


def xmllint(text, folder):
    path = folder / "one.wml"
    path.write_bytes(text.encode())
    done = subprocess.run(["xmllint", "--noout", "--nonet", "--dtdvalid", str(DTD), str(path)],
                          capture_output=True, text=True, check=False, errors="replace")
    places = re.findall(r"^.*?one\.wml:(\d+): .*(?:error|Error)", done.stderr, re.M)
    return done.returncode != 0, [int(place) for place in places]


def mistakes(each, seed):
    choice = random.Random(seed)
    all_decks = list(decks())
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for kind in KINDS:
            made, tries = 0, 0
            while made < each and tries < 20 * each:
                tries += 1
                deck = choice.choice(all_decks)
                change = getattr(Maker(deck, choice), kind)()
                if not change:
                    continue
                begin, end, instead, lines = change
                text = deck.text[:begin] + instead + deck.text[end:]
                wrong, places = xmllint(text, folder)
                if wrong:
                    made += 1
                    yield Mistake(kind.replace("_", " "), deck.name, text, lines), places


def judged(command, found):
    with tempfile.TemporaryDirectory() as name:
        files = []
        for number, (mistake, _) in enumerate(found):
            files.append(os.path.join(name, f"{number:04}.wml"))
            pathlib.Path(files[-1]).write_bytes(mistake.text.encode())
        done = subprocess.run([command, "check", "--json", *files], capture_output=True, check=False)
        return [deck["errors"] for deck in json.loads(done.stdout)["decks"]]


@dataclasses.dataclass
class Count:
    mistakes: int = 0
    errors: int = 0
    on_line: int = 0
    peers: int = 0
    peers_on_line: int = 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--command", default=str(TOP / "build/release/bin/tessaly"))
    parser.add_argument("--each", type=int, default=8, help="mistakes of each class")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--verbose", action="store_true", help="what is said of the worse ones")
    parser.add_argument("--most", type=float, help="fail beyond so many errors a mistake")
    parser.add_argument("--least", type=float, help="fail below so many per cent on the line")
    options = parser.parse_args()
    found = list(mistakes(options.each, options.seed))
    counts = collections.defaultdict(Count)
    for (mistake, peers), errors in zip(found, judged(options.command, found)):
        on_line = bool(errors) and errors[0]["line"] in mistake.lines
        for count in (counts[mistake.kind], counts["all"]):
            count.mistakes += 1
            count.errors += len(errors)
            count.on_line += on_line
            count.peers += len(peers)
            count.peers_on_line += bool(peers) and peers[0] in mistake.lines
        if options.verbose and (len(errors) != 1 or not on_line):
            print(f"\n{mistake.kind} in {mistake.deck}, lines {sorted(mistake.lines)[:3]}:")
            lines = re.split(r"\r\n|\r|\n", mistake.text)
            print("    | " + lines[min(mistake.lines) - 1][:150])
            for error in errors[:4]:
                print(f"    {error['line']}:{error['column']}: {error['reason']}")
    print(f"{'mistake':32} {'tried':>5} {'errors each':>11} {'on its line':>11} "
          f"{'xmllint: each':>14} {'on its line':>11}")
    for kind, c in counts.items():
        if kind != "all":
            show(kind, c)
    show("all", counts["all"])
    total = counts["all"]
    if (options.most and total.errors > options.most * total.mistakes) or \
            (options.least and 100 * total.on_line < options.least * total.mistakes):
        sys.exit("more errors a mistake, or fewer on its line, than asked for")


def show(kind, c):
    print(f"{kind:32} {c.mistakes:5} {c.errors / c.mistakes:11.2f} {100 * c.on_line / c.mistakes:10.0f}% "
          f"{c.peers / c.mistakes:14.2f} {100 * c.peers_on_line / c.mistakes:10.0f}%")


if __name__ == "__main__":
    main()
