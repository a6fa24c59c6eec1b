// md5_context.cpp - CQXVMD5Ctx, a digest whose state can be saved and taken up again.
// The context file, little-endian: bit count (low, high half), A, B, C, D, the input block with the bytes that wait in front, the
// caller's value; 8 + 16 + 64 + 8 bytes.

#include "digest/md5_context.h"

#include "digest/md5_text.h"
#include "os/debug_output.h"
#include "os/file_system.h"
#include "streams/byte_reader.h"

#include <algorithm>
#include <new>
#include <span>

namespace {

using qxv::os::ErrorCode;

/// A text for whoever debugs the program; lost when there is no memory for it.
template <typename... Args>
void Tell(const QXChar* format, Args... args) noexcept {
  try {
    CQXString text;
    text.Format(format, args...);
    qxv::os::WriteDebugText(text);
  } catch (const std::bad_alloc&) {
  }
}

void TellFailure(const QXChar* format, const CQXString& path, ErrorCode error) noexcept {
  Tell(format, static_cast<const QXChar*>(path), static_cast<int>(error));
}

bool IsFolder(const CQXString& path) {
  std::uint32_t attributes = 0;
  return qxv::os::GetPathAttributes(path, attributes) == 0 && (attributes & qxv::os::kAttributeFolder) != 0;
}

/// Ends the folder's name with a backslash, and creates what is missing of it.
bool PrepareFolder(CQXString& folder) {
  if (folder.Right(1) != QXT("\\")) {
    folder += QXT("\\");
  }
  if (IsFolder(folder)) {
    return true;
  }
  const ErrorCode error = qxv::os::CreateFolders(folder);
  if (error == 0 || IsFolder(folder)) {  // another process may have been quicker
    return true;
  }
  TellFailure(QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Create folder(%s) to store context file failed(Returned: %d)!\n"), folder,
              error);
  return false;
}

/// Little-endian numbers one after another into a record of known size.
class RecordWriter {
 public:
  explicit RecordWriter(unsigned char* place) : m_place(place) {}

  void U32(std::uint32_t value) {
    for (int i = 0; i < 4; ++i) {
      *m_place++ = static_cast<unsigned char>(value >> (8 * i));
    }
  }
  void U64(QXUInt64 value) {
    U32(static_cast<std::uint32_t>(value));
    U32(static_cast<std::uint32_t>(value >> 32));
  }
  void Bytes(std::span<const unsigned char> bytes) { m_place = std::copy(bytes.begin(), bytes.end(), m_place); }

 private:
  unsigned char* m_place;
};

}  // namespace

CQXVMD5CtxImpl::CQXVMD5CtxImpl() : m_record(new unsigned char[kRecordSize]()) { m_md5.Start(); }

CQXVMD5CtxImpl::~CQXVMD5CtxImpl() = default;

