// md5_text.h - digests as texts.
#pragma once

#include "digest/md5.h"
#include "qxv/string.h"

namespace qxv {

/// 32 lower-case hexadecimal digits.
CQXString DigestText(const unsigned char (&digest)[kMd5DigestSize]);

}  // namespace qxv
