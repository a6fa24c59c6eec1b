// unicode_ansi_file.cpp - CQXVUnicodeAnsiFile, a text file that is converted when it is opened.
// Unicode: FF FE, then UTF-16 units. ANSI: bytes of the thread's code page. Reading works on a copy of the whole file with zeros
// behind it, which end the last line.

#include "streams/unicode_ansi_file.h"

#include "foundation/text_access.h"
#include "os/code_page.h"
#include "streams/byte_widening.h"
#include "streams/line_scan.h"

#include <algorithm>
#include <new>
#include <vector>

namespace {

using qxv::os::ErrorCode;

constexpr unsigned int kBadMode = 0xFFFFFFFF;
constexpr unsigned int kNothingToConvert = 0xFFFFFFFF;
constexpr unsigned int kCannotRead = 0xFFFFFFFE;
constexpr unsigned char kLineFeed = 10;

qxv::TextEncoding EncodingOf(int encoding) {
  return encoding == EQXV_ENCODING_UNICODE ? qxv::TextEncoding::Unicode : qxv::TextEncoding::Ansi;
}

qxv::os::OpenOptions OptionsFor(qxv::os::FileDisposition disposition) {
  qxv::os::OpenOptions options;
  options.access = qxv::os::FileAccess::ReadWrite;
  options.disposition = disposition;
  options.share = qxv::os::kShareRead | qxv::os::kShareWrite;
  return options;
}

}  // namespace

CQXVUnicodeAnsiFileImpl::CQXVUnicodeAnsiFileImpl() : m_ansiText(qxv::os::kCodePageThreadAnsi) {}

CQXVUnicodeAnsiFileImpl::~CQXVUnicodeAnsiFileImpl() { CQXVUnicodeAnsiFileImpl::Close(); }

// KEPT: an open handle is forgotten, not closed. Applications call this on objects whose fields hold nothing yet.
//   Pinned by UnicodeAnsiFileKept.ResetForgetsAnOpenFileWithoutClosingIt.
int CQXVUnicodeAnsiFileImpl::Reset() {
  m_name.Empty();
  (void)m_file.Release();
  m_requested = EQXV_ENCODING_UNICODE;
  m_detected = EQXV_ENCODING_UNICODE;
  m_flags = EQXV_TEXTFILE_READ | EQXV_TEXTFILE_ADOPT;
  m_copy = {};
  m_cursor = kNoCursor;
  return 0;
}

void CQXVUnicodeAnsiFileImpl::Create(const QXChar* name, int encoding, unsigned int flags) {
  (void)Reset();
  if (Open(name, encoding, flags) != 0) {
    throw 1;  // NOLINT(hicpp-exception-baseclass): what applications catch
  }
}

void CQXVUnicodeAnsiFileImpl::Close() {
  m_copy = {};
  m_cursor = kNoCursor;
  (void)m_file.Close();
}

// ---- opening

unsigned int CQXVUnicodeAnsiFileImpl::Open(const QXChar* name, int encoding, unsigned int flags) {
  Close();
  const unsigned int mode = flags & (EQXV_TEXTFILE_READ | EQXV_TEXTFILE_WRITE);
  if (mode != EQXV_TEXTFILE_READ && mode != EQXV_TEXTFILE_WRITE) {
    return kBadMode;
  }
  if (mode == EQXV_TEXTFILE_READ) {
    flags &= ~static_cast<unsigned int>(EQXV_TEXTFILE_TRUNCATE);
  }
  m_requested = encoding == EQXV_ENCODING_UNICODE ? EQXV_ENCODING_UNICODE : EQXV_ENCODING_ANSI;
  const CQXString kept(name);  // the name may be our own
  if (const ErrorCode error = m_file.Open(name, OptionsFor(qxv::os::FileDisposition::OpenAlways)); error != 0) {
    return error;
  }
  unsigned int error = 0;
  try {
    m_name = kept;
    error = OpenAndConvert(flags);
  } catch (...) {
    Close();
    throw;
  }
  if (error != 0) {
    Close();
  }
  return error;
}