// KEPT: the id is a part of the path as it stands, so one with ..\ in it saves to, and Final deletes, an .MD5frag file elsewhere.
//   Pinned by Md5ContextKept.AnIdMayNameAnotherFolder.
void CQXVMD5CtxImpl::Initialize(int interruption, CQXString folder, CQXString id) {
  (void)m_file.Close();
  m_md5.Start();
  m_interruption = 0;
  m_path.Empty();
  m_resumeValue = 0;
  std::fill_n(m_record.get(), m_recordSize, static_cast<unsigned char>(0));
  if (interruption != 0) {
    if (folder.GetLength() == 0 || id.GetLength() == 0) {
      Tell(QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Require interruption support, but path(%s) or id(%s) is invalide!\n"),
           static_cast<const QXChar*>(folder), static_cast<const QXChar*>(id));
    } else if (PrepareFolder(folder)) {
      m_path = folder + id + QXT(".MD5frag");
      m_interruption = interruption;
    }
  }
  if (m_interruption != 0) {
    Tell(QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will support interruption.\n"));
    std::uint32_t attributes = 0;
    if (qxv::os::GetPathAttributes(m_path, attributes) == 0) {
      (void)Load();  // otherwise the digest starts anew
    }
  } else {
    Tell(QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will not support interruption.\n"));
  }
}

void CQXVMD5CtxImpl::Update(const unsigned char* data, unsigned int length) {
  if (data != nullptr) {
    m_md5.Update(data, length);
  }
}

// What comes next starts anew, even if the file cannot be deleted: the state in it belongs to the digest that has just ended.
void CQXVMD5CtxImpl::Final(unsigned char digest[qxv::kMd5DigestSize]) {
  unsigned char own[qxv::kMd5DigestSize];
  m_md5.Finish(own);
  if (digest != nullptr) {
    std::copy(std::begin(own), std::end(own), digest);
  }
  if (m_interruption != 0) {
    (void)m_file.Close();
    std::fill_n(m_record.get(), m_recordSize, static_cast<unsigned char>(0));
    (void)qxv::os::RemoveFile(m_path);
  }
  m_md5.Start();
}

CQXString CQXVMD5CtxImpl::GetFinalString() {
  unsigned char digest[qxv::kMd5DigestSize];
  CQXVMD5CtxImpl::Final(digest);
  return qxv::DigestText(digest);
}

int CQXVMD5CtxImpl::SaveContext(QXUInt64 value) { return m_interruption == 0 || Store(value) ? 1 : 0; }

QXUInt64 CQXVMD5CtxImpl::GetContextValue() { return m_resumeValue; }

// One write a record: a process that is killed leaves the record before or this one, never a mixture.
bool CQXVMD5CtxImpl::Store(QXUInt64 value) {
  if (m_path.GetLength() == 0) {
    return false;
  }
  if (!m_file.IsOpen()) {
    qxv::os::OpenOptions options;
    options.access = qxv::os::FileAccess::Write;
    options.disposition = qxv::os::FileDisposition::CreateAlways;
    options.attribute = qxv::os::NewFileAttribute::Hidden;
    if (const ErrorCode error = m_file.Open(m_path, options); error != 0) {
      TellFailure(QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Open context file(%s) failed(Error code: %d)!\n"), m_path, error);
      return false;
    }
  }
  RecordWriter record(m_record.get());
  record.U32(m_md5.bitCount[0]);
  record.U32(m_md5.bitCount[1]);
  for (const std::uint32_t word : m_md5.state) {
    record.U32(word);
  }
  record.Bytes(m_md5.block);
  record.U64(value);
  std::size_t done = 0;
  ErrorCode error = qxv::os::WriteToFile(m_file.Handle(), {m_record.get(), m_recordSize}, done);
  if (error == 0) {
    error = qxv::os::SeekInFile(m_file.Handle(), 0, qxv::os::SeekOrigin::Begin);  // where the next record goes
  }
  if (error != 0) {
    TellFailure(QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Write context file(%s) failed(Error code: %d)!\n"), m_path, error);
    (void)m_file.Close();
    return false;
  }
  return true;
}

bool CQXVMD5CtxImpl::Load() {
  qxv::os::OpenOptions options;
  options.attribute = qxv::os::NewFileAttribute::Hidden;
  qxv::os::File file;
  if (const ErrorCode error = file.Open(m_path, options); error != 0) {
    TellFailure(QXT("\n(CQXVMD5CtxImpl::DealContext)Load: Open context file(%s) failed(Error code: %d)!\n"), m_path, error);
    return false;
  }
  std::size_t done = 0;
  const ErrorCode error = qxv::os::ReadFromFile(file.Handle(), {m_record.get(), m_recordSize}, done);
  qxv::ByteReader record({m_record.get(), done});
  qxv::Md5 md5;
  md5.bitCount[0] = record.U32();
  md5.bitCount[1] = record.U32();
  for (std::uint32_t& word : md5.state) {
    word = record.U32();
  }
  const auto block = record.Bytes(qxv::kMd5BlockSize);
  const QXUInt64 value = record.U64();
  if (error != 0 || record.Failed()) {
    TellFailure(QXT("\n(CQXVMD5CtxImpl::DealContext)Load: Read context file(%s) failed(Error code: %d)!\n"), m_path, error);
    return false;
  }
  std::copy(block.begin(), block.end(), md5.block);
  md5.SetPadding();
  m_md5 = md5;
  m_resumeValue = value;
  return true;
}

CQXVMD5Ctx::~CQXVMD5Ctx() = default;

CQXVMD5Ctx* QXV_ConstructMD5() {
  try {
    return new CQXVMD5CtxImpl;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
