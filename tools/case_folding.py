#!/usr/bin/env python3
"""Writes src/util/CaseFolding.h from Unicode's CaseFolding.txt, as Debian's unicode-data has it.

Simple case folding, whole: the mappings of the classes C and S. They are written as ranges, in which
every letter, or every second one, is the same distance from what it folds to.
"""

import pathlib
import sys

DATA = pathlib.Path("/usr/share/unicode/CaseFolding.txt")
OUT = pathlib.Path(__file__).resolve().parent.parent / "src/util/CaseFolding.h"

HEAD = """#pragma once

#include <array>
#include <cstdint>

// Written by tools/case_folding.py from {version}; not to be edited.

namespace tessaly {{

/// Every `step`th code point from `first` to `last` folds to the one that is `distance` away.
struct CaseRange {{
    char32_t first;
    char32_t last;
    std::uint32_t step;
    std::int32_t distance;
}};

inline constexpr std::array<CaseRange, {count}> caseRanges = {{{{
"""

TAIL = """}};

} // namespace tessaly
"""


def mappings(text):
    for line in text.splitlines():
        fields = [field.strip() for field in line.split("#")[0].split(";")]
        if len(fields) >= 3 and fields[1] in ("C", "S"):
            yield int(fields[0], 16), int(fields[2], 16)


def ranges(pairs):
    """Ranges as [first, last, step, distance], in order."""
    found = []
    for code, folded in sorted(pairs):
        last = found[-1] if found else None
        step = code - last[1] if last else 0
        fits = last and step in (1, 2) and folded - code == last[3] and \
            (last[0] == last[1] or last[2] == step)
        if fits:
            last[1], last[2] = code, step
        else:
            found.append([code, code, 1, folded - code])
    return found


def main():
    if not DATA.exists():
        sys.exit(f"{DATA} is missing; install Debian's unicode-data")
    text = DATA.read_text(encoding="utf-8")
    rows = ranges(mappings(text))
    version = text.splitlines()[0].lstrip("# ")
    lines = [f"    {{0x{first:04X}, 0x{last:04X}, {step}, {distance}}},\n"
             for first, last, step, distance in rows]
    OUT.write_text(HEAD.format(version=version, count=len(rows)) + "".join(lines) + TAIL)
    print(f"{OUT}: {len(rows)} ranges")


if __name__ == "__main__":
    main()