unsigned int CQXVUnicodeAnsiFileImpl::OpenAndConvert(unsigned int flags) {
  if (const unsigned int error = Detect(flags); error != 0) {
    return error;
  }
  if ((flags & EQXV_TEXTFILE_TRUNCATE) != 0) {
    if (const unsigned int error = EmptyFile(); error != 0) {
      return error;
    }
  }
  if ((flags & EQXV_TEXTFILE_ADOPT) != 0) {
    m_requested = m_detected;
  }
  if (const unsigned int error = Convert(m_name); error != 0) {
    return error;
  }
  m_detected = m_requested;
  m_flags = flags;
  return (flags & EQXV_TEXTFILE_READ) != 0 ? PrepareReading() : qxv::os::SeekInFile(m_file.Handle(), 0, qxv::os::SeekOrigin::End);
}

// KEPT: writing into a new or a one-byte file makes no mark, for the requested encoding is taken as the file's own.
//   Pinned by UnicodeAnsiFileKept.ANewUnicodeFileHasNoMarkUnlessItIsTruncated.
unsigned int CQXVUnicodeAnsiFileImpl::Detect(unsigned int flags) {
  unsigned char mark[sizeof qxv::kUnicodeMark];
  std::size_t done = 0;
  if (const ErrorCode error = qxv::os::ReadFromFile(m_file.Handle(), mark, done); error != 0) {
    return error;
  }
  if (done == sizeof mark) {
    m_detected = std::equal(mark, mark + sizeof mark, qxv::kUnicodeMark) ? EQXV_ENCODING_UNICODE : EQXV_ENCODING_ANSI;
  } else {
    m_detected = (flags & EQXV_TEXTFILE_READ) != 0 ? static_cast<int>(EQXV_ENCODING_ANSI) : m_requested;
  }
  return 0;
}

unsigned int CQXVUnicodeAnsiFileImpl::EmptyFile() {
  m_detected = m_requested;
  if (const ErrorCode error = qxv::os::SeekInFile(m_file.Handle(), 0, qxv::os::SeekOrigin::Begin); error != 0) {
    return error;
  }
  if (m_requested == EQXV_ENCODING_UNICODE) {
    std::size_t done = 0;
    (void)qxv::os::WriteToFile(m_file.Handle(), qxv::kUnicodeMark, done);  // as WriteLine: a full disk is not told
  }
  return qxv::os::CutFile(m_file.Handle());
}

unsigned int CQXVUnicodeAnsiFileImpl::PrepareReading() {
  qxv::FileCopy copy;
  if (const ErrorCode error = qxv::CopyFileBytes(m_file.Handle(), copy); error != 0) {
    return error;
  }
  m_copy = std::move(copy);
  if (m_detected != EQXV_ENCODING_UNICODE) {
    m_cursor = m_copy.size == 0 ? kNoCursor : 0;
  } else {
    m_cursor = m_copy.size <= sizeof qxv::kUnicodeMark ? kNoCursor : sizeof qxv::kUnicodeMark;
  }
  return 0;
}

// ---- converting

// KEPT: an open file has the requested encoding, so nothing is written to a target.
//   Pinned by UnicodeAnsiFileConvertKept.ConvertingAnOpenFileToATargetCreatesNothing.
unsigned int CQXVUnicodeAnsiFileImpl::Convert(const QXChar* target) {
  const bool anyTarget = CQXString::Length(target) != 0;
  if (!m_file.IsOpen() && !anyTarget) {
    return kNothingToConvert;
  }
  if (m_detected == m_requested) {
    return 0;
  }
  std::int64_t position = 0;
  std::int64_t length = 0;
  if (qxv::os::SeekInFile(m_file.Handle(), 0, qxv::os::SeekOrigin::Current, &position) != 0 ||
      qxv::os::GetFileLength(m_file.Handle(), length) != 0) {
    return kCannotRead;
  }
  if (length == 0) {
    return 0;
  }
  qxv::FileCopy copy;
  if (const ErrorCode error = qxv::CopyFileBytes(m_file.Handle(), copy); error != 0) {
    return error == qxv::os::kErrorFileTooLarge ? error : kCannotRead;
  }
  std::vector<unsigned char> converted;
  if (!qxv::ConvertText(copy.Bytes(), EncodingOf(m_requested), converted)) {
    return qxv::os::kErrorFileTooLarge;
  }
  ErrorCode result = 0;
  if (anyTarget && m_name.CompareNoCase(target) != 0) {
    qxv::os::File file;
    result = file.Open(target, OptionsFor(qxv::os::FileDisposition::CreateAlways));
    result = result != 0 ? result : qxv::ReplaceFileBytes(file.Handle(), converted, {});
  } else {
    result = qxv::ReplaceFileBytes(m_file.Handle(), converted, copy.Bytes());
  }
  const ErrorCode restored = qxv::os::SeekInFile(m_file.Handle(), position, qxv::os::SeekOrigin::Begin);
  return result != 0 ? result : restored;
}

