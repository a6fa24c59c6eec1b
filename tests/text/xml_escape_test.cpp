// xml_escape_test.cpp - the vector form of copying and escaping beside the plain one.

#include "text/xml_escape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Text = std::basic_string<QXChar>;

constexpr QXChar kStops[] = {0, QXT('&'), QXT('<'), QXT('>'), QXT('\''), QXT('"')};
// Units that differ from a stop in one bit, or are a stop with something in their upper byte.
constexpr QXChar kOthers[] = {1,      2,      QXT('%'), QXT('#'), QXT(' '), QXT(':'), QXT('='), QXT('?'), QXT('~'),
                              0x0100, 0x2600, 0x8026,   0x8000,   0x803E,   0x013C,   0xFF22,   0xD800,   0xFFFF};

using Form = QXChar* (*)(const QXChar*&, QXChar*) noexcept;

QXChar* Vector(const QXChar*& text, QXChar* out) noexcept { return qxv::EscapeBlock(text, out); }

struct Result {
  Text written;
  std::ptrdiff_t read;
  bool operator==(const Result&) const = default;
};

// A buffer of just one block with its slot and words, so that a sanitizer sees a unit too much on either side.
Result Applied(Form form, const std::vector<QXChar>& buffer) {
  std::vector<QXChar> room(qxv::kXmlEscapeRoom);
  const QXChar* text = buffer.data();
  const QXChar* end = form(text, room.data());
  return {Text(static_cast<const QXChar*>(room.data()), end), text - buffer.data()};
}

std::vector<QXChar> Block(std::size_t length, QXChar fill) {
  std::vector<QXChar> buffer(qxv::kXmlEscapeBlock + 5);
  std::fill_n(buffer.begin(), length, fill);
  return buffer;
}

TEST(XmlEscape, EachStopAtEachPlaceOfEachLength) {
  for (std::size_t length = 0; length <= qxv::kXmlEscapeBlock; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      for (const QXChar stop : kStops) {
        std::vector<QXChar> buffer = Block(length, QXT('a'));
        buffer[at] = stop;
        ASSERT_EQ(Applied(Vector, buffer), Applied(qxv::EscapeBlockReference, buffer)) << length << ' ' << at << ' ' << int{stop};
      }
    }
  }
}

TEST(XmlEscape, OtherUnitsStandForThemselves) {
  for (const QXChar unit : kOthers) {
    for (const std::size_t length : {1u, 15u, 16u, 17u, 33u, 128u}) {
      const Result result = Applied(Vector, Block(length, unit));
      EXPECT_EQ(result.written, Text(length, unit)) << int{unit};
      EXPECT_EQ(result.read, static_cast<std::ptrdiff_t>(length));
    }
  }
}

TEST(XmlEscape, ABlockOfTheLongestEscapesFillsTheRoom) {
  const Result result = Applied(Vector, Block(qxv::kXmlEscapeBlock, QXT('"')));
  Text expected;
  for (std::size_t i = 0; i < qxv::kXmlEscapeBlock; ++i) {
    expected += QXT("&quot;");
  }
  EXPECT_EQ(result.written, expected);
  EXPECT_EQ(result.read, 128);
}

TEST(XmlEscape, TheFiveEscapes) {
  std::vector<QXChar> buffer = Block(0, 0);
  const Text text = QXT("a&b<c>d'e\"f");
  std::copy(text.begin(), text.end(), buffer.begin());
  const Text expected = QXT("a&amp;b&lt;c&gt;d&apos;e&quot;f");
  EXPECT_EQ(Applied(Vector, buffer).written, expected);
  EXPECT_EQ(Applied(qxv::EscapeBlockReference, buffer).written, expected);
}

}  // namespace
