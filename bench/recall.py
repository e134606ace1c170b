#!/usr/bin/env python3
"""Word recall of OCR text against a reference text: the share of the reference's words that the
OCR text has, each word counted at most as often as the OCR text has it. Words are runs of
letters and digits, compared in lower case (punctuation and case do not count).

    recall.py REFERENCE.txt OCR.txt [OCR2.txt ...]   prints e.g. "0.9612 2403/2500"
"""
import collections
import re
import sys


def words(path):
    text = open(path, encoding="utf-8", errors="replace").read()
    return collections.Counter(w.lower() for w in re.findall(r"[^\W_]+", text))


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    reference = words(sys.argv[1])
    seen = collections.Counter()
    for path in sys.argv[2:]:
        seen += words(path)
    total = sum(reference.values())
    found = sum(min(n, seen[w]) for w, n in reference.items())
    print(f"{found / total if total else 0:.4f} {found}/{total}")


if __name__ == "__main__":
    main()
