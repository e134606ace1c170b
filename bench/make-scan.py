#!/usr/bin/env python3
"""Writes a PDF whose pages are the given JPEG files, each stored unchanged (DCTDecode) and
placed to fill a page sized for `--dpi` (as a scanner's PDF is). Used to make benchmark inputs
at run time; nothing it makes is committed.

    make-scan.py OUT.pdf --dpi 300 page1.jpg page2.jpg ...
"""
import argparse
import os
import struct
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "scripts"))
from pdfwrite import pdf_bytes  # noqa: E402


def jpeg_info(data):
    """(width, height, components) from the first SOF marker."""
    i = 2
    while i < len(data):
        if data[i] != 0xFF:
            i += 1
            continue
        marker = data[i + 1]
        length = struct.unpack(">H", data[i + 2:i + 4])[0]
        if marker in (0xC0, 0xC1, 0xC2):
            height, width = struct.unpack(">HH", data[i + 5:i + 9])
            return width, height, data[i + 9]
        i += 2 + length
    raise ValueError("no SOF marker")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("out")
    parser.add_argument("--dpi", type=float, default=300)
    parser.add_argument("jpegs", nargs="+")
    args = parser.parse_args()

    objects = []
    page_ids = []
    pages_id = 1 + 3 * len(args.jpegs)
    for path in args.jpegs:
        data = open(path, "rb").read()
        width, height, components = jpeg_info(data)
        space = "/DeviceGray" if components == 1 else "/DeviceRGB"
        objects.append(b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace %s "
                       b"/BitsPerComponent 8 /Filter /DCTDecode /Length %d >>\nstream\n"
                       % (width, height, space.encode(), len(data)) + data + b"\nendstream")
        image_id = len(objects)
        w, h = width * 72 / args.dpi, height * 72 / args.dpi
        content = b"q %.2f 0 0 %.2f 0 0 cm /Im Do Q" % (w, h)
        objects.append(b"<< /Length %d >>\nstream\n" % len(content) + content + b"\nendstream")
        content_id = len(objects)
        objects.append(b"<< /Type /Page /Parent %d 0 R /MediaBox [0 0 %.2f %.2f] "
                       b"/Resources << /XObject << /Im %d 0 R >> >> /Contents %d 0 R >>"
                       % (pages_id, w, h, image_id, content_id))
        page_ids.append(len(objects))
    kids = b" ".join(b"%d 0 R" % p for p in page_ids)
    objects.append(b"<< /Type /Pages /Kids [%s] /Count %d >>" % (kids, len(page_ids)))
    objects.append(b"<< /Type /Catalog /Pages %d 0 R >>" % pages_id)
    open(args.out, "wb").write(pdf_bytes(objects, len(objects), version=b"1.4"))


if __name__ == "__main__":
    main()
