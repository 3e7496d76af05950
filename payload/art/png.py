"""PNG files with the standard library alone: reads what rsvg-convert writes, writes what FLTK shows best.

The written files are 8 bits deep, not interlaced and without a transparency chunk. Pixels are RGBA
bytes in rows; a picture with no transparent pixel is written as RGB, or with a palette where 256
colours hold it without loss.
"""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def _paeth(left, up, corner):
    guess = left + up - corner
    from_left, from_up, from_corner = abs(guess - left), abs(guess - up), abs(guess - corner)
    if from_left <= from_up and from_left <= from_corner:
        return left
    return up if from_up <= from_corner else corner


def _unfilter(kind, row, above, step):
    for i in range(len(row)):
        left = row[i - step] if i >= step else 0
        corner = above[i - step] if i >= step else 0
        guess = (0, left, above[i], (left + above[i]) // 2, _paeth(left, above[i], corner))[kind]
        row[i] = (row[i] + guess) & 255
    return row


def read_rgba(data):
    """Width, height and pixels of an 8-bit RGB or RGBA file that isn't interlaced."""
    if data[:8] != SIGNATURE:
        raise ValueError("not a PNG file")
    place, packed = 8, b""
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        body = data[place + 8:place + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        place += 12 + length
    if depth != 8 or colour not in (2, 6) or interlace:
        raise ValueError("only 8-bit RGB and RGBA are read")
    step = 4 if colour == 6 else 3
    raw, above, pixels = zlib.decompress(packed), bytearray(width * step), bytearray()
    for y in range(height):
        start = y * (width * step + 1)
        row = bytearray(raw[start + 1:start + 1 + width * step])
        above = _unfilter(raw[start], row, above, step)
        if step == 4:
            pixels += above
        else:
            for x in range(0, len(above), 3):
                pixels += above[x:x + 3] + b"\xff"
    return width, height, bytes(pixels)


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def _filtered(rows, step):
    """Each row by the filter whose result has the smallest sum, the usual guess at what packs best."""
    above, out = bytes(len(rows[0])), []
    for row in rows:
        best = None
        for kind in range(5):
            line = bytearray(len(row))
            for i, value in enumerate(row):
                left = row[i - step] if i >= step else 0
                corner = above[i - step] if i >= step else 0
                if kind == 0:
                    guess = 0
                elif kind == 1:
                    guess = left
                elif kind == 2:
                    guess = above[i]
                elif kind == 3:
                    guess = (left + above[i]) // 2
                else:
                    guess = _paeth(left, above[i], corner)
                line[i] = (value - guess) & 255
            cost = sum(min(value, 256 - value) for value in line)
            if best is None or cost < best[0]:
                best = (cost, bytes([kind]) + bytes(line))
        out.append(best[1])
        above = row
    return b"".join(out)


def write(width, height, pixels):
    """The bytes of a PNG file that holds the RGBA pixels without loss."""
    quads = [pixels[i:i + 4] for i in range(0, len(pixels), 4)]
    if any(quad[3] != 255 for quad in quads):
        colour, step, palette = 6, 4, b""
        flat = pixels
    else:
        colours = sorted(set(quads))
        if len(colours) <= 256:
            colour, step = 3, 1
            palette = _chunk(b"PLTE", b"".join(quad[:3] for quad in colours))
            index = {quad: i for i, quad in enumerate(colours)}
            flat = bytes(index[quad] for quad in quads)
        else:
            colour, step, palette = 2, 3, b""
            flat = b"".join(quad[:3] for quad in quads)
    rows = [flat[y * width * step:(y + 1) * width * step] for y in range(height)]
    # Neighbouring palette numbers mean nothing, so a palette picture isn't filtered.
    body = b"".join(b"\0" + row for row in rows) if colour == 3 else _filtered(rows, step)
    header = struct.pack(">IIBBBBB", width, height, 8, colour, 0, 0, 0)
    return (SIGNATURE + _chunk(b"IHDR", header) + palette +
            _chunk(b"IDAT", zlib.compress(body, 9)) + _chunk(b"IEND", b""))
