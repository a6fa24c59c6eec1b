// fuzz_code_page.cpp - any bytes in any page, into room of any size; what decodes without loss must encode to something that
// decodes alike.

#include "os/code_page.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using namespace qxv::os;

constexpr unsigned kPages[] = {437,  850,  866,  874,  932,  936,  949,  950, 1250, 1251,
                               1252, 1253, 1254, 1255, 1256, 1257, 1258, 0,   3,    kCodePageUtf8};

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

template <typename To, typename From, typename Convert>
std::basic_string<To> Checked(Convert convert, const From* from, std::size_t count, std::size_t room) {
  bool lost = false;
  const std::ptrdiff_t needed = convert(from, count, nullptr, 0, &lost);
  Require(needed >= 0 && static_cast<std::size_t>(needed) <= count * 3);
  const std::unique_ptr<To[]> out(new To[room + 1]);
  if (room != 0) {
    const std::ptrdiff_t written = convert(from, count, out.get(), room, &lost);
    Require(written == (static_cast<std::size_t>(needed) <= room ? needed : -1));
  }
  std::basic_string<To> whole(static_cast<std::size_t>(needed), To());
  Require(needed == 0 || convert(from, count, whole.data(), whole.size(), &lost) == needed);
  return whole;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) {
    return 0;
  }
  const unsigned page = kPages[data[0] % std::size(kPages)];
  const std::size_t room = data[1];
  const std::string bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
  const auto decode = [page](const char* from, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) {
    return MultiByteToWide(page, from, count, out, capacity, lost);
  };
  const auto encode = [page](const QXChar* from, std::size_t count, char* out, std::size_t capacity, bool* lost) {
    return WideToMultiByte(page, from, count, out, capacity, lost);
  };
  const auto text = Checked<QXChar>(decode, bytes.data(), bytes.size(), room);

  bool lost = false;
  std::basic_string<QXChar> again;
  Require(MultiByteToWide(page, bytes, again, &lost) && again == text);
  const std::string back = Checked<char>(encode, text.data(), text.size(), room);
  if (!lost) {
    bool lostBack = false;
    Require(encode(text.data(), text.size(), nullptr, 0, &lostBack) >= 0 && !lostBack);
    Require(MultiByteToWide(page, back, again) && again == text);
  }

  const std::basic_string<QXChar> units(reinterpret_cast<const QXChar*>(bytes.data()), bytes.size() / 2);
  const std::string encoded = Checked<char>(encode, units.data(), units.size(), room);
  bool unitsLost = false;
  Require(encode(units.data(), units.size(), nullptr, 0, &unitsLost) >= 0);
  if (!unitsLost) {
    Require(MultiByteToWide(page, encoded, again) && again == units);
  }
  return 0;
}
