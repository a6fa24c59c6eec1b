// language.cpp - locale names and language identifiers.

#include "os/language.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace qxv::os {
namespace {

struct Row {
  std::string_view locale;
  std::uint16_t language;
};

// The identifiers of the Windows language list. A language without a country stands for its first sublanguage there.
constexpr Row kRows[] = {
    {"af", 0x0436},    {"ar", 0x0401},    {"ar_AE", 0x3801}, {"ar_DZ", 0x1401}, {"ar_EG", 0x0C01}, {"ar_IQ", 0x0801},
    {"ar_JO", 0x2C01}, {"ar_KW", 0x3401}, {"ar_LB", 0x3001}, {"ar_LY", 0x1001}, {"ar_MA", 0x1801}, {"ar_QA", 0x4001},
    {"ar_SA", 0x0401}, {"ar_SY", 0x2801}, {"ar_TN", 0x1C01}, {"be", 0x0423},    {"bg", 0x0402},    {"ca", 0x0403},
    {"cs", 0x0405},    {"da", 0x0406},    {"de", 0x0407},    {"de_AT", 0x0C07}, {"de_CH", 0x0807}, {"de_LI", 0x1407},
    {"de_LU", 0x1007}, {"el", 0x0408},    {"en", 0x0409},    {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en_GB", 0x0809},
    {"en_IE", 0x1809}, {"en_IN", 0x4009}, {"en_NZ", 0x1409}, {"en_PH", 0x3409}, {"en_SG", 0x4809}, {"en_US", 0x0409},
    {"en_ZA", 0x1C09}, {"es", 0x0C0A},    {"es_AR", 0x2C0A}, {"es_CL", 0x340A}, {"es_CO", 0x240A}, {"es_ES", 0x0C0A},
    {"es_MX", 0x080A}, {"es_PE", 0x280A}, {"es_US", 0x540A}, {"es_VE", 0x200A}, {"et", 0x0425},    {"eu", 0x042D},
    {"fa", 0x0429},    {"fi", 0x040B},    {"fr", 0x040C},    {"fr_BE", 0x080C}, {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C},
    {"fr_LU", 0x140C}, {"gl", 0x0456},    {"he", 0x040D},    {"hi", 0x0439},    {"hr", 0x041A},    {"hu", 0x040E},
    {"hy", 0x042B},    {"id", 0x0421},    {"is", 0x040F},    {"it", 0x0410},    {"it_CH", 0x0810}, {"iw", 0x040D},
    {"ja", 0x0411},    {"ka", 0x0437},    {"kk", 0x043F},    {"ko", 0x0412},    {"lt", 0x0427},    {"lv", 0x0426},
    {"mk", 0x042F},    {"mn", 0x0450},    {"ms", 0x043E},    {"nb", 0x0414},    {"nl", 0x0413},    {"nl_BE", 0x0813},
    {"nn", 0x0814},    {"no", 0x0414},    {"pl", 0x0415},    {"pt", 0x0416},    {"pt_BR", 0x0416}, {"pt_PT", 0x0816},
    {"ro", 0x0418},    {"ru", 0x0419},    {"sk", 0x041B},    {"sl", 0x0424},    {"sq", 0x041C},    {"sv", 0x041D},
    {"sv_FI", 0x081D}, {"ta", 0x0449},    {"te", 0x044A},    {"th", 0x041E},    {"tr", 0x041F},    {"tt", 0x0444},
    {"uk", 0x0422},    {"ur", 0x0420},    {"vi", 0x042A},    {"zh", 0x0804},    {"zh_CN", 0x0804}, {"zh_HK", 0x0C04},
    {"zh_MO", 0x1404}, {"zh_SG", 0x1004}, {"zh_TW", 0x0404},
};

constexpr std::uint16_t kUsEnglish = 0x0409;

std::uint16_t LanguageOf(std::string_view locale, std::uint16_t otherwise) noexcept {
  const Row* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& each) { return each.locale == locale; });
  return row != std::end(kRows) ? row->language : otherwise;
}

}  // namespace

const char* EnvironmentLocale() noexcept {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    if (const char* name = std::getenv(variable); name != nullptr && *name != 0) {
      return name;
    }
  }
  return nullptr;
}

std::uint16_t LanguageOfLocale(const char* name) noexcept {
  if (name == nullptr) {
    return kUsEnglish;
  }
  std::string_view locale(name);
  locale = locale.substr(0, locale.find_first_of(".@"));
  return LanguageOf(locale, LanguageOf(locale.substr(0, locale.find('_')), kUsEnglish));
}

}  // namespace qxv::os
