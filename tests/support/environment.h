// environment.h - an environment variable for the length of a block. Linux only.
#pragma once

#include <cstdlib>
#include <string>

namespace support {

class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : m_name(name) {
    if (const char* before = std::getenv(name)) {
      m_before = before;
      m_had = true;
    }
    ::setenv(name, value.c_str(), 1 /*overwrite*/);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() {
    if (m_had) {
      ::setenv(m_name, m_before.c_str(), 1 /*overwrite*/);
    } else {
      ::unsetenv(m_name);
    }
  }

 private:
  const char* m_name;
  std::string m_before;
  bool m_had = false;
};

}  // namespace support
