// unprivileged_posix.cpp - the effective user of the process.

#include "support/unprivileged.h"

#include <unistd.h>

namespace support {

constexpr uid_t kNobody = 65534;

Unprivileged::Unprivileged() : m_before(::geteuid()) {
  if (m_before == 0) {
    (void)!::seteuid(kNobody);
  }
}

Unprivileged::~Unprivileged() { (void)!::seteuid(m_before); }

}  // namespace support
