#!/usr/bin/python3
"""Edits the pages of decks in a real Chromium and judges the decks that come of it.

    run.py [--command TESSALY] [--decks DIR]... [--class NAME]... [--limit N] [-v]
"""

import argparse
import os
import queue
import sys
import threading
import time
from collections import defaultdict

import classes
import decks
import oracle
from browser import Browser


def try_edit(browser, converter, deck, edit, index):
    """One edit, made and taken back to a deck; None if the deck has no place for it."""
    case = oracle.Case(edit, deck, index)
    browser.renew()
    case.before = browser.load(deck.page)
    original = browser.html()
    case.selected = browser.select(edit.place, index)
    for step in edit.steps:
        browser.play(step, index)
    case.edited_html = browser.html()
    case.after = browser.show()
    if browser.ask("suite.inputs"):
        case.undone = converter.deck(browser.undo(original))
    case.result = converter.deck(case.edited_html)
    if case.result is not None:
        case.valid = decks.is_valid(case.result)
        page = converter.page(case.result)
        case.reloaded = browser.show(page) if page is not None else {"lines": ["no page"], "plain": []}
    return case


def try_deck(browser, converter, deck, edits, limit, report):
    browser.renew()
    browser.load(deck.page)
    counts = {edit.name: browser.ask("suite.count(arguments[0])", edit.place) for edit in edits}
    for edit in edits:
        count = counts[edit.name]
        tried = min(count, limit)
        for index in (count * n // tried for n in range(tried)):
            case = try_edit(browser, converter, deck, edit, index)
            report.add(case, oracle.judge(case))


class Report:
    def __init__(self, verbose):
        self.verbose = verbose
        self.tried = defaultdict(int)
        self.wrong = defaultdict(list)
        self.lock = threading.Lock()

    def add(self, case, complaints):
        with self.lock:
            self.tried[case.edit.name] += 1
            if complaints:
                self.wrong[case.edit.name].append(f"{case.deck.name}:{case.index}")
            if self.verbose and (complaints or self.verbose > 1):
                self.explain(case, complaints)

    def explain(self, case, complaints):
        print(f"==== {case.edit.name} in {case.deck.name}, place {case.index} "
              f"({case.selected['text']!r}): {' '.join(case.edit.steps)}")
        print("---- source\n" + case.source_text)
        print("---- edited page\n" + case.edited_html.partition('data-deck="')[0] + "data-deck=…" +
              case.edited_html.partition('data-deck="')[2].partition('"')[2])
        print("---- result\n" + ("(refused)" if case.result is None else case.result_text))
        print("---- verdict")
        for complaint in complaints or ["right"]:
            print("   ", complaint)
        print(flush=True)

    def summary(self):
        for name in [edit.name for edit in classes.EDITS if edit.name in self.tried]:
            print(f"tried: browser {name}: {self.tried[name]}, {len(self.wrong[name])} wrong")
        wrong = sum(map(len, self.wrong.values()))
        print(f"tried: browser edits: {sum(self.tried.values())}, {wrong} wrong")
        return wrong


def work(todo, converter, edits, limit, report, failures):
    browser = Browser()
    try:
        while True:
            try_deck(browser, converter, todo.get_nowait(), edits, limit, report)
    except queue.Empty:
        pass
    except Exception as failure:  # the thread's failure is the run's
        failures.append(failure)
        raise
    finally:
        browser.close()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--command", default=str(decks.TOP / "build/release/bin/tessaly"))
    parser.add_argument("--decks", action="append", default=[])
    parser.add_argument("--deck", help="only decks with this in their name")
    parser.add_argument("--class", dest="names", action="append", default=[])
    parser.add_argument("--limit", type=int, default=3, help="places of a class in a deck")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("-v", "--verbose", action="count", default=0)
    options = parser.parse_args()
    converter = decks.Converter(options.command)
    edits = [e for e in classes.EDITS if not options.names or e.name in options.names]
    found = [d for d in decks.load(options.decks, converter) if d.is_valid and d.is_utf8
             and (not options.deck or options.deck in d.name)]
    report, failures, todo = Report(options.verbose), [], queue.Queue()
    for deck in sorted(found, key=lambda d: -len(d.bytes)):
        todo.put(deck)
    started = time.time()
    threads = [threading.Thread(target=work, args=(todo, converter, edits, options.limit, report, failures))
               for _ in range(options.jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    wrong = report.summary()
    print(f"{len(found)} decks, {time.time() - started:.0f} s")
    return 1 if wrong or failures else 0


if __name__ == "__main__":
    sys.exit(main())
