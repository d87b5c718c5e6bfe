"""Judges one edit from the source, the result and what the pages show. Knows nothing of how the
converter works: it compares tokens of the two sources, and what two pages show."""

import difflib
import re
from collections import Counter

import markup

CARET = "\ue000"
LETTER = re.compile(r"\w")


class Case:
    """An edit and all that came of it."""

    def __init__(self, edit, deck, index):
        self.edit, self.deck, self.index = edit, deck, index
        self.before = self.after = self.reloaded = None  # what pages show
        self.selected = []  # what they showed when the edit's places were selected
        self.steps = list(edit.steps)
        self.edited_html = ""
        self.result = self.undone = None  # bytes
        self.valid = True

    @property
    def source_text(self):
        return self.deck.bytes.decode()

    @property
    def result_text(self):
        return self.result.decode(errors="replace")


def judge(case):
    """All complaints about a case; none if it is right."""
    if case.result is None:
        return ["refused"]
    complaints = text_of_page(case) if case.selected else []
    complaints += shown_again(case)
    complaints += typed_once(case)
    complaints += source_outside(case)
    if case.deck.is_valid and not case.valid:
        complaints.append("no longer valid")
    if case.undone is not None and case.undone != case.deck.bytes:
        complaints.append("undone, but not the original bytes")
    return complaints


def squeezed(lines):
    return re.sub(r"\s", "", "".join(lines))


def text_of_page(case):
    """The edit did to the page's text what its author meant."""
    before, after = squeezed(case.before["plain"]), squeezed(case.after["plain"])
    meant = case.edit.text
    if meant == "typed":
        chosen = re.sub(r"\s", "", case.selected[0]["text"])
        marked = squeezed(case.selected[0]["plain"])
        if CARET + chosen not in marked or case.selected[0]["hasAtom"]:
            return []
        before = marked.replace(CARET + chosen, re.sub(r"\s", "", "".join(case.edit.typed)), 1)
    if meant == "moved":
        before, after = sorted(before), sorted(after)
    if meant == "any" or before == after:
        return []
    return ["the page's text is not what the edit meant"]


def shown_again(case):
    """The result shows what the edited page showed."""
    after, reloaded = case.after["lines"], case.reloaded["lines"]
    if case.edit.loose:
        after, reloaded = ([line for line in lines if line.split("|")[1] != case.edit.loose]
                           for lines in (after, reloaded))
    if "align" in case.edit.name or "center" in case.edit.name or "right" in case.edit.name:
        # WML aligns paragraphs, and no single cell or preformatted text.
        after, reloaded = ([re.sub(r"^(\d+\|(?:cell|pre)[^|]*\|)[^|]*", r"\1", line) for line in lines]
                           for lines in (after, reloaded))
    if after == reloaded:
        return []
    changes = difflib.unified_diff(after, reloaded, "edited", "result", "", "", 0, "")
    return ["shows something else:\n      " + "\n      ".join(list(changes)[2:])]


def typed_once(case):
    decoded = "".join(markup.shown(t) for t in markup.tokens(case.result_text))
    found = []
    for typed in case.edit.typed:
        count = decoded.count(typed.strip())
        if count != 1:
            found.append(f"typed text is there {count} times")
    return found


# ---- What changed in the source ----

def touched_words(case):
    """The words that the edit may change: those that differ on the page, were selected or lie
    beside the caret; as the page had them and as it has them."""
    old = " ".join(case.before["plain"]).split()
    new = " ".join(case.after["plain"]).split()
    beside = [word for selected in case.selected for word in words_around(selected, {*old, *new})]
    gone, come = list(beside), list(beside)
    for kind, a, b, c, d in difflib.SequenceMatcher(None, old, new, False).get_opcodes():
        if kind != "equal":
            gone += old[max(a - 1, 0):b + 1]
            come += new[max(c - 1, 0):d + 1]
    return gone, come


def words_around(selected, all_words):
    """The words that are selected, whole or in part, and those beside."""
    left, _, right = " ".join(selected["plain"]).partition(CARET)
    chosen = selected["text"].split()
    before, after = left.split()[-1:], right.split()[:1]
    found = [*before, *after, *("".join(pair) for pair in zip(before, after)), *chosen]
    if chosen:
        found += [word for word in all_words if word.endswith(chosen[0]) or word.startswith(chosen[-1])]
    return found


def is_touched(text, words):
    text = text.strip()
    forms = {text, text.replace("$$", "$")}
    return not text or any(form in word for form in forms for word in words)


def hunks(source, result):
    """The places where two lists of tokens differ: (at, tokens removed, tokens inserted)."""
    start = 0
    while start < min(len(source), len(result)) and source[start] == result[start]:
        start += 1
    end = 0
    while end < min(len(source), len(result)) - start and source[-1 - end] == result[-1 - end]:
        end += 1
    old, new = source[start:len(source) - end], result[start:len(result) - end]
    codes = difflib.SequenceMatcher(None, old, new, False).get_opcodes()
    return [(start + a, old[a:b], new[c:d]) for kind, a, b, c, d in codes if kind != "equal"]


