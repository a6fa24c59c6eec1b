// settings.cpp - the registry, initialisation files, dictionaries.

#include "parity/trial.h"

#include "qxv/dictionary.h"
#include "qxv/profile.h"
#include "qxv/registry.h"

namespace parity {

namespace {

constexpr const QXChar* kKey = QXT("Software\\QXVParity");

template <class List, class Element>
void Fill(Trial& t, List& list, Element (*make)(Trial&)) {
  for (int i = t.Below(8); i > 0; --i) {
    list.Add(make(t));
  }
}

template <class Value>
void ThereAndBack(Trial& t, CQXVRegister& key, const Value& value, Value& back) {
  t << key.Write(QXT("value"), value) << key.Read(QXT("value"), back);
}

template <class List>
void TakeList(Trial& t, const List& list) {
  t << list.GetSize();
  for (QXInt64 i = 0; i < list.GetSize(); ++i) {
    t << list.GetAt(i);
  }
}

void Scalars(Trial& t, CQXVRegister& key) {
  int whole = 0;
  ThereAndBack(t, key, t.Whole(), whole);
  unsigned positive = 0;
  ThereAndBack(t, key, static_cast<unsigned>(t.Whole()), positive);
  CQXString text;
  ThereAndBack(t, key, CQXString(t.Word(20).c_str()), text);
  CString other;
  ThereAndBack(t, key, CString(t.Word(20).c_str()), other);
  CPoint point;
  ThereAndBack(t, key, CPoint(t.Whole(), 5), point);
  CRect rect;
  ThereAndBack(t, key, CRect(1, t.Whole(), 3, 4), rect);
  t << whole << positive << text << other << point.x << rect.top;
  t << key.Read(QXT("value"), whole) << key.Read(QXT("nothing"), text) << key.DeleteValue(QXT("value"))
    << key.DeleteValue(QXT("value"));
}

void Lists(Trial& t, CQXVRegister& key) {
  CStringArray texts;
  Fill<CStringArray, CString>(t, texts, [](Trial& from) { return CString(from.Word(8).c_str()); });
  CStringArray textsBack;
  ThereAndBack(t, key, texts, textsBack);
  TakeList(t, textsBack);
  CStringList list;
  t << key.Read(QXT("value"), list) << list.GetCount() << key.Write(QXT("value"), list);
  CQXArray<CQXString, CQXString&> ours;
  t << key.Read(QXT("value"), ours) << ours.GetSize() << key.Write(QXT("value"), ours);
  CDWordArray wide;
  Fill<CDWordArray, DWORD>(t, wide, [](Trial& from) { return static_cast<DWORD>(from.Bits()); });
  CDWordArray wideBack;
  ThereAndBack(t, key, wide, wideBack);
  TakeList(t, wideBack);
  CWordArray words;
  t << key.Read(QXT("value"), words);
  TakeList(t, words);
  t << key.Write(QXT("value"), words);
  CByteArray bytes;
  t << key.Read(QXT("value"), bytes);
  TakeList(t, bytes);
  t << key.Write(QXT("value"), bytes) << key.DeleteValue(QXT("value"));
}

void Registry(Trial& t) {
  t.Next();
  CQXVRegister key;
  t << key.Create(HKEY_LOCAL_MACHINE, kKey);
  Scalars(t, key);
  Lists(t, key);
  const CQXVRegister copy(key);
  CQXVRegister other;
  other = copy;
  t << other.Close() << key.Close() << key.Open(HKEY_LOCAL_MACHINE, kKey)
    << key.Open(HKEY_LOCAL_MACHINE, QXT("Software\\None\\x"));
  int value = t.Whole();
  t << QXVSetRegIntValue(HKEY_LOCAL_MACHINE, kKey, QXT("i"), value)
    << QXVGetRegIntValue(HKEY_LOCAL_MACHINE, kKey, QXT("i"), value) << value;
  CQXString text;
  t << QXVSetRegStringValue(HKEY_LOCAL_MACHINE, kKey, QXT("s"), t.Word(9).c_str())
    << QXVGetRegStringValue(HKEY_LOCAL_MACHINE, kKey, QXT("s"), text) << text;
}

void WriteFile(const Text& name, const std::string& bytes) {
  CFile file(name.c_str(), CFile::modeCreate | CFile::modeWrite);
  file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
}

// Lines of what these formats are made of, in ASCII.
std::string Lines(Trial& t) {
  static const char* const kSome[] = {"[s]", "[a]", "k",  "a",    "=",    "=",    " ",  "\"", "'",
                                      ";",   "12",  "-7", "0x1F", "\r\n", "\r\n", "\n", "]",  "["};
  std::string text;
  for (int i = t.Below(40); i > 0; --i) {
    text += kSome[t.Below(18)];
  }
  return text;
}

void Profiles(Trial& t) {
  t.Next();
  const Text name = t.File(QXT("settings.ini"));
  WriteFile(name, "[s]\r\nk=" + Lines(t) + "\r\n[a]\r\na=" + Lines(t));
  CQXString value(QXT("before"));
  int number = 5;
  t << QXVGetPrivateStringValue(name.c_str(), QXT("s"), QXT("k"), value) << value;
  t << QXVGetPrivateStringValue(name.c_str(), QXT("a"), QXT("a"), value) << value;
  t << QXVGetPrivateIntValue(name.c_str(), QXT("s"), QXT("k"), number) << number;
  t << QXVGetPrivateIntValue(name.c_str(), QXT("a"), QXT("a"), number) << number;
}

void Dictionaries(Trial& t) {
  t.Next();
  WriteFile(t.File(QXT("one.ini")),
            "[DICTIONARY_MAINID]=" + std::to_string(t.Below(3)) + "\r\n[a]=" + Lines(t) + "\r\n[k]=" + Lines(t));
  t << QXVLoadDictionarys(t.Folder().c_str());
  t << QXVTranslate(QXT("a"), 0) << QXVTranslate(QXT("k"), static_cast<unsigned>(t.Below(3)))
    << QXVTranslate(QXT("missing"), QXT("default"), 0);
  CQXArray<CQXString, CQXString&> missing;
  t << QXVGetMissingTexts(missing) << missing.GetSize();
  QXVReleaseDictionarys();
}

}  // namespace

void RunSettings(Trial& t) {
  for (int i = 0; i < 30; ++i) {
    Registry(t);
  }
  for (int i = 0; i < 200; ++i) {
    Profiles(t);
  }
  for (int i = 0; i < 200; ++i) {
    Dictionaries(t);
  }
}

}  // namespace parity
