// fuzz_encoded_text.cpp - any bytes as a text of any encoding, from exactly sized memory. First byte: the code page.
// What must hold: no text is longer than its bytes, Unicode texts have no unpaired surrogate, and both byte orders of UTF-16
// agree.

#include "os/code_page.h"
#include "streams/encoded_text.h"

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Text = std::basic_string<QXChar>;

constexpr unsigned kPages[] = {0, 3, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1258, 65001, 7};

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

bool IsWellFormed(const Text& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned unit = text[i];
    if (unit >= 0xD800 && unit < 0xE000) {
      if (unit >= 0xDC00 || i + 1 == text.size() || text[i + 1] < 0xDC00 || text[i + 1] >= 0xE000) {
        return false;
      }
      ++i;
    }
  }
  return true;
}

bool BeginsWith(const std::string& bytes, std::string_view mark) {
  return std::string_view(bytes).substr(0, mark.size()) == mark;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const unsigned page = kPages[data[0] % std::size(kPages)];
  const std::vector<unsigned char> exact(data + 1, data + size);
  const std::string bytes(exact.begin(), exact.end());
  Text text = QXT("old");
  const auto error = qxv::DecodeText(exact, page, text);
  const bool utf16 = BeginsWith(bytes, "\xFF\xFE") || BeginsWith(bytes, "\xFE\xFF");
  const bool marked = utf16 || BeginsWith(bytes, "\xEF\xBB\xBF");
  if (page == 7 && !marked) {
    Require(error == 87 && text == QXT("old"));
    return 0;
  }
  Require(error == 0 && text.size() <= bytes.size());
  Require(!(marked || page == 65001) || IsWellFormed(text));
  if (utf16) {
    std::vector<unsigned char> swapped(exact);
    for (std::size_t i = 0; i + 1 < swapped.size(); i += 2) {
      std::swap(swapped[i], swapped[i + 1]);
    }
    Text again;
    Require(qxv::DecodeText(swapped, page, again) == 0 && again == text);
    Require(text.size() == (bytes.size() - 2 + 1) / 2);
  }
  return 0;
}
