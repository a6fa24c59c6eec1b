// guid_test.cpp - identifiers: marks, strictly changing times, text form, clocks that stand still or go back.

#include "qxv/guid.h"

#include "os/clock.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr EQXV_CREATEGUIDMETHOD kMarked[] = {EQXV_GUID_RANDOM, EQXV_GUID_MILLISECONDS, EQXV_GUID_SECONDS, EQXV_GUID_COUNTER};

// A clock that the test sets; each reading moves it by step milliseconds.
class SetClock : public qxv::os::ClockSource {
 public:
  qxv::os::Moment Now() noexcept override {
    const qxv::os::Moment now = moment;
    moment.milliseconds += step;
    return now;
  }
  SYSTEMTIME LocalTime() noexcept override { return {}; }
  std::int64_t Counter() noexcept override { return counter; }

  qxv::os::Moment moment{1700000000, 123};  // 2023-11-14
  std::int32_t step = 0;
  std::int64_t counter = 0x12345678'9ABCDEF0;
};

std::string BytesOf(const QX_GUID& id) { return {reinterpret_cast<const char*>(&id), sizeof id}; }

TEST(Guid, HasTheSystemsLayout) {
  EXPECT_EQ(sizeof(QX_GUID), 16u);
  EXPECT_EQ(offsetof(QX_GUID, Data2), 4u);
  EXPECT_EQ(offsetof(QX_GUID, Data3), 6u);
  EXPECT_EQ(offsetof(QX_GUID, Data4), 8u);
}

TEST(Guid, EveryMethodButTheSystemsCarriesTheMark) {
  for (const auto method : kMarked) {
    for (int i = 0; i < 20; ++i) {
      const QX_GUID id = QXVCoCreateGuid2(method);
      EXPECT_EQ(id.Data4[0], 'Q') << method;
      EXPECT_EQ(id.Data4[1], 'X') << method;
    }
  }
}

TEST(Guid, SystemIdentifiersAreDifferentAndOfVersion4) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const QX_GUID id = QXVCoCreateGuid2(EQXV_GUID_SYSTEM);
    EXPECT_EQ(id.Data3 >> 12, 4);
    EXPECT_EQ(id.Data4[0] & 0xC0, 0x80);
    EXPECT_TRUE(seen.insert(BytesOf(id)).second);
  }
}

TEST(Guid, TwoInARowByMillisecondsDifferInTheirFirstField) {
  for (int i = 0; i < 50; ++i) {
    const QX_GUID first = QXVCoCreateGuid2(EQXV_GUID_MILLISECONDS);
    const QX_GUID second = QXVCoCreateGuid2(EQXV_GUID_MILLISECONDS);
    ASSERT_NE(first.Data1, second.Data1);
  }
}

TEST(Guid, TwoInARowBySecondsOrCounterDifferInTheirTime) {
  for (const auto method : {EQXV_GUID_SECONDS, EQXV_GUID_COUNTER}) {
    for (int i = 0; i < 20; ++i) {
      const QX_GUID first = QXVCoCreateGuid2(method);
      const QX_GUID second = QXVCoCreateGuid2(method);
      ASSERT_TRUE(first.Data1 != second.Data1 || first.Data2 != second.Data2) << method;
    }
  }
}

TEST(Guid, FieldsHoldTheTime) {
  SetClock clock;
  const qxv::os::ScopedClock scoped(clock);
  clock.step = 1;
  const std::uint32_t seconds = 1700000000;
  EXPECT_EQ(QXVCoCreateGuid2(EQXV_GUID_RANDOM).Data1, seconds);
  clock.moment = {1700000000, 200};
  EXPECT_EQ(QXVCoCreateGuid2(EQXV_GUID_MILLISECONDS).Data1, 0xCFE568C8u);  // 1700000000200 modulo 2^32
  clock.moment = {1700000000, 300};
  for (const auto method : {EQXV_GUID_SECONDS, EQXV_GUID_COUNTER}) {
    clock.moment = {1700000000, 300};
    const QX_GUID id = QXVCoCreateGuid2(method);
    EXPECT_EQ(id.Data1, seconds) << method;
    EXPECT_EQ(id.Data2, 300) << method;
  }
  clock.moment = {1700000000, 400};
  EXPECT_EQ(QXVCoCreateGuid2(EQXV_GUID_COUNTER).Data3, 0xDEF0);
}

TEST(Guid, RandomFieldsComeFromTheCLibrarysGenerator) {
  SetClock clock;
  const qxv::os::ScopedClock scoped(clock);
  const QX_GUID random = QXVCoCreateGuid2(EQXV_GUID_RANDOM);
  std::srand(1700000000u);
  EXPECT_EQ(random.Data2, static_cast<std::uint16_t>(std::rand()));
  clock.step = 1;
  const QX_GUID seconds = QXVCoCreateGuid2(EQXV_GUID_SECONDS);
  std::srand(1700000000u);
  EXPECT_EQ(seconds.Data3, static_cast<std::uint16_t>(std::rand()));
}

