// picture_samples.h - the files of tests/data/image.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace picture_files {

inline std::string Sample(const std::string& name) {
  std::ifstream file(std::string(QXV_TEST_DATA) + "/image/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace picture_files
