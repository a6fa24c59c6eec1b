// comma_locale.h - a locale of the C library that writes numbers with a decimal comma, for the length of a block.
#pragma once

#include "support/temp_folder.h"

#include <string>

namespace support {

class CommaLocale {
 public:
  /// On Linux the locale is made by localedef first, for few machines have one.
  CommaLocale();
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  /// Back to "C".
  ~CommaLocale();

  /// Why there is none; empty when it is set.
  const std::string& Lacking() const { return m_lacking; }

 private:
  void Make();

  TempFolder m_folder;
  std::string m_lacking;
};

}  // namespace support
