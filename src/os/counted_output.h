// counted_output.h - units written while they fit and counted always.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>

namespace qxv::os {

template <typename Unit>
class CountedOutput {
 public:
  /// With capacity 0 units are only counted.
  CountedOutput(Unit* out, std::size_t capacity) noexcept : m_out(out), m_capacity(capacity) {}

  void Put(Unit unit) noexcept {
    if (m_count < m_capacity) {
      m_out[m_count] = unit;
    }
    ++m_count;
  }

  /// For a run of units that the caller writes: how many fit, where they go (null when units are only counted), and that so many
  /// of them were written.
  std::size_t Room() const noexcept {
    return m_capacity == 0 ? SIZE_MAX : m_capacity - (m_count < m_capacity ? m_count : m_capacity);
  }
  Unit* Place() const noexcept { return m_capacity == 0 ? nullptr : m_out + (m_count < m_capacity ? m_count : m_capacity); }
  void Skip(std::size_t units) noexcept { m_count += units; }

  /// The count, or -1 when it exceeds the capacity or INT_MAX.
  std::ptrdiff_t Result() const noexcept {
    return (m_capacity != 0 && m_count > m_capacity) || m_count > INT_MAX ? -1 : static_cast<std::ptrdiff_t>(m_count);
  }

 private:
  Unit* m_out;
  std::size_t m_capacity;
  std::size_t m_count = 0;
};

}  // namespace qxv::os
