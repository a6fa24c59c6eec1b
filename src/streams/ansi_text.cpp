// ansi_text.cpp - lines between a code page and QXChar texts.

#include "streams/ansi_text.h"

#include "foundation/text_access.h"
#include "os/code_page.h"
#include "streams/byte_widening.h"

namespace qxv {
namespace {

// Units: the first lines find room at once, and what a long line took is given back with the next one.
constexpr std::size_t kFirst = 1024;
constexpr std::size_t kKept = 64 * 1024;

const unsigned char* BytesOf(std::string_view bytes) noexcept { return reinterpret_cast<const unsigned char*>(bytes.data()); }

}  // namespace

// ASCII is the same in every page that can be an ANSI page.
std::size_t AssignShortLine(const unsigned char* bytes, unsigned char end, bool endIncluded, CQXString& text) noexcept {
  static_assert(kShortLine == kStringBlock);
  QXChar* const block = TextAccess::FirstBlock(text);
  if (block == nullptr || bytes[0] == end) {
    return kNoShortLine;
  }
  const std::size_t count = WidenShortLine(bytes, end, block);
  if (count == kNoShortLine) {
    return kNoShortLine;
  }
  if (endIncluded) {
    block[count] = static_cast<QXChar>(end);
  }
  TextAccess::SetFirstBlock(text, endIncluded ? count + 1 : count);
  return count;
}

TextView AnsiText::Decode(std::string_view bytes) {
  if (m_units.size() < bytes.size() || (m_units.size() > kKept && bytes.size() <= kKept)) {
    std::basic_string<QXChar>().swap(m_units);
    m_units.resize(bytes.size() <= kFirst ? kFirst : bytes.size() <= kKept ? kKept : bytes.size());
  }
  if (IsAscii(BytesOf(bytes), bytes.size())) {
    WidenBytes(BytesOf(bytes), bytes.size(), m_units.data());
    return {m_units.data(), bytes.size()};
  }
  std::ptrdiff_t count = os::MultiByteToWide(m_codePage, bytes.data(), bytes.size(), m_units.data(), m_units.size());
  if (count < 0) {  // a page that makes more units than bytes, or none
    std::basic_string<QXChar> units;
    if (!os::MultiByteToWide(m_codePage, bytes, units)) {
      return {};
    }
    m_units.swap(units);
    count = static_cast<std::ptrdiff_t>(m_units.size());
  }
  return {m_units.data(), static_cast<std::size_t>(count)};
}

void AnsiText::Decode(std::string_view bytes, bool ascii, CQXString& text) {
  if (!bytes.empty() && (ascii || IsAscii(BytesOf(bytes), bytes.size()))) {
    WidenBytes(BytesOf(bytes), bytes.size(), TextAccess::Size(text, bytes.size()));
  } else {
    AssignText(text, Decode(bytes));
  }
}

void AnsiText::Encode(TextView text, std::string& bytes) const {
  const std::ptrdiff_t count = text.empty() ? 0 : os::WideToMultiByte(m_codePage, text.data(), text.size(), nullptr, 0);
  if (count <= 0) {
    return;
  }
  const std::size_t before = bytes.size();
  bytes.resize(before + static_cast<std::size_t>(count));
  if (os::WideToMultiByte(m_codePage, text.data(), text.size(), bytes.data() + before, static_cast<std::size_t>(count)) !=
      count) {
    bytes.resize(before);
  }
}

}  // namespace qxv