def source_outside(case):
    source, result = markup.tokens(case.source_text), markup.tokens(case.result_text)
    changes = hunks(source, result)
    gone, come = touched_words(case)
    own = markup.entities(case.source_text)
    found = []
    for at, removed, inserted in changes:
        for token in removed:
            # A reference to several words goes as one.
            words = markup.shown(token, own).split()
            come += words if token.text in own else []
            if token.kind in ("word", "reference") and not any(is_touched(w, gone) for w in words or [""]):
                found.append(f"lost outside the edit: {token.text!r}")
        for token in inserted:
            if token.kind in ("word", "reference") and not is_touched(markup.shown(token), come):
                found.append(f"written outside the edit: {token.text!r}")
        if all(t.kind == "blank" for t in [*removed, *inserted]) and not is_near(source, at, removed, gone):
            found.append("blanks changed outside the edit")
        if any(t.kind == "cdata" for t in removed) and not case.edit.removes and \
                not any(t.kind == "cdata" for t in inserted):
            found.append("CDATA section taken apart")
    found += tags_changed(case.edit, changes)
    found += unseen_things(case.edit, source, result, changes)
    found += dead_links(case.result_text)
    return found


def is_near(source, at, removed, words):
    """Whether the nearest words around a place in the source are words of the edit."""
    def first(tokens):
        return next((markup.shown(t) for t in tokens if t.kind in ("word", "reference")), "")
    return is_touched(first(source[at + len(removed):]), words) or is_touched(first(reversed(source[:at])), words)


def tags_changed(edit, changes):
    allowed = edit.tags.split()
    removed = Counter(t.text for _, old, _ in changes for t in old if t.kind == "tag")
    inserted = Counter(t.text for _, _, new in changes for t in new if t.kind == "tag")
    removed, inserted = removed - inserted, inserted - removed
    for entry in (entry for entry in allowed if "@" in entry):
        name, attribute = entry.split("@")
        for tag in [t for t in removed if markup.name_of(t) == name]:
            for other in [t for t in inserted if markup.without(t, attribute) == markup.without(tag, attribute)]:
                common = min(removed[tag], inserted[other])
                removed[tag] -= common
                inserted[other] -= common
    found = [f"tag lost: {t}" for t in +removed
             if not {markup.name_of(t), "-" + markup.name_of(t), "*", "-*"} & set(allowed)]
    return found + [f"tag written: {t}" for t in +inserted if not is_bare_format(t) and
                    not {markup.name_of(t), "+" + markup.name_of(t), "*"} & set(allowed)]


def is_bare_format(tag):
    """Whether a tag is that of a format and no more: what formats the page had is compared anyway."""
    return re.fullmatch(r"</?(b|i|u|em|strong|big|small)>", tag) is not None


def unseen_things(edit, source, result, changes):
    old = [t.text for t in source if t.kind == "unseen"]
    new = [t.text for t in result if t.kind == "unseen"]
    lost, extra = Counter(old) - Counter(new), Counter(new) - Counter(old)
    found = []
    if edit.removes:  # what stands before the first card is in no selection
        lost &= Counter(old[:before_cards(source)])
    if lost and "*" not in edit.tags.split():
        found.append(f"unseen lost: {list(lost)[0]}")
    if not edit.copies and any(markup.name_of(t) not in markup.TASKS for t in extra):
        found.append(f"unseen doubled: {list(extra)[0]}")
    moved = {t for _, gone, _ in changes for t in gone if t.kind == "unseen"} & \
            {t for _, _, come in changes for t in come if t.kind == "unseen"}
    if moved and edit.text != "moved" and not edit.copies:
        found.append(f"unseen moved: {list(moved)[0].text}")
    inside = Counter(split_words(result)) - Counter(split_words(source))
    return found + [f"unseen inside a word: {text}" for text in inside]


def before_cards(tokens):
    """How many unseen things stand before the first card."""
    first = next((i for i, t in enumerate(tokens) if t.kind == "tag" and markup.name_of(t.text) == "card"), 0)
    return sum(t.kind == "unseen" for t in tokens[:first])


def split_words(tokens):
    """What is unseen and has a letter on both sides."""
    for one, token, two in zip(tokens, tokens[1:], tokens[2:]):
        if token.kind == "unseen" and one.kind == two.kind == "word" and \
                LETTER.match(one.text[-1]) and LETTER.match(two.text[0]):
            yield token.text


def dead_links(result):
    links = re.findall(r"<anchor\b[^>]*?(?:/>|>.*?</anchor\s*>)", result, re.S)
    return [f"link without a task: {link}" for link in links if not re.search(r"<(go|prev|refresh|noop)\b", link)]
