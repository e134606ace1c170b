#!/usr/bin/env python3
"""Writes a born-digital A4 document to be printed and scanned by bench/scans.sh: on each page a
heading on a coloured band, body text set in Times, a coloured subheading and one or two photos
(the given JPEG files, stored unchanged) with captions. Also writes where the photos landed, one
line per page of space-separated X,Y,W,H rectangles in pixels of a render at `--rects-dpi`
(origin top left), so that a render can be compared on the photos alone. Nothing it makes is
committed.

    make-colour-pages.py OUT.pdf RECTS.txt --pages 4 --text words.txt photo1.jpg photo2.jpg ...
"""
import argparse
import importlib.util
import os
import re
import sys

here = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(here, "..", "scripts"))
from pdfwrite import pdf_bytes  # noqa: E402

spec = importlib.util.spec_from_file_location("make_scan", os.path.join(here, "make-scan.py"))
make_scan = importlib.util.module_from_spec(spec)
spec.loader.exec_module(make_scan)

PAGE_W, PAGE_H = 595.0, 842.0
LEFT, RIGHT, TOP, BOTTOM = 64.0, 531.0, 800.0, 64.0
BODY_SIZE, LEADING = 11.0, 14.0
COLOURS = [(0.10, 0.29, 0.62), (0.62, 0.12, 0.10), (0.08, 0.45, 0.25), (0.50, 0.18, 0.55)]
BANDS = [(0.84, 0.90, 0.98), (0.98, 0.88, 0.84), (0.86, 0.95, 0.88), (0.93, 0.87, 0.96)]
TITLES = ["Field Notes", "Travel Journal", "Garden Report", "Photo Essay"]
SUBHEADS = ["What we observed", "Notes from the road", "Results of the season", "Looking back"]


def widths():
    """Advance widths (per 1000 units) of Times-Roman, from the metrics Ghostscript's fonts
    ship; an average width when they are not installed."""
    table = {}
    for folder in ("/usr/share/fonts/type1/urw-base35", "/usr/share/fonts/type1/gsfonts"):
        path = os.path.join(folder, "NimbusRoman-Regular.afm")
        if os.path.exists(path):
            for line in open(path, encoding="latin-1"):
                match = re.match(r"C (\d+) ; WX (\d+)", line)
                if match:
                    table[int(match.group(1))] = int(match.group(2))
            break
    return lambda text: sum(table.get(ord(c), 500) for c in text) * BODY_SIZE / 1000


