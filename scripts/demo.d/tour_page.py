"""The page of scripts/demo.d/tour: runs qxvtool as a person would and shows what it was asked and what it answered. Prints HTML; needs no
network."""

import hashlib
import html
import math
import os
import shlex
import signal
import struct
import subprocess
import sys
import time
import wave

from page_style import STYLE

MORE_STYLE = """
pre { background: #1d2430; color: #e8ecf2; border-radius: 8px; padding: 14px 16px; margin: 12px 0 0; white-space: pre-wrap; overflow-wrap: anywhere;
  font: 13px/1.45 "DejaVu Sans Mono", Consolas, monospace; }
pre b { color: #8fc7ff; font-weight: 600; }
pre i { color: #f0b46a; font-style: normal; }
.pair { display: grid; grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 22px; }
.pair section { margin: 0 0 22px; }
section > img { margin-top: 12px; image-rendering: auto; border: 1px solid var(--line); }
section p { margin: 6px 0 0; color: var(--soft); font-size: 14px; }
a { color: var(--accent); }
@media (max-width: 900px) { .pair { grid-template-columns: 1fr; } }
"""


class Tour:
    """A folder of its own, and commands run in it."""

    def __init__(self, tool, folder):
        self.tool, self.folder, self.shown = tool, folder, []
        media = os.path.join(folder, "media")
        os.makedirs(media)
        with open(os.path.join(folder, "smb.conf"), "w", encoding="ascii") as file:
            file.write(f"[global]\nworkgroup = STUDIO\n[Media]\npath = {media}\n")
        with open(os.path.join(folder, "mounts"), "w", encoding="ascii") as file:
            file.write(f"//10.1.2.3/share {folder} cifs rw 0 0\n")
        self.environment = {**os.environ, "LC_ALL": "C.UTF-8", "QXV_SAMBA_CONFIG": os.path.join(folder, "smb.conf"),
                            "QXV_MOUNTS": os.path.join(folder, "mounts"), "QXV_DRIVES": f"X={folder}"}

    def start(self, *arguments):
        return subprocess.Popen([self.tool, *arguments], cwd=self.folder, env=self.environment, text=True, encoding="utf-8",
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def note(self, arguments, answer):
        self.shown.append(f"<b>$ qxvtool {html.escape(shlex.join(arguments))}</b>\n{html.escape(answer)}")

    def run(self, *arguments):
        process = self.start(*arguments)
        answer, _ = process.communicate(timeout=120)
        if process.returncode != 0:
            raise SystemExit(f"qxvtool {shlex.join(arguments)}: exit code {process.returncode}\n{answer}")
        self.note(arguments, answer)
        return answer

    def take(self):
        """What was run since the last time, as HTML."""
        text, self.shown = "".join(self.shown), []
        return f"<pre>{text.rstrip()}</pre>"

    def path(self, name):
        return os.path.join(self.folder, name)


def make_sound(path):
    """Two seconds of a chord that dies away, the notes one after the other, by Python's own writer."""
    rate, notes = 48000, (220.0, 277.18, 329.63, 440.0)
    with wave.open(path, "wb") as file:
        file.setparams((2, 2, rate, 0, "NONE", ""))
        frames = bytearray()
        for i in range(2 * rate):
            t, sides = i / rate, [0.0, 0.0]
            for n, note in enumerate(notes):
                age = t - 0.3 * n
                if age > 0:
                    sides[n % 2] += 0.42 * math.exp(-2.2 * age) * math.sin(2 * math.pi * note * age)
            frames += struct.pack("<2h", *(round(32767 * side) for side in sides))
        file.writeframes(frames)


def picture(tour, name, told):
    place = html.escape(f"{os.path.basename(tour.folder)}/{name}", quote=True)
    return f'<img src="{place}" alt="{html.escape(told, quote=True)}">'


def sound(tour):
    make_sound(tour.path("chord.wav"))
    tour.run("wav", "info", "chord.wav")
    tour.run("wav", "resample", "chord.wav", "chord-cd.wav", "--rate", "44100")
    tour.run("wav", "plot", "chord.wav", "chord.bmp")
    return picture(tour, "chord.bmp", "the waveform of chord.wav") + tour.take()


def spline(tour):
    tour.run("spline", "curve.bmp", "0,0", "40,90", "90,15", "140,70", "200,60")
    return picture(tour, "curve.bmp", "a smooth curve through five points") + tour.take()


def log(tour):
    tour.run("log", "write", "copied 12 clips")
    tour.run("log", "write", "Überblendung fertig")
    tour.run("log", "tail")
    return tour.take()


def dictionary(tour):
    os.makedirs(tour.path("Dictionary"))
    with open(tour.path("Dictionary/menu.ini"), "w", encoding="utf-8-sig", newline="\r\n") as file:
        file.write("[DICTIONARY_MAINID]=7\n[Open]=Ouvrir\n[Save]=Enregistrer\n[Cut]=Couper\n")
    tour.run("dict", "load", "Dictionary")
    tour.run("dict", "lookup", "Dictionary", "Open", "Save")
    process = tour.start("dict", "missing", "Dictionary", "Open", "Zoom")  # tells by its exit code that some are missing
    tour.note(["dict", "missing", "Dictionary", "Open", "Zoom"], process.communicate(timeout=60)[0])
    return tour.take()


def digest(tour):
    """A run that is killed, without a warning, and the same command once more. The digest must be that of Python's hashlib."""
    content = bytes(i * i >> 7 & 0xFF for i in range(1 << 16)) * 768  # 48 MiB
    with open(tour.path("clip.bin"), "wb") as file:
        file.write(content)
    process = tour.start("md5", "clip.bin", "--resume", "clip", "--rate", "16")
    time.sleep(2.2)
    process.send_signal(signal.SIGKILL)
    process.communicate()
    if process.returncode != -signal.SIGKILL or not os.path.exists(tour.path("clip.MD5frag")):
        raise SystemExit("the run was over, or had kept nothing, before it was killed")
    tour.shown.append("<b>$ qxvtool md5 clip.bin --resume clip --rate 16</b>\n<i>killed after 2.2 seconds; its state stands in "
                      f"clip.MD5frag, {os.path.getsize(tour.path('clip.MD5frag'))} bytes</i>\n")
    answer = tour.run("md5", "clip.bin", "--resume", "clip")
    expected = hashlib.md5(content).hexdigest()
    if answer.split()[0] != expected:
        raise SystemExit(f"{answer}: should be {expected}")
    os.remove(tour.path("clip.bin"))
    tour.shown.append(f"<i>Python's hashlib says {expected}, too</i>\n")
    return tour.take()


def network(tour):
    tour.run("net", "dump")
    tour.run("net", "to-local", r"\\10.1.2.3\share\media\a.mxf")
    tour.run("net", "to-unc", r"X:\media\a.mxf")
    return tour.take()


SECTIONS = (
    (("Sound", "A chord that Python wrote: taken apart, brought to the rate of a CD, and drawn.", sound),
     ("Spline", "A natural cubic spline, drawn through the points into a bitmap.", spline)),
    (("Log", "One file a day, UTF-16, a line with its time.", log),
     ("Dictionary", "A folder of dictionary files is loaded; what has no translation is told.", dictionary)),
    (("MD5, killed and resumed", "The state of the digest stands in a file, so that no byte is read twice for nothing.", digest),
     ("Network paths", "A published folder and a connected drive (made up for this page), and paths there and back.", network)),
)


def page(tour, pictures):
    rows = ""
    for pair in SECTIONS:
        cards = "".join(f"<section><h2>{title}</h2><p>{told}</p>{show(tour)}</section>" for title, told, show in pair)
        rows += f'<div class="pair">{cards}</div>'
    return f"""<!DOCTYPE html>
<html lang="en">
<head><meta charset="utf-8"><meta name="viewport" content="width=device-width"><title>QXVCommonLibU at work</title>
<style>{STYLE}{MORE_STYLE}</style></head>
<body><main>
<h1>QXVCommonLibU at work</h1>
<p>What the library did on this machine a moment ago: each command was run by <code>qxvtool</code>, its companion at the command line.
<a href="{pictures}">Pictures in, pictures out</a> shows the image family: files of every type, converted to every other.</p>
{rows}
</main></body></html>
"""


if __name__ == "__main__":
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(page(Tour(sys.argv[1], sys.argv[2]), sys.argv[3]))
