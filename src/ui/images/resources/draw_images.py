#!/usr/bin/env python3
"""Draws the library's bitmaps and icons (src/ui/images/resources/*/<id>.png).

The images are ours, drawn from simple shapes so that they can be made again:
    python3 src/ui/images/resources/draw_images.py
The skin's check box and radio bitmaps are drawn in palette indices: the red
byte of a pixel is the index into the button shading (grey on disk), pure
red is transparent.
"""
import math
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))


def write_png(path, w, h, pixel, alpha=False):
    rows = []
    for y in range(h):
        row = bytearray([0])
        for x in range(w):
            p = pixel(x, y)
            if alpha:
                row += bytes(p if len(p) == 4 else p + (255,))
            else:
                row += bytes(p[:3])
        rows.append(bytes(row))
    raw = b"".join(rows)

    def chunk(kind, data):
        c = struct.pack(">I", len(data)) + kind + data
        return c + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    head = struct.pack(">IIBBBBB", w, h, 8, 6 if alpha else 2, 0, 0, 0)
    data = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)


def dist_to_segment(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / float(dx * dx + dy * dy)))
    return math.hypot(px - (ax + t * dx), py - (ay + t * dy))


def strokes(segments, width, ink, paper, scale=1.0):
    def pixel(x, y):
        cx, cy = (x + 0.5) / scale, (y + 0.5) / scale
        for (ax, ay, bx, by) in segments:
            if dist_to_segment(cx, cy, ax, ay, bx, by) <= width / 2.0:
                return ink
        return paper
    return pixel


WHITE = (255, 255, 255)
RED = (255, 0, 0)


def bitmap(number, w, h, pixel):
    write_png(os.path.join(HERE, "bitmaps", "%d.png" % number), w, h, pixel)


def icon(number, w, h, pixel):
    write_png(os.path.join(HERE, "icons", "%d.png" % number), w, h, pixel, alpha=True)


def grey(i):
    return (i, i, i)


# --- skin button images (transparent white) ---------------------------------
check = [(3, 8.5, 6.5, 12), (6.5, 12, 13, 4)]
cross = [(4, 4, 12, 12), (12, 4, 4, 12)]
bitmap(0x3EA, 16, 16, strokes(check, 2.2, (0, 128, 0), WHITE))
bitmap(0x3F0, 12, 12, strokes(check, 2.0, (0, 128, 0), WHITE, scale=12 / 16.0))
bitmap(0x3EB, 16, 16, strokes(cross, 2.2, (192, 0, 0), WHITE))
arrow_left = [(12, 8, 4, 8), (4, 8, 8, 4), (4, 8, 8, 12)]
arrow_right = [(4, 8, 12, 8), (12, 8, 8, 4), (12, 8, 8, 12)]
bitmap(0x3F2, 16, 16, strokes(arrow_left, 2.0, (0, 0, 160), WHITE))
bitmap(0x3F3, 16, 16, strokes(arrow_right, 2.0, (0, 0, 160), WHITE))
question = [(5, 5, 6, 3), (6, 3, 10, 3), (10, 3, 11, 5), (11, 5, 8, 8), (8, 8, 8, 10), (8, 12.5, 8, 13)]
bitmap(0x3F4, 16, 16, strokes(question, 2.0, (0, 0, 160), WHITE))
folder = [(2, 5, 6, 5), (6, 5, 7, 6), (7, 6, 14, 6), (14, 6, 14, 13), (14, 13, 2, 13), (2, 13, 2, 5)]
bitmap(0x3F9, 16, 16, strokes(folder, 1.2, (160, 120, 0), WHITE))
printer = [(4, 2, 12, 2), (4, 2, 4, 7), (12, 2, 12, 7), (2, 7, 14, 7), (2, 7, 2, 12), (14, 7, 14, 12),
           (2, 12, 14, 12), (4, 10, 12, 10), (4, 10, 4, 14), (12, 10, 12, 14), (4, 14, 12, 14)]
