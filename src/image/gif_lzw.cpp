// gif_lzw.cpp - the string coder (LZW) of GIF frames.

#include "image/gif_lzw.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qxv {
namespace {

// From this length on it is worth looking for a whole run rather than for its bytes one by one.
constexpr unsigned kLongRun = 8;

bool IsRun(std::span<const unsigned char> bytes) noexcept {
  return bytes.front() == bytes.back() && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

}  // namespace

// --- The table ---

void CTable::Clear() noexcept {
  m_items.fill({kEmpty});
  for (unsigned byte = 0; byte < m_runs.size(); ++byte) {
    m_runs[byte] = {byte, 1};
  }
  m_firstFree = kFirstCode;
}

// --- The codes ---

void CodeOutput::Finish() noexcept {
  for (; m_bitCount > 0; m_bitCount -= std::min(m_bitCount, 8u)) {
    m_bytes[m_size++] = static_cast<unsigned char>(m_bits);
    m_bits >>= 8;
  }
  WriteBlocks();
  if (m_size > 0) {
    const auto length = static_cast<unsigned char>(m_size);
    m_out->Write({&length, 1});
    m_out->Write({m_bytes, m_size});
    m_size = 0;
  }
  m_out->Zeros(1);
}

// All full sub-blocks; what remains moves to the front.
void CodeOutput::WriteBlocks() noexcept {
  std::size_t done = 0;
  for (; m_size - done >= kBlock; done += kBlock) {
    const auto room = m_out->Room(1 + kBlock);
    room[0] = kBlock;
    std::memcpy(room.data() + 1, m_bytes + done, kBlock);
    m_out->Commit(1 + kBlock);
  }
  m_size -= done;
  std::memmove(m_bytes, m_bytes + done, m_size);
}

// --- The frame ---

void CFrame::Restart() noexcept {
  m_table.Clear();
  m_codeWidth = kFirstWidth;
  m_limit = 1u << kFirstWidth;
}

Status CFrame::Encode(std::span<const unsigned char> indices) noexcept {
  unsigned string = m_string;
  for (std::size_t at = 0; at < indices.size();) {
    const unsigned char byte = indices[at++];
    if (string != CTable::kNoCode) {
      const auto [place, longer] = m_table.Find(string, byte);
      if (longer != CTable::kNoCode) {
        string = longer;
        continue;
      }
      Put(string);
      if (m_table.FirstFree() == CTable::kCodes) {
        // KEPT: the pending byte goes out before the clear code, it does not begin the next string.
        //   Pinned by GifLzwKept.AFullTableSendsThePendingByteBeforeTheClearCode.
        Put(byte);
        Put(CTable::kClear);
        Restart();
        string = CTable::kNoCode;
        continue;
      }
      if (m_table.FirstFree() == m_limit) {
        ++m_codeWidth;
        m_limit *= 2;
      }
      m_table.Add(string, byte, place);
    }
    string = byte;
    const auto [code, length] = m_table.LongestRun(byte);
    if (length >= kLongRun && length - 1 <= indices.size() - at && IsRun(indices.subspan(at - 1, length))) {
      string = code;
      at += length - 1;
    }
  }
  m_string = string;
  return m_status;
}

Status CFrame::Finish() noexcept {
  if (m_string != CTable::kNoCode) {  // none after a clear code that nothing follows
    Put(m_string);
  }
  Put(CTable::kEnd);
  m_output.Finish();
  Restart();
  m_string = CTable::kNoCode;
  return std::exchange(m_status, kStatusOk);
}

}  // namespace qxv
