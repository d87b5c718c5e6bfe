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


def _icon_image(canvas, bits, palette):
    """Palette, pixels and the mask of 1 bit; rows are filled up to 4 bytes."""
    size = canvas.size
    black = (0, 0, 0)
    opaque = canvas.opaque()
    # What is transparent must be black: it is combined with the background by exclusive or.
    pixels = [pixel if drawn else black for pixel, drawn in zip(canvas.pixels(), opaque)]
    if palette:
        pixels = [_nearest(pixel, palette) for pixel in pixels]
    else:
        palette = [black] + sorted(set(pixels) - {black})
    if len(palette) > 2 ** bits:
        raise ValueError(f"{len(palette)} colours are too many for a palette")
    index = {colour: i for i, colour in reversed(list(enumerate(palette)))}
    palette = palette + [black] * (2 ** bits - len(palette))

    def row_bytes(bits_of_row):
        row = int(bits_of_row, 2).to_bytes(len(bits_of_row) // 8, "big")
        return row + b"\0" * (-len(row) % 4)

    image = b"".join(bytes((blue, green, red, 0)) for red, green, blue in palette)
    for row in _rows_upwards(pixels, size):
        image += row_bytes("".join(f"{index[pixel]:0{bits}b}" for pixel in row))
    for row in _rows_upwards(opaque, size):
        image += row_bytes("".join("0" if drawn else "1" for drawn in row))
    # The height counts the colours and the mask, one above the other.
    header = struct.pack(INFO_HEADER, INFO_HEADER_SIZE, size, 2 * size, 1, bits, 0,
                         len(image) - 4 * 2 ** bits, 0, 0, 2 ** bits, 0)
    return header + image


def _nearest(pixel, palette):
    return min(palette, key=lambda colour: sum((a - b) ** 2 for a, b in zip(pixel, colour)))


def ico(*canvases, bits=8, palette=None):
    """An image for each canvas, the largest first, of so many bits per pixel; without a palette,
    each image has one of its own colours."""
    images = [_icon_image(canvas, bits, palette) for canvas in canvases]
    at = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for canvas, image in zip(canvases, images):
        directory += struct.pack("<BBBBHHII", canvas.size, canvas.size, 2 ** bits % 256, 0, 1, bits,
                                 len(image), at)
        at += len(image)
    return directory + b"".join(images)


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
