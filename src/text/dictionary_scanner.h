// dictionary_scanner.h - the entries of a dictionary's text, one after another.
//
//   [key]=value CR LF        blanks are the space character only: those around the key and in front of the value do not count
#pragma once

#include "os/utf.h"

namespace qxv {

struct DictionaryEntry {
  os::TextView key;  // never empty
  os::TextView value;
};

enum class DictionaryStep {
  Entry,
  Skip,  // something in brackets that is no key
  End,
};

/// Keys and values lie in the text and end at their first zero.
class DictionaryScanner {
 public:
  explicit DictionaryScanner(os::TextView text) noexcept : m_text(text) {}

  DictionaryStep Next(DictionaryEntry& entry) noexcept;

 private:
  DictionaryStep Finish() noexcept;

  os::TextView m_text;
  std::size_t m_cursor = 0;
};

}  // namespace qxv
