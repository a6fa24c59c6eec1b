// buffer_file_write.cpp - the writing operations of CQXVBufferFileRWImpl.

#include "streams/buffer_file_impl.h"

#include <type_traits>

namespace {

using qxv::BufferFileBlock;
using qxv::kCountBytes;
using qxv::kTextElementBytes;

template <class Value>
unsigned int WriteValue(BufferFileBlock& file, const Value& value) noexcept {
  return file.Write(&value, sizeof value) ? sizeof value : 0;
}

// The count before a text or an array, modulo 2^32.
// @return false when nothing can be written
[[nodiscard]] bool WriteCount(BufferFileBlock& file, std::uint64_t bytes, unsigned int& result) noexcept {
  const auto count = static_cast<std::uint32_t>(bytes);
  result = 0;
  if (WriteValue(file, count) == 0) {
    return false;
  }
  result = count + kCountBytes;
  return true;
}

unsigned int WriteText(BufferFileBlock& file, const CQXString& text) noexcept {
  const auto units = static_cast<std::size_t>(text.GetLength());
  unsigned int result = 0;
  if (WriteCount(file, units * sizeof(QXChar), result)) {
    file.WriteRun(static_cast<const QXChar*>(text), units, sizeof(QXChar));
  }
  return result;
}

// Of CArray and CQXArray.
template <class Array>
unsigned int WriteArray(BufferFileBlock& file, const Array& values) noexcept {
  using Value = std::remove_reference_t<decltype(*values.GetData())>;
  const auto elements = static_cast<std::size_t>(values.GetSize());
  unsigned int result = 0;
  if (WriteCount(file, elements * sizeof(Value), result)) {
    file.WriteRun(values.GetData(), elements, sizeof(Value));
  }
  return result;
}

// KEPT: the count and the result speak of 8 bytes a text, whatever was written for it; readers divide by 8 again.
//   Pinned by BufferFileKept.AnArrayOfTextsCountsEightBytesEach.
unsigned int WriteTexts(BufferFileBlock& file, const CQXArray<CQXString, CQXString&>& texts) noexcept {
  const auto elements = static_cast<std::size_t>(texts.GetSize());
  unsigned int result = 0;
  if (WriteCount(file, elements * kTextElementBytes, result)) {
    for (std::size_t i = 0; i < elements; ++i) {
      (void)WriteText(file, texts.GetData()[i]);  // the writer is open, so it takes them all
    }
  }
  return result;
}

}  // namespace

using Impl = CQXVBufferFileRWImpl;

unsigned int Impl::Write(const CArray<SYSTEMTIME>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const SYSTEMTIME& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const CQXArray<CQXString, CQXString&>& values) { return WriteTexts(m_file, values); }
unsigned int Impl::Write(const CQXArray<CRect, CRect&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<FILETIME, FILETIME&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<CPoint, CPoint&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<GUID, GUID&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<QXChar, QXChar&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<double, double&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<float, float&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<QXInt64, QXInt64&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<QXUInt64, QXUInt64&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<int, int&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<unsigned int, unsigned int&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<short, short&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<unsigned short, unsigned short&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<char, char&>& values) { return WriteArray(m_file, values); }
unsigned int Impl::Write(const CQXArray<unsigned char, unsigned char&>& values) { return WriteArray(m_file, values); }

unsigned int Impl::Write(const unsigned char* pData, unsigned int nCount) {
  return pData != nullptr && nCount > 0 && m_file.Write(pData, nCount) ? nCount : 0;
}

unsigned int Impl::Write(const CQXString& value) { return WriteText(m_file, value); }
unsigned int Impl::Write(const CRect& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const FILETIME& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const CPoint& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const GUID& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const QXChar& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const double& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const float& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const QXInt64& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const QXUInt64& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const long& value) { return WriteValue(m_file, static_cast<std::int32_t>(value)); }
unsigned int Impl::Write(const unsigned long& value) { return WriteValue(m_file, static_cast<std::uint32_t>(value)); }
unsigned int Impl::Write(const int& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const unsigned int& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const short& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const unsigned short& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const char& value) { return WriteValue(m_file, value); }
unsigned int Impl::Write(const unsigned char& value) { return WriteValue(m_file, value); }
