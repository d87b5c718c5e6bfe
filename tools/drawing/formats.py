"""The picture files. Numbers in .ico and .bmp are little-endian, rows run from the bottom up."""

import struct
import zlib

INFO_HEADER = "<IiiHHIIiiII"
INFO_HEADER_SIZE = 40
PIXELS_A_METRE = 3780  # 96 to the inch


def _rows_upwards(values, size):
    return [values[y * size:(y + 1) * size] for y in reversed(range(size))]


def bmp(canvas):
    """24 bits per pixel, uncompressed."""
    size = canvas.size
    data = b""
    for row in _rows_upwards(canvas.pixels(), size):
        line = b"".join(bytes((blue, green, red)) for red, green, blue in row)
        data += line + b"\0" * (-len(line) % 4)
    start = 14 + INFO_HEADER_SIZE
    return (struct.pack("<2sIHHI", b"BM", start + len(data), 0, 0, start)
            + struct.pack(INFO_HEADER, INFO_HEADER_SIZE, size, size, 1, 24, 0, len(data),
                          PIXELS_A_METRE, PIXELS_A_METRE, 0, 0)
            + data)


def ico(canvas):
    """One image of 8 bits per pixel with a palette of 256 colours, and a mask of 1 bit."""
    size = canvas.size
    black = (0, 0, 0)
    opaque = canvas.opaque()
    # What is transparent must be black: it is combined with the background by exclusive or.
    pixels = [pixel if drawn else black for pixel, drawn in zip(canvas.pixels(), opaque)]
    palette = [black] + sorted(set(pixels) - {black})
    if len(palette) > 256:
        raise ValueError(f"{len(palette)} colours are too many for a palette")
    index = {colour: i for i, colour in enumerate(palette)}
    palette += [black] * (256 - len(palette))

    image = b"".join(bytes((blue, green, red, 0)) for red, green, blue in palette)
    image += b"".join(bytes(index[pixel] for pixel in row) for row in _rows_upwards(pixels, size))
    for row in _rows_upwards(opaque, size):
        bits = "".join("0" if drawn else "1" for drawn in row)
        image += int(bits, 2).to_bytes(size // 8, "big")
    # The height counts the colours and the mask, one above the other.
    header = struct.pack(INFO_HEADER, INFO_HEADER_SIZE, size, 2 * size, 1, 8, 0,
                         size * size + size * size // 8, 0, 0, 256, 0)
    directory_size = 6 + 16
    return (struct.pack("<HHH", 0, 1, 1)
            + struct.pack("<BBBBHHII", size, size, 0, 0, 1, 8, len(header) + len(image),
                          directory_size)
            + header + image)


def png(width, height, pixels):
    """24 bits per pixel, from a list of (red, green, blue)."""
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    lines = b"".join(b"\0" + bytes(c for pixel in pixels[y * width:(y + 1) * width] for c in pixel)
                     for y in range(height))
    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(lines, 9))
            + chunk(b"IEND", b""))
