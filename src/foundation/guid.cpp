// guid.cpp - identifiers from the system, or from time, counter and the C library's random generator.

#include "qxv/guid.h"

#include "os/clock.h"
#include "os/lock.h"
#include "os/process.h"
#include "os/uuid.h"

#include <chrono>
#include <cstdlib>

namespace {

using qxv::os::Moment;

constexpr std::int64_t kLongestWaitMs = 10;

// One lock for the whole process; it guards the remembered times and the random generator's seed.
constinit qxv::os::RecursiveLock creationLock;

// The last time that a method used, so that the next call of the same method takes another one.
class StrictlyChangingTime {
 public:
  // The current time, or the remembered one plus a millisecond when the clock stands still for 10 ms.
  Moment Next() noexcept {
    const auto start = std::chrono::steady_clock::now();
    Moment now = qxv::os::ReadClock();
    while (now.seconds == m_last.seconds && now.milliseconds == m_last.milliseconds) {
      if (std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(kLongestWaitMs)) {
        now.milliseconds += 1;
        if (now.milliseconds == 1000) {
          now.milliseconds = 0;
          now.seconds += 1;
        }
        break;
      }
      qxv::os::YieldThread();
      now = qxv::os::ReadClock();
    }
    m_last = now;
    return now;
  }

 private:
  Moment m_last{0, -1};  // no time
};

constinit StrictlyChangingTime lastOfMilliseconds;
constinit StrictlyChangingTime lastOfSeconds;
constinit StrictlyChangingTime lastOfCounter;

void Seed(std::uint64_t value) noexcept { std::srand(static_cast<unsigned>(value)); }
void SeedByAddress(const void* address) noexcept { Seed(reinterpret_cast<std::uintptr_t>(address)); }

std::uint16_t Random16() noexcept { return static_cast<std::uint16_t>(std::rand()); }

void FillRandom(QX_GUID& id, int first, int last) noexcept {
  for (int i = first; i <= last; ++i) {
    id.Data4[i] = static_cast<std::uint8_t>(std::rand());
  }
}

// Data4[2] ... Data4[7]: three bytes after one seed, three after another.
void FillRandomTail(QX_GUID& id) noexcept {
  SeedByAddress(&id);
  FillRandom(id, 2, 4);
  const int onStack = 0;
  SeedByAddress(&onStack);
  FillRandom(id, 5, 7);
}

void FillTime(QX_GUID& id, const Moment& time) noexcept {
  id.Data1 = static_cast<std::uint32_t>(time.seconds);
  id.Data2 = static_cast<std::uint16_t>(time.milliseconds);
}

bool BySystem(QX_GUID& id) noexcept {
  GUID system = {};
  if (!qxv::os::CreateSystemGuid(system)) {
    return false;
  }
  id = {system.Data1, system.Data2, system.Data3, {}};
  for (int i = 0; i < 8; ++i) {
    id.Data4[i] = system.Data4[i];
  }
  return true;
}

QX_GUID ByRandom() noexcept {
  QX_GUID id = {};
  const std::int64_t seconds = qxv::os::ReadClock().seconds;
  id.Data1 = static_cast<std::uint32_t>(seconds);
  Seed(id.Data1);
  id.Data2 = Random16();
  SeedByAddress(&seconds);
  id.Data3 = Random16();
  FillRandomTail(id);
  return id;
}

QX_GUID ByMilliseconds() noexcept {
  QX_GUID id = {};
  const Moment time = lastOfMilliseconds.Next();
  id.Data1 = static_cast<std::uint32_t>(time.seconds * 1000 + time.milliseconds);
  Seed(static_cast<std::uint64_t>(time.seconds));
  id.Data2 = Random16();
  SeedByAddress(&time);
  id.Data3 = Random16();
  FillRandomTail(id);
  return id;
}

QX_GUID BySeconds() noexcept {
  QX_GUID id = {};
  const Moment time = lastOfSeconds.Next();
  FillTime(id, time);
  Seed(id.Data1);
  id.Data3 = Random16();
  FillRandomTail(id);
  return id;
}

// KEPT: the counter's high half seeds Data4[2] to Data4[4], so those bytes hardly change between identifiers.
//   Pinned by GuidKept.HighHalfOfTheCounterSeedsThreeBytes.
QX_GUID ByCounter() noexcept {
  QX_GUID id = {};
  FillTime(id, lastOfCounter.Next());
  const auto counter = static_cast<std::uint64_t>(qxv::os::ReadCounter());
  id.Data3 = static_cast<std::uint16_t>(counter);
  Seed(counter >> 32);
  FillRandom(id, 2, 4);
  Seed(counter & 0xFFFFFFFF);
  FillRandom(id, 5, 7);
  return id;
}

QX_GUID Create(EQXV_CREATEGUIDMETHOD method) noexcept {
  switch (method) {
    case EQXV_GUID_RANDOM:
      return ByRandom();
    case EQXV_GUID_MILLISECONDS:
      return ByMilliseconds();
    case EQXV_GUID_SECONDS:
      return BySeconds();
    default:
      return ByCounter();
  }
}

}  // namespace

QX_GUID QXVCoCreateGuid2(EQXV_CREATEGUIDMETHOD method) {
  const qxv::os::LockGuard guard(creationLock);
  QX_GUID id = {};
  if (method == EQXV_GUID_SYSTEM && BySystem(id)) {
    return id;
  }
  id = Create(method);  // also when the system has no identifier to give: never sixteen zeros
  id.Data4[0] = 'Q';    // the library's mark
  id.Data4[1] = 'X';
  return id;
}

CQXString QXVCoCreateGuidString2(EQXV_CREATEGUIDMETHOD method) {
  const QX_GUID id = QXVCoCreateGuid2(method);
  CQXString text;
  text.Format(QXT("%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X"), id.Data1, id.Data2, id.Data3, id.Data4[0], id.Data4[1],
              id.Data4[2], id.Data4[3], id.Data4[4], id.Data4[5], id.Data4[6], id.Data4[7]);
  return text;
}