// ---- lines

// KEPT: a carriage return before a line feed is not looked at, so a text that ends in CR LF is written with CR CR LF.
//   Pinned by UnicodeAnsiFileKept.ATextThatEndsInCrLfIsWrittenWithTwoCarriageReturns.
void CQXVUnicodeAnsiFileImpl::WriteLine(const QXChar* text) {
  if (!m_file.IsOpen() || (m_flags & EQXV_TEXTFILE_WRITE) == 0) {
    return;
  }
  const qxv::TextView given = text == nullptr ? qxv::TextView() : qxv::TextView(text);
  const std::size_t last = given.find_last_not_of(QXChar(kLineFeed));
  std::basic_string<QXChar> line;
  line.reserve(given.size() + 2);
  for (const QXChar unit : given.substr(0, last == qxv::TextView::npos ? 0 : last + 1)) {
    if (unit == kLineFeed) {
      line += QXChar(13);
    }
    line += unit;
  }
  line += QXChar(13);
  line += QXChar(kLineFeed);
  std::size_t done = 0;
  if (m_requested == EQXV_ENCODING_UNICODE) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(line.data());
    (void)qxv::os::WriteToFile(m_file.Handle(), {bytes, line.size() * sizeof(QXChar)}, done);
  } else {
    std::string ansi;
    m_ansiText.Encode(line, ansi);
    (void)qxv::os::WriteToFile(m_file.Handle(), {reinterpret_cast<const unsigned char*>(ansi.data()), ansi.size()}, done);
  }
}

// KEPT: a read exactly at the end gives one more, empty, line. Pinned by
// UnicodeAnsiFileKept.ATextThatEndsWithALineEndHasOneMoreLine.
int CQXVUnicodeAnsiFileImpl::ReadLine(CQXString& line) {
  if (!m_file.IsOpen() || m_cursor == kNoCursor) {
    return 0;
  }
  if (m_cursor > m_copy.size) {
    line.Empty();
    return 0;
  }
  if (m_requested == EQXV_ENCODING_UNICODE) {
    ReadUnicodeLine(line);
  } else {
    ReadAnsiLine(line);
  }
  return 1;
}

// KEPT: only the low byte of a unit is looked at. Pinned by UnicodeAnsiFileKept.AUnitWithTheLowByteOfALineFeedEndsTheLine and
//   UnicodeAnsiFileKept.AUnitWithALowByteOfZeroEndsTheLine.
void CQXVUnicodeAnsiFileImpl::ReadUnicodeLine(CQXString& line) {
  // Zero units stand behind the last one, even if that is half a unit.
  const auto* units = reinterpret_cast<const QXChar*>(m_copy.bytes.get() + m_cursor);
  const std::size_t most = (m_copy.size + qxv::FileCopy::kZerosBehind - m_cursor) / sizeof(QXChar);
  const std::size_t stop = qxv::FindLowByte(units, most, kLineFeed, 0);
  qxv::AssignText(line, {units, units[stop] == 0 ? stop : stop + 1});
  m_cursor += (stop + 1) * sizeof(QXChar);
}

void CQXVUnicodeAnsiFileImpl::ReadAnsiLine(CQXString& line) {
  const unsigned char* bytes = m_copy.bytes.get() + m_cursor;
  if (m_copy.size - m_cursor >= qxv::kShortLine) {
    const std::size_t count = qxv::AssignShortLine(bytes, kLineFeed, true /*endIncluded*/, line);
    if (count != qxv::kNoShortLine) {
      m_cursor += count + 1;
      return;
    }
  }
  const qxv::LineStop stop = qxv::FindLineStop(bytes, m_copy.size + 1 - m_cursor, kLineFeed, 0);
  m_ansiText.Decode({reinterpret_cast<const char*>(bytes), bytes[stop.at] == 0 ? stop.at : stop.at + 1}, stop.ascii, line);
  m_cursor += stop.at + 1;
}

CQXVUnicodeAnsiFile::~CQXVUnicodeAnsiFile() = default;

CQXVUnicodeAnsiFile* QXV_ConstructUnicodeAnsiFile() { return new (std::nothrow) CQXVUnicodeAnsiFileImpl; }
