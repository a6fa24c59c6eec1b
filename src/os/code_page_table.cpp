// code_page_table.cpp - fills a page's tables from iconv and from the differences of Windows' pages, which are all listed here.

#include "os/code_page_table.h"

#include <fcntl.h>
#include <iconv.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>

namespace qxv::os {

namespace {

/// Two-byte codes whose units follow one another: all leads of the range, trails as the page has them.
struct PrivateRun {
  unsigned page;
  unsigned char firstLead, lastLead;
  unsigned char firstTrail, lastTrail;
  QXChar firstUnit;
};

constexpr PrivateRun kPrivateRuns[] = {
    {936, 0xAA, 0xAF, 0xA1, 0xFE, 0xE000}, {936, 0xF8, 0xFE, 0xA1, 0xFE, 0xE234}, {936, 0xA1, 0xA7, 0x40, 0xA0, 0xE4C6},
    {949, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000}, {949, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E}, {950, 0xFA, 0xFE, 0x40, 0xFE, 0xE000},
    {950, 0x8E, 0xA0, 0x40, 0xFE, 0xE311}, {950, 0x81, 0x8D, 0x40, 0xFE, 0xEEB8}, {950, 0xC6, 0xC6, 0xA1, 0xFE, 0xF6B1},
    {950, 0xC7, 0xC8, 0x40, 0xFE, 0xF70F},
};

/// The gaps of the standard rows of 936, filled in order from U+E766 on.
struct Gap {
  std::uint16_t first, last;
};

constexpr Gap kGaps936[] = {
    {0xA2AB, 0xA2B0}, {0xA2E3, 0xA2E4}, {0xA2EF, 0xA2F0}, {0xA2FD, 0xA2FE}, {0xA4F4, 0xA4FE}, {0xA5F7, 0xA5FE}, {0xA6B9, 0xA6C0},
    {0xA6D9, 0xA6DF}, {0xA6EC, 0xA6ED}, {0xA6F3, 0xA6F3}, {0xA6F6, 0xA6FE}, {0xA7C2, 0xA7D0}, {0xA7F2, 0xA7FE}, {0xA896, 0xA8A0},
    {0xA8BC, 0xA8BC}, {0xA8BF, 0xA8BF}, {0xA8C1, 0xA8C4}, {0xA8EA, 0xA8FE}, {0xA958, 0xA958}, {0xA95B, 0xA95B}, {0xA95D, 0xA95F},
    {0xA989, 0xA995}, {0xA997, 0xA9A3}, {0xA9F0, 0xA9FE}, {0xD7FA, 0xD7FE}, {0xFE50, 0xFE7E}, {0xFE80, 0xFEA0}};
constexpr QXChar kFirstGapUnit936 = 0xE766;

/// Single bytes: those that the standard leaves free go to private units, one after another.
struct PrivateByte {
  unsigned page;
  unsigned char first, last;
  QXChar firstUnit;
};

constexpr PrivateByte kPrivateBytes[] = {
    {874, 0xDB, 0xDE, 0xF8C1},  {874, 0xFC, 0xFF, 0xF8C5},  {932, 0xA0, 0xA0, 0xF8F0},  {932, 0xFD, 0xFF, 0xF8F1},
    {936, 0xFF, 0xFF, 0xF8F5},  {949, 0xFF, 0xFF, 0xF8F7},  {950, 0xFF, 0xFF, 0xF8F8},  {1253, 0xAA, 0xAA, 0xF8F9},
    {1253, 0xD2, 0xD2, 0xF8FA}, {1253, 0xFF, 0xFF, 0xF8FB}, {1255, 0xD9, 0xDF, 0xF88D}, {1255, 0xFB, 0xFC, 0xF894},
    {1255, 0xFF, 0xFF, 0xF896}, {1257, 0xA1, 0xA1, 0xF8FC}, {1257, 0xA5, 0xA5, 0xF8FD},
};

/// Units with two codes go to the later one (in 932 that is the IBM extension, not the NEC copy of it), but for these.
struct EarlierCode {
  unsigned page;
  QXChar unit;
  std::uint16_t code;
};

constexpr EarlierCode kEarlierCodes[] = {
    {932, 0x2116, 0x8782}, {932, 0x2121, 0x8784}, {932, 0x2160, 0x8754}, {932, 0x2161, 0x8755}, {932, 0x2162, 0x8756},
    {932, 0x2163, 0x8757}, {932, 0x2164, 0x8758}, {932, 0x2165, 0x8759}, {932, 0x2166, 0x875A}, {932, 0x2167, 0x875B},
    {932, 0x2168, 0x875C}, {932, 0x2169, 0x875D}, {932, 0x221A, 0x81E3}, {932, 0x2220, 0x81DA}, {932, 0x2229, 0x81BF},
    {932, 0x222A, 0x81BE}, {932, 0x222B, 0x81E7}, {932, 0x2235, 0x81E6}, {932, 0x2252, 0x81E0}, {932, 0x2261, 0x81DF},
    {932, 0x22A5, 0x81DB}, {932, 0x3231, 0x878A}, {932, 0xFFE2, 0x81CA}, {950, 0x256D, 0xA27E}, {950, 0x256E, 0xA2A1},
    {950, 0x256F, 0xA2A3}, {950, 0x2570, 0xA2A2},
};

/// 0x80 to 0x9F of 1252, the page that needs no iconv; the bytes from 0xA0 on are the first units of Unicode.
constexpr QXChar kHigh1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                                  0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                  0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned kPages[] = {437, 850, 866, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};

constexpr bool IsTwoBytePage(unsigned page) noexcept { return page == 932 || page == 936 || page == 949 || page == 950; }

constexpr bool IsLead(unsigned page, unsigned byte) noexcept {
  if (page == 932) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
  }
  return IsTwoBytePage(page) && byte >= 0x81 && byte <= 0xFE;
}

class Iconv {
 public:
  explicit Iconv(unsigned page) noexcept {
    char name[16];
    std::snprintf(name, sizeof name, "CP%u", page);
    m_descriptor = ::iconv_open("UTF-16LE", name);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() {
    if (Opened()) {
      ::iconv_close(m_descriptor);
    }
  }

  bool Opened() const noexcept { return m_descriptor != reinterpret_cast<iconv_t>(-1); }

  /// The one unit that the bytes give, or 0. The final call flushes pages whose characters may join (1255, 1258).
  QXChar UnitOf(std::initializer_list<unsigned char> bytes) noexcept {
    char in[2] = {};
    std::transform(bytes.begin(), bytes.end(), in, [](unsigned char byte) { return static_cast<char>(byte); });
    unsigned char out[8];
    char* from = in;
    char* to = reinterpret_cast<char*>(out);
    std::size_t left = bytes.size();
    std::size_t room = sizeof out;
    ::iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr);
    if (::iconv(m_descriptor, &from, &left, &to, &room) == static_cast<std::size_t>(-1) ||
        ::iconv(m_descriptor, nullptr, nullptr, &to, &room) == static_cast<std::size_t>(-1) || room != sizeof out - 2) {
      return 0;
    }
    return static_cast<QXChar>(out[0] | out[1] << 8);
  }

