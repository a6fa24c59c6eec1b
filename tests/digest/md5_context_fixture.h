// md5_context_fixture.h - digests with a folder for their context files, and what they tell the debugger.
#pragma once

#include "os/debug_output.h"
#include "qxv/factories.h"
#include "qxv/md5.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace digest_test {

using support::Text;

struct Release {
  void operator()(CQXVMD5Ctx* object) const { QXV_DeleteMD5(object); }
};
using Context = std::unique_ptr<CQXVMD5Ctx, Release>;

inline Context MakeContext() { return Context(QXV_ConstructMD5()); }

inline void Feed(const Context& context, std::string_view bytes) {
  context->Update(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size()));
}

inline std::string DigestOf(const Context& context) { return support::Printable(support::TextOf(context->GetFinalString())); }

/// The bytes first, first + 1, ... up to and without last.
inline std::string Counting(int first, int last) {
  std::string bytes;
  for (int i = first; i < last; ++i) {
    bytes += static_cast<char>(i);
  }
  return bytes;
}

struct Recorder : qxv::os::DebugSink {
  std::vector<Text> texts;
  void Write(const QXChar* text) noexcept override {
    try {
      texts.emplace_back(text);
    } catch (const std::bad_alloc&) {  // a test refused the memory
    }
  }
};

class Md5ContextBase : public testing::Test {
 protected:
  /// A digest with interruption support in the folder.
  Context Begin(const Text& id = QXT("take")) {
    Context context = MakeContext();
    context->Initialize(1, m_folder.Path().c_str(), id.c_str());
    return context;
  }

  support::TempFolder m_folder;
  Text m_file = m_folder.File(QXT("take.MD5frag"));
  Recorder m_sink;
  qxv::os::ScopedDebugSink m_scopedSink{m_sink};
};

// Digests of the bytes 0, 1, 2, ... by md5sum.
inline constexpr const char* kDigestOf0 = "d41d8cd98f00b204e9800998ecf8427e";
inline constexpr const char* kDigestOf37 = "7c4bba98253ca834bf9ed43fd8b2f959";
inline constexpr const char* kDigestOf100 = "7acedd1a84a4cfcb6e7a16003242945e";
inline constexpr const char* kDigestOf200 = "fb7001d34b8e82c9b579be5005d5b0a5";

}  // namespace digest_test
