#!/usr/bin/python3
"""bench/shrink.py FOLDER QUILLET: compresses every PDF of FOLDER with each Quillet tier, with
Ghostscript (pdfwrite /ebook) and with qpdf (object streams, Flate recompressed at level 9),
one file at a time and taking turns, and prints per tool: the geometric mean of output/input,
for the tiers how many files come out no larger than Ghostscript's, the share of the input's
words that pdftotext still finds, the largest and mean page difference (72 DPI gray, mean
absolute difference 0-255, over up to the first three pages) and the total time. Files where
Ghostscript's output lost words or changed the look of page 1 are left out and counted."""
import math
import os
import subprocess
import sys
import tempfile
import time
from collections import Counter

import numpy

folder, quillet = sys.argv[1], sys.argv[2]
pages_compared = 3


def run(command):
    start = time.monotonic()
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    return time.monotonic() - start, done.returncode


def words(path):
    done = subprocess.run(["pdftotext", "-q", "-enc", "UTF-8", path, "-"], stdout=subprocess.PIPE)
    return Counter(done.stdout.decode("utf-8", "replace").split())


def page_count(path):
    done = subprocess.run(["pdfinfo", path], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    for line in done.stdout.decode("utf-8", "replace").splitlines():
        if line.startswith("Pages:"):
            return int(line.split()[1])
    return 0


def renders(path, work, tag):
    prefix = os.path.join(work, tag)
    subprocess.run(["pdftoppm", "-q", "-r", "72", "-gray", "-l", str(pages_compared), path, prefix],
                   stderr=subprocess.DEVNULL)
    pictures = []
    for name in sorted(os.listdir(work)):
        if name.startswith(tag + "-") and name.endswith(".pgm"):
            with open(os.path.join(work, name), "rb") as f:
                data = f.read()
            header = data.split(maxsplit=4)
            width, height = int(header[1]), int(header[2])
            pixels = numpy.frombuffer(data[len(data) - width * height:], dtype=numpy.uint8)
            pictures.append(pixels.reshape(height, width).astype(numpy.int16))
            os.remove(os.path.join(work, name))
    return pictures


def byte_shares(path):
    """Stored stream bytes of a PDF by what they hold: font programs, images, everything else
    (the rest of the file: page content, object streams, cross-reference data)."""
    done = subprocess.run(["qpdf", "--json=2", "--json-stream-data=none", path],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    total = os.path.getsize(path)
    try:
        import json
        objects = json.loads(done.stdout)["qpdf"][1]
    except Exception:
        return {"fonts": 0, "images": 0, "other": total}
    font_files = set()
    for value in objects.values():
        body = value.get("value")
        if isinstance(body, dict):
            for key in ("/FontFile", "/FontFile2", "/FontFile3"):
                if isinstance(body.get(key), str):
                    font_files.add("obj:" + body[key])
    shares = {"fonts": 0, "images": 0}
    for name, value in objects.items():
        stream = value.get("stream")
        if not stream:
            continue
        length = stream["dict"].get("/Length", 0)
        length = length if isinstance(length, int) else 0
        if name in font_files:
            shares["fonts"] += length
        elif stream["dict"].get("/Subtype") == "/Image":
            shares["images"] += length
    shares["other"] = max(0, total - shares["fonts"] - shares["images"])
    return shares


def difference(before, after):
    if len(before) != len(after) or not before:
        return 255.0
    worst = 0.0
    for a, b in zip(before, after):
        if a.shape != b.shape:
            h, w = min(a.shape[0], b.shape[0]), min(a.shape[1], b.shape[1])
            if abs(a.shape[0] - b.shape[0]) > 2 or abs(a.shape[1] - b.shape[1]) > 2:
                return 255.0
            a, b = a[:h, :w], b[:h, :w]
        worst = max(worst, float(numpy.abs(a - b).mean()))
    return worst


tiers = os.environ.get("QUILLET_SHRINK_TIERS", "lossless balanced").split()
tools = {tier: (lambda t: lambda i, o: [quillet, "compress", "-t", t, i, "-o", o])(tier)
         for tier in tiers}
tools.update({
    "gs-ebook": lambda i, o: ["gs", "-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pdfwrite",
                              "-dPDFSETTINGS=/ebook", "-sOutputFile=" + o, i],
    "qpdf": lambda i, o: ["qpdf", "--object-streams=generate", "--recompress-flate",
                          "--compression-level=9", i, o],
})
files = sorted(f for f in os.listdir(folder) if f.endswith(".pdf"))
results = {name: [] for name in tools}  # (file, ratio, word share, difference, seconds, ok)
excluded = []
checks_failed = []
shares = {}  # tool -> category -> bytes, over the files kept in the comparison
with tempfile.TemporaryDirectory() as work:
    for file in files:
        source = os.path.join(folder, file)
        size = os.path.getsize(source)
        if page_count(source) < 1:
            continue
        source_words = words(source)
        source_pictures = renders(source, work, "in")
        row = {}
        file_shares = {"input": byte_shares(source)}
        for name, command in tools.items():
            output = os.path.join(work, name + ".pdf")
            seconds, status = run(command(source, output))
            if not os.path.exists(output):  # "already optimized": the input stands
                output = source
            ratio = os.path.getsize(output) / size
            found = words(output)
            total = sum(source_words.values())
            share = (sum((found & source_words).values()) / total) if total else 1.0
            diff = difference(source_pictures, renders(output, work, "out"))
            if name != "gs-ebook" and name != "qpdf" and output != source:
                check = subprocess.run(["qpdf", "--check", output], stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL).returncode
                if check not in (0, 3):
                    checks_failed.append((name, file))
            row[name] = (file, ratio, share, diff, seconds)
            if name in ("lossless", "balanced", "gs-ebook"):
                file_shares[name] = byte_shares(output)
            if output != source:
                os.remove(output)
        gs = row["gs-ebook"]
        if gs[2] < 0.98 or gs[3] > 8.0:
            excluded.append(file)
            continue
        for name in tools:
            results[name].append(row[name])
        for name, parts in file_shares.items():
            for part, count in parts.items():
                shares.setdefault(name, {}).setdefault(part, 0)
                shares[name][part] += count
        print(f"{file}: " + " ".join(f"{n}={row[n][1]:.3f}/{row[n][3]:.2f}" for n in tools),
              file=sys.stderr)

print(f"{len(results['gs-ebook'])} files; {len(excluded)} left out where Ghostscript lost words or "
      f"changed page 1: {', '.join(excluded) or 'none'}")
print("| tool | geometric mean of output/input | no larger than Ghostscript | words kept (min, all) "
      "| page difference (max, mean) | time (s) |")
print("|---|---|---|---|---|---|")
gs_ratios = {r[0]: r[1] for r in results["gs-ebook"]}
for name, rows in results.items():
    if not rows:
        continue
    mean = math.exp(sum(math.log(max(r[1], 1e-9)) for r in rows) / len(rows))
    beats = sum(1 for r in rows if r[1] <= gs_ratios[r[0]] * 1.0001)
    kept = [r[2] for r in rows]
    diffs = [r[3] for r in rows]
    print(f"| {name} | {mean:.3f} | {beats}/{len(rows)} | {min(kept):.3f}, "
          f"{sum(kept) / len(kept):.4f} | {max(diffs):.2f}, {sum(diffs) / len(diffs):.2f} | "
          f"{sum(r[4] for r in rows):.1f} |")
print()
print("| bytes over the set (MB) | font programs | images | everything else |")
print("|---|---|---|---|")
for name, parts in shares.items():
    print(f"| {name} | {parts['fonts'] / 1048576:.2f} | {parts['images'] / 1048576:.2f} | "
          f"{parts['other'] / 1048576:.2f} |")
if checks_failed:
    print("qpdf --check failed: " + ", ".join(f"{n} {f}" for n, f in checks_failed))
else:
    print("qpdf --check passes on every Quillet output.")
