// unicode_ansi_file.h - what implements CQXVUnicodeAnsiFile.
#pragma once

#include "os/file.h"
#include "qxv/unicode_ansi_file.h"
#include "streams/ansi_text.h"
#include "streams/text_conversion.h"

#include <cstddef>
#include <string>

class CQXVUnicodeAnsiFileImpl : public CQXVUnicodeAnsiFile {
 public:
  CQXVUnicodeAnsiFileImpl();
  CQXVUnicodeAnsiFileImpl(const CQXVUnicodeAnsiFileImpl&) = delete;
  CQXVUnicodeAnsiFileImpl& operator=(const CQXVUnicodeAnsiFileImpl&) = delete;
  ~CQXVUnicodeAnsiFileImpl() override;

  void Create(const QXChar* name, int encoding, unsigned int flags) override;
  int Reset() override;
  unsigned int Open(const QXChar* name, int encoding, unsigned int flags) override;
  void WriteLine(const QXChar* text) override;
  int ReadLine(CQXString& line) override;
  unsigned int Convert(const QXChar* target) override;
  void Close() override;

 protected:  // a test makes the encodings differ while a file is open
  static constexpr std::size_t kNoCursor = static_cast<std::size_t>(-1);

  unsigned int OpenAndConvert(unsigned int flags);
  unsigned int Detect(unsigned int flags);
  unsigned int EmptyFile();
  unsigned int PrepareReading();
  void ReadUnicodeLine(CQXString& line);
  void ReadAnsiLine(CQXString& line);

  CQXString m_name;
  qxv::os::File m_file;
  int m_requested = EQXV_ENCODING_UNICODE;
  int m_detected = EQXV_ENCODING_UNICODE;
  unsigned int m_flags = EQXV_TEXTFILE_READ | EQXV_TEXTFILE_ADOPT;
  qxv::FileCopy m_copy;              // reading only, as is the cursor
  std::size_t m_cursor = kNoCursor;  // offset in the copy
  qxv::AnsiText m_ansiText;
};