def escape(text):
    return text.replace("\\", "\\\\").replace("(", "\\(").replace(")", "\\)")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("out")
    parser.add_argument("rects")
    parser.add_argument("--pages", type=int, default=4)
    parser.add_argument("--text", required=True)
    parser.add_argument("--rects-dpi", type=float, default=100)
    parser.add_argument("photos", nargs="+")
    args = parser.parse_args()

    raw = open(args.text, encoding="utf-8", errors="replace").read()
    for fancy, plain in (("\u2019", "'"), ("\u2018", "'"), ("\u201c", '"'), ("\u201d", '"'),
                         ("\u2013", "-"), ("\u2014", "-")):
        raw = raw.replace(fancy, plain)
    words = [w for w in raw.encode("ascii", "ignore").decode().split() if w]
    width_of = widths()
    next_word = 0

    def line_of_text():
        """The next words that fit the measure, wrapping the text round when it runs out."""
        nonlocal next_word
        line = []
        while True:
            word = words[next_word % len(words)]
            if line and width_of(" ".join(line + [word])) > RIGHT - LEFT:
                return " ".join(line)
            line.append(word)
            next_word += 1

    photos = []
    for path in args.photos:
        data = open(path, "rb").read()
        width, height, components = make_scan.jpeg_info(data)
        photos.append((data, width, height, components))

    objects = [None, None]  # catalog, pages
    fonts = [b"Helvetica-Bold", b"Times-Roman", b"Times-Italic"]
    font_ids = []
    for name in fonts:
        objects.append(b"<< /Type /Font /Subtype /Type1 /BaseFont /%s /Encoding /WinAnsiEncoding >>" % name)
        font_ids.append(len(objects))
    image_ids = []
    for data, width, height, components in photos:
        space = b"/DeviceGray" if components == 1 else b"/DeviceRGB"
        objects.append(b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace %s "
                       b"/BitsPerComponent 8 /Filter /DCTDecode /Length %d >>\nstream\n"
                       % (width, height, space, len(data)) + data + b"\nendstream")
        image_ids.append(len(objects))

    scale = args.rects_dpi / 72
    rect_lines = []
    page_ids = []
    for page in range(args.pages):
        ops = []
        colour, band = COLOURS[page % len(COLOURS)], BANDS[page % len(BANDS)]
        ops.append(b"%.3f %.3f %.3f rg %.1f %.1f %.1f %.1f re f" % (band + (LEFT - 8, TOP - 14, RIGHT - LEFT + 16, 44)))
        ops.append(b"BT /F1 22 Tf %.3f %.3f %.3f rg %.1f %.1f Td (%s %d) Tj ET"
                   % (colour + (LEFT, TOP, escape(TITLES[page % len(TITLES)]).encode(), page + 1)))
        y = TOP - 40

        def paragraph(lines):
            nonlocal y
            for _ in range(lines):
                if y < BOTTOM:
                    return
                ops.append(b"BT /F2 %.1f Tf 0 g %.1f %.1f Td (%s) Tj ET"
                           % (BODY_SIZE, LEFT, y, escape(line_of_text()).encode()))
                y -= LEADING
            y -= LEADING / 2

        paragraph(6)
        # One photo across the measure on even pages, two side by side on odd ones.
        chosen = [page % len(photos)] if page % 2 == 0 else [page % len(photos), (page + 1) % len(photos)]
        gap = 16.0
        box_w = (RIGHT - LEFT - gap * (len(chosen) - 1)) / len(chosen)
        box_h = 250.0
        rects = []
        tallest = 0.0
        for n, index in enumerate(chosen):
            _, width, height, _ = photos[index]
            w = min(box_w, box_h * width / height)
            h = w * height / width
            x = LEFT + n * (box_w + gap) + (box_w - w) / 2
            top = y - 4
            ops.append(b"q %.2f 0 0 %.2f %.2f %.2f cm /Im%d Do Q" % (w, h, x, top - h, index))
            rects.append("%d,%d,%d,%d" % (round(x * scale), round((PAGE_H - top) * scale),
                                          int(w * scale), int(h * scale)))
            tallest = max(tallest, h)
        y -= tallest + 18
        ops.append(b"BT /F3 9 Tf 0.35 g %.1f %.1f Td (Figure %d. Photograph taken on the way, page %d.) Tj ET"
                   % (LEFT, y, page + 1, page + 1))
        y -= LEADING * 1.5
        paragraph(5)
        y -= 6
        ops.append(b"BT /F1 14 Tf %.3f %.3f %.3f rg %.1f %.1f Td (%s) Tj ET"
                   % (colour + (LEFT, y, escape(SUBHEADS[page % len(SUBHEADS)]).encode())))
        y -= LEADING * 1.6
        while y >= BOTTOM:
            paragraph(6)
        rect_lines.append(" ".join(rects))

        content = b"\n".join(ops)
        objects.append(b"<< /Length %d >>\nstream\n" % len(content) + content + b"\nendstream")
        content_id = len(objects)
        font_dict = b" ".join(b"/F%d %d 0 R" % (i + 1, f) for i, f in enumerate(font_ids))
        image_dict = b" ".join(b"/Im%d %d 0 R" % (i, im) for i, im in enumerate(image_ids))
        objects.append(b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %.0f %.0f] /Resources << /Font << %s >> "
                       b"/XObject << %s >> >> /Contents %d 0 R >>"
                       % (PAGE_W, PAGE_H, font_dict, image_dict, content_id))
        page_ids.append(len(objects))
    objects[0] = b"<< /Type /Catalog /Pages 2 0 R >>"
    objects[1] = b"<< /Type /Pages /Kids [%s] /Count %d >>" % (b" ".join(b"%d 0 R" % p for p in page_ids),
                                                               len(page_ids))
    open(args.out, "wb").write(pdf_bytes(objects, 1, version=b"1.4"))
    open(args.rects, "w").write("\n".join(rect_lines) + "\n")


if __name__ == "__main__":
    main()
