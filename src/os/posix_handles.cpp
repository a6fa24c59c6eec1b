// posix_handles.cpp - the table behind HANDLE on Linux.
// One slot a descriptor, so that slots need no search; no lock and no allocation, so that a fork or a late destructor cannot
// hurt. A handle holds the slot's generation: after the close no number in a caller's hand fits any more.

#include "os/posix_open.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace qxv::os {
namespace {

constexpr std::uint64_t kOpen = 1;
constexpr std::uint64_t kClosing = 2;
constexpr std::uint64_t kOneUser = 4;  // users: bits 2 to 31
constexpr std::uint64_t kUsers = 0xFFFFFFFC;
constexpr int kGenerationShift = 32;

constexpr int kSlots = 65536;
constexpr std::uintptr_t kMark = 2;  // no pointer of ours and not the invalid value

struct Slot {
  std::atomic<std::uint64_t> state{0};
  std::atomic<int> access{0};
};
Slot slots[kSlots];

std::uint64_t GenerationOf(HANDLE file) { return reinterpret_cast<std::uintptr_t>(file) >> 18 & 0xFFFFFFFF; }

Slot* SlotOf(HANDLE file, int& descriptor) {
  const auto number = reinterpret_cast<std::uintptr_t>(file);
  if (file == INVALID_HANDLE_VALUE || (number & 3) != kMark || number >> 50 != 0) {
    return nullptr;
  }
  descriptor = static_cast<int>(number >> 2 & (kSlots - 1));
  return &slots[descriptor];
}

bool Fits(std::uint64_t state, HANDLE file) {
  return (state & (kOpen | kClosing)) == kOpen && state >> kGenerationShift == GenerationOf(file);
}

ErrorCode CloseDescriptor(Slot& slot, int descriptor, std::uint64_t state) {
  slot.state.store(state >> kGenerationShift << kGenerationShift, std::memory_order_release);  // before the number is free again
  return ::close(descriptor) == 0 || errno == EINTR ? kErrorNone : LastError();
}

}  // namespace

HANDLE MakeHandle(int descriptor, FileAccess access) noexcept {
  if (descriptor < 0 || descriptor >= kSlots) {
    return INVALID_HANDLE_VALUE;
  }
  Slot& slot = slots[descriptor];
  const std::uint64_t old = slot.state.load(std::memory_order_acquire) >> kGenerationShift;
  const std::uint64_t generation = old == 0xFFFFFFFF ? 1 : old + 1;
  slot.access.store(static_cast<int>(access), std::memory_order_relaxed);
  slot.state.store(generation << kGenerationShift | kOpen, std::memory_order_release);
  const std::uint64_t number = generation << 18 | static_cast<std::uint64_t>(descriptor) << 2 | kMark;
  return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(number));
}

PinnedFile::PinnedFile(HANDLE file) noexcept {
  int descriptor = -1;
  Slot* slot = SlotOf(file, descriptor);
  if (slot == nullptr) {
    return;
  }
  std::uint64_t state = slot->state.load(std::memory_order_acquire);
  do {
    if (!Fits(state, file)) {
      return;
    }
  } while (!slot->state.compare_exchange_weak(state, state + kOneUser, std::memory_order_acq_rel, std::memory_order_acquire));
  m_descriptor = descriptor;
  m_access = static_cast<FileAccess>(slot->access.load(std::memory_order_relaxed));
}

PinnedFile::~PinnedFile() {
  if (m_descriptor < 0) {
    return;
  }
  const int error = errno;  // the caller may still ask
  Slot& slot = slots[m_descriptor];
  const std::uint64_t state = slot.state.fetch_sub(kOneUser, std::memory_order_acq_rel) - kOneUser;
  if ((state & kClosing) != 0 && (state & kUsers) == 0) {
    (void)CloseDescriptor(slot, m_descriptor, state);
  }
  errno = error;
}

ErrorCode CloseFile(HANDLE file) noexcept {
  int descriptor = -1;
  Slot* slot = SlotOf(file, descriptor);
  if (slot == nullptr) {
    return kErrorInvalidHandle;
  }
  std::uint64_t state = slot->state.load(std::memory_order_acquire);
  do {
    if (!Fits(state, file)) {
      return kErrorInvalidHandle;
    }
  } while (!slot->state.compare_exchange_weak(state, state | kClosing, std::memory_order_acq_rel, std::memory_order_acquire));
  if ((state & kUsers) != 0) {
    return kErrorNone;  // the last call that uses it closes
  }
  return CloseDescriptor(*slot, descriptor, state);
}

}  // namespace qxv::os
