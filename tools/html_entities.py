#!/usr/bin/env python3
"""Writes ravikit/xml/HtmlEntities.h: the entities of HTML 4 that authors of decks know, and their
characters, from Python's html.entities."""

import html.entities
import pathlib

OUT = pathlib.Path(__file__).resolve().parent.parent / "ravikit/xml/HtmlEntities.h"

HEAD = """#pragma once

#include <array>
#include <string_view>

// Written by tools/html_entities.py; not to be edited.

namespace ravikit {{

/// An entity of HTML 4 that a deck cannot use by its name.
struct HtmlName {{
    std::u16string_view name;
    char16_t character;
}};

/// In the order of their names.
inline constexpr std::array<HtmlName, {count}> htmlNames = {{{{
"""


def main():
    rows = sorted(html.entities.name2codepoint.items())
    lines = [f'    {{u"{name}", 0x{code:04X}}},\n' for name, code in rows]
    OUT.write_text(HEAD.format(count=len(rows)) + "".join(lines) + "}};\n\n} // namespace ravikit\n")
    print(f"{OUT}: {len(rows)} entities")


if __name__ == "__main__":
    main()