 private:
  iconv_t m_descriptor;
};

using Row = QXChar[256];

struct OwnedTable : CodePageTable {
  Row pairs[128];  // of the lead bytes from 0x80 on
};

void FillSingles(unsigned page, Iconv* converter, OwnedTable& table) noexcept {
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (byte < 0x80) {
      table.single[byte] = static_cast<QXChar>(byte);
    } else if (page == 1252) {
      table.single[byte] = byte < 0xA0 ? kHigh1252[byte - 0x80] : static_cast<QXChar>(byte);
    } else if (!IsLead(page, byte)) {
      const QXChar unit = converter->UnitOf({static_cast<unsigned char>(byte)});
      table.single[byte] = unit != 0 ? unit : static_cast<QXChar>(byte);  // free bytes are the controls of the same number
    }
  }
  if (page == 1255) {
    table.single[0xCA] = 0x05BA;  // added to the page later than iconv's table
  }
  for (const PrivateByte& run : kPrivateBytes) {
    for (unsigned byte = run.first; run.page == page && byte <= run.last; ++byte) {
      table.single[byte] = static_cast<QXChar>(run.firstUnit + (byte - run.first));
      table.unassigned[byte] = true;
    }
  }
}

void FillPairs(unsigned page, Iconv& converter, OwnedTable& table) noexcept {
  for (unsigned lead = 0x80; lead < 256; ++lead) {
    if (!IsLead(page, lead)) {
      continue;
    }
    table.rows[lead] = table.pairs[lead - 0x80];
    for (unsigned trail = 0x40; trail < 0xFF; ++trail) {
      table.pairs[lead - 0x80][trail] = converter.UnitOf({static_cast<unsigned char>(lead), static_cast<unsigned char>(trail)});
    }
  }
  for (const PrivateRun& run : kPrivateRuns) {
    QXChar unit = run.firstUnit;
    for (unsigned lead = run.firstLead; run.page == page && lead <= run.lastLead; ++lead) {
      for (unsigned trail = run.firstTrail; trail <= run.lastTrail; ++trail) {
        const bool isTrail = trail != 0x7F && (page != 950 || trail < 0x7F || trail > 0xA0);
        if (isTrail) {
          table.pairs[lead - 0x80][trail] = unit++;
        }
      }
    }
  }
  if (page == 936) {
    QXChar unit = kFirstGapUnit936;
    for (const Gap& gap : kGaps936) {
      for (unsigned code = gap.first; code <= gap.last; ++code) {
        table.pairs[(code >> 8) - 0x80][code & 0xFF] = unit++;
      }
    }
  }
}

