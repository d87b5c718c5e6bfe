"""A square canvas that fills shapes with soft edges."""

SUBROWS = 16  # sampled rows in a pixel; along a row the coverage is exact


def _spans(shape, y):
    """The stretches of the row y that the shape fills, by non-zero winding."""
    crossings = []
    for contour in shape:
        for (x0, y0), (x1, y1) in zip(contour, contour[1:] + contour[:1]):
            if (y0 <= y) != (y1 <= y):
                x = x0 + (y - y0) * (x1 - x0) / (y1 - y0)
                crossings.append((x, 1 if y1 > y0 else -1))
    winding = 0
    start = 0.0
    for x, direction in sorted(crossings):
        if winding == 0:
            start = x
        winding += direction
        if winding == 0:
            yield start, x


def coverage(shape, size):
    """How much of each pixel the shape fills, 0 to 1, row by row."""
    cells = [0.0] * (size * size)
    for subrow in range(size * SUBROWS):
        row = subrow // SUBROWS * size
        for start, end in _spans(shape, (subrow + 0.5) / SUBROWS):
            start, end = max(start, 0.0), min(end, float(size))
            for x in range(int(start), size):
                if x >= end:
                    break
                cells[row + x] += (min(end, x + 1) - max(start, x)) / SUBROWS
    return cells


class Canvas:
    """Starts white and, to the mask, empty."""

    def __init__(self, size):
        self.size = size
        self._colours = [(255.0, 255.0, 255.0)] * (size * size)
        self._drawn = [0.0] * (size * size)

    def fill(self, shape, colour):
        """Fills with the colour (red, green, blue)."""
        for i, part in enumerate(coverage(shape, self.size)):
            if part > 0:
                part = min(part, 1.0)
                self._colours[i] = tuple(old + (new - old) * part
                                         for old, new in zip(self._colours[i], colour))
                self._drawn[i] = max(self._drawn[i], part)

    def pixels(self):
        """The colours as whole numbers, row by row from the top."""
        return [tuple(round(c) for c in colour) for colour in self._colours]

    def opaque(self):
        """True for each pixel that was drawn on by at least a half."""
        return [drawn >= 0.5 for drawn in self._drawn]
