// registry.cpp - CQXVRegister, typed values in one open key.

#include "qxv/registry.h"

#include "foundation/status.h"
#include "os/registry.h"
#include "text/registry_record.h"
#include "text/registry_value.h"

#include <cstring>

namespace {

using qxv::RegistryValue;
using qxv::Status;

constexpr std::uint32_t kLeastRecord = 4;  // its count

Status ReadNumber(HKEY key, const QXChar* name, void* number) {
  if (key == nullptr) {
    return qxv::kStatusRegistryNoKey;
  }
  unsigned char image[4] = {};
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  const auto error = qxv::os::QueryRegistryValue(key, name, type, image, size);
  if (error != qxv::os::kErrorNone && error != qxv::os::kErrorMoreData) {
    return qxv::kStatusRegistryQueryFailed;
  }
  if (type != qxv::os::kRegistryNumber || size < sizeof image) {
    return qxv::kStatusRegistryBadValue;
  }
  if (error != qxv::os::kErrorNone) {
    return qxv::kStatusRegistryQueryFailed;  // a number of more than four bytes
  }
  std::memcpy(number, image, sizeof image);
  return qxv::kStatusOk;
}

// The bytes of a value that has the type and size asked for, before and after they are read.
Status ReadTyped(HKEY key, const QXChar* name, std::uint32_t type, std::uint32_t leastSize, RegistryValue& value) {
  if (key == nullptr) {
    return qxv::kStatusRegistryNoKey;
  }
  if (qxv::QueryValue(key, name, value) != qxv::os::kErrorNone) {
    return qxv::kStatusRegistryQueryFailed;
  }
  if (value.type != type || value.size < leastSize) {
    return qxv::kStatusRegistryBadValue;
  }
  if (qxv::ReadValue(key, name, value) != qxv::os::kErrorNone) {
    return qxv::kStatusRegistryQueryFailed;
  }
  return value.type == type ? qxv::kStatusOk : qxv::kStatusRegistryBadValue;
}

template <class TextType>
Status ReadText(HKEY key, const QXChar* name, TextType& text) {
  RegistryValue value;
  const Status status = ReadTyped(key, name, qxv::os::kRegistryText, 0 /*leastSize*/, value);
  if (status == qxv::kStatusOk) {
    text = value.EndText();
  }
  return status;
}

template <class RecordType>
Status ReadRecordValue(HKEY key, const QXChar* name, RecordType& record) {
  RegistryValue value;
  const Status status = ReadTyped(key, name, qxv::os::kRegistryBinary, kLeastRecord, value);
  return status == qxv::kStatusOk ? qxv::ReadRecord(value.Bytes(), record) : status;
}

Status WriteStatus(qxv::os::ErrorCode error) {
  return error == qxv::os::kErrorNone ? qxv::kStatusOk : qxv::kStatusRegistryWriteFailed;
}

Status WriteNumber(HKEY key, const QXChar* name, std::uint32_t number) {
  return key == nullptr ? qxv::kStatusRegistryNoKey : WriteStatus(qxv::StoreNumber(key, name, number));
}

// KEPT: the terminating zero is not stored; values written earlier, and programs that compare sizes, have none either. Pinned by
//   RegisterKept.ATextIsStoredWithoutItsTerminator.
Status WriteText(HKEY key, const QXChar* name, const QXChar* text, int length) {
  return key == nullptr ? qxv::kStatusRegistryNoKey : WriteStatus(qxv::StoreText(key, name, text, length));
}

template <class RecordType>
Status WriteRecordValue(HKEY key, const QXChar* name, const RecordType& record) {
  if (key == nullptr) {
    return qxv::kStatusRegistryNoKey;
  }
  CQXVStreamBufIn out;
  if (!qxv::WriteRecord(out, record)) {
    return qxv::kStatusRegistryWriteFailed;
  }
  const unsigned int size = out.GetPos();
  int signedSize = 0;
  const unsigned char* bytes = out.GetBuffer(signedSize);
  return WriteStatus(qxv::os::SetRegistryValue(key, name, qxv::os::kRegistryBinary, {bytes, size}));
}

int Result(Status status) { return static_cast<int>(status); }

}  // namespace

