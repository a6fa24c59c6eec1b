// buffer_file_read.cpp - the reading operations of CQXVBufferFileRWImpl.
// Every value passes through BufferFileBlock::Read or ReadRun; here stand only sizes and what the counts before texts and arrays
// mean. Counts come from outside: they are compared with the bytes left before anything is allocated.

#include "streams/buffer_file_impl.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

namespace {

using qxv::BufferFileBlock;
using qxv::kCountBytes;
using qxv::kTextElementBytes;

constexpr std::uint64_t kAlwaysAllowed = 65536;  // elements, however short the file

template <class Value>
unsigned int ReadValue(BufferFileBlock& file, Value& value) noexcept {
  return file.Read(&value, sizeof value) ? sizeof value : 0;
}

// long has 8 bytes on one system; the file has 4 on both.
template <class Image, class Value>
unsigned int ReadLong(BufferFileBlock& file, Value& value) noexcept {
  Image image;
  const unsigned int bytes = ReadValue(file, image);
  if (bytes != 0) {
    value = static_cast<Value>(image);
  }
  return bytes;
}

unsigned int ReadText(BufferFileBlock& file, CQXString& text) {
  std::uint32_t count = 0;
  if (ReadValue(file, count) == 0) {
    return 0;
  }
  const std::uint64_t held = file.BytesLeft() / sizeof(QXChar);
  const auto units = static_cast<std::size_t>(std::min<std::uint64_t>(count / sizeof(QXChar), held));
  if (units == 0) {
    text.Empty();
  } else {
    std::unique_ptr<QXChar[]> copy(new QXChar[units + 1]);
    copy[file.ReadRun(copy.get(), units, sizeof(QXChar))] = 0;
    text = static_cast<const QXChar*>(copy.get());
  }
  return count + kCountBytes;
}

// Sizes an array by the count before it.
// @return false when the operation ends here, with the result
template <class Array>
bool SizeByCount(BufferFileBlock& file, Array& values, std::uint32_t elementBytes, std::uint32_t leastInFile,
                 unsigned int& result, std::size_t& elements) {
  std::uint32_t count = 0;
  result = 0;
  if (ReadValue(file, count) == 0) {
    return false;
  }
  elements = count / elementBytes;
  if (elements > std::max(file.BytesLeft() / leastInFile, kAlwaysAllowed)) {
    values.RemoveAll();
    return false;
  }
  values.SetSize(static_cast<QXInt64>(elements));
  result = count + kCountBytes;
  return elements > 0;
}

// Of CArray and CQXArray.
template <class Array>
unsigned int ReadArray(BufferFileBlock& file, Array& values) {
  using Value = std::remove_reference_t<decltype(*values.GetData())>;
  unsigned int result = 0;
  std::size_t elements = 0;
  if (SizeByCount(file, values, sizeof(Value), sizeof(Value), result, elements)) {
    Value* data = values.GetData();
    const std::size_t read = file.ReadRun(data, elements, sizeof(Value));
    std::memset(static_cast<void*>(data + read), 0, (elements - read) * sizeof(Value));  // behind the end of the file
  }
  return result;
}

unsigned int ReadTexts(BufferFileBlock& file, CQXArray<CQXString, CQXString&>& texts) {
  unsigned int result = 0;
  std::size_t elements = 0;
  if (SizeByCount(file, texts, kTextElementBytes, kCountBytes, result, elements)) {
    for (std::size_t i = 0; i < elements; ++i) {
      CQXString& text = texts.GetData()[i];
      if (ReadText(file, text) == 0) {
        text.Empty();
      }
    }
  }
  return result;
}

}  // namespace

using Impl = CQXVBufferFileRWImpl;

unsigned int Impl::Read(CArray<SYSTEMTIME>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(SYSTEMTIME& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(CQXArray<CQXString, CQXString&>& values) { return ReadTexts(m_file, values); }
unsigned int Impl::Read(CQXArray<CRect, CRect&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<FILETIME, FILETIME&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<CPoint, CPoint&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<GUID, GUID&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<QXChar, QXChar&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<double, double&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<float, float&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<QXInt64, QXInt64&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<QXUInt64, QXUInt64&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<int, int&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<unsigned int, unsigned int&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<short, short&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<unsigned short, unsigned short&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<char, char&>& values) { return ReadArray(m_file, values); }
unsigned int Impl::Read(CQXArray<unsigned char, unsigned char&>& values) { return ReadArray(m_file, values); }

unsigned int Impl::Read(unsigned char* pData, unsigned int nCount) {
  return pData != nullptr && nCount > 0 && m_file.Read(pData, nCount) ? nCount : 0;
}

unsigned int Impl::Read(CQXString& value) { return ReadText(m_file, value); }
unsigned int Impl::Read(CRect& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(FILETIME& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(CPoint& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(GUID& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(QXChar& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(double& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(float& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(QXInt64& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(QXUInt64& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(long& value) { return ReadLong<std::int32_t>(m_file, value); }
unsigned int Impl::Read(unsigned long& value) { return ReadLong<std::uint32_t>(m_file, value); }
unsigned int Impl::Read(int& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(unsigned int& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(short& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(unsigned short& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(char& value) { return ReadValue(m_file, value); }
unsigned int Impl::Read(unsigned char& value) { return ReadValue(m_file, value); }
