#!/usr/bin/env python3
"""qxvtool wav beside sox and Python's wave module."""

import array
import random
import struct
import wave

import tool_case
from tool_case import ToolCase, judge, needs


def floats(data):
    values = array.array("f")
    values.frombytes(data)
    return values.tolist()


class WavCase(ToolCase):
    def sound(self, name, values, channels=1, rate=48000):
        """A 16-bit file of whole samples."""
        with wave.open(self.path(name), "wb") as file:
            file.setnchannels(channels)
            file.setsampwidth(2)
            file.setframerate(rate)
            file.writeframes(array.array("h", values).tobytes())
        return name

    def samples(self, name):
        """All samples as sox reads them, full scale 1.0."""
        return floats(judge("sox", "-D", self.path(name), "-t", "raw", "-e", "floating-point", "-b", "32", "-L", "-"))

    def noise(self, count):
        source = random.Random(count)
        return [source.randrange(-32768, 32768) for _ in range(count)]


class Info(WavCase):
    def test_fields(self):
        self.sound("a.wav", [0] * 3000, 2, 44100)
        self.assertEqual(self.json("wav", "info", "a.wav"), [{"file": "a.wav", "format_tag": 1, "channels": 2, "rate": 44100, "bits": 16,
                                                             "frames": 1500, "seconds": 1500 / 44100, "bytes": 6044}])
        self.assertIn("  frames      1500\n", self.answer("wav", "info", "a.wav"))

    def test_what_is_no_wav_file(self):
        self.write("a.wav", b"RIFF nonsense")
        self.assertIn("a.wav: is no WAV file", self.refusal("wav", "info", "a.wav"))

    def test_more_samples_told_than_held(self):
        self.sound("a.wav", [0] * 100)
        data = bytearray(self.read("a.wav"))
        struct.pack_into("<I", data, 40, 1 << 30)
        self.write("a.wav", bytes(data))
        self.assertIn("a.wav: is no WAV file, or damaged before its samples", self.refusal("wav", "plot", "a.wav", "a.bmp"))


class Convert(WavCase):
    @needs("sox")
    def test_widths(self):
        values = self.noise(2000)
        self.sound("a.wav", values, 2)
        for bits in (16, 24, 32):
            self.assertEqual(self.answer("wav", "convert", "a.wav", "b.wav", "--bits", str(bits)),
                             f"b.wav: 48000 Hz, 2 channels, {bits} bits, 0.021 s\n")
            self.assertEqual(judge("soxi", "-b", self.path("b.wav")).split(), [str(bits).encode()])
            self.assertEqual(self.samples("b.wav"), [value / 32768 for value in values], bits)

    @needs("sox")
    def test_a_channel_and_a_part(self):
        values = self.noise(3 * 4800)
        self.sound("a.wav", values, 3)
        self.answer("wav", "convert", "a.wav", "b.wav", "--channel", "2")
        self.assertEqual(self.samples("b.wav"), [value / 32768 for value in values[1::3]])
        answer = self.json("wav", "convert", "a.wav", "b.wav", "--from", "0.025", "--length", "0.05")
        self.assertEqual((answer["frames"], answer["seconds"]), (2400, 0.05))
        self.assertEqual(self.samples("b.wav"), [value / 32768 for value in values[3600:3600 + 7200]])
        self.assertEqual(self.json("wav", "convert", "a.wav", "b.wav", "--from", "99")["frames"], 0)

    @needs("sox")
    def test_beyond_full_scale_is_clipped(self):
        judge("sox", "-t", "raw", "-e", "floating-point", "-b", "32", "-r", "8000", "-c", "1", "-", "-e", "floating-point", "-b", "32",
              self.path("a.wav"), data=array.array("f", [1.5, -1.5, 1.0, 0.5]).tobytes())
        self.answer("wav", "convert", "a.wav", "b.wav", "--bits", "16")
        with wave.open(self.path("b.wav")) as file:
            self.assertEqual(array.array("h", file.readframes(4)).tolist(), [32767, -32768, 32767, 16384])

    def test_refusals(self):
        self.sound("a.wav", [0] * 10)
        self.assertIn("a.wav: has no channel 2 (there are 1)", self.refusal("wav", "convert", "a.wav", "b.wav", "--channel", "2"))
        self.assertIn("none/b.wav: cannot be created", self.refusal("wav", "convert", "a.wav", "none/b.wav"))
        self.refusal("wav", "convert", "a.wav", "b.wav", "--bits", "8", code=2)
        self.refusal("wav", "convert", "a.wav", "b.wav", "--from=-1", code=2)


