// fuzz_stream_buffer.cpp - values of any types and order put into a stream buffer and taken out again, and blocks of any bytes
// read with bounds. What must hold: the position is the sum of the sizes, the capacity the fewest steps, every value comes back
// from look and from >>, and the bounded reader agrees with the writer's own bytes.

#include "qxv/stream_buffer.h"

#include "streams/byte_reader.h"
#include "streams/stream_block.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using qxv::ByteReader;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

struct Sequence {
  ByteReader script;
  CQXVStreamBufIn in;
  std::uint64_t size = 0;
  std::vector<std::function<void(CQXVStreamBufOut&)>> checks;

  void Wrote(std::uint64_t bytes) {
    size += bytes;
    Require(in.GetPos() == size);
  }

  template <class Value>
  void Number(std::size_t bytes = sizeof(Value)) {
    Value value{};
    const auto image = script.Bytes(bytes);
    if (image.size() != bytes) {
      return;
    }
    if constexpr (std::is_same_v<Value, long>) {
      std::int32_t low;
      std::memcpy(&low, image.data(), sizeof low);
      value = low;
    } else {
      std::memcpy(static_cast<void*>(&value), image.data(), bytes);  // the low bytes of a longer type
    }
    in << value;
    Wrote(bytes);
    checks.push_back([value](CQXVStreamBufOut& out) {
      Value looked{};
      Value taken{};
      out.look(looked) >> taken;
      Require(std::memcmp(&looked, &value, sizeof value) == 0 && std::memcmp(&taken, &value, sizeof value) == 0);
    });
  }

  template <class TextType>
  void Text() {
    std::basic_string<QXChar> units(script.U16() % 5000, static_cast<QXChar>(script.U16()));
    if (!units.empty()) {
      units[script.U16() % units.size()] = static_cast<QXChar>(script.U8() % 2);  // perhaps a zero inside
    }
    const TextType text(units.c_str());
    const std::size_t length = static_cast<std::size_t>(CQXString::Length(text));
    in << text;
    Wrote(4 + 2 * length);
    checks.push_back([text](CQXVStreamBufOut& out) {
      TextType looked(QXT("old"));
      TextType taken(QXT("old"));
      out.look(looked) >> taken;
      Require(looked == text && taken == text);
    });
  }

  void Block() {
    const int n = static_cast<std::int16_t>(script.U16());
    std::vector<unsigned char> bytes(static_cast<std::size_t>(std::max(n, 0)), script.U8());
    int own = 0;
    const unsigned char* written = in.GetBuffer(own);
    if (n > 0 && n <= own && bytes[0] % 2 == 0) {  // a part of the writer's own block
      const unsigned char* from = written + script.U32() % static_cast<unsigned>(own - n + 1);
      bytes.assign(from, from + n);
      in.in(from, n);
    } else {
      in.in(n > 0 ? bytes.data() : nullptr, n);
    }
    Wrote(4 + bytes.size());
    checks.push_back([n, bytes](CQXVStreamBufOut& out) {
      int count = 0;
      out.out(nullptr, count);
      Require(count == n);
      std::vector<unsigned char> taken(bytes.size() + 1);
      out.out(taken.data(), count);
      taken.pop_back();
      Require(count == n && taken == bytes);
    });
  }

  void Date() {
    SYSTEMTIME time;
    const auto image = script.Bytes(sizeof time);
    if (image.empty()) {
      return;
    }
    std::memcpy(&time, image.data(), sizeof time);
    time.wYear = static_cast<WORD>(time.wYear % 2 == 0 ? time.wYear : 1900 + time.wYear % 200);
    time.wMonth = static_cast<WORD>(time.wMonth % 14);
    time.wDay = static_cast<WORD>(time.wDay % 34);
    time.wHour = static_cast<WORD>(time.wHour % 25);
    in << time;
    Wrote(16);
    checks.push_back([time](CQXVStreamBufOut& out) {
      COleDateTime date;
      out >> date;
      SYSTEMTIME back;
      if (date.GetStatus() == COleDateTime::valid) {
        Require(date.GetAsSystemTime(back) && back.wYear == time.wYear && back.wMonth == time.wMonth && back.wDay == time.wDay &&
                back.wHour == time.wHour && back.wMinute == time.wMinute && back.wSecond == time.wSecond);
      }
    });
  }

  void Put() {
    switch (script.U8() % 20) {
      case 0:
        return Number<char>();
      case 1:
        return Number<unsigned char>();
      case 2:
        return Number<short>();
      case 3:
        return Number<unsigned short>();
      case 4:
        return Number<QXChar>();
      case 5:
        return Number<int>();
      case 6:
        return Number<unsigned int>();
      case 7:
        return Number<long>(4);
      case 8:
        return Number<unsigned long>(4);
      case 9:
        return Number<QXInt64>();
      case 10:
        return Number<QXUInt64>();
      case 11:
        return Number<float>();
      case 12:
        return Number<double>();
      case 13:
        return Number<FILETIME>();
      case 14:
        return Number<GUID>();
      case 15:
        return Number<SYSTEMTIME>();
      case 16:
        return Text<CQXString>();
      case 17:
        return Text<CString>();
      case 18:
        return Date();
      default:
        return Block();
    }
  }

  void Run() {
    for (int turn = 0; turn < 500 && !script.Failed(); ++turn) {
      Put();
    }
    int bytes = 0;
    const unsigned char* block = in.GetBuffer(bytes);
    Require(bytes == static_cast<int>(size));
    std::vector<unsigned char> exact(block, block + bytes);  // so that a byte read too far is seen
    CQXVStreamBufOut out(exact.data(), 0);
    for (const auto& check : checks) {
      check(out);
    }
    Require(out.GetPos() == size);
    in.Set(static_cast<int>(script.U32()), 0x55555555);
    std::uint32_t capacity = 0;
    std::memcpy(&capacity, reinterpret_cast<const unsigned char*>(&in) + 16, sizeof capacity);
    Require(capacity == std::max<std::uint64_t>(1, (size + 2999) / 3000) * 3000);
  }
};

// Any bytes, as a block from outside would be read.
void ReadWithBounds(std::span<const unsigned char> bytes) {
  ByteReader in(bytes);
  while (!in.Failed() && in.Left() > 0) {
    const std::size_t before = in.Position();
    CQXString text;
    CString hostText;
    std::span<const unsigned char> block;
    switch (in.U8() % 3) {
      case 0:
        if (ReadCountedText(in, text)) {
          Require(static_cast<std::size_t>(text.GetLength()) * 2 <= in.Position() - before - 5);
        }
        break;
      case 1:
        if (ReadCountedText(in, hostText)) {
          Require(static_cast<std::size_t>(hostText.GetLength()) * 2 <= in.Position() - before - 5);
        }
        break;
      default:
        if (ReadCountedBytes(in, block)) {
          Require(block.size() == in.Position() - before - 5);
        }
        break;
    }
    Require(in.Failed() || in.Position() > before);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ReadWithBounds({data, size});
  Sequence{ByteReader({data, size}), {}, 0, {}}.Run();
  return 0;
}
