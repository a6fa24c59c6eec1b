// error_test.cpp - error numbers.

#include "os/error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(Error, EveryErrnoHasItsWindowsNumber) {
  const struct {
    int error;
    qxv::os::ErrorCode code;
  } rows[] = {
      {0, 0},           {ENOENT, 2},  {ENOTDIR, 3}, {EMFILE, 4},   {ENFILE, 4},         {EACCES, 5},
      {EPERM, 5},       {EROFS, 5},   {EISDIR, 5},  {EBADF, 6},    {ENOMEM, 8},         {EXDEV, 17},
      {EBUSY, 32},      {EEXIST, 80}, {EINVAL, 87}, {ENOSPC, 112}, {ENAMETOOLONG, 123}, {EILSEQ, 123},
      {ENOTEMPTY, 145}, {EFBIG, 223}, {EDOM, 31},   {-1, 31},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(qxv::os::ErrorFromErrno(row.error), row.code) << "errno " << row.error;
  }
}

}  // namespace
