"""Pixels of a PNG with 8 bits a channel and without interlacing, as browsers take them of pages."""
import struct
import zlib


def rows(png):
    """The rows of a picture, each a list of (red, green, blue)."""
    at, data = 8, b""
    while at < len(png):
        size, kind = struct.unpack(">I4s", png[at:at + 8])
        body = png[at + 8:at + 8 + size]
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", body)
            assert depth == 8 and colour in (2, 6) and not interlaced
        elif kind == b"IDAT":
            data += body
        at += size + 12
    channels = 3 if colour == 2 else 4
    stride = width * channels
    data = zlib.decompress(data)
    above = bytearray(stride)
    for row in range(height):
        start = row * (stride + 1)
        line = unfiltered(data[start], bytearray(data[start + 1:start + 1 + stride]), above, channels)
        yield [tuple(line[i:i + 3]) for i in range(0, stride, channels)]
        above = line


def unfiltered(kind, line, above, channels):
    for i in range(len(line)):
        left = line[i - channels] if i >= channels else 0
        corner = above[i - channels] if i >= channels else 0
        if kind == 1:
            add = left
        elif kind == 2:
            add = above[i]
        elif kind == 3:
            add = (left + above[i]) // 2
        elif kind == 4:
            estimate = left + above[i] - corner
            add = min((left, above[i], corner), key=lambda each: abs(estimate - each))
        else:
            return line
        line[i] = (line[i] + add) & 255
    return line


def colours(png):
    """How many pixels there are of each colour."""
    counts = {}
    for row in rows(png):
        for pixel in row:
            counts[pixel] = counts.get(pixel, 0) + 1
    return counts
