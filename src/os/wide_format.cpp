// wide_format.cpp - the formatter: reads the format, fetches the arguments, writes texts. Numbers stand in wide_integer.cpp and
// wide_float.cpp.

#include "os/wide_format.h"

#include "os/c_runtime.h"
#include "os/code_page.h"
#include "os/format_sink.h"

#include <exception>
#include <string>

namespace qxv::os {

namespace {

struct Arguments {
  va_list list;
};

/// The size of an integer and the kind of a text, as the modifiers said.
struct Modifiers {
  QXChar length = 0;  // the last of h l L
  bool is64Bit = false;
  bool isWide = false;  // w
};

constexpr bool IsDigit(QXChar unit) noexcept { return unit >= QXT('0') && unit <= QXT('9'); }

constexpr bool IsIntegerConversion(QXChar unit) noexcept {
  return unit == QXT('d') || unit == QXT('i') || unit == QXT('o') || unit == QXT('u') || unit == QXT('x') || unit == QXT('X');
}

/// Appends decimal digits to value; false when it leaves the range of int.
bool ReadNumber(const QXChar*& at, int& value) noexcept {
  for (; IsDigit(*at); ++at) {
    const std::int64_t next = std::int64_t{value} * 10 + (*at - QXT('0'));
    if (next > INT_MAX) {
      return false;
    }
    value = static_cast<int>(next);
  }
  return true;
}

void ReadFlags(const QXChar*& at, FormatSpec& spec) noexcept {
  for (;; ++at) {
    switch (*at) {
      case '-':
        spec.left = true;
        break;
      case '0':
        spec.zero = true;
        break;
      case '#':
        spec.alternate = true;
        break;
      case '+':
        spec.sign = *at;
        break;
      case ' ':
        if (spec.sign == 0) {
          spec.sign = *at;
        }
        break;
      default:
        return;
    }
  }
}

bool ReadWidthAndPrecision(const QXChar*& at, FormatSpec& spec, Arguments& args) noexcept {
  if (*at == QXT('*')) {
    ++at;
    spec.width = va_arg(args.list, int);
    if (spec.width == INT_MIN) {
      return false;
    }
    if (spec.width < 0) {
      spec.left = true;
      spec.width = -spec.width;
    }
  }
  if (!ReadNumber(at, spec.width)) {  // digits behind the star continue its number, as in the Microsoft run-time
    return false;
  }
  if (*at != QXT('.')) {
    return true;
  }
  ++at;
  if (*at == QXT('*')) {
    ++at;
    spec.precision = std::max(-1, va_arg(args.list, int));
    return true;
  }
  spec.precision = 0;
  return ReadNumber(at, spec.precision);
}

void ReadModifiers(const QXChar*& at, Modifiers& modifiers) noexcept {
  for (;;) {
    switch (*at) {
      case 'h':
      case 'L':
        modifiers.length = *at++;
        break;
      case 'l':
        if (at[1] == QXT('l')) {  // ll is a size, it does not make a text wide
          modifiers.is64Bit = true;
          at += 2;
        } else {
          modifiers.length = *at++;
        }
        break;
      case 'w':
        modifiers.isWide = true;
        ++at;
        break;
      case 'F':
      case 'N':
        ++at;
        break;
      case 'j':
        modifiers.is64Bit = true;
        ++at;
        break;
      case 'z':
      case 't':
        if (!IsIntegerConversion(at[1])) {
          return;
        }
        modifiers.is64Bit = true;
        ++at;
        break;
      case 'I':
        if (at[1] == QXT('6') && at[2] == QXT('4')) {
          modifiers.is64Bit = true;
          at += 3;
        } else if (at[1] == QXT('3') && at[2] == QXT('2')) {
          at += 3;
        } else if (IsIntegerConversion(at[1])) {
          modifiers.is64Bit = true;
          ++at;
        } else {
          return;
        }
        break;
      default:
        return;
    }
  }
}

int BitsOf(const Modifiers& modifiers) noexcept { return modifiers.is64Bit ? 64 : modifiers.length == QXT('h') ? 16 : 32; }

/// The argument, sign-extended from its size.
std::int64_t FetchInteger(const Modifiers& modifiers, Arguments& args) noexcept {
  if (modifiers.is64Bit) {
    return va_arg(args.list, long long);
  }
  if (modifiers.length == QXT('l')) {
    return static_cast<std::int32_t>(va_arg(args.list, long));
  }
  const int value = va_arg(args.list, int);
  return modifiers.length == QXT('h') ? static_cast<std::int16_t>(value) : value;
}

template <typename Unit>
void PutPadded(FormatSink& sink, const FormatSpec& spec, const Unit* units, std::size_t count) noexcept {
  const std::int64_t padding = spec.width - static_cast<std::int64_t>(count);
  if (!spec.left) {
    sink.Fill(spec.zero ? QXT('0') : QXT(' '), padding);
  }
  sink.Append(units, count);
  if (spec.left) {
    sink.Fill(QXT(' '), padding);
  }
}

/// Bytes in the ANSI code page. False when there is no memory for the conversion, or the page does not exist.
[[nodiscard]] bool PutNarrow(FormatSink& sink, const FormatSpec& spec, const char* bytes, std::size_t count) noexcept {
  if (std::all_of(bytes, bytes + count, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) {
    PutPadded(sink, spec, bytes, count);
    return true;
  }
  try {
    std::basic_string<QXChar> units;
    if (!MultiByteToWide(kCodePageAnsi, std::string_view(bytes, count), units)) {
      return false;
    }
    PutPadded(sink, spec, units.data(), units.size());
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool IsNarrow(QXChar conversion, QXChar lowerCase, const Modifiers& modifiers) noexcept {
  if (modifiers.isWide || modifiers.length == QXT('l')) {
    return false;
  }
  return modifiers.length == QXT('h') || conversion != lowerCase;
}

[[nodiscard]] bool FormatString(FormatSink& sink, const FormatSpec& spec, const Modifiers& modifiers, Arguments& args) noexcept {
  const void* text = va_arg(args.list, const void*);
  if (text == nullptr) {
    constexpr char kNull[] = "(null)";
    const std::size_t length = sizeof kNull - 1;
    PutPadded(sink, spec, kNull,
              spec.precision < 0 ? length : std::min<std::size_t>(length, static_cast<unsigned>(spec.precision)));
    return true;
  }
  const std::size_t limit = spec.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(spec.precision);
  if (IsNarrow(spec.conversion, QXT('s'), modifiers)) {
    const auto* bytes = static_cast<const char*>(text);
    std::size_t count = 0;
    while (count < limit && bytes[count] != 0) {
      ++count;
    }
    return PutNarrow(sink, spec, bytes, count);
  }
  const auto* units = static_cast<const QXChar*>(text);
  PutPadded(sink, spec, units, TextLength(units, limit));
  return true;
}

[[nodiscard]] bool FormatCharacter(FormatSink& sink, const FormatSpec& spec, const Modifiers& modifiers,
                                   Arguments& args) noexcept {
  const int value = va_arg(args.list, int);
  const std::size_t count = spec.precision == 0 ? 0 : 1;
  if (IsNarrow(spec.conversion, QXT('c'), modifiers)) {
    const char byte = static_cast<char>(value);
    return PutNarrow(sink, spec, &byte, count);
  }
  const auto unit = static_cast<QXChar>(value);
  PutPadded(sink, spec, &unit, count);
  return true;
}

/// Sixteen digits. They are a text as far as padding and precision go: no zeros before them, a precision cuts them.
void FormatPointer(FormatSink& sink, FormatSpec spec, Arguments& args) noexcept {
  const auto value = reinterpret_cast<std::uintptr_t>(va_arg(args.list, void*));
  char text[18];
  std::size_t count = 0;
  if (spec.alternate && value != 0) {
    text[count++] = '0';
    text[count++] = 'X';
  }
  for (int shift = 60; shift >= 0; shift -= 4) {
    text[count++] = "0123456789ABCDEF"[value >> shift & 15];
  }
  if (spec.precision >= 0) {
    count = std::min(count, static_cast<std::size_t>(spec.precision));
  }
  spec.zero = false;
  PutPadded(sink, spec, text, count);
}

/// One request, from behind the % to behind its last character. False when it is malformed.
[[nodiscard]] bool FormatOne(FormatSink& sink, const QXChar*& at, Arguments& args) noexcept {
  FormatSpec spec;
  Modifiers modifiers;
  ReadFlags(at, spec);
  if (!ReadWidthAndPrecision(at, spec, args)) {
    return false;
  }
  ReadModifiers(at, modifiers);
  spec.conversion = *at;
  switch (*at) {
    case 'd':
    case 'i':
    case 'o':
    case 'u':
    case 'x':
    case 'X':
      FormatInteger(sink, spec, FetchInteger(modifiers, args), BitsOf(modifiers));
      break;
    case 'a':
    case 'A':
    case 'e':
    case 'E':
    case 'f':
    case 'g':
    case 'G':
      FormatDouble(sink, spec, va_arg(args.list, double));
      break;
    case 's':
    case 'S':
      if (!FormatString(sink, spec, modifiers, args)) {
        return false;
      }
      break;
    case 'c':
    case 'C':
      if (!FormatCharacter(sink, spec, modifiers, args)) {
        return false;
      }
      break;
    case 'p':
      FormatPointer(sink, spec, args);
      break;
    case 'n':  // would write through a pointer that the text chose
      return false;
    default:  // not a request: what stands here is text again
      return true;
  }
  ++at;
  return true;
}

[[nodiscard]] bool FormatAll(FormatSink& sink, const QXChar* format, Arguments& args) noexcept {
  for (const QXChar* at = format; *at != 0;) {
    if (*at != QXT('%')) {
      sink.Put(*at++);
    } else if (at[1] == QXT('%')) {
      sink.Put(QXT('%'));
      at += 2;
    } else if (!FormatOne(sink, ++at, args)) {
      return false;
    }
    if (sink.Overlong()) {
      return false;
    }
  }
  return true;
}

}  // namespace

int FormatLength(const QXChar* format, va_list args) noexcept {
  if (format == nullptr) {
    return -1;
  }
  Arguments copy;
  va_copy(copy.list, args);
  FormatSink sink(nullptr, 0);
  const bool ok = FormatAll(sink, format, copy);
  va_end(copy.list);
  return ok ? static_cast<int>(sink.Count()) : -1;
}

int FormatText(QXChar* out, std::size_t capacity, const QXChar* format, va_list args) noexcept {
  if (out == nullptr || capacity == 0) {
    return -1;
  }
  if (format == nullptr) {
    out[0] = 0;
    return -1;
  }
  Arguments copy;
  va_copy(copy.list, args);
  FormatSink sink(out, capacity);
  const bool ok = FormatAll(sink, format, copy);
  va_end(copy.list);
  sink.Terminate();
  return ok && !sink.Cut() ? static_cast<int>(sink.Count()) : -1;
}

int FormatTextWith(QXChar* out, std::size_t capacity, const QXChar* format, ...) noexcept {
  va_list args;
  va_start(args, format);
  const int written = FormatText(out, capacity, format, args);
  va_end(args);
  return written;
}

}  // namespace qxv::os
