// profile_text.cpp - the rules of initialisation files, on texts in memory.

#include "os/profile_text.h"

#include "os/c_runtime.h"
#include "os/code_page.h"

#include <algorithm>
#include <string_view>

namespace qxv::os {
namespace {

constexpr std::size_t kIntegerUnits = 29;  // the service reads an integer through a buffer of 30

constexpr bool IsLineEnd(QXChar unit) noexcept { return unit == QXT('\r') || unit == QXT('\n'); }

constexpr bool IsBlank(QXChar unit) noexcept {
  constexpr QXChar kEndOfText = 0x1A;  // ends text files of old
  return unit == QXT(' ') || (unit >= QXT('\t') && unit <= QXT('\r')) || unit == kEndOfText;
}

TextView Trimmed(TextView text) noexcept {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

TextView UpToZero(TextView text) noexcept { return text.substr(0, text.find(QXChar(0))); }

bool IsSameName(TextView a, TextView b) noexcept {
  return a.size() == b.size() && CompareTextNoCase(a.data(), b.data(), a.size()) == 0;
}

TextView WithoutQuotes(TextView value) noexcept {
  const bool quoted =
      value.size() > 1 && (value.front() == QXT('"') || value.front() == QXT('\'')) && value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The next line without its end; moves rest behind it.
TextView TakeLine(TextView& rest) noexcept {
  const auto end = std::find_if(rest.begin(), rest.end(), IsLineEnd);
  const auto length = static_cast<std::size_t>(end - rest.begin());
  const TextView line = rest.substr(0, length);
  rest.remove_prefix(std::min(length + 1, rest.size()));
  return line;
}

/// The name of the section that a trimmed line begins.
std::optional<TextView> SectionOf(TextView line) noexcept {
  if (line.front() != QXT('[')) {
    return std::nullopt;
  }
  const std::size_t close = line.rfind(QXT(']'));
  return close == TextView::npos ? std::nullopt : std::optional(UpToZero(Trimmed(line.substr(1, close - 1))));
}

int DigitOf(QXChar unit) noexcept {
  if (unit >= QXT('0') && unit <= QXT('9')) {
    return unit - QXT('0');
  }
  if (unit >= QXT('a') && unit <= QXT('f')) {
    return unit - QXT('a') + 10;
  }
  return unit >= QXT('A') && unit <= QXT('F') ? unit - QXT('A') + 10 : 16;
}

int TakeRadix(TextView& digits) noexcept {
  if (digits.size() < 2 || digits[0] != QXT('0')) {
    return 10;
  }
  const int radix = digits[1] == QXT('x') ? 16 : digits[1] == QXT('o') ? 8 : digits[1] == QXT('b') ? 2 : 10;
  digits.remove_prefix(radix != 10 ? 2 : 0);
  return radix;
}

}  // namespace

Text DecodeProfile(std::span<const unsigned char> bytes) {
  const std::string_view chars(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const bool bigEndian = chars.starts_with("\xFE\xFF");
  Text text;
  if (bigEndian || chars.starts_with("\xFF\xFE")) {
    for (std::size_t i = 2; i < bytes.size(); i += 2) {
      const unsigned first = bytes[i];
      const unsigned second = i + 1 < bytes.size() ? bytes[i + 1] : 0;
      text += static_cast<QXChar>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
  }
  const std::string_view mark = "\xEF\xBB\xBF";
  const bool utf8 = chars.starts_with(mark);
  if (!MultiByteToWide(utf8 ? kCodePageUtf8 : kCodePageAnsi, chars.substr(utf8 ? mark.size() : 0), text)) {
    return {};  // a system that lacks its own ANSI page
  }
  return text;
}

std::optional<TextView> FindProfileValue(TextView text, TextView section, TextView key) noexcept {
  section = Trimmed(section);
  key = Trimmed(key);
  bool inSection = section.empty();
  while (!text.empty()) {
    const TextView line = Trimmed(TakeLine(text));
    if (line.empty()) {
      continue;
    }
    if (const auto begun = SectionOf(line)) {
      if (inSection) {
        return std::nullopt;  // a second section of the name is not looked at
      }
      inSection = IsSameName(*begun, section);
      continue;
    }
    const std::size_t equals = line.find(QXT('='));
    if (inSection && IsSameName(UpToZero(Trimmed(line.substr(0, equals))), key)) {
      return equals == TextView::npos ? TextView() : WithoutQuotes(UpToZero(Trimmed(line.substr(equals + 1))));
    }
  }
  return std::nullopt;
}

std::int32_t ProfileInteger(TextView value) noexcept {
  TextView digits = value.substr(0, kIntegerUnits);
  while (!digits.empty() && digits.front() <= QXT(' ')) {
    digits.remove_prefix(1);
  }
  const bool negative = digits.starts_with(QXT('-'));
  if (negative || digits.starts_with(QXT('+'))) {
    digits.remove_prefix(1);
  }
  const int radix = TakeRadix(digits);
  std::uint32_t number = 0;
  for (; !digits.empty() && DigitOf(digits.front()) < radix; digits.remove_prefix(1)) {
    number = number * static_cast<std::uint32_t>(radix) + static_cast<std::uint32_t>(DigitOf(digits.front()));
  }
  return static_cast<std::int32_t>(negative ? 0 - number : number);
}

}  // namespace qxv::os