bitmap(0x3FA, 16, 16, strokes(printer, 1.2, (0, 0, 0), WHITE))
bitmap(0x3FB, 16, 16, strokes(printer, 1.2, (128, 128, 128), WHITE))
lens = [(10, 10, 14, 14)] + [(6.5 + 4 * math.cos(a / 8.0 * 2 * math.pi), 6.5 + 4 * math.sin(a / 8.0 * 2 * math.pi),
                             6.5 + 4 * math.cos((a + 1) / 8.0 * 2 * math.pi), 6.5 + 4 * math.sin((a + 1) / 8.0 * 2 * math.pi))
                            for a in range(8)]
bitmap(0x3FC, 16, 16, strokes(lens, 1.6, (0, 0, 0), WHITE))
trash = [(3, 4, 13, 4), (6, 4, 6, 2), (6, 2, 10, 2), (10, 2, 10, 4), (4, 4, 5, 14), (5, 14, 11, 14), (11, 14, 12, 4),
         (7, 6, 7, 12), (9, 6, 9, 12)]
bitmap(0x3FD, 16, 16, strokes(trash, 1.2, (0, 0, 0), WHITE))


# --- the program's icon and its bitmap ------------------------------------------
def program(x, y, size=32):
    # A blue sheet with a yellow lightning bolt: the suite draws circuits.
    cx, cy = x - size / 2.0 + 0.5, y - size / 2.0 + 0.5
    m = size / 32.0
    inside = abs(cx) <= 13 * m and abs(cy) <= 13 * m
    bolt = [(18, 3, 10, 17), (10, 17, 21, 15), (21, 15, 13, 29)]
    for (ax, ay, bx, by) in bolt:
        if dist_to_segment((x + 0.5) / m, (y + 0.5) / m, ax, ay, bx, by) <= 1.8:
            return (255, 210, 0, 255)
    if inside:
        edge = abs(cx) > 12 * m or abs(cy) > 12 * m
        return (0, 40, 120, 255) if edge else (40, 90, 180, 255)
    return (0, 0, 0, 0)


icon(0x3F1, 32, 32, program)
bitmap(0x3F1, 32, 32, lambda x, y: program(x, y)[:3] if program(x, y)[3] else WHITE)


# --- skin check boxes and radio buttons (palette indices, red transparent) -----
def check_box(mark, disabled):
    def pixel(x, y):
        if x == 0 or y == 0 or x == 12 or y == 12:
            return grey(0 if not disabled else 40)
        if mark and any(dist_to_segment(x + 0.5, y + 0.5, ax, ay, bx, by) <= 1.1
                        for (ax, ay, bx, by) in [(3, 6.5, 5.5, 9.5), (5.5, 9.5, 10, 3.5)]):
            return grey(0 if not disabled else 64)
        return grey(128 if disabled else 220)
    return pixel


def radio(mark, disabled):
    def pixel(x, y):
        r = math.hypot(x - 6, y - 6)
        if r > 6.2:
            return RED
        if r > 5.2:
            return grey(0 if not disabled else 40)
        if mark and r < 2.6:
            return grey(0 if not disabled else 64)
        return grey(128 if disabled else 220)
    return pixel


bitmap(0x3EC, 13, 13, check_box(True, False))
bitmap(0x3ED, 13, 13, check_box(False, False))
bitmap(0x3F5, 13, 13, check_box(False, True))
bitmap(0x3F7, 13, 13, check_box(True, True))
bitmap(0x3EE, 13, 13, radio(True, False))
bitmap(0x3EF, 13, 13, radio(False, False))
bitmap(0x3F6, 13, 13, radio(False, True))
bitmap(0x3F8, 13, 13, radio(True, True))

# --- the preview: "no preview" (6814, 84 x 24) ----------------------------------------
# A page crossed out and the words "BRAK PODGLĄDU" in a 5 x 7 pixel font.
GLYPHS = {
    "B": ["11110", "10001", "10001", "11110", "10001", "10001", "11110"],
    "R": ["11110", "10001", "10001", "11110", "10100", "10010", "10001"],
    "A": ["01110", "10001", "10001", "11111", "10001", "10001", "10001"],
    "K": ["10001", "10010", "10100", "11000", "10100", "10010", "10001"],
    "P": ["11110", "10001", "10001", "11110", "10000", "10000", "10000"],
    "O": ["01110", "10001", "10001", "10001", "10001", "10001", "01110"],
    "D": ["11100", "10010", "10001", "10001", "10001", "10010", "11100"],
    "G": ["01110", "10001", "10000", "10111", "10001", "10001", "01111"],
    "L": ["10000", "10000", "10000", "10000", "10000", "10000", "11111"],
    "U": ["10001", "10001", "10001", "10001", "10001", "10001", "01110"],
    # A with its ogonek below the line.
    "\u0104": ["01110", "10001", "10001", "11111", "10001", "10001", "10001", "00010", "00011"],
}


