// limited_user.h - the rights of an ordinary user for a block: the superuser may enter and write everything. Linux only.
#pragma once

#include <unistd.h>

#include <stdexcept>

namespace support {

/// While it lives, a program of the superuser acts as nobody; others stay who they are.
class LimitedUser {
 public:
  LimitedUser() : m_wasSuperuser(::geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (m_wasSuperuser && ::seteuid(kNobody) != 0) {
      throw std::runtime_error("no other user to be");
    }
  }
  LimitedUser(const LimitedUser&) = delete;
  LimitedUser& operator=(const LimitedUser&) = delete;
  ~LimitedUser() {
    if (m_wasSuperuser) {
      (void)!::seteuid(0);
    }
  }

 private:
  bool m_wasSuperuser;
};

}  // namespace support
