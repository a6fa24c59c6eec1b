// registry_record.cpp - counted records from and to bytes.
// Counts come from outside: each is compared with the bytes left before anything is made of it, and a target is touched only
// when all of its record has been read.

#include "text/registry_record.h"

#include "streams/byte_reader.h"
#include "streams/stream_block.h"

#include <cstdint>
#include <cstring>
#include <limits>

namespace qxv {
namespace {

constexpr std::size_t kLeastText = 4;  // the count of an empty one

// The record's count, when it is not negative and the bytes left could hold so many elements.
Status ReadCount(ByteReader& in, std::size_t leastElement, std::size_t& count) {
  const std::int32_t stored = in.I32();
  if (in.Failed()) {
    return kStatusRegistryBadValue;
  }
  if (stored < 0) {
    return kStatusRegistryNegativeCount;
  }
  count = static_cast<std::size_t>(stored);
  return count <= in.Left() / leastElement ? kStatusOk : kStatusRegistryBadValue;
}

// TextArrayType has SetSize and operator[].
template <class TextArrayType>
Status ReadTexts(std::span<const unsigned char> bytes, TextArrayType& texts) {
  ByteReader in(bytes);
  std::size_t count = 0;
  if (const Status status = ReadCount(in, kLeastText, count); status != kStatusOk) {
    return status;
  }
  texts.SetSize(static_cast<QXInt64>(count));
  for (std::size_t i = 0; i < count; ++i) {
    if (!ReadCountedText(in, texts[static_cast<QXInt64>(i)])) {
      return kStatusRegistryBadValue;
    }
  }
  return kStatusOk;
}

template <class ArrayType>
Status ReadNumbers(std::span<const unsigned char> bytes, ArrayType& value) {
  constexpr std::size_t kElement = sizeof(*value.GetData());
  ByteReader in(bytes);
  std::size_t count = 0;
  if (const Status status = ReadCount(in, kElement, count); status != kStatusOk) {
    return status;
  }
  const auto elements = in.Bytes(count * kElement);
  value.SetSize(static_cast<QXInt64>(count));
  if (count > 0) {
    std::memcpy(value.GetData(), elements.data(), elements.size());
  }
  return kStatusOk;
}

// The count is judged before the size: a record of three numbers is no point, however long it is.
Status ReadCoordinates(std::span<const unsigned char> bytes, std::span<std::int32_t> values) {
  ByteReader in(bytes);
  const std::int32_t count = in.I32();
  if (in.Failed()) {
    return kStatusRegistryBadValue;
  }
  if (count < 0) {
    return kStatusRegistryNegativeCount;
  }
  if (static_cast<std::size_t>(count) != values.size()) {
    return kStatusRegistryBadElementCount;
  }
  for (std::int32_t& value : values) {
    value = in.I32();
  }
  return in.Failed() ? kStatusRegistryBadValue : kStatusOk;
}

bool WriteCount(CQXVStreamBufIn& out, QXInt64 count) {
  if (count > std::numeric_limits<std::int32_t>::max()) {
    return false;
  }
  out << static_cast<int>(count);
  return true;
}

template <class ArrayType>
bool WriteElements(CQXVStreamBufIn& out, const ArrayType& value) {
  const QXInt64 count = value.GetSize();
  if (!WriteCount(out, count)) {
    return false;
  }
  for (QXInt64 i = 0; i < count; ++i) {
    out << value[i];
  }
  return true;
}

}  // namespace

Status ReadRecord(std::span<const unsigned char> bytes, TextArray& value) {
  TextArray texts;
  const Status status = ReadTexts(bytes, texts);
  if (status == kStatusOk) {
    value = texts;
  }
  return status;
}

Status ReadRecord(std::span<const unsigned char> bytes, CStringArray& value) {
  CStringArray texts;
  const Status status = ReadTexts(bytes, texts);
  if (status == kStatusOk) {
    value.Copy(texts);
  }
  return status;
}

Status ReadRecord(std::span<const unsigned char> bytes, CStringList& value) {
  CStringArray texts;
  const Status status = ReadTexts(bytes, texts);
  if (status != kStatusOk) {
    return status;
  }
  QXInt64 added = 0;
  try {
    for (; added < texts.GetSize(); ++added) {
      value.AddTail(texts[added]);
    }
  } catch (...) {
    for (; added > 0; --added) {
      value.RemoveAt(value.GetTailPosition());
    }
    throw;
  }
  while (value.GetCount() > added) {  // what stood there before
    value.RemoveAt(value.GetHeadPosition());
  }
  return kStatusOk;
}

Status ReadRecord(std::span<const unsigned char> bytes, CDWordArray& value) { return ReadNumbers(bytes, value); }

Status ReadRecord(std::span<const unsigned char> bytes, CWordArray& value) { return ReadNumbers(bytes, value); }

Status ReadRecord(std::span<const unsigned char> bytes, CByteArray& value) { return ReadNumbers(bytes, value); }

Status ReadRecord(std::span<const unsigned char> bytes, CPoint& value) {
  std::int32_t values[2];
  const Status status = ReadCoordinates(bytes, values);
  if (status == kStatusOk) {
    value = CPoint(values[0], values[1]);
  }
  return status;
}

Status ReadRecord(std::span<const unsigned char> bytes, CRect& value) {
  std::int32_t values[4];
  const Status status = ReadCoordinates(bytes, values);
  if (status == kStatusOk) {
    value = CRect(values[0], values[1], values[2], values[3]);
  }
  return status;
}

bool WriteRecord(CQXVStreamBufIn& out, const TextArray& value) { return WriteElements(out, value); }

bool WriteRecord(CQXVStreamBufIn& out, const CStringArray& value) { return WriteElements(out, value); }

bool WriteRecord(CQXVStreamBufIn& out, const CStringList& value) {
  if (!WriteCount(out, value.GetCount())) {
    return false;
  }
  for (POSITION at = value.GetHeadPosition(); at != nullptr;) {
    out << value.GetNext(at);
  }
  return true;
}

bool WriteRecord(CQXVStreamBufIn& out, const CDWordArray& value) { return WriteElements(out, value); }

bool WriteRecord(CQXVStreamBufIn& out, const CWordArray& value) { return WriteElements(out, value); }

bool WriteRecord(CQXVStreamBufIn& out, const CByteArray& value) {
  if (value.GetSize() > std::numeric_limits<std::int32_t>::max()) {
    return false;
  }
  out.in(value.GetData(), static_cast<int>(value.GetSize()));
  return true;
}

bool WriteRecord(CQXVStreamBufIn& out, const CPoint& value) {
  out << 2 << static_cast<int>(value.x) << static_cast<int>(value.y);
  return true;
}

bool WriteRecord(CQXVStreamBufIn& out, const CRect& value) {
  out << 4 << static_cast<int>(value.left) << static_cast<int>(value.top) << static_cast<int>(value.right)
      << static_cast<int>(value.bottom);
  return true;
}

}  // namespace qxv
