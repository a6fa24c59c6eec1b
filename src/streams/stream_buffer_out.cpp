// stream_buffer_out.cpp - CQXVStreamBufOut, the reader of blocks.

#include "qxv/stream_buffer.h"

#include "foundation/variant_time.h"

#include <cstddef>
#include <memory>

namespace {

constexpr unsigned int kCountBytes = 4;
constexpr std::int32_t kMostCharacters = 0x3FFFFFFF;

bool SameMoment(const SYSTEMTIME& a, const SYSTEMTIME& b) {
  return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour && a.wMinute == b.wMinute &&
         a.wSecond == b.wSecond;
}

// The counted text at place.
// @return bytes that it takes there
template <class TextType>
unsigned int LookText(const unsigned char* place, TextType& text) {
  std::int32_t count = 0;
  std::memcpy(&count, place, kCountBytes);
  if (count <= 0 || count > kMostCharacters) {
    text.Empty();
    return kCountBytes;
  }
  const auto units = static_cast<std::size_t>(count);
  std::unique_ptr<QXChar[]> copy(new QXChar[units + 1]);  // the bytes may stand at an odd address
  std::memcpy(copy.get(), place + kCountBytes, units * sizeof(QXChar));
  copy[units] = 0;
  text = static_cast<const QXChar*>(copy.get());
  return kCountBytes + static_cast<unsigned int>(units * sizeof(QXChar));
}

}  // namespace

// KEPT: the size is stored and never consulted. Blocks are read by callers who know what is in them, whatever size they gave.
//   Pinned by StreamBufferKept.TheReaderNeverConsultsTheSize.
CQXVStreamBufOut::CQXVStreamBufOut(const unsigned char* pData, int nSize)
    : m_pData(pData), m_nSize(static_cast<unsigned int>(nSize)), m_nPosition(0) {}

CQXVStreamBufOut::CQXVStreamBufOut(const CQXVStreamBufOut& other) = default;
CQXVStreamBufOut& CQXVStreamBufOut::operator=(const CQXVStreamBufOut& other) = default;
CQXVStreamBufOut::~CQXVStreamBufOut() = default;

CQXVStreamBufOut& CQXVStreamBufOut::look(COleDateTime& value) {
  SYSTEMTIME time{};
  look(time);
  double days = 0;
  SYSTEMTIME back{};
  const bool converted = qxv::SystemTimeToVariantDays(time, days);
  if (converted) {
    value.m_dt = days;
  }
  const bool exists = converted && qxv::VariantDaysToSystemTime(days, back) && SameMoment(time, back);
  value.SetStatus(exists ? COleDateTime::valid : COleDateTime::invalid);
  return *this;
}

CQXVStreamBufOut& CQXVStreamBufOut::operator>>(COleDateTime& value) { return look(value).Skip(sizeof(SYSTEMTIME)); }

CQXVStreamBufOut& CQXVStreamBufOut::look(CQXString& value) {
  LookText(m_pData + m_nPosition, value);
  return *this;
}

CQXVStreamBufOut& CQXVStreamBufOut::look(CString& value) {
  LookText(m_pData + m_nPosition, value);
  return *this;
}

CQXVStreamBufOut& CQXVStreamBufOut::operator>>(CQXString& value) { return Skip(LookText(m_pData + m_nPosition, value)); }

CQXVStreamBufOut& CQXVStreamBufOut::operator>>(CString& value) { return Skip(LookText(m_pData + m_nPosition, value)); }

void CQXVStreamBufOut::out(unsigned char* pDestination, int& n) {
  look(n);
  if (pDestination == nullptr) {
    return;
  }
  Skip(kCountBytes);
  if (n > 0) {
    Take(pDestination, static_cast<unsigned int>(n));
  }
}

unsigned int CQXVStreamBufOut::GetPos() const { return m_nPosition; }
