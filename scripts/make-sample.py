#!/usr/bin/env python3
"""Writes samples/sample.pdf: the project's own demo document.

Three A4 pages: a page of text, a page holding one 200-DPI synthetic photograph (A5 size) (smooth colour
fields with grain, stored losslessly so that compression has something to do), and a page mixing a
heading with a smaller image. Everything is generated here; nothing is taken from elsewhere.
"""
import math
import random
import sys
import zlib

from pdfwrite import pdf_bytes

A4 = (595.28, 841.89)


def photo(width, height, seed):
    rng = random.Random(seed)
    rows = bytearray()
    for y in range(height):
        rows.append(0)  # PNG-style "None" predictor is not used; plain rows for FlateDecode
        for x in range(width):
            u, v = x / width, y / height
            r = 0.55 + 0.45 * math.sin(3.1 * u + 1.7 * v)
            g = 0.50 + 0.40 * math.sin(2.3 * v - 1.1 * u + 0.8)
            b = 0.60 + 0.35 * math.cos(4.0 * u * v + 0.3)
            grain = rng.randint(-1, 1)
            rows += bytes(max(0, min(255, int(c * 235) + grain)) for c in (r, g, b))
    return rows


def strip_row_tags(data, width, height):
    out = bytearray()
    stride = width * 3 + 1
    for y in range(height):
        out += data[y * stride + 1:(y + 1) * stride]
    return bytes(out)


def text_content(lines, top, size=12, leading=16):
    ops = [f"BT /F1 {size} Tf {leading} TL 72 {top} Td"]
    for line in lines:
        escaped = line.replace("\\", "\\\\").replace("(", "\\(").replace(")", "\\)")
        ops.append(f"({escaped}) Tj T*")
    ops.append("ET")
    return "\n".join(ops).encode()


def main(path):
    objects = []

    def add(body):
        objects.append(body)
        return len(objects)

    font = add(b"<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
    big_w, big_h = 1166, 1654
    big = zlib.compress(strip_row_tags(photo(big_w, big_h, 1), big_w, big_h), 9)
    big_img = add(b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceRGB "
                  b"/BitsPerComponent 8 /Filter /FlateDecode /Length %d >>\nstream\n" % (big_w, big_h, len(big))
                  + big + b"\nendstream")
    small_w, small_h = 480, 360
    small = zlib.compress(strip_row_tags(photo(small_w, small_h, 2), small_w, small_h), 9)
    small_img = add(b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceRGB "
                    b"/BitsPerComponent 8 /Filter /FlateDecode /Length %d >>\nstream\n" % (small_w, small_h, len(small))
                    + small + b"\nendstream")

    intro = [
        "Quillet sample document",
        "",
        "This file ships with Quillet so that the demo has something to work on.",
        "Page 2 holds one photograph at 200 DPI, stored losslessly and with no text;",
        "page 3 mixes text with a smaller picture.",
        "",
        "Try:  quillet info samples/sample.pdf",
        "      quillet compress samples/sample.pdf -o /tmp/sample-compressed.pdf",
    ]
    contents = [
        text_content(intro, 760),
        b"q %.2f 0 0 %.2f %.2f %.2f cm /Im1 Do Q" % (419.76, 595.44, (A4[0] - 419.76) / 2, (A4[1] - 595.44) / 2),
        text_content(["A page with a heading and a picture"], 760, 18) + b"\nq 160 0 0 120 217 480 cm /Im2 Do Q",
    ]
    resources = [
        b"<< /Font << /F1 %d 0 R >> >>" % font,
        b"<< /XObject << /Im1 %d 0 R >> >>" % big_img,
        b"<< /Font << /F1 %d 0 R >> /XObject << /Im2 %d 0 R >> >>" % (font, small_img),
    ]
    pages_id = len(objects) + 1 + 2 * len(contents)
    page_ids = []
    for content, res in zip(contents, resources):
        stream = zlib.compress(content, 9)
        c = add(b"<< /Length %d /Filter /FlateDecode >>\nstream\n" % len(stream) + stream + b"\nendstream")
        page_ids.append(add(b"<< /Type /Page /Parent %d 0 R /MediaBox [0 0 %.2f %.2f] /Resources %s /Contents %d 0 R >>"
                            % (pages_id, A4[0], A4[1], res, c)))
    kids = b" ".join(b"%d 0 R" % p for p in page_ids)
    assert add(b"<< /Type /Pages /Kids [%s] /Count %d >>" % (kids, len(page_ids))) == pages_id
    catalog = add(b"<< /Type /Catalog /Pages %d 0 R >>" % pages_id)
    info = add(b"<< /Title (Quillet sample) /Author (Quillet project) /Creator (make-sample.py) "
               b"/CreationDate (D:20261122120000Z) >>")

    with open(path, "wb") as f:
        f.write(pdf_bytes(objects, catalog, info))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "samples/sample.pdf")
