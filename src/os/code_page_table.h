// code_page_table.h - one code page as tables (Linux only).
#pragma once

#include "qxv/types.h"

namespace qxv::os {

struct CodePageTable {
  QXChar defaultUnit;
  QXChar single[256];          // of bytes that are no lead bytes
  bool unassigned[256];        // bytes that Windows pairs with a private unit, but calls invalid
  const QXChar* rows[256];     // by lead byte the units of its 256 trail bytes, 0 where there is none; null for other bytes
  std::uint16_t codes[65536];  // by unit the byte or pair of bytes, 0 where there is none
};

/// Whether the page is one of those that a table can be built of.
[[nodiscard]] bool IsTablePage(unsigned page) noexcept;

/// The page's table, built at the first call and kept to the end of the process. Null when the page is not one of ours, the
/// system's iconv lacks it, or there is no memory or no descriptor for it now; then the next call tries again.
const CodePageTable* TableOf(unsigned page) noexcept;

/// Whether iconv has told that it has no such page.
[[nodiscard]] bool IsPageLacking(unsigned page) noexcept;

}  // namespace qxv::os
