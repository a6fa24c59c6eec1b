// text_file.cpp - CQXVtxtRW, a text file for reading lines and appending lines.
// UTF-16: FF FE, then units, lines ended by 13 10. ANSI: bytes from the first on. Reading and its position are the LineReader's.

#include "qxv/text_file.h"

#include "foundation/text_access.h"
#include "foundation/text_scan.h"
#include "os/c_stream.h"
#include "os/code_page.h"
#include "qxv/conversion.h"
#include "streams/ansi_text.h"
#include "streams/byte_widening.h"
#include "streams/line_reader.h"
#include "streams/line_scan.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <new>
#include <string>

namespace {

using qxv::kCarriageReturn;
using qxv::RawLine;
using qxv::TextView;

constexpr unsigned char kMark[] = {0xFF, 0xFE};
constexpr int kUnknown = -1;
constexpr QXChar kLineEnd[] = {kCarriageReturn, 10};

int ToInt(std::size_t count) noexcept { return static_cast<int>(std::min<std::size_t>(count, INT_MAX)); }

// One more, around the end of the range.
int Next(int number) noexcept { return static_cast<int>(static_cast<unsigned>(number) + 1); }

std::string_view BytesOf(TextView text) noexcept {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(QXChar)};
}

// The bytes before the first zero.
std::string_view BytesOf(const RawLine<unsigned char>& raw) noexcept {
  const std::string_view bytes(reinterpret_cast<const char*>(raw.units), raw.count);
  return raw.hasZeros ? bytes.substr(0, bytes.find('\0')) : bytes;
}

struct SeparatorText {
  QXChar units[2];
  explicit SeparatorText(QXChar separator) noexcept : units{separator, 0} {}
};

class CQXVtxtRWImpl final : public CQXVtxtRW {
 public:
  CQXVtxtRWImpl() = default;
  CQXVtxtRWImpl(const CQXVtxtRWImpl&) = delete;
  CQXVtxtRWImpl& operator=(const CQXVtxtRWImpl&) = delete;
  ~CQXVtxtRWImpl() override { CloseStream(); }

  int Open(const CQXString& path) override;
  int FindAndReadLine(const CQXString& text, CQXString& line) override;
  int ReadFields(CQXArray<CQXString, CQXString&>& fields, QXChar separator) override;
  int ReadLine(CQXString& line) override;
  int GetLineCount() override;
  int FindLine(const QXChar* text) override;
  int WriteLine(const QXChar* first, const QXChar* second) override;
  int WriteLine(const CQXArray<CQXString, CQXString&>& fields, QXChar separator) override;
  int WriteLine(const QXChar* text) override;
  void Clear() override;
  void Close() override;

 private:
  struct Line {
    TextView text;  // as callers see it; valid until the reader or m_ansiText is used again
    bool any;       // false at the end of the file
  };

  bool OpenStream(const char* mode);
  void CloseStream() noexcept;
  std::int64_t DataStart() const noexcept { return m_ansi != 0 ? 0 : sizeof kMark; }
  template <class Unit>
  RawLine<Unit> NextRaw();
  Line NextLine();
  TextView TextOf(const RawLine<QXChar>& raw);
  TextView WithoutZeros(const RawLine<QXChar>& raw);

  int m_lineIndex = kUnknown;
  int m_lineCount = kUnknown;
  CQXString m_path;
  std::FILE* m_file = nullptr;
  int m_ansi = 1;
  qxv::LineReader m_reader;
  qxv::AnsiText m_ansiText{qxv::os::kCodePageAnsi};
  std::basic_string<QXChar> m_withoutZeros;
  std::string m_output;
};

// ---- opening and closing

bool CQXVtxtRWImpl::OpenStream(const char* mode) {
  m_file = qxv::os::OpenStream(m_path, mode);
  m_reader.Attach(m_file);
  return m_file != nullptr;
}

void CQXVtxtRWImpl::CloseStream() noexcept {
  if (m_file != nullptr) {
    m_reader.Attach(nullptr);
    (void)std::fclose(m_file);
    m_file = nullptr;
  }
}

