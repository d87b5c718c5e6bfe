"""Shapes: lists of contours, a contour being a list of points. One unit is a pixel, y goes down.

A contour that runs clockwise on the screen fills, one that runs the other way cuts a hole.
"""

import math


def _area(contour):
    ends = contour[1:] + contour[:1]
    return sum(x0 * y1 - x1 * y0 for (x0, y0), (x1, y1) in zip(contour, ends)) / 2


def polygon(*points):
    """A filled contour, whichever way round its points are given."""
    points = list(points)
    return [points if _area(points) > 0 else points[::-1]]


def without(shape, *holes):
    """The shape with the contours of the holes cut out."""
    return shape + [contour[::-1] for hole in holes for contour in hole]


def rect(x0, y0, x1, y1):
    return polygon((x0, y0), (x1, y0), (x1, y1), (x0, y1))


def arc_points(cx, cy, radius, start, end):
    """Points on a circle; angles in degrees, 0 at the right, growing clockwise."""
    steps = max(4, math.ceil(abs(end - start) / 10))
    angles = [math.radians(start + (end - start) * i / steps) for i in range(steps + 1)]
    return [(cx + radius * math.cos(a), cy + radius * math.sin(a)) for a in angles]


def disc(cx, cy, radius):
    return polygon(*arc_points(cx, cy, radius, 0, 360)[:-1])


def rounded(x0, y0, x1, y1, radius):
    corners = ((x1 - radius, y0 + radius, -90), (x1 - radius, y1 - radius, 0),
               (x0 + radius, y1 - radius, 90), (x0 + radius, y0 + radius, 180))
    return polygon(*(p for cx, cy, a in corners for p in arc_points(cx, cy, radius, a, a + 90)))


def curve(start, *segments):
    """Points along straight lines (x, y) and cubic curves (x1, y1, x2, y2, x, y) from start."""
    points = [start]
    for segment in segments:
        if len(segment) == 2:
            points.append(segment)
            continue
        x0, y0 = points[-1]
        x1, y1, x2, y2, x3, y3 = segment
        for i in range(1, 13):
            t = i / 12
            a, b, c, d = (1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3
            points.append((a * x0 + b * x1 + c * x2 + d * x3, a * y0 + b * y1 + c * y2 + d * y3))
    return points


def stroke(points, width, round_ends=False):
    """A line through the points, its corners rounded, its ends cut straight or rounded."""
    shape = []
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        if length > 0:
            dx, dy = (y1 - y0) / length * width / 2, (x0 - x1) / length * width / 2
            shape += polygon((x0 + dx, y0 + dy), (x1 + dx, y1 + dy), (x1 - dx, y1 - dy),
                             (x0 - dx, y0 - dy))
    for x, y in points if round_ends else points[1:-1]:
        shape += disc(x, y, width / 2)
    return shape


def outline(shape, width):
    """A line around every contour of the shape."""
    return [c for contour in shape for c in stroke(contour + contour[:1], width, True)]


def moved(shape, dx, dy, scale=1):
    """The shape enlarged from its origin, then shifted."""
    return [[(x * scale + dx, y * scale + dy) for x, y in contour] for contour in shape]
