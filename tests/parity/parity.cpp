// parity.cpp - calls what the library exports with drawn arguments, and prints for each family a digest of all answers. The lines
// must be the same on both systems; no digest is written down anywhere, since it would be nothing but our own output.
//   qxv_parity FOLDER      FOLDER in drive form, empty, with a backslash at its end

#include "parity/trial.h"

#include <cinttypes>
#include <cstdio>

namespace {

struct Family {
  const char* name;
  void (*run)(parity::Trial&);
};

constexpr Family kFamilies[] = {
    {"audio", parity::RunAudio},
    {"conversion", parity::RunConversion},
    {"digests", parity::RunDigests},
    {"files", parity::RunFiles},
    {"host-file", parity::RunHostFile},
    {"host-text", parity::RunHostText},
    {"host-values", parity::RunHostValues},
    {"image", parity::RunImage},
    {"path", parity::RunPath},
    {"plane", parity::RunPlane},
    {"rounding", parity::RunRounding},
    {"settings", parity::RunSettings},
    {"space", parity::RunSpace},
    {"spline", parity::RunSpline},
    {"streams", parity::RunStreams},
    {"system", parity::RunSystem},
    {"text", parity::RunText},
    {"xml", parity::RunXml},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: qxv_parity FOLDER\n", stderr);
    return 2;
  }
  const std::string folder = argv[1];
  for (const Family& family : kFamilies) {
    parity::Trial trial(20260101, parity::Text(folder.begin(), folder.end()));
    family.run(trial);
    std::printf("%-12s %6d sets  %016" PRIx64 "\n", family.name, trial.Sets(), trial.Digest());
    std::fflush(stdout);
  }
  return 0;
}
