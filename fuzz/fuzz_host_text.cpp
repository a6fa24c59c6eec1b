// fuzz_host_text.cpp - hosts, addresses, forms and prefixes over texts of any units, against the same rules written out plainly.

#include "netpath/host_text.h"

#include "fuzz/fuzz_input.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using fuzz::Text;

QXChar Lower(QXChar unit) {
  const bool upper = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
  return upper ? static_cast<QXChar>(unit + 32) : unit;
}

Text Lowered(Text text) {
  for (QXChar& unit : text) {
    unit = Lower(unit);
  }
  return text;
}

// Four components between three points, each of digits whose value, however many they are, is at most 255.
bool IsAddressPlainly(const Text& host) {
  std::vector<Text> parts(1);
  for (const QXChar unit : host) {
    if (unit == u'.') {
      parts.emplace_back();
    } else if (unit >= u'0' && unit <= u'9') {
      parts.back() += unit;
    } else {
      return false;
    }
  }
  if (host.size() < 7 || host.back() == u'.' || parts.size() != 4) {
    return false;
  }
  for (Text part : parts) {
    while (!part.empty() && part.front() == u'0') {
      part.erase(0, 1);
    }
    if (part.size() > 3 || (part.size() == 3 && part > u"255")) {
      return false;
    }
  }
  return true;
}

void CheckPair(const Text& path, const Text& field) {
  const bool begins = !field.empty() && path.size() >= field.size() && Lowered(path.substr(0, field.size())) == Lowered(field);
  const Text behind = begins ? path.substr(field.size()) : Text();
  const bool expected = begins && (behind.empty() || behind[0] == u'\\');
  qxv::os::TextView rest = u"before";
  Require(qxv::MatchPrefix(path, field, rest) == expected);
  Require(Text(rest) == (expected ? behind : Text(u"before")));
  Require(qxv::EqualsFolded(path, field) == (Lowered(path) == Lowered(field)));
}

void CheckText(const Text& text) {
  Require(qxv::IsDottedAddress(text) == IsAddressPlainly(text));
  Require(!qxv::IsLoopbackAddress(text) || qxv::IsDottedAddress(text));
  Require(qxv::IsNetworkForm(text) == (text.find(u"\\\\") != Text::npos || Lowered(text.substr(0, 6)) == u"local\\"));
  const Text start = text.substr(0, 2);
  Require(start + Text(qxv::HostOf(text)) + Text(qxv::BehindHost(text)) == text);
  Require(qxv::HostOf(text).find(u'\\') == Text::npos);
  Require(qxv::BehindHost(text).empty() || qxv::BehindHost(text)[0] == u'\\');
  Require(qxv::LowerCase(text) == Lowered(text) && qxv::LowerCase(qxv::UpperCase(text)) == Lowered(text));
  const Text bare(qxv::WithoutBlanks(text));
  Require(text.find(bare) != Text::npos && Text(qxv::WithoutBlanks(bare)) == bare);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const Text first = input.TextUpToZero();
  const Text second = input.TextUpToZero();
  CheckText(first);
  CheckText(second);
  CheckPair(first, second);
  CheckPair(first + second, first);
  CheckPair(first + u"\\" + second, Lowered(first));
  return 0;
}
