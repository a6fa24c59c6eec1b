// identity.cpp - the replaceable source.

#include "os/identity.h"

#include <atomic>

namespace qxv::os {
namespace {

std::atomic<IdentitySource*> currentSource{nullptr};

}  // namespace

IdentitySource& Identity() noexcept {
  IdentitySource* const source = currentSource.load(std::memory_order_acquire);
  return source != nullptr ? *source : SystemIdentity();
}

ScopedIdentity::ScopedIdentity(IdentitySource& source) noexcept : m_before(currentSource.exchange(&source)) {}
ScopedIdentity::~ScopedIdentity() { currentSource.store(m_before); }

}  // namespace qxv::os
