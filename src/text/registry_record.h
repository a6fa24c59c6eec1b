// registry_record.h - what CQXVRegister stores for lists, points and rectangles: a signed 32-bit count, then the elements.
// docs/registry.md has the table.
#pragma once

#include "foundation/status.h"
#include "qxv/array.h"
#include "qxv/host.h"
#include "qxv/stream_buffer.h"
#include "qxv/string.h"

#include <span>

namespace qxv {

using TextArray = CQXArray<CQXString, CQXString&>;

// Reading: kStatusOk, kStatusRegistryBadValue for fewer bytes than the counts say, kStatusRegistryNegativeCount,
// kStatusRegistryBadElementCount. The target changes with kStatusOk only. A text whose own count is negative is empty.
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, TextArray& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CStringArray& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CStringList& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CDWordArray& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CWordArray& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CByteArray& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CPoint& value);
[[nodiscard]] Status ReadRecord(std::span<const unsigned char> bytes, CRect& value);

// Writing: false for more elements than a count can tell.
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const TextArray& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CStringArray& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CStringList& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CDWordArray& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CWordArray& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CByteArray& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CPoint& value);
[[nodiscard]] bool WriteRecord(CQXVStreamBufIn& out, const CRect& value);

}  // namespace qxv
