// comma_locale.cpp - setting and taking back; the systems differ in where the locale comes from.

#include "support/comma_locale.h"

#include <clocale>
#include <cstring>

namespace support {

CommaLocale::CommaLocale() {
  Make();
  if (m_lacking.empty() && std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
    m_lacking = "the locale has no decimal comma";
  }
}

CommaLocale::~CommaLocale() { std::setlocale(LC_ALL, "C"); }

}  // namespace support
