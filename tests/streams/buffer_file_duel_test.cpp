// buffer_file_duel_test.cpp - random sequences of operations on CQXVBufferFileRW and on its model.

#include "support/buffer_file_duel.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

TEST(BufferFileRoundTrip, RandomOperationsAgreeWithTheModel) {
  const support::TempFolder folder;
  const support::Text name = folder.File(QXT("a.bin"));
  for (unsigned seed = 0; seed < 200; ++seed) {
    std::mt19937 random(seed);
    std::vector<unsigned char> script(1500);
    for (auto& byte : script) {
      // Small numbers often, so that counts in the file are sensible ones too.
      byte = static_cast<unsigned char>(random() % (random() % 4 == 0 ? 256 : 16));
    }
    script[0] = static_cast<unsigned char>(seed);
    ASSERT_EQ(streams_test::BufferFileDuel(script, name).Run(), "") << "seed " << seed;
  }
}

}  // namespace
