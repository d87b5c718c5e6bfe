"""Counts what was tried and what was wrong, and explains it."""

import threading
from collections import defaultdict


class Report:
    def __init__(self, verbose):
        self.verbose = verbose
        self.tried = defaultdict(int)
        self.wrong = defaultdict(list)
        self._lock = threading.Lock()

    def add(self, name, place, complaints, case=None):
        with self._lock:
            self.tried[name] += 1
            if complaints:
                self.wrong[name].append(f"{place}: {'; '.join(complaints)}")
            if case and self.verbose and (complaints or self.verbose > 1):
                explain(case, complaints)

    def summary(self, allowed):
        """Prints the table, and each wrong case of a class that has more of them than allowed. The
        number of such classes."""
        failed = 0
        for name in self.tried:
            wrong, known = len(self.wrong[name]), allowed.get(name, 0)
            if wrong > known:
                failed += 1
                print("\n".join(f"wrong: {name}: {line}" for line in self.wrong[name]))
            note = f", of which {known} are known" if wrong > known > 0 else ""
            print(f"tried: browser: {name}: {self.tried[name]}, {wrong} wrong{note}")
        tried, wrong = sum(self.tried.values()), sum(map(len, self.wrong.values()))
        print(f"tried: browser: all classes: {tried}, {wrong} wrong ({100 * wrong / max(tried, 1):.2f} %)")
        return failed


def explain(case, complaints):
    before, _, rest = case.edited_html.partition('data-deck="')
    page = before + ('data-deck="…"' + rest.partition('"')[2] if rest else "")
    print(f"==== {case.edit.name} in {case.deck.name}, place {case.index} "
          f"({'; '.join(repr(s['text']) for s in case.selected)}): {' '.join(case.steps)}")
    print("---- source\n" + case.source_text)
    print("---- edited page\n" + page)
    print("---- result\n" + ("(refused)" if case.result is None else case.result_text))
    print("---- verdict")
    print("\n".join(f"    {complaint}" for complaint in complaints or ["right"]), flush=True)
