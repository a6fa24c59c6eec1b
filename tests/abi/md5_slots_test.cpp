// md5_slots_test.cpp - the order of the virtual functions of the digest, and the fields behind it, frozen.

#include "qxv/md5.h"

#include "abi/slots.h"
#include "digest/md5_context.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

using abi_test::SlotOf;

TEST(Md5Slots, DigestFunctionsStandInTheirOrder) {
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::Initialize), 1);
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::Update), 2);
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::Final), 3);
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::GetFinalString), 4);
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::SaveContext), 5);
  EXPECT_EQ(SlotOf(&CQXVMD5Ctx::GetContextValue), 6);
}

static_assert(sizeof(CQXVMD5Ctx) == sizeof(void*));

TEST(Md5Slots, TheFieldsStandInTheirOrder) {
  struct Fields {
    void* table;
    std::uint32_t state[4];
    std::uint32_t bitCount[2];
    unsigned char block[64];
    unsigned char padding[64];
    int interruption;
    void* path;
    HANDLE file;
    unsigned char* record;
    std::uint32_t recordSize;
    QXUInt64 resumeValue;
  } fields;
  static_assert(sizeof fields == 208 && sizeof(CQXVMD5CtxImpl) == sizeof fields);
  CQXVMD5CtxImpl context;
  context.Update(reinterpret_cast<const unsigned char*>("abc"), 3);
  std::memcpy(&fields, static_cast<const void*>(&context), sizeof fields);
  EXPECT_EQ(fields.state[0], 0x67452301u);
  EXPECT_EQ(fields.state[3], 0x10325476u);
  EXPECT_EQ(fields.bitCount[0], 24u);
  EXPECT_EQ(std::memcmp(fields.block, "abc", 4), 0);
  EXPECT_EQ(fields.padding[0], 0x80);
  EXPECT_EQ(fields.padding[63], 0);
  EXPECT_EQ(fields.interruption, 0);
  EXPECT_EQ(fields.file, INVALID_HANDLE_VALUE);
  EXPECT_NE(fields.record, nullptr);
  EXPECT_EQ(fields.recordSize, 96u);
  EXPECT_EQ(fields.resumeValue, 0u);
}

}  // namespace
