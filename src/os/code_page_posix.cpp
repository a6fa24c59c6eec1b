// code_page_posix.cpp - code pages from tables that iconv fills once a page, corrected where Windows differs.
// iconv knows the standards; Windows also pairs unassigned bytes with control characters and private units (all of the
// user-defined ranges of 936, 949 and 950). A table makes every rule for broken input ours, and one look-up a character.

#include "os/code_page.h"

#include "os/code_page_system.h"

#include "os/code_page_table.h"
#include "os/counted_output.h"
#include "os/language.h"

#include <cstdlib>

namespace qxv::os::system {

namespace {

unsigned ReadAnsiCodePage() noexcept {
  if (const char* chosen = std::getenv("QXV_ACP"); chosen != nullptr) {
    const unsigned long page = std::strtoul(chosen, nullptr, 10);
    if (page == kCodePageUtf8 || (page <= 0xFFFF && IsTablePage(static_cast<unsigned>(page)))) {
      return static_cast<unsigned>(page);
    }
  }
  return CodePageOfLocale(EnvironmentLocale());
}

}  // namespace

unsigned AnsiCodePage() noexcept {
  static const unsigned page = ReadAnsiCodePage();
  return page;
}

unsigned ThreadAnsiCodePage() noexcept { return system::AnsiCodePage(); }

bool CodePageExists(unsigned page) noexcept { return TableOf(page) != nullptr; }

bool CodePageWantsMemory(unsigned page) noexcept { return IsTablePage(page) && !IsPageLacking(page); }

std::ptrdiff_t Decode(unsigned page, const char* bytes, std::size_t count, QXChar* out, std::size_t capacity,
                      bool* lost) noexcept {
  const CodePageTable* const table = TableOf(page);
  if (table == nullptr) {
    return -1;
  }
  CountedOutput<QXChar> output(out, capacity);
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    QXChar unit = table->single[byte];
    bool assigned = !table->unassigned[byte];
    if (table->rows[byte] != nullptr) {
      const bool hasTrail = i + 1 < count && bytes[i + 1] != 0;
      unit = hasTrail ? table->rows[byte][static_cast<unsigned char>(bytes[i + 1])] : QXChar();
      i += hasTrail ? 1 : 0;
      assigned = unit != 0;
      unit = assigned ? unit : table->defaultUnit;
    }
    *lost |= !assigned;
    output.Put(unit);
  }
  return output.Result();
}

std::ptrdiff_t Encode(unsigned page, const QXChar* text, std::size_t count, char* out, std::size_t capacity,
                      bool* lost) noexcept {
  const CodePageTable* const table = TableOf(page);
  if (table == nullptr) {
    return -1;
  }
  CountedOutput<char> output(out, capacity);
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned code = table->codes[text[i]];
    if (code > 0xFF) {
      output.Put(static_cast<char>(code >> 8));
      output.Put(static_cast<char>(code & 0xFF));
    } else if (code != 0 || text[i] == 0) {
      output.Put(static_cast<char>(code));
    } else {
      *lost = true;
      output.Put('?');
    }
  }
  return output.Result();
}

}  // namespace qxv::os::system
