// fuzz_profile.cpp - initialisation files of any bytes. First the section and the key, each up to a zero, then the file.
// What must hold: the reader agrees with a plain one, which first takes the whole file apart into sections and keys.

#include "fuzz/fuzz_input.h"
#include "os/profile_text.h"

#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace {

using fuzz::Require;
using fuzz::Text;

struct Section {
  Text name;
  std::vector<std::pair<Text, Text>> values;
};

Text Trimmed(const Text& text) {
  const QXChar* const blanks = u" \t\n\v\f\r\x1A";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == Text::npos ? Text() : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

Text UpToZero(const Text& text) { return text.c_str(); }

Text Folded(Text text) {
  for (QXChar& unit : text) {
    unit = unit >= 'A' && unit <= 'Z' ? static_cast<QXChar>(unit + 32) : unit;
  }
  return text;
}

std::vector<Section> Parse(const Text& text) {
  std::vector<Section> sections(1);
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(u"\r\n", begin), text.size());
    const Text line = Trimmed(text.substr(begin, end - begin));
    begin = end + 1;
    if (line.empty()) {
      continue;
    }
    if (line[0] == '[' && line.find(']') != Text::npos) {
      sections.push_back({Folded(UpToZero(Trimmed(line.substr(1, line.rfind(']') - 1)))), {}});
      continue;
    }
    const std::size_t equals = std::min(line.find('='), line.size());
    const Text value = equals == line.size() ? Text() : line.substr(equals + 1);
    sections.back().values.emplace_back(Folded(UpToZero(Trimmed(line.substr(0, equals)))), UpToZero(Trimmed(value)));
  }
  return sections;
}

std::optional<Text> PlainValue(const Text& text, const Text& section, const Text& key) {
  for (const Section& candidate : Parse(text)) {
    if (candidate.name != Folded(Trimmed(section))) {
      continue;
    }
    for (const auto& [name, value] : candidate.values) {
      if (name == Folded(Trimmed(key))) {
        const bool quoted = value.size() > 1 && value[0] == value.back() && (value[0] == '"' || value[0] == '\'');
        return quoted ? value.substr(1, value.size() - 2) : value;
      }
    }
    return std::nullopt;
  }
  return std::nullopt;
}

std::int32_t PlainInteger(const Text& value) {
  Text digits = value.substr(0, 29);
  digits.erase(0, std::min(digits.size(), static_cast<std::size_t>(std::find_if(digits.begin(), digits.end(),
                                                                                [](QXChar unit) { return unit > 0x20; }) -
                                                                   digits.begin())));
  std::string narrow;
  for (const QXChar unit : digits) {
    narrow += unit < 0x80 ? static_cast<char>(unit) : '?';
  }
  const bool signedNumber = !narrow.empty() && (narrow[0] == '-' || narrow[0] == '+');
  const bool negative = signedNumber && narrow[0] == '-';
  narrow.erase(0, signedNumber ? 1 : 0);
  unsigned radix = 10;
  for (const auto& [prefix, of] : {std::pair("0x", 16u), std::pair("0o", 8u), std::pair("0b", 2u)}) {
    if (radix == 10 && narrow.starts_with(prefix)) {
      radix = of;
      narrow.erase(0, 2);
    }
  }
  const std::string known = std::string("0123456789abcdef").substr(0, radix);
  std::uint64_t number = 0;
  for (const char unit : narrow) {
    const std::size_t digit = known.find(unit >= 'A' && unit <= 'F' ? static_cast<char>(unit + 32) : unit);
    if (digit == std::string::npos) {
      break;
    }
    number = (number * radix + digit) % (std::uint64_t{1} << 32);
  }
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(negative ? (std::uint64_t{1} << 32) - number : number));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const Text section = input.TextUpToZero();
  const Text key = input.TextUpToZero();
  const std::string bytes = input.Bytes(size);
  const Text text = qxv::os::DecodeProfile({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
  const std::unique_ptr<QXChar[]> exact(new QXChar[text.size()]);
  std::copy(text.begin(), text.end(), exact.get());
  const auto value = qxv::os::FindProfileValue({exact.get(), text.size()}, section, key);
  const auto expected = PlainValue(text, section, key);
  Require(value.has_value() == expected.has_value() && (!value || *value == *expected));
  if (value) {
    Require(qxv::os::ProfileInteger(*value) == PlainInteger(*expected));
  }
  Require(qxv::os::ProfileInteger({exact.get(), text.size()}) == PlainInteger(text));
  return 0;
}
