// debug_output_test.cpp - texts for the debugger.

#include "os/debug_output.h"

#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace qxv::os;
using support::Text;

struct Recorder : DebugSink {
  std::vector<Text> texts;
  void Write(const QXChar* text) noexcept override { texts.emplace_back(text); }
};

TEST(DebugOutput, ASinkGetsEachTextAsItStands) {
  Recorder outer, inner;
  {
    const ScopedDebugSink first(outer);
    WriteDebugText(QXT("one"));
    WriteDebugText(nullptr);
    {
      const ScopedDebugSink second(inner);
      WriteDebugText(QXT("\ntwo \u4E2D\n"));
    }
    WriteDebugText(Text(100000, QXT('x')).c_str());
  }
  ASSERT_EQ(outer.texts.size(), 3u);
  EXPECT_EQ(outer.texts[0], QXT("one"));
  EXPECT_EQ(outer.texts[1], QXT("")) << "null is an empty text";
  EXPECT_EQ(outer.texts[2].size(), 100000u) << "nothing is cut";
  ASSERT_EQ(inner.texts.size(), 1u);
  EXPECT_EQ(inner.texts[0], QXT("\ntwo \u4E2D\n"));
}

TEST(DebugOutput, TheSystemsChannelTakesAnything) {
  Recorder sink;
  { const ScopedDebugSink scoped(sink); }
  WriteDebugText(QXT("debug output of a test"));
  WriteDebugText(nullptr);
  EXPECT_TRUE(sink.texts.empty()) << "a sink that has gone gets nothing";
}

TEST(DebugOutput, WithoutMemoryNothingIsThrown) {
  for (std::size_t index = 0;; ++index) {
    const support::FailAllocation refuse(index);
    WriteDebugText(QXT("debug output of a test that is longer than what a string holds in itself"));
    if (!refuse.Refused()) {
      break;
    }
  }
}

}  // namespace