CQXVRegister::CQXVRegister() noexcept : m_hKey(nullptr) {}

CQXVRegister::CQXVRegister(const CQXVRegister&) noexcept : m_hKey(nullptr) {}

CQXVRegister& CQXVRegister::operator=(const CQXVRegister&) noexcept { return *this; }

CQXVRegister::~CQXVRegister() { (void)Close(); }

// KEPT: the root given is not looked at, the key lies below HKEY_LOCAL_MACHINE; callers that name another root have their
//   settings there. Pinned by RegisterKept.TheRootGivenToCreateIsIgnored and RegisterKept.TheRootGivenToOpenIsIgnored.
int CQXVRegister::Create(HKEY /*root*/, const QXChar* subkey) {
  if (Close() != 0) {
    return Result(qxv::kStatusRegistryNoKey);
  }
  bool created = false;
  const auto error = qxv::os::CreateRegistryKey(HKEY_LOCAL_MACHINE, subkey, qxv::os::kRegistryFullAccess, m_hKey, created);
  return Result(error == qxv::os::kErrorNone ? qxv::kStatusOk : qxv::kStatusRegistryCreateFailed);
}

int CQXVRegister::Open(HKEY /*root*/, const QXChar* subkey) {
  if (Close() != 0) {
    return Result(qxv::kStatusRegistryNoKey);
  }
  const auto error = qxv::os::OpenRegistryKey(HKEY_LOCAL_MACHINE, subkey, qxv::os::kRegistryFullAccess, m_hKey);
  return Result(error == qxv::os::kErrorNone ? qxv::kStatusOk : qxv::kStatusRegistryOpenFailed);
}

int CQXVRegister::Close() {
  if (m_hKey == nullptr) {
    return Result(qxv::kStatusOk);
  }
  if (qxv::os::CloseRegistryKey(m_hKey) != qxv::os::kErrorNone) {
    return Result(qxv::kStatusRegistryNoKey);
  }
  m_hKey = nullptr;
  return Result(qxv::kStatusOk);
}

int CQXVRegister::DeleteValue(const QXChar* name) {
  if (m_hKey == nullptr) {
    return Result(qxv::kStatusRegistryNoKey);
  }
  const auto error = qxv::os::DeleteRegistryValue(m_hKey, name);
  return Result(error == qxv::os::kErrorNone ? qxv::kStatusOk : qxv::kStatusRegistryDeleteFailed);
}

int CQXVRegister::Read(const QXChar* name, int& value) { return Result(ReadNumber(m_hKey, name, &value)); }

int CQXVRegister::Read(const QXChar* name, unsigned int& value) { return Result(ReadNumber(m_hKey, name, &value)); }

int CQXVRegister::Read(const QXChar* name, CQXString& value) { return Result(ReadText(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CString& value) { return Result(ReadText(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CQXArray<CQXString, CQXString&>& value) {
  return Result(ReadRecordValue(m_hKey, name, value));
}

int CQXVRegister::Read(const QXChar* name, CStringArray& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CStringList& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CDWordArray& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CWordArray& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CByteArray& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CPoint& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Read(const QXChar* name, CRect& value) { return Result(ReadRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, int value) {
  return Result(WriteNumber(m_hKey, name, static_cast<std::uint32_t>(value)));
}

int CQXVRegister::Write(const QXChar* name, unsigned int value) { return Result(WriteNumber(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CQXString& value) {
  return Result(WriteText(m_hKey, name, value, value.GetLength()));
}

int CQXVRegister::Write(const QXChar* name, const CString& value) {
  return Result(WriteText(m_hKey, name, value, value.GetLength()));
}

int CQXVRegister::Write(const QXChar* name, const CQXArray<CQXString, CQXString&>& value) {
  return Result(WriteRecordValue(m_hKey, name, value));
}

int CQXVRegister::Write(const QXChar* name, const CStringArray& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CStringList& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CDWordArray& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CWordArray& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CByteArray& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CPoint& value) { return Result(WriteRecordValue(m_hKey, name, value)); }

int CQXVRegister::Write(const QXChar* name, const CRect& value) { return Result(WriteRecordValue(m_hKey, name, value)); }
