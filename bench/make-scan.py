#!/usr/bin/env python3
"""Writes a PDF whose pages are the given JPEG files, each stored unchanged (DCTDecode) and
placed to fill a page sized for `--dpi` (as a scanner's PDF is). Bilevel pages may be given as
one-strip CCITT G4 TIFF files (.tif), whose G4 data is stored unchanged (CCITTFaxDecode), as a
scanner in black-and-white mode writes them. Used to make benchmark inputs at run time; nothing
it makes is committed.

    make-scan.py OUT.pdf --dpi 300 page1.jpg page2.jpg ...
    make-scan.py OUT.pdf --dpi 300 page1.tif page2.tif ...
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


def g4_strip(data):
    """(width, height, G4 bytes, ink is 1) of a one-strip CCITT G4 TIFF."""
    order = {b"II": "<", b"MM": ">"}[data[:2]]
    (ifd,) = struct.unpack(order + "I", data[4:8])
    (count,) = struct.unpack(order + "H", data[ifd:ifd + 2])
    sizes = {3: ("H", 2), 4: ("I", 4)}
    tags = {}
    for n in range(count):
        tag, kind, values, raw = struct.unpack(order + "HHI4s", data[ifd + 2 + 12 * n:ifd + 14 + 12 * n])
        code, width = sizes.get(kind, ("I", 4))
        if values * width <= 4:
            tags[tag] = struct.unpack(order + code * values, raw[:values * width])
        else:
            (at,) = struct.unpack(order + "I", raw)
            tags[tag] = struct.unpack(order + code * values, data[at:at + values * width])
    if tags.get(259) != (4,) or len(tags[273]) != 1 or tags.get(266, (1,)) != (1,):
        raise ValueError("not a one-strip CCITT G4 TIFF")
    start, length = tags[273][0], tags[279][0]
    return tags[256][0], tags[257][0], data[start:start + length], tags.get(262, (0,)) == (0,)


def image_object(path):
    """The image XObject of one page, and its size in pixels."""
    data = open(path, "rb").read()
    if data[:2] in (b"II", b"MM"):
        width, height, g4, ink_is_1 = g4_strip(data)
        # The decoded image has 0 for black unless /BlackIs1 says otherwise; a min-is-white
        # TIFF codes ink as 1 bits, which is the filter's default meaning of the runs.
        params = b"/K -1 /Columns %d /Rows %d" % (width, height)
        decode = b"" if ink_is_1 else b" /Decode [1 0]"
        return (b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace /DeviceGray "
                b"/BitsPerComponent 1%s /Filter /CCITTFaxDecode /DecodeParms << %s >> /Length %d >>\n"
                b"stream\n" % (width, height, decode, params, len(g4)) + g4 + b"\nendstream"), width, height
    width, height, components = jpeg_info(data)
    space = "/DeviceGray" if components == 1 else "/DeviceRGB"
    return (b"<< /Type /XObject /Subtype /Image /Width %d /Height %d /ColorSpace %s "
            b"/BitsPerComponent 8 /Filter /DCTDecode /Length %d >>\nstream\n"
            % (width, height, space.encode(), len(data)) + data + b"\nendstream"), width, height


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
        image, width, height = image_object(path)
        objects.append(image)
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
