#!/usr/bin/env python3
"""Draws the programs' icon: a fir tree of lamps on a night sky. Writes a Windows icon file in four sizes, the largest
packed as icons may have it since Windows Vista: plain it would be the larger part of a small program.

    draw_icon.py FILE
"""
import pathlib
import struct
import sys
import zlib

SIZES = (16, 32, 48, 256)
SAMPLES = 4  # in each direction of a pixel
SKY, TREE, STAR = (18, 24, 48), (24, 104, 64), (255, 226, 120)
LAMPS = ((0.50, 0.36, (255, 90, 90)), (0.42, 0.52, (255, 200, 80)), (0.60, 0.55, (110, 190, 255)),
         (0.34, 0.70, (120, 235, 140)), (0.52, 0.70, (255, 120, 210)), (0.68, 0.72, (255, 150, 70)))
TIERS = ((0.20, 0.44, 0.17), (0.34, 0.62, 0.25), (0.50, 0.82, 0.33))  # top, bottom, half width there


def inside_corner(x, y):
    """Whether a point lies on the sky, a square with round corners."""
    radius = 0.18
    dx, dy = max(radius - x, x - (1 - radius), 0), max(radius - y, y - (1 - radius), 0)
    return dx * dx + dy * dy <= radius * radius


def colour(x, y):
    """What is seen at a point of the unit square: red, green, blue and how much of it."""
    if not inside_corner(x, y):
        return 0, 0, 0, 0
    for lamp_x, lamp_y, light in LAMPS:
        if (x - lamp_x) ** 2 + (y - lamp_y) ** 2 <= 0.045 ** 2:
            return *light, 255
    if abs(x - 0.5) + abs(y - 0.18) <= 0.075:
        return *STAR, 255
    for top, bottom, half in TIERS:
        if top <= y <= bottom and abs(x - 0.5) <= half * (y - top) / (bottom - top):
            return *TREE, 255
    if 0.82 <= y <= 0.91 and abs(x - 0.5) <= 0.05:
        return 92, 60, 40, 255
    return *SKY, 255


def pixel(size, column, row):
    points = [colour((column + (i + 0.5) / SAMPLES) / size, (row + (j + 0.5) / SAMPLES) / size)
              for i in range(SAMPLES) for j in range(SAMPLES)]
    seen = [point for point in points if point[3]]
    if not seen:
        return b"\0\0\0\0"
    red, green, blue = (sum(point[part] for point in seen) // len(seen) for part in range(3))
    return bytes((blue, green, red, 255 * len(seen) // len(points)))


def bitmap(size):
    """A picture as icons hold it: a header, the rows from the bottom up, and a mask that hides nothing."""
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    rows = b"".join(pixel(size, column, row) for row in reversed(range(size)) for column in range(size))
    mask = b"\0" * ((size + 31) // 32 * 4 * size)
    return header + rows + mask


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def packed(size):
    """A picture as PNG: its rows from the top down, each with a leading zero, as they stand."""
    rows = b""
    for row in range(size):
        points = [pixel(size, column, row) for column in range(size)]
        rows += b"\0" + b"".join(bytes((red, green, blue, seen)) for blue, green, red, seen in points)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main(path):
    pictures = [packed(size) if size > 48 else bitmap(size) for size in SIZES]
    offset = 6 + 16 * len(SIZES)
    entries = b""
    for size, picture in zip(SIZES, pictures):
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(picture), offset)
        offset += len(picture)
    pathlib.Path(path).write_bytes(struct.pack("<HHH", 0, 1, len(SIZES)) + entries + b"".join(pictures))


if __name__ == "__main__":
    main(sys.argv[1])
