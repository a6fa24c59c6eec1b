// fuzz_md5_context.cpp - a digest taken up from a file of any bytes, fed in pieces, saved and taken up between them, beside the
// plain algorithm on the whole input. First byte: length of the context file; then its bytes; then pieces, each a length and what
// follows it.

#include "digest/md5_reference.h"
#include "fuzz/fuzz_input.h"
#include "os/debug_output.h"
#include "qxv/factories.h"
#include "qxv/md5.h"
#include "support/temp_folder.h"

#include <memory>
#include <string>

namespace {

using fuzz::Require;
using fuzz::Text;

struct Nowhere : qxv::os::DebugSink {
  void Write(const QXChar*) noexcept override {}
};

struct Release {
  void operator()(CQXVMD5Ctx* object) const { QXV_DeleteMD5(object); }
};
using Context = std::unique_ptr<CQXVMD5Ctx, Release>;

Context Begin(const support::TempFolder& folder) {
  Context context(QXV_ConstructMD5());
  context->Initialize(1, folder.Path().c_str(), QXT("fuzz"));
  return context;
}

std::uint64_t NumberAt(const std::string& bytes, std::size_t at, unsigned size) {
  std::uint64_t number = 0;
  for (unsigned i = 0; i < size; ++i) {
    number |= std::uint64_t{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
  }
  return number;
}

/// What the digest is to come to: the state in front of the message, and the message.
struct Model {
  digest_test::State state = digest_test::kFreshState;
  std::uint64_t bits = 0;
  std::string message;
  std::uint64_t value = 0;

  explicit Model(const std::string& file) {
    if (file.size() < 96) {
      return;
    }
    bits = NumberAt(file, 0, 8);
    for (unsigned i = 0; i < 4; ++i) {
      state[i] = static_cast<std::uint32_t>(NumberAt(file, 8 + 4 * i, 4));
    }
    message = file.substr(24, bits / 8 % 64);
    value = NumberAt(file, 88, 8);
  }

  void Add(const std::string& piece) {
    message += piece;
    bits += 8 * piece.size();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::TempFolder folder;
  static Nowhere nowhere;
  static const qxv::os::ScopedDebugSink silent(nowhere);
  fuzz::Input input(data, size);
  const Text name = folder.File(QXT("fuzz.MD5frag"));
  const std::string file = input.Bytes(input.Byte());
  Require(support::WriteBytes(name, file));
  Model model(file);
  Context context = Begin(folder);
  Require(context->GetContextValue() == model.value);
  while (!input.AtEnd()) {
    const unsigned choice = input.Byte();
    const std::string piece = input.Bytes(choice & 0x7F);
    context->Update(reinterpret_cast<const unsigned char*>(piece.data()), static_cast<unsigned>(piece.size()));
    model.Add(piece);
    if (choice >= 0x80) {
      Require(context->SaveContext(model.bits) == 1);
      context.reset();
      context = Begin(folder);
      Require(context->GetContextValue() == model.bits);
    }
  }
  std::string digest;
  const CQXString text = context->GetFinalString();
  for (const QXChar digit : fuzz::TextOf(text)) {
    digest += static_cast<char>(digit);
  }
  Require(digest == digest_test::FinishReference(model.state, model.message, model.bits));
  Require(!support::Exists(name));
  return 0;
}
