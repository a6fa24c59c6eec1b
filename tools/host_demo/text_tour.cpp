// text_tour.cpp - a text file on its way through the families: copied line by line into another encoding, searched, packed into a
// block and into a file, its numbers added, told to log and trace.

#include "text_tour.h"

#include "qxv/array.h"
#include "qxv/buffer_file.h"
#include "qxv/conversion.h"
#include "qxv/factories.h"
#include "qxv/interop.h"
#include "qxv/log.h"
#include "qxv/path.h"
#include "qxv/stream_buffer.h"
#include "qxv/text_file.h"
#include "qxv/trace.h"
#include "qxv/unicode_ansi_file.h"

#include <filesystem>
#include <iostream>
#include <string>

namespace {

using Texts = CQXArray<CQXString, CQXString&>;

// As the library names files on every system: a drive, and backslashes.
CQXString DriveForm(const char* path) {
  std::basic_string<QXChar> name;
  for (const auto unit : std::filesystem::absolute(path).u16string()) {
    name += unit == u'/' ? QXT('\\') : static_cast<QXChar>(unit);
  }
  return CQXString(name.front() == QXT('\\') ? QXT("Z:") : QXT("")) + name.c_str();
}

void ShowPath(CQXString path) {
  std::cout << "path          " << QXVParsePath(path) << " | " << QXVParseMainFileName(path) << " | " << QXVParseExtFileName(path)
            << " | " << QXVXHFileSize(path) << " bytes | exists: " << QXVIsFileExist(path) << '\n';
}

// Reads the lines of a text in any of the two encodings and writes them as UTF-16.
bool CopyAsUnicode(const CQXString& from, const CQXString& to, Texts& lines) {
  const qxv::Owned<CQXVUnicodeAnsiFile> in(QXV_ConstructUnicodeAnsiFile());
  const qxv::Owned<CQXVUnicodeAnsiFile> out(QXV_ConstructUnicodeAnsiFile());
  if (in->Open(from, EQXV_ENCODING_ANSI, EQXV_TEXTFILE_READ | EQXV_TEXTFILE_ADOPT) != 0 ||
      out->Open(to, EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_WRITE | EQXV_TEXTFILE_TRUNCATE) != 0) {
    return false;
  }
  CQXString line;
  while (in->ReadLine(line) == 1) {
    out->WriteLine(line);
    lines.Add(line);
  }
  std::cout << "text copied   " << lines.GetSize() << " lines into " << to << '\n';
  return lines.GetSize() != 0;
}

bool Search(const CQXString& name, const QXChar* wanted) {
  const qxv::Owned<CQXVtxtRW> file(QXV_ConstructTxtRW());
  if (file->Open(name) != 0) {
    return false;
  }
  std::cout << "text searched " << file->GetLineCount() << " lines counted in UTF-16; ";
  CQXString line;
  const int found = file->FindLine(wanted);
  if (found < 0) {
    std::cout << '"' << CQXString(wanted) << "\" stands in none\n";
    return true;
  }
  (void)file->ReadLine(line);
  std::cout << '"' << CQXString(wanted) << "\" stands in line " << found << ": " << line << '\n';
  return true;
}

bool PackAndTake(Texts& lines) {
  CQXVStreamBufIn in;
  in << static_cast<int>(lines.GetSize());
  for (QXInt64 i = 0; i < lines.GetSize(); ++i) {
    in << lines[i];
  }
  int size = 0;
  const unsigned char* const block = in.GetBuffer(size);
  CQXVStreamBufOut out(block, size);
  int count = 0;
  out >> count;
  bool same = count == lines.GetSize();
  for (int i = 0; same && i < count; ++i) {
    CQXString line;
    out >> line;
    same = line == lines[i];
  }
  std::cout << "stream block  " << count << " texts in " << size << " bytes, " << (same ? "taken out unchanged" : "CHANGED")
            << '\n';
  return same;
}

bool WriteAndRead(const CQXString& name, const Texts& lines) {
  const qxv::Owned<CQXVBufferFileRW> file(QXV_ConstructBufferFileRW());
  const double third = 1.0 / 3.0;
  (void)file->Reset();
  if (file->Open(name, 0 /*bRead*/, 4096) == 0 || file->Write(third) == 0 || file->Write(lines) == 0 || file->Close() == 0) {
    return false;
  }
  Texts back;
  double number = 0;
  bool same = file->Open(name, 1 /*bRead*/, 4096) != 0 && file->Read(number) == sizeof number && file->Read(back) != 0;
  same = same && number == third && back.GetSize() == lines.GetSize();
  for (QXInt64 i = 0; same && i < back.GetSize(); ++i) {
    same = back[i] == lines[i];
  }
  CQXString path = name;
  std::cout << "buffered file a number and " << back.GetSize() << " texts in " << QXVXHFileSize(path) << " bytes, "
            << (same ? "read back unchanged" : "CHANGED") << '\n';
  return same;
}

// The words that are numbers from their first character to their last, and their sum.
void AddNumbers(const Texts& lines) {
  double sum = 0;
  int numbers = 0;
  for (QXInt64 i = 0; i < lines.GetSize(); ++i) {
    Texts words;
    (void)QXVStrtoStrArr(QXT(" "), lines[i], words);
    for (QXInt64 k = 0; k < words.GetSize(); ++k) {
      double number = 0;
      if (words[k].GetLength() != 0 && QXVString2Double(words[k], number) == 0) {
        sum += number;
        ++numbers;
      }
    }
  }
  CQXString text;
  QXVDouble2String(sum, text);
  std::cout << "number text   " << numbers << " words of the file are numbers, their sum is " << text << '\n';
}

// The day's log as it stands in the folder afterwards.
bool LogAndTrace(const char* folder, const QXChar* message) {
  QXVLogSetPath(QXVNormalizeFilePath(DriveForm(folder)));
  QXVLogSetMainName(QXT("tour"));
  QXVWriteLog(message, 100);
  QXVWriteLog(QXT("this one is below the write level of 100"), 99);
  bool told = false;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const qxv::Owned<CQXVtxtRW> file(QXV_ConstructTxtRW());
    if (entry.path().filename().string().rfind("tour_", 0) != 0 || file->Open(DriveForm(entry.path().string().c_str())) != 0) {
      continue;
    }
    CQXString line;
    for (int i = file->GetLineCount(); i > 1; --i) {
      if (file->ReadLine(line) != 0) {
        std::cout << "log           " << line << '\n';
        told = told || line.Find(message) >= 0;
      }
    }
  }
  const CQXVTraceInner trace(QXT("text tour"), 1);
  std::cout << "trace         for who listens to debugger output (Linux: standard error):\n" << std::flush;
  trace(0, QXT("%s"), message);
  trace(-1, QXT("this one is below the threshold of 0"));
  return told;
}

}  // namespace

bool ShowTextFamilies(const char* textFile, const char* folder) {
  const CQXString name = DriveForm(textFile);
  const CQXString place = QXVNormalizeFilePath(DriveForm(folder));
  ShowPath(name);
  Texts lines;
  if (!CopyAsUnicode(name, place + QXT("copy.txt"), lines)) {
    std::cerr << textFile << ": has no lines that can be copied\n";
    return false;
  }
  bool all = Search(place + QXT("copy.txt"), QXT("Wine"));
  all = PackAndTake(lines) && all;
  all = WriteAndRead(place + QXT("values.bin"), lines) && all;
  AddNumbers(lines);
  CQXString message;
  message.Format(QXT("%I64d lines of %s"), lines.GetSize(), static_cast<const QXChar*>(QXVGetFileName(name)));
  return LogAndTrace(folder, message) && all;
}
