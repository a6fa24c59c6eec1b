// files.cpp - values in files, and text files line by line.

#include "parity/trial.h"

#include "qxv/buffer_file.h"
#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"

#include <cstdio>
#include <vector>

namespace parity {

namespace {

template <class Value>
CQXArray<Value, Value&> Several(Trial& t) {
  CQXArray<Value, Value&> values;
  for (int i = t.Below(30); i > 0; --i) {
    Value value = static_cast<Value>(t.Whole());
    values.Add(value);
  }
  return values;
}

// The whole file as the library itself reads its bytes.
void TakeFile(Trial& t, const Text& name) {
  CFile file;
  if (t << file.Open(name.c_str(), CFile::modeRead | CFile::shareDenyNone); file.m_hFile != INVALID_HANDLE_VALUE) {
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    t << file.Read(bytes.data(), static_cast<unsigned>(bytes.size())) << bytes;
  }
}

void Values(Trial& t) {
  t.Next();
  const Text name = t.File(QXT("values"));
  auto numbers = Several<int>(t);
  auto narrow = Several<short>(t);
  auto wide = Several<QXInt64>(t);
  CQXArray<CQXString, CQXString&> texts;
  for (int i = t.Below(6); i > 0; --i) {
    CQXString text(t.Word(20).c_str());
    texts.Add(text);
  }
  CQXVBufferFileRW* file = QXV_ConstructBufferFileRW();
  file->Reset();
  t << file->Open(name.c_str(), 0, static_cast<unsigned>(t.Between(1000, 2000)));
  t << file->Write(t.Whole()) << file->Write(t.Double()) << file->Write(CQXString(t.Word(40).c_str())) << file->Write(numbers)
    << file->Write(narrow) << file->Write(wide) << file->Write(texts) << file->Write(t.Long()) << file->Write(CPoint(3, -4))
    << file->Write(static_cast<QXChar>(t.Whole()));
  t << file->Close();
  QXV_DeleteBufferFileRW(file);
  TakeFile(t, name);

  file = QXV_ConstructBufferFileRW();
  file->Reset();
  t << file->Open(name.c_str(), 1, 1024);
  int whole = 0;
  double twofold = 0;
  CQXString text;
  t << file->Read(whole) << whole << file->Read(twofold) << twofold << file->Read(text) << text;
  t << file->Read(numbers) << numbers.GetSize() << file->Seek(t.Between(-4, 80), static_cast<unsigned>(t.Below(3)));
  t << file->Read(narrow) << narrow.GetSize() << file->Read(whole) << whole;
  QXV_DeleteBufferFileRW(file);
}

void Lines(Trial& t) {
  t.Next();
  const Text name = t.File(QXT("lines.txt"));
  CQXVtxtRW* file = QXV_ConstructTxtRW();
  t << file->Open(name.c_str());
  if (t.Below(20) == 0) {
    file->Clear();
  }
  const Text word = t.Word(12);
  t << file->WriteLine(word.c_str()) << file->WriteLine(t.Word(5).c_str(), QXT("second"));
  CQXArray<CQXString, CQXString&> fields;
  t << file->ReadFields(fields, QXT(',')) << fields.GetSize() << file->WriteLine(fields, QXT(';')) << file->GetLineCount();
  CQXString line;
  t << file->FindLine(word.c_str()) << file->ReadLine(line) << line << file->FindAndReadLine(QXT("second"), line) << line;
  file->Close();
  QXV_DeleteTxtRW(file);
  TakeFile(t, name);
}

void Encodings(Trial& t) {
  t.Next();
  const Text name = t.File(QXT("encoded.txt"));
  CQXVUnicodeAnsiFile* file = QXV_ConstructUnicodeAnsiFile();
  file->Reset();
  t << file->Open(name.c_str(), t.Below(2), EQXV_TEXTFILE_WRITE | (t.Below(8) == 0 ? EQXV_TEXTFILE_TRUNCATE : 0u));
  file->WriteLine(t.Word(20).c_str());
  file->Close();
  TakeFile(t, name);
  t << file->Open(name.c_str(), t.Below(2), EQXV_TEXTFILE_READ | (t.Below(2) == 0 ? EQXV_TEXTFILE_ADOPT : 0u));
  CQXString line;
  for (int i = 0; i < 4; ++i) {
    t << file->ReadLine(line) << line;
  }
  t << file->Convert(t.File(QXT("converted.txt")).c_str());
  file->Close();
  QXV_DeleteUnicodeAnsiFile(file);
  TakeFile(t, name);
}

}  // namespace

void RunFiles(Trial& t) {
  for (int i = 0; i < 300; ++i) {
    Values(t);
    Lines(t);
    Encodings(t);
  }
}

}  // namespace parity
