// fuzz_wide_format.cpp - any format with any numbers into room of any size. Every argument is safe under every conversion: the
// format may ask for a text where a number stands, so texts are asked for by formats that this driver writes itself.

#include "os/wide_format.h"

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

int LengthWith(const QXChar* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = qxv::os::FormatLength(format, args);
  const int again = qxv::os::FormatLength(format, args);  // the arguments were copied
  va_end(args);
  Require(length == again);
  return length;
}

template <typename... Args>
void Check(const Text& format, std::size_t room, Args... args) {
  const int length = LengthWith(format.c_str(), args...);
  Require(length >= -1);
  const std::unique_ptr<QXChar[]> out(new QXChar[room]);  // the address sanitizer watches both ends
  const int written = qxv::os::FormatTextWith(out.get(), room, format.c_str(), args...);
  Require(written == (length >= 0 && static_cast<std::size_t>(length) < room ? length : -1));
  if (written >= 0) {
    Require(out[static_cast<std::size_t>(written)] == 0);
  } else if (length >= static_cast<int>(room)) {
    Require(out[room - 1] == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 26) {
    return 0;
  }
  const std::size_t room = 1 + data[0] + (data[1] & 1 ? 256u * data[1] : 0);
  double number = 0;
  long long integer = 0;
  int small = 0;
  std::memcpy(&number, data + 2, 8);
  std::memcpy(&integer, data + 10, 8);
  std::memcpy(&small, data + 18, 4);
  const std::uint8_t* const text = data + 22;
  const std::size_t count = size - 22;

  // A text where the format is not under the data's control: any width, precision and sizes.
  const Text wide(reinterpret_cast<const QXChar*>(std::string(text, text + count / 2 * 2).c_str()), count / 2);
  const std::string narrow(text, text + count);
  Check(u"%*.*s|", room, small, static_cast<int>(integer), wide.c_str());
  Check(u"%*.*hs|%C", room, small % 1000, static_cast<int>(integer) % 1000, narrow.c_str(), small);

  // The data's own format, without conversions to text. Eight arguments of each kind lie ready; one that reads further repeats
  // the last bytes of this call's frame, so at most eight requests go through.
  Text format;
  int requests = 0;
  for (std::size_t i = 0; i < count; ++i) {
    QXChar unit = static_cast<QXChar>(text[i] < 0x80 ? text[i] : text[i] << 8 | 0x4E);
    unit = unit == u's' || unit == u'S' || unit == 0 ? QXChar(u'd') : unit;
    requests += unit == u'%' || unit == u'*' ? 1 : 0;
    if (requests > 8) {
      break;
    }
    format += unit;
  }
  const auto i =
      static_cast<unsigned long long>(integer);  // passed for signed ones, too: what the format takes it for is its business
  const double d = number;
  Check(format, room, i, d, i + 1, -d, static_cast<long long>(small), d / 3, 0 - i, d * 7, ~i, d + 1, i >> 7, d - 1, i & 0xFF,
        d * 1e9, i | 1, d / 1e9);
  return 0;
}
