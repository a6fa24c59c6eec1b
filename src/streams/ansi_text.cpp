// ansi_text.cpp - lines between a code page and QXChar texts.

#include "streams/ansi_text.h"

#include "os/code_page.h"

namespace qxv {
namespace {

// Units: the first lines find room at once, and what a long line took is given back with the next one.
constexpr std::size_t kFirst = 1024;
constexpr std::size_t kKept = 64 * 1024;

}  // namespace

TextView AnsiText::Decode(std::string_view bytes) {
  if (m_units.size() < bytes.size() || (m_units.size() > kKept && bytes.size() <= kKept)) {
    std::basic_string<QXChar>().swap(m_units);
    m_units.resize(bytes.size() <= kFirst ? kFirst : bytes.size() <= kKept ? kKept : bytes.size());
  }
  // No page makes more units than bytes; one that did would be asked for the length first.
  std::ptrdiff_t count =
      bytes.empty() ? 0 : os::MultiByteToWide(m_codePage, bytes.data(), bytes.size(), m_units.data(), m_units.size());
  if (count < 0) {
    count = 0;
    std::basic_string<QXChar> units;
    if (os::MultiByteToWide(m_codePage, bytes, units)) {
      m_units.swap(units);
      count = static_cast<std::ptrdiff_t>(m_units.size());
    }
  }
  const auto length = static_cast<std::size_t>(count);
  if (length < m_units.size()) {
    m_units[length] = 0;  // a std::basic_string has a zero behind its last unit anyway
  }
  return {m_units.data(), length};
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
