// frame_copy_test.cpp - a frame on its canvas.

#include "image/frame_copy.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

// Two rows of two pixels of 3 bytes, 2 bytes between the rows that must never be seen. Top row "AAABBB", bottom row "CCCDDD".
const std::string kFrame = "CCCDDD!!AAABBB!!";

std::string Place(std::int64_t left, std::int64_t top, std::size_t width, std::size_t height) {
  const std::unique_ptr<unsigned char[]> canvas(new unsigned char[width * height * 3]);  // guarded; filled with what it may be
  const qxv::FrameView frame{reinterpret_cast<const unsigned char*>(kFrame.data()), 8, 2, 2};
  qxv::PlaceFrame(frame, {left, top}, width, height, 3, canvas.get());
  std::string text(reinterpret_cast<const char*>(canvas.get()), width * height * 3);
  for (char& byte : text) {
    byte = byte == '\0' ? '.' : byte;
  }
  return text;
}

TEST(PlaceFrame, TurnsTheRowsAndLeavesOutTheBytesBetweenThem) { EXPECT_EQ(Place(0, 0, 2, 2), "AAABBBCCCDDD"); }

TEST(PlaceFrame, SurroundsASmallerFrameWithZeros) {
  EXPECT_EQ(Place(1, 1, 4, 4),
            "............"
            "...AAABBB..."
            "...CCCDDD..."
            "............");
}

TEST(PlaceFrame, CutsWhatReachesOutOfTheCanvas) {
  EXPECT_EQ(Place(1, 1, 2, 2), ".........AAA");
  EXPECT_EQ(Place(-1, -1, 2, 2), "DDD.........");
  EXPECT_EQ(Place(0, 0, 1, 1), "AAA");
  EXPECT_EQ(Place(-1, 0, 1, 3), "BBBDDD...");
}

TEST(PlaceFrame, LeavesACanvasEmptyThatTheFrameDoesNotTouch) {
  constexpr std::int64_t kFar = std::int64_t{1} << 62;
  for (const auto& [left, top] : {std::pair<std::int64_t, std::int64_t>{2, 0},
                                  {0, 2},
                                  {-2, 0},
                                  {0, -2},
                                  {kFar, 0},
                                  {0, -kFar},
                                  {65535, 65535},
                                  {INT32_MIN, INT32_MIN}}) {
    EXPECT_EQ(Place(left, top, 2, 2), "............") << left << " " << top;
  }
}

}  // namespace
