"""Makes edits in the browser and brings each page back to a deck."""

import random

import classes
import decks
import oracle


def convert_back(case, state, converter):
    """The deck of the edited page."""
    case.edited_html, case.after = state["html"], state["shown"]
    case.result = converter.deck(case.edited_html)
    if case.result is not None:
        case.valid = decks.is_valid(case.result)


def show_result(case, browser, converter):
    """What the page of the result shows."""
    if case.result is not None:
        page = converter.page(case.result)
        case.reloaded = {"lines": ["no page"], "plain": []} if page is None else browser.open(page)["shown"]
    return case


def make(browser, case, edit, index):
    case.selected.append(browser.select(edit.place, index))
    for step in edit.steps:
        browser.play(step, index)


def one_edit(browser, converter, deck, edit, index):
    """One edit, taken back to a deck, and undone."""
    case = oracle.Case(edit, deck, index)
    original = browser.open(deck.page)
    case.before = original["shown"]
    make(browser, case, edit, index)
    state = browser.state()
    convert_back(case, state, converter)
    if state["inputs"]:
        case.undone = converter.deck(browser.undo(original["html"], state["inputs"]))
    return show_result(case, browser, converter)


def counts(browser, deck, edits):
    """How many places a deck has for each class."""
    browser.open(deck.page)
    return {edit.name: browser.count(edit.place) for edit in edits}


def each_place(browser, converter, deck, edits, limit):
    """One case for each class and place, at most `limit` places of a class."""
    for name, count in counts(browser, deck, edits).items():
        edit = next(edit for edit in edits if edit.name == name)
        tried = min(count, limit)
        for index in (count * n // tried for n in range(tried)):
            yield one_edit(browser, converter, deck, edit, index)


def unedited(browser, converter, deck):
    """Whether a page that the browser read and wrote again gives the deck's bytes."""
    return converter.deck(browser.open(deck.page)["html"]) == deck.bytes


def sequence(browser, converter, deck, edits, seed, length):
    """Random edits, one after the other, on one page."""
    choice = random.Random(seed)
    case = oracle.Case(classes.SEQUENCE, deck, seed)
    case.before = browser.open(deck.page)["shown"]
    while len(case.selected) < length:
        edit = choice.choice(edits)
        count = browser.count(edit.place)
        if count:
            index = choice.randrange(count)
            case.steps.append(f"{edit.name}:{index}")
            make(browser, case, edit, index)
        elif not browser.count("line"):
            break
    convert_back(case, browser.state(), converter)
    return show_result(case, browser, converter)
