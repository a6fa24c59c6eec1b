// string_buffer_test.cpp - the bytes of a CQXString through whole histories of operations, beside a plain model of the buffer
// rules.

#include "qxv/string.h"

#include "support/string_words.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using support::Text;

// The buffer rules step by step over a byte vector of exactly 2 C + 10 bytes, as docs/string.md states them.
class BufferModel {
 public:
  BufferModel() { MakeEmpty(); }

  void Assign(const Text& text) {
    if (text.empty()) {
      Empty();
      return;
    }
    Size(Word(6), 0, static_cast<std::uint32_t>(text.size()));
    Put(0, text);
  }

  void Append(const Text& text) {
    if (text.empty()) {
      return;
    }
    const std::uint32_t length = Word(2);
    Size(Word(6), length, length + static_cast<std::uint32_t>(text.size()));
    Put(length, text);
  }

  void Empty() {
    const std::uint32_t capacity = Word(6);
    if (capacity > 1024) {
      MakeEmpty();
      return;
    }
    std::fill_n(m_bytes.begin(), 2 * Slot() + 10, 0);
    SetWord(258, 0);
    SetWord(262, capacity);
  }

  BufferModel Copy() const {
    BufferModel copy;
    if (Word(2) != 0) {
      const std::size_t slot = Slot();
      copy.m_bytes.assign(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(2 * slot + 10));
      copy.SetWord(2 * slot + 6, static_cast<std::uint32_t>(slot));
    }
    return copy;
  }

  std::vector<unsigned char> Bytes() const {
    return {m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(2 * Slot() + 10)};
  }
  std::size_t Size() const { return m_bytes.size(); }

 private:
  void MakeEmpty() {
    m_bytes.assign(266, 0);
    SetWord(262, 128);
  }

  std::uint16_t Unit(std::size_t index) const {
    return static_cast<std::uint16_t>(m_bytes[2 * index] | m_bytes[2 * index + 1] << 8);
  }
  void SetUnit(std::size_t index, std::uint16_t value) {
    m_bytes[2 * index] = static_cast<unsigned char>(value);
    m_bytes[2 * index + 1] = static_cast<unsigned char>(value >> 8);
  }
  std::size_t Slot() const {
    std::size_t slot = 128;
    while (Unit(slot) != 0) {
      slot += 128;
    }
    return slot;
  }
  std::uint32_t Word(std::size_t behind) const {
    const std::size_t at = 2 * Slot() + behind;
    return static_cast<std::uint32_t>(m_bytes[at] | m_bytes[at + 1] << 8 | m_bytes[at + 2] << 16) |
           static_cast<std::uint32_t>(m_bytes[at + 3]) << 24;
  }
  void SetWord(std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
      m_bytes[at + i] = static_cast<unsigned char>(value >> (8 * i));
    }
  }
  void Put(std::size_t at, const Text& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      SetUnit(at + i, static_cast<std::uint16_t>(text[i]));
    }
    SetUnit(at + text.size(), 0);
  }

  void Size(std::uint32_t oldCapacity, std::uint32_t keep, std::uint32_t length) {
    keep = keep > oldCapacity ? 0 : keep;
    const std::uint32_t slot = length == 0 ? 128 : (length + 127) / 128 * 128;
    std::uint32_t capacity = slot;
    if (length <= oldCapacity && length + 1024 > oldCapacity) {
      for (std::size_t i = std::min(keep, length); i <= oldCapacity; ++i) {
        SetUnit(i, 0);
      }
      capacity = oldCapacity;
    } else {
      std::vector<unsigned char> kept(m_bytes.begin(), m_bytes.begin() + 2 * std::min(keep, length));
      m_bytes.assign(2 * slot + 10, 0);
      std::copy(kept.begin(), kept.end(), m_bytes.begin());
    }
    SetWord(2 * slot + 2, length);
    SetWord(2 * slot + 6, capacity);
  }

  std::vector<unsigned char> m_bytes;
};

TEST(StringBuffer, EveryByteFollowsTheRulesThroughRandomHistories) {
  std::mt19937 random(20240607);
  const std::size_t lengths[] = {0,   1,    5,    100,  127,  128,  129,  255,  256,   257,
                                 600, 1023, 1024, 1025, 1151, 1152, 1153, 2300, 17000, 30000};
  for (int history = 0; history < 60; ++history) {
    CQXString s;
    BufferModel model;
    for (int step = 0; step < 80; ++step) {
      const auto pick = random();
      const std::size_t length = lengths[pick % std::size(lengths)];
      const Text text(length, static_cast<QXChar>('a' + step % 26));
      switch (pick / 64 % 6) {
        case 0:
        case 1:
          s = text.c_str();
          model.Assign(text);
          break;
        case 2:
        case 3:
          s += text.c_str();
          model.Append(text);
          break;
        case 4:
          s.Empty();
          model.Empty();
          break;
        default: {
          const CQXString copy(s);
          const BufferModel copiedModel = model.Copy();
          ASSERT_EQ(support::BytesOf(copy), copiedModel.Bytes()) << "copy in history " << history << ", step " << step;
          if (s.GetLength() > 60000) {  // keeps the histories short
            s = CQXString();
            model.Assign(Text());
          }
          break;
        }
      }
      ASSERT_EQ(support::BytesOf(s), model.Bytes()) << "history " << history << ", step " << step;
      if (support::CapacityWord(s) <= 16384) {
        ASSERT_EQ(support::BufferBytes(s), model.Size()) << "history " << history << ", step " << step;
      } else {
        ASSERT_GE(support::BufferBytes(s), model.Size()) << "history " << history << ", step " << step;
      }
    }
  }
}

TEST(StringBuffer, AnAllocationIsTheBufferToTheByteUpTo16384Characters) {
  for (const std::size_t length : {std::size_t{1}, std::size_t{128}, std::size_t{129}, std::size_t{16256}, std::size_t{16384}}) {
    const CQXString s(Text(length, 'x').c_str());
    EXPECT_EQ(support::BufferBytes(s), 2 * ((length + 127) / 128 * 128) + 10) << length;
  }
}

TEST(StringBuffer, ALargerAllocationExceedsTheBufferByAQuarterAtMost) {
  for (std::size_t length = 16385; length < 3000000; length = length * 9 / 8 + 1) {
    const CQXString s(Text(length, 'x').c_str());
    const std::size_t buffer = 2 * ((length + 127) / 128 * 128) + 10;
    EXPECT_GE(support::BufferBytes(s), buffer) << length;
    EXPECT_LE(support::BufferBytes(s), buffer + buffer / 4) << length;
  }
}

}  // namespace
