// comma_locale_win.cpp - German as the run-time names it.

#include "support/comma_locale.h"

#include <clocale>

namespace support {

void CommaLocale::Make() {
  if (std::setlocale(LC_ALL, "German_Germany") == nullptr) {
    m_lacking = "the run-time does not know German_Germany";
  }
}

}  // namespace support