// KEPT: line index and line count stay as they were. Pinned by TextFileKept.OpeningAgainKeepsLineIndexAndLineCount.
int CQXVtxtRWImpl::Open(const CQXString& path) {
  CloseStream();
  m_path = path;
  if (!OpenStream("ab+")) {
    return -1;
  }
  unsigned char mark[sizeof kMark];
  const bool marked = m_reader.ReadAt(0, mark, sizeof mark) == sizeof mark && std::equal(mark, mark + sizeof mark, kMark);
  m_ansi = marked ? 0 : 1;
  m_reader.Seek(DataStart());
  return 0;
}

void CQXVtxtRWImpl::Clear() {
  if (m_file == nullptr) {
    return;
  }
  CloseStream();
  const bool emptied = OpenStream("wb+");
  if (emptied && m_ansi == 0) {
    (void)std::fwrite(kMark, 1, sizeof kMark, m_file);  // a full disk leaves an empty file
  }
  CloseStream();
  if (!OpenStream("ab+")) {
    Close();
    return;
  }
  m_reader.Seek(DataStart());
  if (emptied) {
    m_lineCount = 1;
  }
}

void CQXVtxtRWImpl::Close() {
  CloseStream();
  m_path.Empty();
  m_lineIndex = kUnknown;
  m_lineCount = kUnknown;
}

// ---- reading

TextView CQXVtxtRWImpl::WithoutZeros(const RawLine<QXChar>& raw) {
  m_withoutZeros.resize(raw.count);
  const auto end = std::remove_copy(raw.units, raw.units + raw.count, m_withoutZeros.begin(), QXChar(0));
  m_withoutZeros.resize(static_cast<std::size_t>(end - m_withoutZeros.begin()));
  return m_withoutZeros;
}

template <class Unit>
RawLine<Unit> CQXVtxtRWImpl::NextRaw() {
  const RawLine<Unit> raw = m_reader.Next<Unit>();
  m_lineIndex = raw.ended ? Next(m_lineIndex) : m_lineIndex;
  return raw;
}

TextView CQXVtxtRWImpl::TextOf(const RawLine<QXChar>& raw) {
  return raw.hasZeros ? WithoutZeros(raw) : TextView(raw.units, raw.count);
}

CQXVtxtRWImpl::Line CQXVtxtRWImpl::NextLine() {
  if (m_ansi != 0) {
    const RawLine<unsigned char> raw = NextRaw<unsigned char>();
    return {m_ansiText.Decode(BytesOf(raw)), raw.ended || raw.count != 0};
  }
  const RawLine<QXChar> raw = NextRaw<QXChar>();
  return {TextOf(raw), raw.ended || raw.count != 0};
}

int CQXVtxtRWImpl::ReadLine(CQXString& line) {
  if (m_file == nullptr) {
    line.Empty();
    return 0;
  }
  if (m_ansi != 0) {
    const unsigned char* const bytes = m_reader.Ahead(qxv::kShortLine + 1);  // also what stands behind the carriage return
    const std::size_t count =
        bytes == nullptr ? qxv::kNoShortLine : qxv::AssignShortLine(bytes, kCarriageReturn, false /*endIncluded*/, line);
    if (count != qxv::kNoShortLine) {
      m_reader.Skip(count + std::size(kLineEnd));
      m_lineIndex = Next(m_lineIndex);
      return static_cast<int>(count);
    }
  }
  const std::int64_t position = m_reader.Position();
  const int index = m_lineIndex;
  try {
    if (m_ansi != 0) {
      const RawLine<unsigned char> raw = NextRaw<unsigned char>();
      m_ansiText.Decode(BytesOf(raw), raw.ascii, line);
      return ToInt(raw.count);
    }
    const RawLine<QXChar> raw = NextRaw<QXChar>();
    qxv::AssignText(line, TextOf(raw));
    return ToInt(raw.count);
  } catch (...) {
    m_reader.Seek(position);
    m_lineIndex = index;
    throw;
  }
}

