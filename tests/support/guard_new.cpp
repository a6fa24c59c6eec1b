// guard_new.cpp - replaced allocation functions for test programs.
// An array block: [mapping ... | front word, magic | the caller's bytes][inaccessible page].
// A plain block: [size, magic | the caller's bytes] from malloc.

#include "support/guard_new.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define QXV_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QXV_SANITIZED 1
#endif
#endif

#if defined(_WIN32)
#include "os/win_api.h"
#else
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

std::atomic<std::size_t> liveArrays{0};
thread_local std::size_t allocationCount = 0;
thread_local std::size_t refusedIndex = SIZE_MAX;  // in allocationCount's terms
thread_local bool refusedOne = false;

constexpr std::size_t kMostBytes = std::size_t{1} << 38;  // a sanitizer ends the program where malloc would refuse

void CountOrRefuse() {
  if (allocationCount++ == refusedIndex) {
    refusedOne = true;
    throw std::bad_alloc();
  }
}

#if !defined(QXV_SANITIZED)

[[noreturn]] void Die(const char* what) {
  std::fprintf(stderr, "guard_new: %s\n", what);
  std::fflush(stderr);
  std::abort();
}

constexpr std::uint64_t kArrayMagic = 0x5155415244415252;
constexpr std::uint64_t kPlainMagic = 0x5155415244504c4e;
constexpr std::size_t kPage = 4096;

struct Front {  // the 16 bytes before every block; memcpy'd, a block of odd size starts at an odd address
  std::uint64_t size;
  std::uint64_t magic;
};
static_assert(sizeof(Front) == 16);

Front FrontOf(const void* block) {
  Front front{};
  std::memcpy(&front, static_cast<const unsigned char*>(block) - sizeof front, sizeof front);
  return front;
}

std::size_t MappedBytes(std::size_t size) {  // pages for front and block, without the inaccessible one
  return (size + sizeof(Front) + 16 + kPage - 1) / kPage * kPage;
}

std::size_t AlignmentOf(std::size_t size) {  // every element type whose array has this size is content with it
  std::size_t alignment = 1;
  while (alignment < 16 && size % (alignment * 2) == 0) {
    alignment *= 2;
  }
  return alignment;
}

std::size_t BlockOffset(std::size_t size) {  // from the start of the mapping
  return MappedBytes(size) - (size + AlignmentOf(size) - 1) / AlignmentOf(size) * AlignmentOf(size);
}

void* GuardedArray(std::size_t size) {
  if (size > kMostBytes) {
    throw std::bad_alloc();
  }
  const std::size_t mapped = MappedBytes(size);
#if defined(_WIN32)
  auto* mapping = static_cast<unsigned char*>(::VirtualAlloc(nullptr, mapped + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  DWORD old = 0;
  if (mapping == nullptr || !::VirtualProtect(mapping + mapped, kPage, PAGE_NOACCESS, &old)) {
    throw std::bad_alloc();
  }
#else
  void* raw = ::mmap(nullptr, mapped + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (raw == MAP_FAILED) {
    throw std::bad_alloc();
  }
  auto* mapping = static_cast<unsigned char*>(raw);
  if (::mprotect(mapping + mapped, kPage, PROT_NONE) != 0) {
    throw std::bad_alloc();
  }
#endif
  unsigned char* block = mapping + BlockOffset(size);
  const Front front{size, kArrayMagic};
  std::memcpy(block - sizeof front, &front, sizeof front);
  std::memset(block, 0xCD, size);  // never zero by luck
  return block;
}

void ReleaseGuardedArray(void* block) {
  const Front front = FrontOf(block);
  if (front.magic != kArrayMagic) {
    Die(front.magic == kPlainMagic ? "delete[] of a block from new"
                                   : "delete[] of a foreign block or of one written before its start");
  }
  const std::size_t mapped = MappedBytes(front.size);
  unsigned char* mapping = static_cast<unsigned char*>(block) - BlockOffset(front.size);
#if defined(_WIN32)
  (void)mapped;
  ::VirtualFree(mapping, 0, MEM_RELEASE);
#else
  ::munmap(mapping, mapped + kPage);
#endif
}

void* PlainBlock(std::size_t size) {
  if (size > kMostBytes) {
    throw std::bad_alloc();
  }
  auto* raw = static_cast<unsigned char*>(std::malloc(size + sizeof(Front)));
  if (raw == nullptr) {
    throw std::bad_alloc();
  }
  const Front front{size, kPlainMagic};
  std::memcpy(raw, &front, sizeof front);
  return raw + sizeof front;
}

void ReleasePlainBlock(void* block) {
  const Front front = FrontOf(block);
  if (front.magic != kPlainMagic) {
    Die(front.magic == kArrayMagic ? "delete of a block from new[]" : "delete of a foreign block");
  }
  std::free(static_cast<unsigned char*>(block) - sizeof front);
}

std::size_t SizeOf(const void* block) { return FrontOf(block).size; }

#else

void* GuardedArray(std::size_t size) {
  void* block = size > kMostBytes ? nullptr : std::malloc(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}
void ReleaseGuardedArray(void* block) { std::free(block); }
void* PlainBlock(std::size_t size) { return GuardedArray(size == 0 ? 1 : size); }
void ReleasePlainBlock(void* block) { std::free(block); }
std::size_t SizeOf(const void* block) { return ::malloc_usable_size(const_cast<void*>(block)); }  // exact under a sanitizer

#endif

}  // namespace

void* operator new(std::size_t size) {
  CountOrRefuse();
  return PlainBlock(size);
}

void* operator new[](std::size_t size) {
  CountOrRefuse();
  void* block = GuardedArray(size);
  ++liveArrays;
  return block;
}

// The forms that give null: a sanitizer's own would not pair with ours.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* block) noexcept {
  if (block != nullptr) {
    ReleasePlainBlock(block);
  }
}

void operator delete[](void* block) noexcept {
  if (block != nullptr) {
    --liveArrays;
    ReleaseGuardedArray(block);
  }
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete[](block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { operator delete(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { operator delete[](block); }

namespace support {

std::size_t AllocationSize(const void* arrayBlock) { return SizeOf(arrayBlock); }
std::size_t LiveArrays() { return liveArrays; }
std::size_t AllocationsOfThisThread() { return allocationCount; }

FailAllocation::FailAllocation(std::size_t index) noexcept {
  refusedOne = false;
  refusedIndex = allocationCount + index;
}
FailAllocation::~FailAllocation() { refusedIndex = SIZE_MAX; }
bool FailAllocation::Refused() const noexcept { return refusedOne; }

}  // namespace support
