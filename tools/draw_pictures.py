#!/usr/bin/env python3
"""Draws the pictures of the component: src/format/pictures/*.ico and *.bmp, and the contact sheet
docs/pictures.png; and src/naming/pictures/WARNING.ico, the picture of the file-exists dialog. Takes
no arguments; the same files come out of every run."""

import pathlib
import sys

sys.dont_write_bytecode = True

from drawing import motifs as m  # noqa: E402: no byte code beside the sources
from drawing.canvas import Canvas  # noqa: E402
from drawing.formats import bmp, ico  # noqa: E402
from drawing.shapes import outline, rect, without  # noqa: E402
from drawing.sheet import contact_sheet  # noqa: E402

TOP = pathlib.Path(__file__).resolve().parent.parent

PAGE = rect(1, 3, 27, 29)

FORMATTING = {  # icon: motif, its width; the bitmap's name has an S behind it
    "BOLD": (m.bold(), 12),
    "ITALIC": (m.italic(), 12),
    "UNDERLINE": (m.underline(), 12),
    "ALIGNL": (m.lines(0, 8), 12),
    "ALIGNC": (m.lines(2, 10), 12),
    "ALIGNR": (m.lines(4, 12), 12),
    "BIG": (m.big(), 16),
    "SMALL": (m.small(), 16),
    "NORMAL": (m.letter_a(), 10),
}

OTHER_ICONS = {
    # The first two by name, and so what stands for the whole component and for its first kind of
    # file where a shell lists them: a phone, and a deck of cards.
    "AAAAAAAAAAA": m.placed(m.phone(), 16, 4),
    "ABBBBBBBB": m.placed(m.deck(), 12, 4),
}

OTHER_BITMAPS = {
    "CHECK": m.check(),
    "COLOURTAGS": m.colour_tags(),
    "DOCCHK": m.page_with_box(True),
    "DOCUCHK": m.page_with_box(False),
    "HE": m.crossed_eye(),  # hide elements
    "OPENPROJECT": m.open_folder(),
    "OPTIONS": m.gear(),
    "REFRESH": m.refresh_one(),
    "REFRESH1": m.refresh_all(),
    "SAVEPROJECT": m.diskette(),
    "SMV": m.markup_page(),  # show markup view
    "SPV": m.text_page(),  # show plain view
    "SUT": m.tag_around(m.question()),  # show unsupported tags
    "VALIDATE": m.tag_around(m.small_tick()),
}


def icon(motif):
    """The motif in front of a page. A white rim keeps its soft edges off the page's line and off
    whatever the icon is shown on."""
    canvas = Canvas(32)
    canvas.fill(PAGE, m.WHITE)
    canvas.fill(without(PAGE, rect(3, 5, 25, 27)), m.GREY)
    for shape, _ in motif:
        canvas.fill(shape, m.WHITE)
        canvas.fill(outline(shape, 3), m.WHITE)
    for shape, colour in motif:
        canvas.fill(shape, colour)
    return canvas


def bitmap(motif):
    canvas = Canvas(16)
    for shape, colour in motif:
        canvas.fill(shape, colour)
    return canvas


def warning(size):
    canvas = Canvas(size)
    for shape, colour in m.warning(size):
        canvas.fill(shape, colour)
    return canvas


def main():
    icons = {}
    bitmaps = {}
    for name, (motif, width) in FORMATTING.items():
        icons[name] = icon(m.placed(motif, 31 - width * 1.5, 7.5, 1.5))
        bitmaps[name + "S"] = bitmap(m.placed(motif, (16 - width) // 2, 2))
    icons.update((name, icon(motif)) for name, motif in OTHER_ICONS.items())
    bitmaps.update((name, bitmap(motif)) for name, motif in OTHER_BITMAPS.items())

    folder = TOP / "src/format/pictures"
    folder.mkdir(parents=True, exist_ok=True)
    for name, canvas in icons.items():
        (folder / (name + ".ico")).write_bytes(ico(canvas))
    for name, canvas in bitmaps.items():
        (folder / (name + ".bmp")).write_bytes(bmp(canvas))
    warnings = [warning(32), warning(16)]
    (TOP / "src/naming/pictures/WARNING.ico").write_bytes(
        ico(*warnings, bits=4, palette=m.SIXTEEN_COLOURS))
    icons["WARNING"] = warnings[0]
    bitmaps["WARNING 16"] = warnings[1]
    sheet = contact_sheet([(name, canvas, True) for name, canvas in icons.items()]
                          + [(name, canvas, False) for name, canvas in bitmaps.items()])
    (TOP / "docs/pictures.png").write_bytes(sheet)
    print(f"{len(icons) + len(bitmaps)} pictures, a sheet of {len(sheet)} bytes")


if __name__ == "__main__":
    main()
