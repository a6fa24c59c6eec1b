// dictionary_scanner.cpp - the entries of a dictionary's text, one after another.

#include "text/dictionary_scanner.h"

namespace qxv {
namespace {

using os::TextView;

constexpr bool IsLineEnd(QXChar unit) noexcept { return unit == QXT('\r') || unit == QXT('\n'); }

// Places from at on; the size of the text when there is none.

std::size_t FindLineEnd(TextView text, std::size_t at) noexcept {
  while (at < text.size() && !IsLineEnd(text[at])) {
    ++at;
  }
  return at;
}

std::size_t FindBracketOrLineEnd(TextView text, std::size_t at) noexcept {
  while (at < text.size() && text[at] != QXT(']') && !IsLineEnd(text[at])) {
    ++at;
  }
  return at;
}

std::size_t SkipBlanks(TextView text, std::size_t at) noexcept {
  while (at < text.size() && text[at] == QXT(' ')) {
    ++at;
  }
  return at;
}

TextView Trimmed(TextView text) noexcept {
  text.remove_prefix(SkipBlanks(text, 0));
  while (!text.empty() && text.back() == QXT(' ')) {
    text.remove_suffix(1);
  }
  return text;
}

TextView UpToZero(TextView text) noexcept { return text.substr(0, text.find(QXChar(0))); }

}  // namespace

DictionaryStep DictionaryScanner::Finish() noexcept {
  m_cursor = m_text.size();
  return DictionaryStep::End;
}

DictionaryStep DictionaryScanner::Next(DictionaryEntry& entry) noexcept {
  const std::size_t open = m_text.find(QXT('['), m_cursor);
  if (open == TextView::npos) {
    return Finish();
  }
  const std::size_t close = FindBracketOrLineEnd(m_text, open + 1);
  if (close == m_text.size()) {
    return Finish();
  }
  m_cursor = close;
  if (m_text[close] != QXT(']')) {
    return DictionaryStep::Skip;
  }
  entry.key = UpToZero(Trimmed(m_text.substr(open + 1, close - open - 1)));
  // KEPT: a key that ends in an opening bracket is no key. Dictionaries rely on it to switch entries off.
  //   Pinned by DictionaryKept.AKeyThatEndsInAnOpeningBracketIsSkipped.
  if (entry.key.empty() || entry.key.back() == QXT('[')) {
    return DictionaryStep::Skip;
  }
  // KEPT: the search for the equals sign passes line ends, so a key alone on its line takes the value of the next line that has
  //   one. Pinned by DictionaryKept.AKeyAloneOnItsLineTakesTheNextValue.
  const std::size_t equals = m_text.find(QXT('='), m_cursor);
  if (equals == TextView::npos) {
    return Finish();
  }
  // KEPT: the first character of the value is not tested for a line end, so an equals sign with nothing behind it has the
  //   line end as its value: a carriage return, or a line feed with the whole next line. Pinned by
  //   DictionaryKept.AnEmptyValueIsTheCarriageReturn and DictionaryKept.AnEmptyValueBeforeALineFeedTakesTheNextLine.
  const std::size_t first = SkipBlanks(m_text, equals + 1);
  m_cursor = first < m_text.size() ? FindLineEnd(m_text, first + 1) : first;
  entry.value = UpToZero(m_text.substr(first, m_cursor - first));
  return DictionaryStep::Entry;
}

}  // namespace qxv