def text_pixels(text, left, top):
    ink = set()
    for i, ch in enumerate(text):
        for row, bits in enumerate(GLYPHS[ch]):
            for col, bit in enumerate(bits):
                if bit == "1":
                    ink.add((left + i * 6 + col, top + row))
    return ink


def no_preview():
    words = text_pixels("BRAK", 26, 3) | text_pixels("PODGL\u0104DU", 26, 12)
    paper = (244, 244, 244)

    def pixel(x, y):
        if x == 0 or y == 0 or x == 83 or y == 23:
            return (160, 160, 160)
        if (x, y) in words:
            return (64, 64, 64)
        # The page, 12 x 16 with a folded corner, crossed out in red.
        px, py = x - 7, y - 4
        if 0 <= px <= 12 and 0 <= py <= 16:
            if dist_to_segment(x + 0.5, y + 0.5, 4, 21, 22, 3) <= 1.0:
                return (200, 0, 0)
            if px > 8 and py < 4 and px - 8 > py:
                return paper  # cut corner
            if px == 0 or py == 16 or px == 12 or py == 0 or (px - 8 == py and px >= 8):
                return (96, 96, 96)
            if (px >= 8 and py == 4) or (px == 8 and py <= 4):
                return (96, 96, 96)  # the folded corner
            return (255, 255, 255)
        if dist_to_segment(x + 0.5, y + 0.5, 4, 21, 22, 3) <= 1.0:
            return (200, 0, 0)
        return paper
    return pixel


bitmap(6814, 84, 24, no_preview())

# --- the cell list's small images (452): 16 x 16 each, magenta is transparent ---------
MAGENTA = (255, 0, 255)


def cell_images():
    """Bridge ends and middle, a terminal, a dot, a tick, a cross, a warning."""
    bar = (40, 40, 40)

    def terminal(x, y):
        d = math.hypot(x + 0.5 - 8, y + 0.5 - 8)
        if d <= 3.0:
            return (255, 255, 255) if d <= 1.6 else (40, 40, 40)
        return None

    def pixel(x, y):
        kind, x = divmod(x, 16)
        t = terminal(x, y)
        if kind <= 3:
            if t:
                return t
            left = kind in (1, 2)
            right = kind in (0, 1)
            if 7 <= y <= 8 and ((left and x < 8) or (right and x >= 8)):
                return bar
            return MAGENTA
        if kind == 4:
            return (0, 150, 60) if math.hypot(x + 0.5 - 8, y + 0.5 - 8) <= 4.5 else MAGENTA
        if kind == 5:
            return strokes([(3, 8, 6.5, 12), (6.5, 12, 13, 4)], 2.2, (0, 140, 40), MAGENTA)(x, y)
        if kind == 6:
            return strokes([(4, 4, 12, 12), (12, 4, 4, 12)], 2.2, (200, 0, 0), MAGENTA)(x, y)
        # A warning: a yellow triangle with a mark.
        if y >= 2 and y <= 14 and abs(x + 0.5 - 8) <= (y - 1) * 0.55:
            if 7 <= x <= 8 and (5 <= y <= 10 or y == 12):
                return (0, 0, 0)
            return (250, 200, 0)
        return MAGENTA
    return pixel


bitmap(452, 128, 16, cell_images())

# --- the resource file -------------------------------------------------------------
entries = []
for folder in ("bitmaps", "icons"):
    for name in sorted(os.listdir(os.path.join(HERE, folder))):
        if name.endswith(".png"):
            entries.append("        <file>%s/%s</file>" % (folder, name))
with open(os.path.join(HERE, "vxbase.qrc"), "w") as f:
    f.write("<!DOCTYPE RCC>\n<RCC version=\"1.0\">\n    <qresource prefix=\"/vxbase\">\n")
    f.write("\n".join(entries) + "\n    </qresource>\n</RCC>\n")