int CQXVtxtRWImpl::ReadFields(CQXArray<CQXString, CQXString&>& fields, QXChar separator) {
  CQXString line;
  const int count = ReadLine(line);
  if (count == 0) {
    return 0;
  }
  CQXArray<CQXString, CQXString&> parts;
  (void)QXVStrtoStrArr(SeparatorText(separator).units, line, parts);
  for (QXInt64 i = 0; i < parts.GetSize(); ++i) {
    (void)fields.Add(parts[i]);
  }
  return count;
}

int CQXVtxtRWImpl::GetLineCount() {
  if (m_lineCount >= 0) {
    return m_lineCount;
  }
  if (m_file == nullptr) {
    return kUnknown;
  }
  const std::size_t ends = m_ansi != 0 ? m_reader.CountLineEnds<unsigned char>() : m_reader.CountLineEnds<QXChar>();
  m_lineCount = ToInt(ends + 1);
  return m_lineCount;
}

// KEPT: the result is a difference of line indices, which goes on counting from the file's end to its start and leaves a
//   last line without an end out. Pinned by TextFileFindKept.FoundLinesAreCountedThroughTheWrap,
//   TextFileFindKept.TheSearchFromTheStartReadsTheLineAtThePositionOnceMore and
//   TextFileFindKept.AMatchInALastLineWithoutAnEndCountsOneLess.
int CQXVtxtRWImpl::FindLine(const QXChar* text) {
  const auto length = static_cast<std::size_t>(CQXString::Length(text));
  if (m_file == nullptr || length == 0) {
    return -1;
  }
  const std::int64_t startPosition = m_reader.Position();
  const int startIndex = m_lineIndex;
  for (const bool wrapped : {false, true}) {
    if (wrapped) {
      m_reader.Seek(DataStart());
    }
    while (!wrapped || m_reader.Position() <= startPosition) {
      const std::int64_t position = m_reader.Position();
      const Line line = NextLine();
      if (!line.any) {
        break;
      }
      if (qxv::ScanFind(line.text.data(), line.text.size(), text, length) != nullptr) {
        m_reader.Seek(position);
        return static_cast<int>(static_cast<unsigned>(m_lineIndex) - static_cast<unsigned>(startIndex));
      }
    }
  }
  m_reader.Seek(startPosition);
  m_lineIndex = startIndex;
  return -1;
}

int CQXVtxtRWImpl::FindAndReadLine(const CQXString& text, CQXString& line) {
  if (text.GetLength() == 0) {
    return 0;
  }
  (void)FindLine(text);
  return ReadLine(line);
}

// ---- writing

// KEPT: an unknown line count of -1 becomes 0 and the line index -1. Pinned by
//   TextFileKept.WritingWithAnUnknownCountMakesItZero.
int CQXVtxtRWImpl::WriteLine(const QXChar* text) {
  if (m_file == nullptr) {
    return 0;
  }
  const TextView units = text == nullptr ? TextView() : TextView(text, qxv::ScanLength(text));
  m_output.clear();
  if (m_ansi != 0) {
    m_ansiText.Encode(units, m_output);
  } else {
    m_output.append(BytesOf(units));
  }
  const std::size_t textBytes = m_output.size();
  m_output.append(m_ansi != 0 ? std::string_view("\r\n") : BytesOf({kLineEnd, std::size(kLineEnd)}));
  const std::size_t written = std::min(m_reader.Append(m_output), textBytes);
  m_lineIndex = m_lineCount;  // the count after adding one, less one
  m_lineCount = Next(m_lineCount);
  return ToInt(m_ansi != 0 ? written : written / sizeof(QXChar));
}

int CQXVtxtRWImpl::WriteLine(const QXChar* first, const QXChar* second) {
  CQXString joined(first);
  joined += second;
  return WriteLine(joined);
}

int CQXVtxtRWImpl::WriteLine(const CQXArray<CQXString, CQXString&>& fields, QXChar separator) {
  return fields.GetSize() == 0 ? 0 : WriteLine(QXVStrArrtoStr(SeparatorText(separator).units, fields));
}

}  // namespace

CQXVtxtRW::~CQXVtxtRW() = default;

CQXVtxtRW* QXV_ConstructTxtRW() { return new (std::nothrow) CQXVtxtRWImpl; }
