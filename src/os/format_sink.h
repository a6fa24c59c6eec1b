// format_sink.h - where formatted units go: counted always, written while they fit. Internal to the formatter.
#pragma once

#include "qxv/types.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace qxv::os {

/// What stands between % and the conversion character.
struct FormatSpec {
  bool left = false;
  bool zero = false;
  bool alternate = false;
  QXChar sign = 0;  // + or blank, shown before a number that is not negative
  int width = 0;
  int precision = -1;  // none given
  QXChar conversion = 0;
};

class FormatSink {
 public:
  FormatSink(QXChar* out, std::size_t capacity) noexcept : m_out(out), m_room(capacity == 0 ? 0 : capacity - 1) {}

  void Put(QXChar unit) noexcept {
    if (m_count < m_room) {
      m_out[m_count] = unit;
    }
    ++m_count;
  }

  /// A run costs no more than what fits, however long it is.
  void Fill(QXChar unit, std::int64_t count) noexcept {
    if (count <= 0) {
      return;
    }
    const auto run = static_cast<std::uint64_t>(count);
    if (m_count < m_room) {
      std::fill_n(m_out + m_count, std::min<std::uint64_t>(run, m_room - m_count), unit);
    }
    m_count += run;
  }

  template <typename Unit>
  void Append(const Unit* units, std::size_t count) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
      Put(static_cast<QXChar>(units[i]));
    }
  }

  bool Overlong() const noexcept { return m_count > INT_MAX; }
  bool Cut() const noexcept { return m_count > m_room; }
  std::uint64_t Count() const noexcept { return m_count; }
  void Terminate() noexcept { m_out[std::min(m_count, m_room)] = 0; }

 private:
  QXChar* m_out;
  std::uint64_t m_room;  // units without the terminator
  std::uint64_t m_count = 0;
};

/// Writes value, sign-extended from its 16, 32 or 64 bits, under the conversions d i o u x X.
void FormatInteger(FormatSink& sink, const FormatSpec& spec, std::int64_t value, int bits) noexcept;

/// Writes value under the conversions a e f g, either case.
void FormatDouble(FormatSink& sink, const FormatSpec& spec, double value) noexcept;

}  // namespace qxv::os