TEST(Guid, AClockThatStandsStillStillGivesChangingTimes) {
  SetClock clock;
  clock.moment = {1700000000, 998};
  const qxv::os::ScopedClock scoped(clock);
  const auto start = std::chrono::steady_clock::now();
  for (const auto method : {EQXV_GUID_SECONDS, EQXV_GUID_COUNTER}) {
    const QX_GUID first = QXVCoCreateGuid2(method);
    const QX_GUID second = QXVCoCreateGuid2(method);
    EXPECT_EQ(first.Data2, 998) << method;
    EXPECT_EQ(second.Data1, 1700000000u) << method;
    EXPECT_EQ(second.Data2, 999) << method;
    clock.moment = {1700000000, 999};
    const QX_GUID third = QXVCoCreateGuid2(method);
    EXPECT_EQ(third.Data1, 1700000001u) << method;
    EXPECT_EQ(third.Data2, 0) << method;
    clock.moment = {1700000000, 998};
  }
  const QX_GUID first = QXVCoCreateGuid2(EQXV_GUID_MILLISECONDS);
  const QX_GUID second = QXVCoCreateGuid2(EQXV_GUID_MILLISECONDS);
  EXPECT_EQ(second.Data1, first.Data1 + 1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << "five waits of 10 ms and a slow machine";
}

TEST(Guid, AClockThatGoesBackIsTakenAsItIs) {
  SetClock clock;
  const qxv::os::ScopedClock scoped(clock);
  EXPECT_EQ(QXVCoCreateGuid2(EQXV_GUID_SECONDS).Data2, 123);
  clock.moment = {1600000000, 5};
  const QX_GUID id = QXVCoCreateGuid2(EQXV_GUID_SECONDS);
  EXPECT_EQ(id.Data1, 1600000000u);
  EXPECT_EQ(id.Data2, 5);
}

TEST(Guid, MethodsOutsideTheListCountAsTheCounterMethod) {
  SetClock clock;
  const qxv::os::ScopedClock scoped(clock);
  clock.step = 1;
  for (const int method : {5, 1000, -1, -2147483647 - 1}) {
    const QX_GUID id = QXVCoCreateGuid2(static_cast<EQXV_CREATEGUIDMETHOD>(method));
    EXPECT_EQ(id.Data3, 0xDEF0) << method;
    EXPECT_EQ(id.Data4[0], 'Q') << method;
  }
}

TEST(Guid, TextFormIs36UpperCaseCharactersWithFourHyphens) {
  for (int method = 0; method <= 4; ++method) {
    const support::Text text = support::TextOf(QXVCoCreateGuidString2(static_cast<EQXV_CREATEGUIDMETHOD>(method)));
    ASSERT_EQ(text.size(), 36u) << method;
    for (std::size_t i = 0; i < 36; ++i) {
      if (i == 8 || i == 13 || i == 18 || i == 23) {
        EXPECT_EQ(text[i], '-') << method << " at " << i;
      } else {
        EXPECT_TRUE((text[i] >= '0' && text[i] <= '9') || (text[i] >= 'A' && text[i] <= 'F')) << method << " at " << i;
      }
    }
    if (method != 0) {
      EXPECT_EQ(text.substr(19, 4), QXT("5158")) << "the mark, " << method;
    }
  }
}

TEST(Guid, TextFormShowsTheFieldsInOrder) {
  SetClock clock;
  clock.moment = {0x0123ABCD, 0x0ABC % 1000};
  clock.counter = 0x00000000'0000BEEF;
  const qxv::os::ScopedClock scoped(clock);
  const support::Text text = support::TextOf(QXVCoCreateGuidString2(EQXV_GUID_COUNTER));
  EXPECT_EQ(text.substr(0, 24), QXT("0123ABCD-02EC-BEEF-5158-"));  // 0x0ABC % 1000 = 748 = 0x2EC
}

TEST(Guid, ThreadsNeverShareATime) {
  std::mutex mutex;
  std::set<std::pair<std::uint32_t, std::uint16_t>> seen;
  std::vector<std::thread> threads;
  int clashes = 0;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 25; ++i) {
        const QX_GUID id = QXVCoCreateGuid2(EQXV_GUID_SECONDS);
        const std::lock_guard<std::mutex> lock(mutex);
        clashes += seen.insert({id.Data1, id.Data2}).second ? 0 : 1;
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(clashes, 0);
  EXPECT_EQ(seen.size(), 100u);
}

TEST(GuidKept, HighHalfOfTheCounterSeedsThreeBytes) {
  SetClock clock;
  clock.step = 1;
  const qxv::os::ScopedClock scoped(clock);
  const QX_GUID first = QXVCoCreateGuid2(EQXV_GUID_COUNTER);
  clock.counter += 1;
  const QX_GUID second = QXVCoCreateGuid2(EQXV_GUID_COUNTER);
  EXPECT_EQ(std::memcmp(first.Data4 + 2, second.Data4 + 2, 3), 0);
  std::srand(0x12345678u);
  EXPECT_EQ(first.Data4[2], static_cast<std::uint8_t>(std::rand()));
  std::srand(0x9ABCDEF0u);
  EXPECT_EQ(first.Data4[5], static_cast<std::uint8_t>(std::rand()));
}

}  // namespace
