// text_files_subject.cpp - writes the lines of its standard input into a text file, or prints the lines of one.
//   text_files_subject write|read lines|unicode|ansi|adopt file
// Lines are UTF-8 ended by a line feed. "lines" is CQXVtxtRW, whose encoding the file decides; the others are how
// CQXVUnicodeAnsiFile is opened.

#include "os/utf.h"
#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

namespace {

using qxv::os::Text;

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteTxtRW(object); }
};

void Print(const QXChar* text, const char* end) { std::cout << qxv::os::Utf8FromText(text) << end; }

int UseLines(bool writes, const Text& name) {
  const std::unique_ptr<CQXVtxtRW, Release> file(QXV_ConstructTxtRW());
  if (file->Open(name.c_str()) != 0) {
    return 1;
  }
  if (writes) {
    for (std::string line; std::getline(std::cin, line);) {
      (void)file->WriteLine(qxv::os::TextFromUtf8(line).c_str());
    }
    return 0;
  }
  CQXString line;
  for (int left = file->GetLineCount() - 1; left > 0; --left) {
    (void)file->ReadLine(line);
    Print(line, "\n");
  }
  return 0;
}

int UseUnicodeAnsi(bool writes, const std::string& how, const Text& name) {
  const std::unique_ptr<CQXVUnicodeAnsiFile, Release> file(QXV_ConstructUnicodeAnsiFile());
  const int encoding = how == "ansi" ? EQXV_ENCODING_ANSI : EQXV_ENCODING_UNICODE;
  unsigned flags = writes ? EQXV_TEXTFILE_WRITE : EQXV_TEXTFILE_READ;
  flags |= how == "adopt" ? EQXV_TEXTFILE_ADOPT : 0u;
  if (file->Open(name.c_str(), encoding, flags) != 0) {
    return 1;
  }
  if (writes) {
    for (std::string line; std::getline(std::cin, line);) {
      file->WriteLine(qxv::os::TextFromUtf8(line).c_str());
    }
    return 0;
  }
  CQXString line;
  while (file->ReadLine(line) == 1) {
    Print(line, "");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: text_files_subject write|read lines|unicode|ansi|adopt file\n", stderr);
    return 2;
  }
  const bool writes = std::string(argv[1]) == "write";
  const std::string how = argv[2];
  const Text name = qxv::os::TextFromUtf8(argv[3]);
  return how == "lines" ? UseLines(writes, name) : UseUnicodeAnsi(writes, how, name);
}
