"""The rules of layouts and sizes as they are stated, in single precision: with numpy where it is installed, and a pixel at a time."""

import ctypes

try:
    import numpy
except ImportError:
    numpy = None

BGRA, BGR, YUV, VUY, RGB = 1, 4, 8, 0x02000000, 0x40000000
LAYOUTS = (BGRA, BGR, YUV, VUY, RGB)

# of y, u, v less 16, 128, 128
TO_COLOURS = ((1.164352, 0.000016, 1.596014), (1.164402, -0.391741, -0.812962), (1.164345, 2.017219, 0.000018))
# of r, g, b, and what is added last
TO_YUV = ((0.25679, 0.504135, 0.0979, 16.0), (-0.148224, -0.290985, 0.439224, 128.0), (0.439224, -0.367783, -0.071426, 128.0))


def bytes_of(layout):
    return 4 if layout == BGRA else 3


def single(value):
    """Rounded to single precision: every sum, product and quotient of two such numbers is exact enough in double precision."""
    return ctypes.c_float(value).value


LOW, HIGH = single(-0.499), single(255.499)


class Plain:
    """Rows of tuples."""

    @staticmethod
    def rounded(value):
        return int(single(min(max(value, LOW), HIGH) + 0.5))

    @staticmethod
    def sum_of(terms):
        total = terms[0]
        for term in terms[1:]:
            total = single(total + term)
        return total

    @classmethod
    def colours_of(cls, yuv):
        parts = (yuv[0] - 16, yuv[1] - 128, yuv[2] - 128)
        return [cls.rounded(cls.sum_of([single(single(f) * p) for f, p in zip(row, parts)])) for row in TO_COLOURS]

    @classmethod
    def yuv_of(cls, rgb):
        return [cls.rounded(cls.sum_of([single(single(f) * p) for f, p in zip(row, rgb)] + [row[3]])) for row in TO_YUV]

    @classmethod
    def place(cls, index, length, size):
        """(first, second, distance to the first, distance to the second) on one axis."""
        at = single(single(single(index) * single(length)) / single(size))
        first = int(at)
        if first + 1 >= length:
            first = length - 2
        return max(first, 0), max(first + 1, 0), single(at - first), single(first + 1 - at)

    @classmethod
    def resized(cls, rows, width, height):
        columns = [cls.place(c, len(rows[0]), width) for c in range(width)]
        result = []
        for r in range(height):
            y0, y1, down, up = cls.place(r, len(rows), height)
            row = []
            for x0, x1, right, left in columns:
                weights = [single(a * b) for a, b in ((up, left), (up, right), (down, left), (down, right))]
                corners = rows[y0][x0], rows[y0][x1], rows[y1][x0], rows[y1][x1]
                row.append([cls.rounded(cls.sum_of([single(w * s) for w, s in zip(weights, samples)])) for samples in zip(*corners)])
            result.append(row)
        return result

    @classmethod
    def frame(cls, layout, width, height, padding, pixels, target, to_width, to_height, to_padding):
        size = bytes_of(layout)
        stride = width * size + padding
        rows = [[list(pixels[y * stride + x * size:y * stride + x * size + size]) for x in range(width)] for y in range(height)]
        order = {BGRA: (3, 2, 1, 0), BGR: (2, 1, 0), RGB: (0, 1, 2), YUV: (0, 1, 2), VUY: (2, 1, 0)}[layout]
        rows = [[[p[i] for i in order] for p in row] for row in rows]
        if (width, height) != (to_width, to_height):
            rows = cls.resized(rows, to_width, to_height)
        if layout in (YUV, VUY):
            rows = [[cls.colours_of(p) for p in row] for row in rows]
        if layout != BGRA:
            rows = [[[255] + p for p in row] for row in rows]
        result = bytearray()
        for row in rows:
            for a, r, g, b in row:
                yuv = cls.yuv_of((r, g, b)) if target in (YUV, VUY) else ()
                result += bytes({BGRA: (b, g, r, a), BGR: (b, g, r), RGB: (r, g, b), YUV: yuv, VUY: tuple(yuv)[::-1]}[target])
            result += bytes(to_padding)
        return bytes(result)


class Numpy:
    """Arrays of float32."""

    @staticmethod
    def rounded(values):
        f = numpy.float32
        return (numpy.clip(values, f(LOW), f(HIGH)) + f(0.5)).astype(numpy.int32)

    @classmethod
    def mixed(cls, channels, table):
        f = numpy.float32
        result = []
        for row in table:
            total = f(row[0]) * channels[0] + f(row[1]) * channels[1] + f(row[2]) * channels[2]
            result.append(cls.rounded(total + f(row[3]) if len(row) > 3 else total))
        return result

    @staticmethod
    def places(length, size):
        f = numpy.float32
        at = numpy.arange(size).astype(f) * f(length) / f(size)
        first = at.astype(numpy.int32)
        first = numpy.where(first + 1 >= length, length - 2, first)
        return numpy.maximum(first, 0), numpy.maximum(first + 1, 0), at - first.astype(f), (first + 1).astype(f) - at

    @classmethod
    def resized(cls, planes, width, height):
        f = numpy.float32
        y0, y1, down, up = cls.places(planes[0].shape[0], height)
        x0, x1, right, left = cls.places(planes[0].shape[1], width)
        result = []
        for plane in planes:
            s = plane.astype(f)
            total = numpy.outer(up, left) * s[numpy.ix_(y0, x0)] + numpy.outer(up, right) * s[numpy.ix_(y0, x1)]
            total = total + numpy.outer(down, left) * s[numpy.ix_(y1, x0)] + numpy.outer(down, right) * s[numpy.ix_(y1, x1)]
            result.append(cls.rounded(total))
        return result

    @classmethod
    def frame(cls, layout, width, height, padding, pixels, target, to_width, to_height, to_padding):
        f = numpy.float32
        size = bytes_of(layout)
        rows = numpy.frombuffer(pixels, numpy.uint8).reshape(height, width * size + padding)[:, :width * size]
        cube = rows.reshape(height, width, size).astype(numpy.int32)
        order = {BGRA: (3, 2, 1, 0), BGR: (2, 1, 0), RGB: (0, 1, 2), YUV: (0, 1, 2), VUY: (2, 1, 0)}[layout]
        planes = [cube[:, :, i] for i in order]
        if (width, height) != (to_width, to_height):
            planes = cls.resized(planes, to_width, to_height)
        if layout in (YUV, VUY):
            planes = cls.mixed([(p - o).astype(f) for p, o in zip(planes, (16, 128, 128))], TO_COLOURS)
        if layout != BGRA:
            planes = [numpy.full((to_height, to_width), 255, numpy.int32)] + list(planes)
        a, r, g, b = planes
        if target in (YUV, VUY):
            y, u, v = cls.mixed([p.astype(f) for p in (r, g, b)], TO_YUV)
            parts = (y, u, v) if target == YUV else (v, u, y)
        else:
            parts = {BGRA: (b, g, r, a), BGR: (b, g, r), RGB: (r, g, b)}[target]
        out = numpy.stack(parts, axis=-1).astype(numpy.uint8).reshape(to_height, to_width * len(parts))
        return numpy.concatenate([out, numpy.zeros((to_height, to_padding), numpy.uint8)], axis=1).tobytes()


def frame(*arguments):
    return (Numpy if numpy else Plain).frame(*arguments)