void FillCodes(unsigned page, OwnedTable& table) noexcept {
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (!IsLead(page, byte)) {
      table.codes[table.single[byte]] = static_cast<std::uint16_t>(byte);
    }
  }
  for (unsigned lead = 0x80; lead < 256; ++lead) {
    for (unsigned trail = 0; table.rows[lead] != nullptr && trail < 256; ++trail) {
      if (const QXChar unit = table.rows[lead][trail]; unit != 0) {
        table.codes[unit] = static_cast<std::uint16_t>(lead << 8 | trail);
      }
    }
  }
  for (const EarlierCode& choice : kEarlierCodes) {
    if (choice.page == page) {
      table.codes[choice.unit] = choice.code;
    }
  }
}

// iconv calls a page unknown also when there is no descriptor for reading its module.
bool IsDescriptorLeft() noexcept {
  const int descriptor = ::open("/", O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return errno != EMFILE && errno != ENFILE;
  }
  ::close(descriptor);
  return true;
}

// @param lacking  set when the system has no such page, rather than no memory or no descriptor now
const CodePageTable* BuildTable(unsigned page, bool& lacking) noexcept {
  std::unique_ptr<OwnedTable> table;
  try {
    table = std::make_unique<OwnedTable>();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  table->defaultUnit = page == 932 ? QXChar(0x30FB) : QXT('?');
  if (page == 1252) {
    FillSingles(page, nullptr /*converter*/, *table);
  } else {
    Iconv converter(page);
    if (!converter.Opened()) {
      lacking = errno == EINVAL && IsDescriptorLeft();
      return nullptr;
    }
    FillSingles(page, &converter, *table);
    if (IsTwoBytePage(page)) {
      FillPairs(page, converter, *table);
    }
  }
  FillCodes(page, *table);
  return table.release();  // kept: texts are converted up to the last destructor of the process
}

struct Slot {
  std::atomic<const CodePageTable*> table{nullptr};
  bool lacking = false;  // under the lock
};

Slot slots[std::size(kPages)];

Slot& SlotOf(unsigned page) noexcept { return slots[std::find(std::begin(kPages), std::end(kPages), page) - std::begin(kPages)]; }

// One page at a time: iconv loads and unloads its modules under locks that no thread checker sees.
std::mutex building;

}  // namespace

bool IsTablePage(unsigned page) noexcept { return std::find(std::begin(kPages), std::end(kPages), page) != std::end(kPages); }

const CodePageTable* TableOf(unsigned page) noexcept {
  if (!IsTablePage(page)) {
    return nullptr;
  }
  Slot& slot = SlotOf(page);
  const CodePageTable* table = slot.table.load(std::memory_order_acquire);
  if (table == nullptr) {
    const std::lock_guard<std::mutex> lock(building);
    table = slot.table.load(std::memory_order_relaxed);
    if (table == nullptr && !slot.lacking) {
      table = BuildTable(page, slot.lacking);
      slot.table.store(table, std::memory_order_release);
    }
  }
  return table;
}

bool IsPageLacking(unsigned page) noexcept {
  const std::lock_guard<std::mutex> lock(building);
  return SlotOf(page).lacking;
}

}  // namespace qxv::os
