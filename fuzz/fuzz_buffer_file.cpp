// fuzz_buffer_file.cpp - sequences of operations on a buffered file, on files of any content, beside its model.

#include "support/buffer_file_duel.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::TempFolder folder;
  const std::string difference = streams_test::BufferFileDuel({data, size}, folder.File(QXT("a.bin"))).Run();
  if (!difference.empty()) {
    std::fprintf(stderr, "the model differs: %s\n", difference.c_str());
    std::abort();
  }
  return 0;
}
