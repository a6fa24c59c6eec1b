// fuzz_registry_record.cpp - any bytes as the record of any type. First byte: the type; the others stand in exactly sized memory.
// What must hold: a code as a plain reading of the format finds it, a target that changes with success only, and a record written
// from what was read that reads the same again.

#include "foundation/status.h"
#include "fuzz/fuzz_input.h"
#include "text/registry_record.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using Bytes = std::vector<unsigned char>;

std::int64_t SignedAt(const Bytes& bytes, std::size_t at) {
  std::int32_t value = 0;
  std::memcpy(&value, bytes.data() + at, 4);
  return value;
}

// The code of a record of texts, or of elements of a size, found by walking over it with wide numbers.
std::uint32_t ExpectedCode(const Bytes& bytes, std::int64_t elementSize) {
  if (bytes.size() < 4) {
    return qxv::kStatusRegistryBadValue;
  }
  const std::int64_t count = SignedAt(bytes, 0);
  if (count < 0) {
    return qxv::kStatusRegistryNegativeCount;
  }
  const auto size = static_cast<std::int64_t>(bytes.size());
  if (elementSize > 0) {
    return 4 + count * elementSize <= size ? 0 : qxv::kStatusRegistryBadValue;
  }
  std::int64_t at = 4;
  for (std::int64_t i = 0; i < count; ++i) {
    if (at + 4 > size) {
      return qxv::kStatusRegistryBadValue;
    }
    const std::int64_t units = SignedAt(bytes, static_cast<std::size_t>(at));
    at += 4 + (units > 0 ? 2 * units : 0);
    if (at > size) {
      return qxv::kStatusRegistryBadValue;
    }
  }
  return 0;
}

std::uint32_t ExpectedCoordinates(const Bytes& bytes, std::int64_t number) {
  if (bytes.size() < 4) {
    return qxv::kStatusRegistryBadValue;
  }
  const std::int64_t count = SignedAt(bytes, 0);
  if (count < 0) {
    return qxv::kStatusRegistryNegativeCount;
  }
  return count != number ? qxv::kStatusRegistryBadElementCount : ExpectedCode(bytes, 4);
}

std::string ImageOf(const qxv::TextArray& texts) {
  std::string image;
  for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
    image += fuzz::BytesOf(fuzz::TextOf(texts[i])) + "|";
  }
  return image;
}

std::string ImageOf(const CStringArray& texts) {
  std::string image;
  for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
    image += fuzz::BytesOf(fuzz::Text(texts[i])) + "|";
  }
  return image;
}

std::string ImageOf(const CStringList& texts) {
  std::string image;
  for (POSITION at = texts.GetHeadPosition(); at != nullptr;) {
    image += fuzz::BytesOf(fuzz::Text(texts.GetNext(at))) + "|";
  }
  return image;
}

template <class Numbers>
std::string NumbersImage(const Numbers& numbers) {
  const auto* data = reinterpret_cast<const char*>(numbers.GetData());
  return std::string(data, data == nullptr ? 0 : static_cast<std::size_t>(numbers.GetSize()) * sizeof(numbers[0]));
}

std::string ImageOf(const CDWordArray& numbers) { return NumbersImage(numbers); }
std::string ImageOf(const CWordArray& numbers) { return NumbersImage(numbers); }
std::string ImageOf(const CByteArray& numbers) { return NumbersImage(numbers); }
std::string ImageOf(const CPoint& point) { return std::string(reinterpret_cast<const char*>(&point), sizeof point); }
std::string ImageOf(const CRect& rectangle) { return std::string(reinterpret_cast<const char*>(&rectangle), sizeof rectangle); }

template <class Record>
void Try(const Bytes& bytes, std::uint32_t expected) {
  Record record{};
  const std::string before = ImageOf(record);
  const std::uint32_t code = qxv::ReadRecord(bytes, record);
  Require(code == expected);
  if (code != 0) {
    Require(ImageOf(record) == before);
    return;
  }
  CQXVStreamBufIn out;
  Require(qxv::WriteRecord(out, record));
  int size = 0;
  const unsigned char* written = out.GetBuffer(size);
  Record again{};
  Require(qxv::ReadRecord({written, static_cast<std::size_t>(size)}, again) == 0);
  Require(ImageOf(again) == ImageOf(record));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const Bytes bytes(data + 1, data + size);
  switch (data[0] % 8) {
    case 0:
      Try<qxv::TextArray>(bytes, ExpectedCode(bytes, 0));
      break;
    case 1:
      Try<CStringArray>(bytes, ExpectedCode(bytes, 0));
      break;
    case 2:
      Try<CStringList>(bytes, ExpectedCode(bytes, 0));
      break;
    case 3:
      Try<CDWordArray>(bytes, ExpectedCode(bytes, 4));
      break;
    case 4:
      Try<CWordArray>(bytes, ExpectedCode(bytes, 2));
      break;
    case 5:
      Try<CByteArray>(bytes, ExpectedCode(bytes, 1));
      break;
    case 6:
      Try<CPoint>(bytes, ExpectedCoordinates(bytes, 2));
      break;
    default:
      Try<CRect>(bytes, ExpectedCoordinates(bytes, 4));
      break;
  }
  return 0;
}
