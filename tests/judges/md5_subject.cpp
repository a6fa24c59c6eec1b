// md5_subject.cpp - prints the digest of each file named on a line of its standard input, in the manner of md5sum; the files are
// read in pieces of random sizes. With a folder as argument the digest is saved there and taken up by a new object now and then.

#include "os/debug_output.h"
#include "os/utf.h"
#include "qxv/factories.h"
#include "qxv/md5.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

struct Nowhere : qxv::os::DebugSink {
  void Write(const QXChar*) noexcept override {}
};

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteMD5(object); }
};
using Context = std::unique_ptr<CQXVMD5Ctx, Release>;

Context Begin(const std::string& folder) {
  Context context(QXV_ConstructMD5());
  context->Initialize(folder.empty() ? 0 : 1, qxv::os::TextFromUtf8(folder).c_str(), QXT("judged"));
  return context;
}

std::string DigestOf(const std::string& name, const std::string& folder, std::mt19937& random) {
  std::ifstream file(name, std::ios::binary);
  std::vector<char> piece(100'000);
  Context context = Begin(folder);
  while (file) {
    file.read(piece.data(), static_cast<std::streamsize>(random() % (random() % 2 == 0 ? 200 : piece.size())));
    context->Update(reinterpret_cast<const unsigned char*>(piece.data()), static_cast<unsigned>(file.gcount()));
    if (!folder.empty() && random() % 8 == 0) {
      if (context->SaveContext(1) != 1) {
        return "cannot be saved";
      }
      context.reset();
      context = Begin(folder);
    }
  }
  const CQXString digest = context->GetFinalString();
  return qxv::os::Utf8FromText(static_cast<const QXChar*>(digest));
}

}  // namespace

int main(int argc, char** argv) {
  Nowhere nowhere;
  const qxv::os::ScopedDebugSink silent(nowhere);
  std::mt19937 random(7);
  for (std::string name; std::getline(std::cin, name);) {
    std::cout << DigestOf(name, argc > 1 ? argv[1] : "", random) << "  " << name << "\n";
  }
}
