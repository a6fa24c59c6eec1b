// unprivileged.h - tests run by root see what others see. Linux only.
#pragma once

namespace support {

/// While it lives, this process has the rights of nobody in particular if it is root's; others keep theirs.
class Unprivileged {
 public:
  Unprivileged();
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  ~Unprivileged();

 private:
  unsigned m_before;
};

}  // namespace support
