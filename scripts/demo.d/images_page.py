"""The page of scripts/demo.d/images: what image_demo logged, with the pictures beside each other. Prints HTML; needs no network."""

import html
import os
import sys

from page_style import STYLE

TYPES = {"1": "TGA", "2": "BMP", "3": "TIF", "4": "GIF", "5": "PCX", "6": "YUV", "7": "JPG", "8": "PNG"}
SHOWN_BY_BROWSERS = (".png", ".gif", ".jpg", ".bmp")


def size_text(count):
    return f"{count:,}\N{NO-BREAK SPACE}bytes" if count < 10000 else f"{count / 1024:,.1f}\N{NO-BREAK SPACE}KiB"


def time_text(microseconds):
    return f"{microseconds}\N{NO-BREAK SPACE}µs" if microseconds < 1000 else f"{microseconds / 1000:.1f}\N{NO-BREAK SPACE}ms"


class Log:
    def __init__(self, folder):
        self.folder = folder
        kinds = {"original": [], "result": [], "frame": []}
        with open(os.path.join(folder, "log.tsv"), encoding="utf-8") as lines:
            for line in lines:
                kind, *fields = line.rstrip("\n").split("\t")
                kinds[kind].append(fields)
        self.originals, self.results, self.frames = kinds["original"], kinds["result"], kinds["frame"]

    def image(self, name, width=None):
        """What the browser is shown of a file."""
        shown = name if name.endswith(SHOWN_BY_BROWSERS) else name + ".png"
        if not os.path.exists(os.path.join(self.folder, shown)):
            raise SystemExit(f"{shown} is missing")
        place = html.escape(os.path.join(os.path.basename(self.folder), shown), quote=True)
        return f'<img src="{place}" alt="{html.escape(name)}"{f" width={width}" if width else ""}>'


def result_figure(log, result):
    name, count, _, kind, _, layout, _, _, reading, writing, alike = result
    told = {"yes": '<br><span class="yes">read back alike</span>', "no": '<br><span class="no">read back otherwise</span>'}
    return (f'<figure>{log.image(name)}<figcaption><b>{kind.upper()}</b> through {layout}<br>{size_text(int(count))}<br>'
            f"read {time_text(int(reading))}<br>write {time_text(int(writing))}{told.get(alike, '')}"
            "</figcaption></figure>")


def layout_figure(log, result):
    name, _, _, _, _, layout, _, _, reading, writing, _ = result
    return (f"<figure>{log.image(name)}<figcaption><b>{layout}</b><br>read {time_text(int(reading))}<br>"
            f"write {time_text(int(writing))}</figcaption></figure>")


def section(log, original):
    path, count, kind, frames, layout, width, height, frame_time, information, raw = original
    name = os.path.basename(path)
    mine = [result for result in log.results if result[2] == name]
    facts = [("type", TYPES[kind]), ("size", f"{width} × {height}"), ("file", size_text(int(count))), ("layout", layout)]
    if int(frames) > 1:
        facts += [("frames", frames), ("first shown", f"{frame_time} ms")]
    facts += [("information", time_text(int(information))), ("raw frames" if int(frames) > 1 else "raw frame", time_text(int(raw)))]
    rows = []
    for step, title in (("own", "Its own size"), ("other", "Smaller, blended")):
        these = [result for result in mine if result[4] == step]
        figures = "".join(result_figure(log, result) for result in these)
        rows.append(f'<h3>{title}: {these[0][6]} × {these[0][7]}</h3><div class="row">{figures}</div>')
    figures = "".join(layout_figure(log, result) for result in mine if result[4] == "layout")
    rows.append(f'<h3>Through each layout into a bitmap</h3><div class="row layouts">{figures}</div>')
    of_mine = [frame for frame in log.frames if frame[1] == name]
    if of_mine:
        figures = "".join(f"<figure>{log.image(frame[0])}<figcaption><b>{int(frame[2]) + 1}</b></figcaption></figure>" for frame in of_mine)
        rows.append(f'<h3>Its frames, each alone where it lies</h3><div class="row frames">{figures}</div>')
    told = "".join(f"<dt>{term}</dt><dd>{html.escape(value)}</dd>" for term, value in facts)
    return (f'<section id="{html.escape(name)}"><div class="beside"><div class="original"><h2>{html.escape(name)}</h2><h3>Original</h3>'
            f"<figure>{log.image(name)}</figure><dl>{told}</dl></div><div>{''.join(rows)}</div></div></section>")


def page(log):
    compared = [result[10] for result in log.results if result[10]]
    reading = sum(int(result[8]) for result in log.results)
    writing = sum(int(result[9]) for result in log.results)
    numbers = [(len(log.originals), "files read"), (len({o[2] for o in log.originals}), "types read"),
               (len(log.results), "files written"), (len({r[3] for r in log.results}), "types written"),
               (f"{compared.count('yes')} of {len(compared)}", "read back alike"),
               (time_text(reading), "reading in all"), (time_text(writing), "writing in all")]
    told = "".join(f"<li><b>{value}</b>{what}</li>" for value, what in numbers)
    sections = "".join(section(log, original) for original in log.originals)
    return f"""<!DOCTYPE html>
<html lang="en">
<head><meta charset="utf-8"><meta name="viewport" content="width=device-width"><title>Pictures in, pictures out</title>
<style>{STYLE}</style></head>
<body><main>
<h1>Pictures in, pictures out</h1>
<p>Files that other programs made, read by <code>CQXVImageReader</code> and written by <code>CQXVImageWriter</code> as every type that
is written, in two sizes and through all layouts. Times are the best of five runs on this machine, the file system included; of an
animation they cover all frames where the file has several.</p>
<ul class="numbers">{told}</ul>
{sections}
<footer><p>GIF files have a fixed palette of 256 colours, JPG files quality 70 and half the colour resolution: these two change pixels by
their nature, as Y, U and V do. Each frame of an animation stands alone, on a canvas of zeros. TGA, PCX, TIF and YUV files are shown as
PNG files that netpbm made of them; of YUV files, which no other program knows, by way of a bitmap of the library's own.</p></footer>
</main></body></html>
"""


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(page(Log(sys.argv[1])))
