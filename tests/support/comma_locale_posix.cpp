// comma_locale_posix.cpp - German, compiled by localedef into a folder of our own.

#include "support/comma_locale.h"
#include "support/environment.h"

#include <clocale>
#include <cstdlib>

namespace support {

void CommaLocale::Make() {
  const std::string folder = m_folder.Native().string();
  const std::string command = "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >'" + folder + "/log' 2>&1";
  if (std::system(command.c_str()) != 0) {  // NOLINT(cert-env33-c): a test's own command
    m_lacking = "localedef cannot make de_DE.UTF-8 (package locales)";
    return;
  }
  const ScopedVariable path("LOCPATH", folder);
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    m_lacking = "the C library does not take the locale that localedef made";
  }
}

}  // namespace support
