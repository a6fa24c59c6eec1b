// md5_bench.cpp - a digest object beside libcrypto's one-shot MD5.

#include "bench/support/ratio.h"
#include "qxv/factories.h"
#include "qxv/md5.h"

#define OPENSSL_SUPPRESS_DEPRECATED  // the newer interface calls the same code with more around it
#include <openssl/md5.h>

#include <memory>
#include <random>

namespace {

const std::vector<unsigned char>& Data() {
  static const std::vector<unsigned char> data = [] {
    std::vector<unsigned char> bytes(std::size_t{64} << 20);
    std::mt19937 random(1);
    for (unsigned char& byte : bytes) {
      byte = static_cast<unsigned char>(random());
    }
    return bytes;
  }();
  return data;
}

struct Release {
  void operator()(CQXVMD5Ctx* object) const { QXV_DeleteMD5(object); }
};

struct Size {
  const char* name;
  unsigned bytes;
};
constexpr Size kSizes[] = {{"64 B", 64}, {"1 KiB", 1024}, {"64 KiB", 65536}, {"64 MiB", 64u << 20}};

bench::Job Md5Job(const Size& size) {
  const unsigned n = size.bytes;
  const std::shared_ptr<CQXVMD5Ctx> context(QXV_ConstructMD5(), Release());
  const auto ours = [n, context] {
    unsigned char digest[16];
    context->Update(Data().data(), n);
    context->Final(digest);
    benchmark::DoNotOptimize(digest);
  };
  const auto crypto = [n] {
    unsigned char digest[16];
    ::MD5(Data().data(), n, digest);
    benchmark::DoNotOptimize(digest);
  };
  return {"md5", size.name, ours, {{"libcrypto MD5", crypto, 1.0}}};
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const Size& size : kSizes) {
    jobs.push_back(Md5Job(size));
  }
  return jobs;
});

}  // namespace
