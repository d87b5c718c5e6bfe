"""The motifs. Those of the formatting commands are shared by an icon and a bitmap; edges lie on
whole pixels at the bitmap's size, and on whole pixels again when enlarged by a half."""

import math

from .shapes import (arc_points, curve, disc, moved, outline, polygon, rect, rounded, stroke,
                     without)

INK = (31, 47, 70)
BLUE = (38, 104, 178)
SKY = (190, 214, 240)
GREEN = (36, 140, 62)
RED = (204, 48, 40)
AMBER = (246, 190, 72)
STRAW = (255, 221, 140)
BROWN = (140, 92, 20)
GREY = (112, 128, 150)
PALE = (222, 228, 236)
WHITE = (255, 255, 255)

# The palette of the sixteen colours that every screen has.
SIXTEEN_COLOURS = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128),
                   (0, 128, 128), (192, 192, 192), (128, 128, 128), (255, 0, 0), (0, 255, 0),
                   (255, 255, 0), (0, 0, 255), (255, 0, 255), (0, 255, 255), (255, 255, 255)]
BLACK, OLIVE, YELLOW = SIXTEEN_COLOURS[0], SIXTEEN_COLOURS[3], SIXTEEN_COLOURS[11]

# A motif is a list of (shape, colour), drawn in this order.


def placed(motif, dx, dy, scale=1):
    return [(moved(shape, dx, dy, scale), colour) for shape, colour in motif]


# Formatting: each in a box from (0, 0) that is 12 high.

def bold():
    body = polygon(*curve((1, 0), (6.4, 0), (9.4, 0, 10.4, 1.4, 10.4, 3.1),
                          (10.4, 4.5, 9.6, 5.4, 8.4, 5.7), (10.1, 6, 11, 7.1, 11, 8.7),
                          (11, 10.9, 9.5, 12, 7, 12), (1, 12)))
    upper = polygon(*curve((4, 2), (6, 2), (7.2, 2, 7.5, 2.6, 7.5, 3.4),
                           (7.5, 4.2, 7.1, 4.8, 6, 4.8), (4, 4.8)))
    lower = polygon(*curve((4, 6.8), (6.3, 6.8), (7.6, 6.8, 8, 7.4, 8, 8.4),
                           (8, 9.4, 7.6, 10, 6.3, 10), (4, 10)))
    return [(without(body, upper, lower), INK)]


def italic():
    stem = polygon((6.6, 0), (9, 0), (5.4, 12), (3, 12))
    return [(stem + rect(4, 0, 11.3, 1.6) + rect(0.7, 10.4, 8, 12), INK)]


def underline():
    letter = stroke(curve((3, 0), (3, 5), (3, 9, 9, 9, 9, 5), (9, 0)), 2)
    return [(letter, INK), (rect(1, 10, 11, 12), BLUE)]


def lines(middle_left, middle_right):
    return [(rect(0, 1, 12, 3) + rect(middle_left, 5, middle_right, 7) + rect(0, 9, 12, 11), INK)]


def letter_a():
    body = polygon((0, 12), (3.9, 0), (6.1, 0), (10, 12), (7.7, 12), (6.8, 9), (3.2, 9), (2.3, 12))
    return [(without(body, polygon((5, 2.7), (6.25, 7), (3.75, 7))), INK)]


def big():
    return letter_a() + [(rect(12, 0, 14, 6) + rect(10, 2, 16, 4), GREEN)]


def small():
    return letter_a() + [(rect(10, 2, 16, 4), RED)]


# For the icons of the component itself and of a deck: 24 high.

def phone():
    case = rounded(0, 0, 14, 24, 3)
    keys = [c for y in (16, 19) for x in (2, 6, 10) for c in rect(x, y, x + 2, y + 2)]
    return [(case, INK), (rect(2, 4, 12, 14), SKY), (brackets(3, 6.4, 2.6, 5.2, 1.5, 2.8), BLUE),
            (rect(5, 1.6, 9, 2.4), GREY), (keys, WHITE)]


def deck():
    def card(x, y):
        return [(rect(x, y, x + 13, y + 16), GREY), (rect(x + 1, y + 1, x + 12, y + 15), WHITE)]
    return (card(0, 0) + card(3, 4) + [(rect(6, 8, 19, 24), INK), (rect(7, 9, 18, 23), SKY),
                                       (brackets(8.2, 12.8, 3.2, 6.4, 1.7, 2.2), BLUE)])


# The other bitmaps: 16 by 16.

def brackets(x, y, width, height, line, gap):
    """< and >, each of that width and height, with a gap between them."""
    middle = y + height / 2
    right = x + 2 * width + gap
    return (stroke([(x + width, y), (x, middle), (x + width, y + height)], line)
            + stroke([(right - width, y), (right, middle), (right - width, y + height)], line))


def tick(x, y, scale, line):
    return stroke([(x, y + 3 * scale), (x + 2.5 * scale, y + 5.5 * scale), (x + 7 * scale, y)],
                  line)


def page(left, top, right, bottom):
    """A page with its upper right corner turned down."""
    fold = 4
    sheet = polygon((left, top), (right - fold, top), (right, top + fold), (right, bottom),
                    (left, bottom))
    inner = polygon((left + 1, top + 1), (right - fold - 0.4, top + 1),
                    (right - 1, top + fold + 0.4), (right - 1, bottom - 1), (left + 1, bottom - 1))
    corner = polygon((right - fold - 1, top + 1), (right - fold - 1, top + fold + 1),
                     (right - 1, top + fold + 1), (right, top + fold), (right - fold, top))
    return [(sheet, GREY), (inner, WHITE), (corner, GREY)]


