// md5_carry_subject.cpp - carries a digest on from the context file in a folder, up to a number of bytes or to its end. The input
// is the bytes 0, 1, 2, ... Arguments: the folder in drive form, the number, "save" or "end"; prints the value it began with, and
// at the end the digest.

#include "os/debug_output.h"
#include "os/utf.h"
#include "qxv/factories.h"
#include "qxv/md5.h"

#include <iostream>
#include <memory>
#include <string>

namespace {

struct Nowhere : qxv::os::DebugSink {
  void Write(const QXChar*) noexcept override {}
};

struct Release {
  void operator()(CQXVMD5Ctx* object) const { QXV_DeleteMD5(object); }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    return 2;
  }
  Nowhere nowhere;
  const qxv::os::ScopedDebugSink silent(nowhere);
  const std::unique_ptr<CQXVMD5Ctx, Release> context(QXV_ConstructMD5());
  context->Initialize(1, qxv::os::TextFromUtf8(argv[1]).c_str(), QXT("carried"));
  QXUInt64 at = context->GetContextValue();
  std::cout << at << "\n";
  for (const QXUInt64 last = std::stoull(argv[2]); at < last; ++at) {
    const auto byte = static_cast<unsigned char>(at);
    context->Update(&byte, 1);
  }
  if (std::string(argv[3]) == "save") {
    return context->SaveContext(at) == 1 ? 0 : 1;
  }
  const CQXString digest = context->GetFinalString();
  std::cout << qxv::os::Utf8FromText(static_cast<const QXChar*>(digest)) << "\n";
}
