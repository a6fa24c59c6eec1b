// code_page_text.h - conversions of whole strings that must succeed.
#pragma once

#include "os/code_page.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace code_page_text {

using support::Text;

struct Decoded {
  Text text;
  bool lost;
};

inline Decoded Decode(unsigned page, std::string_view bytes) {
  Decoded result{QXT("left as it was"), false};
  EXPECT_TRUE(qxv::os::MultiByteToWide(page, bytes, result.text, &result.lost)) << page;
  return result;
}

struct Encoded {
  std::string bytes;
  bool lost;
};

inline Encoded Encode(unsigned page, const Text& text) {
  Encoded result{"left as it was", false};
  EXPECT_TRUE(qxv::os::WideToMultiByte(page, text, result.bytes, &result.lost)) << page;
  return result;
}

}  // namespace code_page_text
