// disk_subject.cpp - prints total bytes, free bytes and kind of the drive of each path given.

#include "os/utf.h"
#include "qxv/disk.h"

#include <iostream>

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const qxv::os::Text path = qxv::os::TextFromUtf8(argv[i]);
    std::cout << QXVGetDiskTotalSpace(path.c_str()) << " " << QXVGetDiskFreeSpace(path.c_str()) << " "
              << QXVGetDriveType(path.c_str()) << "\n";
  }
}