def check():
    return [(tick(1.8, 2.8, 1.75, 3), GREEN)]


def colour_tags():
    return [(stroke([(4.8, 3), (1.2, 8), (4.8, 13)], 2), BLUE),
            (stroke([(9.6, 2.5), (6.4, 13.5)], 2), RED),
            (stroke([(11.2, 3), (14.8, 8), (11.2, 13)], 2), GREEN)]


def page_with_box(ticked):
    text = rect(3, 4, 6, 5) + rect(3, 6, 8, 7)
    box = [(rect(5, 7, 16, 16), WHITE), (rect(6, 8, 14, 16), INK), (rect(7, 9, 13, 15), WHITE)]
    mark = [(tick(7.8, 7.6, 0.9, 2), GREEN)] if ticked else []
    return page(1, 0, 12, 15) + [(text, GREY)] + box + mark


def crossed_eye():
    lens = curve((0.8, 8), (4, 1.8, 12, 1.8, 15.2, 8), (12, 14.2, 4, 14.2, 0.8, 8))
    slash = [(2, 14), (14, 2)]
    return [(stroke(lens, 1.5, True), INK), (disc(8, 8, 3.2), BLUE), (stroke(slash, 3.4), WHITE),
            (stroke(slash, 1.6), RED)]


def open_folder():
    back = polygon((1, 14), (1, 3), (2, 2), (6, 2), (7.5, 4), (13, 4), (13, 14))
    front = polygon((1, 14), (4, 7), (16, 7), (13, 14))
    return [(back, AMBER), (outline(back, 1), BROWN), (front, STRAW),
            (outline(moved(front, -0.3, -0.2), 1), BROWN)]


def diskette():
    body = polygon((1, 1), (13, 1), (15, 3), (15, 15), (1, 15))
    return [(body, BLUE), (rect(4, 1, 11, 6), PALE), (rect(8, 2, 10, 5), INK),
            (rect(3, 8, 13, 15), WHITE), (rect(5, 10, 11, 11) + rect(5, 12, 11, 13), GREY)]


def gear():
    teeth = 8
    rim = []
    for i in range(teeth):
        for radius, offset in ((5.2, -14), (7.4, -9), (7.4, 9), (5.2, 14)):
            angle = math.radians(i * 360 / teeth + offset)
            rim.append((8 + radius * math.cos(angle), 8 + radius * math.sin(angle)))
    return [(without(polygon(*rim), disc(8, 8, 2.4)), INK)]


def turn(start, end, colour):
    """An arrow on a circle, clockwise from the one angle to the other."""
    radius = 5.2
    head = 2.8
    way = arc_points(8, 8, radius, start, end)
    angle = math.radians(end)
    x, y = way[-1]
    out = (math.cos(angle) * head, math.sin(angle) * head)
    ahead = (-math.sin(angle) * head * 1.35, math.cos(angle) * head * 1.35)
    point = polygon((x + out[0], y + out[1]), (x + ahead[0], y + ahead[1]),
                    (x - out[0], y - out[1]))
    return [(stroke(way, 2), colour), (point, colour)]


def refresh_one():
    return turn(-15, 245, GREEN)


def refresh_all():
    return turn(-165, -40, BLUE) + turn(15, 140, GREEN)


def markup_page():
    return page(1, 0, 15, 16) + [(brackets(3.5, 6, 3, 6, 1.6, 3), BLUE)]


def text_page():
    text = [c for y in (6, 8, 10) for c in rect(3, y, 13, y + 1)] + rect(3, 12, 9, 13)
    return page(1, 0, 15, 16) + [(rect(3, 3, 8, 5), BLUE), (text, INK)]


def tag_around(motif):
    return [(stroke([(4.2, 3), (1, 8), (4.2, 13)], 2) + stroke([(11.8, 3), (15, 8), (11.8, 13)], 2),
             BLUE)] + motif


def question():
    bow = curve((5.9, 5.2), (5.9, 2.4, 10.1, 2.4, 10.1, 5.2), (10.1, 7, 8, 7, 8, 9.6))
    return [(stroke(bow, 1.9), RED), (rect(7, 11, 9, 13), RED)]


def small_tick():
    return [(tick(4.6, 4.8, 1, 2.2), GREEN)]


def warning(size):
    """A yellow triangle with a black exclamation mark, for 32 or 16 pixels."""
    if size == 32:
        triangle = polygon((16, 3), (29, 28), (3, 28))
        mark = polygon((14, 10.5), (18, 10.5), (17, 20), (15, 20)) + disc(16, 23.8, 1.9)
        return [(outline(triangle, 4), BLACK), (triangle, BLACK),
                (polygon((16, 4.4), (27.7, 27), (4.3, 27)), OLIVE),
                (polygon((16, 6), (26.4, 26.2), (5.6, 26.2)), YELLOW), (mark, BLACK)]
    triangle = polygon((8, 1.8), (14, 13.8), (2, 13.8))
    mark = rect(7, 5, 9, 10) + rect(7, 11, 9, 13)
    return [(outline(triangle, 2.6), BLACK), (triangle, YELLOW), (mark, BLACK)]
