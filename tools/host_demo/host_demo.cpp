// host_demo.cpp - a host application in small: names each file of its command line, its size, its CRC and a new identifier; or
// takes one text file through the text families.

#include "qxv/crc.h"
#include "qxv/guid.h"
#include "qxv/interop.h"
#include "qxv/string.h"
#include "text_tour.h"

#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace {

bool Describe(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::cerr << path << ": cannot be opened\n";
    return false;
  }
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const auto* first = reinterpret_cast<const unsigned char*>(bytes.data());
  CQXString line;
  line.Format(QXT("%10I64d bytes  crc %08x  id %s"), static_cast<QXInt64>(bytes.size()),
              QXVCalculateCRC(first, first + bytes.size()),
              static_cast<const QXChar*>(QXVCoCreateGuidString2(EQXV_GUID_COUNTER)));
  std::cout << line << "  " << path << '\n';
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: host_demo FILE...\n"
                 "       host_demo --text-tour TEXT-FILE FOLDER     (the folder takes the files that it makes)\n";
    return 2;
  }
  if (argc == 4 && std::strcmp(argv[1], "--text-tour") == 0) {
    return ShowTextFamilies(argv[2], argv[3]) ? 0 : 1;
  }
  bool all = true;
  for (int i = 1; i < argc; ++i) {
    all = Describe(argv[i]) && all;
  }
  return all ? 0 : 1;
}
