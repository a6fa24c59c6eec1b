// registry_subject.cpp - writes one value of each type into a key, or prints what it reads from them.
//   registry_subject write|read key
// The key lies below HKEY_LOCAL_MACHINE. Printed: a line a value, its name and what it holds, or the code that reading gave.

#include "os/utf.h"
#include "qxv/registry.h"

#include <cstdio>
#include <string>

namespace {

using TextArray = CQXArray<CQXString, CQXString&>;

std::string Shown(int value) { return std::to_string(value); }
std::string Shown(const QXChar* text) { return qxv::os::Utf8FromText(text); }
std::string Shown(const CPoint& point) { return Shown(point.x) + "," + Shown(point.y); }
std::string Shown(const CRect& r) { return Shown(r.left) + "," + Shown(r.top) + "," + Shown(r.right) + "," + Shown(r.bottom); }

std::string Shown(const TextArray& texts) {
  std::string all;
  for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
    all += Shown(static_cast<const QXChar*>(texts[i])) + ";";
  }
  return all;
}

std::string Shown(const CWordArray& words) {
  std::string all;
  for (QXInt64 i = 0; i < words.GetSize(); ++i) {
    all += std::to_string(words[i]) + ";";
  }
  return all;
}

template <class Value>
void Print(CQXVRegister& key, const QXChar* name) {
  Value value{};
  const int code = key.Read(name, value);
  const std::string shown = code == 0 ? Shown(value) : "code " + std::to_string(static_cast<unsigned>(code));
  std::printf("%s=%s\n", Shown(name).c_str(), shown.c_str());
}

int Write(CQXVRegister& key) {
  TextArray texts;
  CQXString first(QXT("AB"));
  CQXString second(QXT("\u4E2D"));
  texts.Add(first);
  texts.Add(second);
  CWordArray words;
  words.Add(1);
  words.Add(65535);
  int failed = key.Write(QXT("Number"), -2);
  failed |= key.Write(QXT("Text"), CQXString(QXT("caf\u00E9")));
  failed |= key.Write(QXT("Texts"), texts);
  failed |= key.Write(QXT("Words"), words);
  failed |= key.Write(QXT("Point"), CPoint(3, -4));
  failed |= key.Write(QXT("Rectangle"), CRect(1, 2, 3, 4));
  return failed;
}

void Read(CQXVRegister& key) {
  Print<int>(key, QXT("Number"));
  Print<CQXString>(key, QXT("Text"));
  Print<TextArray>(key, QXT("Texts"));
  Print<CWordArray>(key, QXT("Words"));
  Print<CPoint>(key, QXT("Point"));
  Print<CRect>(key, QXT("Rectangle"));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: registry_subject write|read key\n", stderr);
    return 2;
  }
  CQXVRegister key;
  if (key.Create(HKEY_LOCAL_MACHINE, qxv::os::TextFromUtf8(argv[2]).c_str()) != 0) {
    return 1;
  }
  if (std::string(argv[1]) == "write") {
    return Write(key) == 0 ? 0 : 1;
  }
  Read(key);
  return 0;
}
