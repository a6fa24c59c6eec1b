// uuid_test.cpp - identifiers made by the system.

#include "os/uuid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

namespace {

using namespace qxv::os;

std::string Image(const GUID& guid) { return std::string(reinterpret_cast<const char*>(&guid), sizeof guid); }

bool FillWithOnes(std::span<unsigned char> bytes) noexcept {
  std::fill(bytes.begin(), bytes.end(), static_cast<unsigned char>(0xFF));
  return true;
}

bool FailHalfWay(std::span<unsigned char> bytes) noexcept {
  bytes[0] = 1;
  return false;
}

TEST(Uuid, ThousandAreDifferentAndOfTheRandomLayout) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    GUID guid{};
    ASSERT_TRUE(CreateSystemGuid(guid));
    EXPECT_EQ(guid.Data3 >> 12, 4) << "version";
    EXPECT_EQ(guid.Data4[0] >> 6, 2) << "variant";
    seen.insert(Image(guid));
  }
  EXPECT_EQ(seen.size(), 1000u);
}

TEST(Uuid, OnlyVersionAndVariantAreFixed) {
  GUID guid{};
  ASSERT_TRUE(CreateRandomGuid(FillWithOnes, guid));
  EXPECT_EQ(guid.Data1, 0xFFFFFFFFu);
  EXPECT_EQ(guid.Data2, 0xFFFFu);
  EXPECT_EQ(guid.Data3, 0x4FFFu);
  EXPECT_EQ(guid.Data4[0], 0xBFu);
  EXPECT_EQ(guid.Data4[7], 0xFFu);
}

TEST(Uuid, WithoutRandomnessThereIsNone) {
  GUID guid{};
  guid.Data1 = 5;
  EXPECT_FALSE(CreateRandomGuid(FailHalfWay, guid));
  EXPECT_EQ(Image(guid), std::string(16, '\0'));
}

}  // namespace
