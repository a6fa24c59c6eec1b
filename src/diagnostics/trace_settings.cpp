// trace_settings.cpp - QXVTraceLevel.ini: the key LEVEL, separators, a number.

#include "diagnostics/trace_settings.h"

#include "os/code_page.h"
#include "qxv/conversion.h"
#include "qxv/path.h"
#include "streams/encoded_text.h"

#include <cstdint>
#include <new>

namespace {

using qxv::os::Text;
using qxv::os::TextView;

constexpr TextView kFileName = QXT("QXVTraceLevel.ini");
constexpr TextView kKey = QXT("LEVEL");
constexpr TextView kSeparators = QXT(" =\\/");
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 20;

}  // namespace

namespace qxv {

int TraceLevelOf(os::TextView settings) {
  const TextView text = settings.substr(0, settings.find(QXChar(0)));
  const std::size_t key = text.find(kKey);
  if (key == TextView::npos) {
    return 0;
  }
  const std::size_t begin = text.find_first_not_of(kSeparators, key + kKey.size());
  if (begin == TextView::npos) {
    return 0;
  }
  const TextView token = text.substr(begin, text.find_first_of(kSeparators, begin) - begin);
  // KEPT: a line end belongs to the token, and what was read in front of it counts although the conversion fails there; the sign,
  //   applied at its end, is then lost (that is how files with more than the number are read). Pinned by
  //   TraceSettingsKept.ALineEndStaysInTheToken.
  int level = 0;
  (void)QXVString2Int(CQXString(token.data(), static_cast<int>(token.size())), level);
  return level;
}

int ReadTraceLevel() {
  const CQXString folder = QXVGetCurrentPath();
  if (folder.GetLength() == 0) {
    return 0;
  }
  Text name(static_cast<const QXChar*>(folder));
  name += kFileName;
  Text settings;
  const os::ErrorCode error = ReadEncodedText(name.c_str(), kLargestFile, os::kCodePageAnsi, settings);
  if (error == os::kErrorNotEnoughMemory) {
    throw std::bad_alloc();  // says nothing about the file: the next call reads again
  }
  return error == os::kErrorNone ? TraceLevelOf(settings) : 0;
}

}  // namespace qxv
