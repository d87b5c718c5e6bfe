#!/usr/bin/python3
"""Edits the pages of decks in a real Chromium and judges the decks that come of it.

Without options: all classes over the decks of the repository and random sequences with a fixed
seed, as in ./test; a class may have the wrong cases of known.py, and no more.
"""

import argparse
import os
import queue
import random
import sys
import threading
import time

import classes
import decks
import oracle
import trial
from browser import Browser
from known import KNOWN, NOT_IN_SEQUENCES
from report import Report

SEQUENCES = 60
LENGTH = 10


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--command", default=str(decks.TOP / "build/release/bin/tessaly"))
    parser.add_argument("--decks", action="append", default=[], help="a folder of decks, not ours")
    parser.add_argument("--deck", default="", help="only decks with this in their name")
    parser.add_argument("--class", dest="names", action="append", default=[],
                        help="only this class; `unedited` and `sequence` are two of them")
    parser.add_argument("--limit", type=int, help="places of a class in a deck")
    parser.add_argument("--every", type=int, default=1, help="only each Nth deck")
    parser.add_argument("--seed", type=int, default=1, help="of the first random sequence")
    parser.add_argument("--length", type=int, default=LENGTH, help="edits of a sequence")
    parser.add_argument("--sequences", type=int, default=SEQUENCES)
    parser.add_argument("--soak", type=float, help="random sequences, for this many minutes")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("-v", "--verbose", action="count", default=0,
                        help="explain the wrong cases; twice: all cases")
    return parser.parse_args()


class Suite:
    def __init__(self, options):
        self.options = options
        self.converter = decks.Converter(options.command)
        self.report = Report(options.verbose)
        self.edits = [e for e in classes.EDITS if not options.names or e.name in options.names]
        self.all = [d for d in decks.load(options.decks, self.converter)
                    if options.deck in d.name][::options.every]
        self.decks = [d for d in self.all if d.is_valid and d.is_utf8]
        self.todo = queue.Queue()
        self.failures = []

    def wants(self, name):
        return not self.options.names or name in self.options.names

    def plan(self):
        """Everything to be done, the longest first."""
        if self.options.soak:
            self.todo.put(self.soak)
            self.todo.put(self.soak)
            return
        for deck in sorted(self.decks, key=lambda d: -len(d.bytes)):
            self.todo.put(lambda browser, deck=deck: self.edit(browser, deck))
        if self.wants("sequence"):
            for seed in range(self.options.seed, self.options.seed + self.options.sequences):
                self.todo.put(lambda browser, seed=seed: self.sequence(browser, seed))
        if self.wants("unedited"):
            for deck in self.all:
                self.todo.put(lambda browser, deck=deck: self.unedited(browser, deck))

    def edit(self, browser, deck):
        limit = self.options.limit or (1 if deck.is_small else 3)
        for case in trial.each_place(browser, self.converter, deck, self.edits, limit):
            self.report.add(case.edit.name, f"{deck.name}:{case.index}", oracle.judge(case), case)

    def unedited(self, browser, deck):
        is_whole = trial.unedited(browser, self.converter, deck)
        self.report.add("unedited", deck.name, [] if is_whole else ["not the original bytes"])

    def sequence(self, browser, seed):
        """Of classes without known faults, that those of one class do not hide others."""
        deck = random.Random(seed).choice([d for d in self.decks if d.name not in NOT_IN_SEQUENCES])
        edits = [e for e in classes.EDITS if e.name not in KNOWN and not e.loose]
        case = trial.sequence(browser, self.converter, deck, edits, seed, self.options.length)
        self.report.add("sequence", f"{deck.name}, seed {seed}: {' '.join(case.steps)}", oracle.judge(case), case)

    def soak(self, browser):
        end = time.time() + 60 * self.options.soak
        while time.time() < end:
            self.sequence(browser, random.randrange(1 << 31))

    def work(self):
        browser = Browser()
        try:
            while not self.failures:
                self.todo.get_nowait()(browser)
        except queue.Empty:
            pass
        except BaseException as failure:  # a thread's failure is the run's
            self.failures.append(failure)
            raise
        finally:
            browser.close()

    def run(self):
        self.plan()
        threads = [threading.Thread(target=self.work) for _ in range(self.options.jobs)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()


def main():
    options = arguments()
    started = time.time()
    suite = Suite(options)
    suite.run()
    failed = suite.report.summary({} if options.decks or options.limit else KNOWN)
    print(f"{len(suite.decks)} decks, {time.time() - started:.0f} s")
    if not suite.report.tried:
        print("nothing was tried")
    return 1 if failed or suite.failures or not suite.report.tried else 0


if __name__ == "__main__":
    sys.exit(main())
