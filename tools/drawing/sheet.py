"""The contact sheet: every picture at its own size and enlarged, with its name below."""

from .formats import png

PAPER = (255, 255, 255)
TEXT = (40, 40, 40)
CELL = (226, 230, 236)
CHECKERS = ((226, 230, 236), (206, 212, 220))  # shows through where an icon is transparent
CELL_WIDTH = 160
CELL_HEIGHT = 152
MARGIN = 8
COLUMNS = 6
ENLARGED = 96  # pixels; a multiple of both sizes

LETTERS = {  # five columns by seven rows, a row being the bits of a number
    "A": (14, 17, 17, 31, 17, 17, 17), "B": (30, 17, 17, 30, 17, 17, 30),
    "C": (14, 17, 16, 16, 16, 17, 14), "D": (30, 17, 17, 17, 17, 17, 30),
    "E": (31, 16, 16, 30, 16, 16, 31), "F": (31, 16, 16, 30, 16, 16, 16),
    "G": (14, 17, 16, 23, 17, 17, 14), "H": (17, 17, 17, 31, 17, 17, 17),
    "I": (14, 4, 4, 4, 4, 4, 14), "J": (1, 1, 1, 1, 1, 17, 14),
    "K": (17, 18, 20, 24, 20, 18, 17), "L": (16, 16, 16, 16, 16, 16, 31),
    "M": (17, 27, 21, 21, 17, 17, 17), "N": (17, 25, 21, 19, 17, 17, 17),
    "O": (14, 17, 17, 17, 17, 17, 14), "P": (30, 17, 17, 30, 16, 16, 16),
    "R": (30, 17, 17, 30, 20, 18, 17), "S": (15, 16, 16, 14, 1, 1, 30),
    "T": (31, 4, 4, 4, 4, 4, 4), "U": (17, 17, 17, 17, 17, 17, 14),
    "V": (17, 17, 17, 17, 17, 10, 4), "Z": (31, 1, 2, 4, 8, 16, 31),
    "W": (17, 17, 17, 21, 21, 27, 17), "1": (4, 12, 4, 4, 4, 4, 14),
    "6": (14, 16, 16, 30, 17, 17, 14), " ": (0, 0, 0, 0, 0, 0, 0),
}


class _Sheet:
    def __init__(self, rows):
        self.width = COLUMNS * CELL_WIDTH + MARGIN
        self.height = rows * CELL_HEIGHT + MARGIN
        self.pixels = [PAPER] * (self.width * self.height)

    def block(self, left, top, width, height, colour):
        for y in range(top, top + height):
            self.pixels[y * self.width + left:y * self.width + left + width] = [colour] * width

    def text(self, left, top, name):
        for i, letter in enumerate(name):
            for y, bits in enumerate(LETTERS[letter]):
                for x in range(5):
                    if bits >> (4 - x) & 1:
                        self.block(left + i * 12 + x * 2, top + y * 2, 2, 2, TEXT)

    def picture(self, left, top, canvas, masked, scale):
        size = canvas.size
        for i, (pixel, drawn) in enumerate(zip(canvas.pixels(), canvas.opaque())):
            x, y = left + i % size * scale, top + i // size * scale
            if drawn or not masked:
                self.block(x, y, scale, scale, pixel)


def contact_sheet(pictures):
    """A .png of the pictures, a list of (name, canvas, masked): masked ones are icons."""
    sheet = _Sheet(-(-len(pictures) // COLUMNS))
    for i, (name, canvas, masked) in enumerate(pictures):
        left = MARGIN + i % COLUMNS * CELL_WIDTH
        top = MARGIN + i // COLUMNS * CELL_HEIGHT
        sheet.block(left, top, CELL_WIDTH - MARGIN, CELL_HEIGHT - MARGIN, CELL)
        scale = ENLARGED // canvas.size
        if masked:
            for square in range(64):
                x, y = square % 8, square // 8
                sheet.block(left + 8 + x * 12, top + 8 + y * 12, 12, 12, CHECKERS[(x + y) % 2])
        sheet.picture(left + 8, top + 8, canvas, masked, scale)
        sheet.picture(left + 112, top + 8, canvas, masked, 1)
        sheet.text(left + 8, top + 116, name)
    return png(sheet.width, sheet.height, sheet.pixels)