class Resample(WavCase):
    def lines(self, values, source, target):
        """Straight lines between samples, behind the last one 0, in whole numbers as far as they go."""
        out = []
        for i in range(len(values) * target // source):
            k, rest = divmod(i * source, target)
            after = values[k + 1] if k + 1 < len(values) else 0
            out.append((values[k] * (target - rest) + after * rest) / target / 32768)
        return out

    @needs("sox")
    def check(self, channels, count, source, target):
        values = self.noise(channels * count)
        self.sound("a.wav", values, channels, source)
        self.answer("wav", "convert", "a.wav", "floats.wav", "--bits", "32")
        answer = self.json("wav", "resample", "floats.wav", "b.wav", "--rate", str(target))
        self.assertEqual((answer["rate"], answer["frames"]), (target, count * target // source))
        made = self.samples("b.wav")
        for channel in range(channels):
            expected = self.lines(values[channel::channels], source, target)
            worst = max(abs(a - b) for a, b in zip(expected, made[channel::channels], strict=True))
            self.assertLess(worst, 1e-6, (channel, source, target))

    def test_usual_rates(self):
        self.check(2, 4410, 44100, 48000)
        self.check(1, 4800, 48000, 44100)
        self.check(1, 100, 8000, 8000)

    def test_blocks_meet_without_a_seam(self):
        # 10667 to 16000 without their divisor: 12 periods, 128004 samples, are all that fits into 32 bits.
        self.check(1, 300000, 32001, 48000)

    def test_rates_without_a_divisor(self):
        self.sound("a.wav", [0] * 50000, 1, 47999)
        self.assertIn("47999 to 48000 Hz: the rates have no common divisor", self.refusal("wav", "resample", "a.wav", "b.wav", "--rate", "48000"))
        self.check(1, 40000, 47999, 48000)


class Plot(WavCase):
    @needs("bmptopnm")
    def test_bands_from_the_top(self):
        # The first channel stands still at a half, the second swings over the full scale.
        self.sound("a.wav", [value for i in range(4000) for value in (16384, 32767 if i % 2 else -32768)], 2)
        answer = self.json("wav", "plot", "a.wav", "a.bmp", "--size", "100x200")
        self.assertEqual(answer, {"file": "a.bmp", "width": 100, "height": 200, "channels": 2, "frames": 4000})
        data = judge("bmptopnm", "-quiet", self.path("a.bmp"))
        self.assertTrue(data.startswith(b"P6\n100 200\n255\n"))
        pixels = data[-100 * 200 * 3:]

        def at(x, y):
            return tuple(pixels[(y * 100 + x) * 3:][:3])

        back, wave_colour, clipped, axis = (24, 28, 36), (90, 200, 170), (235, 95, 80), (70, 80, 95)
        self.assertEqual([at(50, y) for y in (10, 26, 50, 75)], [back, wave_colour, axis, back])  # 50 - 0.5 x 48
        self.assertEqual([at(50, y) for y in (105, 150, 195)], [clipped] * 3)

    def test_refusals(self):
        self.sound("a.wav", [0] * 10)
        self.refusal("wav", "plot", "a.wav", "a.png", code=2)
        self.refusal("wav", "plot", "a.wav", "a.bmp", "--size", "5", code=2)

    def test_a_sound_without_samples(self):
        self.sound("a.wav", [])
        self.assertEqual(self.json("wav", "plot", "a.wav", "a.bmp")["frames"], 0)


if __name__ == "__main__":
    tool_case.main()
