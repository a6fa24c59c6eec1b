"""qxv_printers.py - gdb's view of the library's types: text, visible length, length word, capacity word and slot.

Load it with `source qxv_printers.py` in gdb or from ~/.gdbinit.
"""

import gdb
import gdb.printing

_BLOCK = 128  # characters by which a buffer's capacity steps
_MOST_BLOCKS = 1 << 24  # ends the scan of a damaged buffer


def _units(address, first, count):
    """Units first ... first + count - 1 of the text at address, as integers."""
    memory = gdb.selected_inferior().read_memory(address + 2 * first, 2 * count)
    return list(memoryview(bytes(memory)).cast("H"))


def _unit(address, index):
    return _units(address, index, 1)[0]


class StringPrinter:
    """CQXString: one pointer to characters, terminator slot, length word, capacity word."""

    def __init__(self, value):
        self._address = int(value["m_pText"])

    def _visible(self):
        text = []
        while True:
            unit = _unit(self._address, len(text))
            if unit == 0:
                return text
            text.append(unit)

    def to_string(self):
        if self._address == 0:
            return "null buffer"
        try:
            units = self._visible()
            slot = _BLOCK
            while _unit(self._address, slot) != 0 and slot < _BLOCK * _MOST_BLOCKS:
                slot += _BLOCK
            words = _units(self._address, slot + 1, 4)
        except gdb.MemoryError:
            return "damaged buffer at 0x%x" % self._address
        text = b"".join(u.to_bytes(2, "little") for u in units).decode("utf-16-le", "replace")
        quoted = text.replace("\\", "\\\\").replace('"', '\\"').replace("\r", "\\r").replace("\n", "\\n")
        return '"%s" (visible length %d, length word %d, capacity word %d, slot %d)' % (
            quoted,
            len(units),
            words[0] | words[1] << 16,
            words[2] | words[3] << 16,
            slot,
        )


class ArrayPrinter:
    """CQXArray: data pointer, size, allocated count, grow-by."""

    def __init__(self, value):
        self._value = value

    def to_string(self):
        v = self._value
        return "CQXArray of size %d, allocated %d, grow-by %d" % (
            int(v["m_nSize"]),
            int(v["m_nAllocated"]),
            int(v["m_nGrowBy"]),
        )

    def children(self):
        for i in range(int(self._value["m_nSize"])):
            yield "[%d]" % i, (self._value["m_pData"] + i).dereference()

    def display_hint(self):
        return "array"


class GuidPrinter:
    """QX_GUID in the form of QXVCoCreateGuidString2."""

    def __init__(self, value):
        self._value = value

    def to_string(self):
        v = self._value
        tail = ["%02X" % int(v["Data4"][i]) for i in range(8)]
        return "%08X-%04X-%04X-%s-%s" % (
            int(v["Data1"]),
            int(v["Data2"]),
            int(v["Data3"]),
            "".join(tail[:2]),
            "".join(tail[2:]),
        )


def _printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("QXVCommonLibU")
    collection.add_printer("CQXString", "^CQXString$", StringPrinter)
    collection.add_printer("CQXArray", "^CQXArray<.*>$", ArrayPrinter)
    collection.add_printer("QX_GUID", "^QX_GUID$", GuidPrinter)
    return collection


gdb.printing.register_pretty_printer(None, _printers(), replace=True)
