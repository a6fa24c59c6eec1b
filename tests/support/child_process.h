// child_process.h - runs the current test once more in a process of its own, for what only two processes can show.
//   TEST(FileShare, HoldsAcrossProcesses) {
//     if (const char* argument = support::ChildArgument()) { ...the child's part, with EXPECTs...; return; }
//     support::ChildProcess child("argument");
//     EXPECT_EQ(child.Wait(), 0);
//   }
#pragma once

#include <string>

namespace support {

/// The text that the parent gave; null in the parent.
const char* ChildArgument();

/// The argument is ASCII without quotation marks.
class ChildProcess {
 public:
  explicit ChildProcess(const std::string& argument);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// Waits for the end: 0 when the child's expectations held, another number when not or when it did not start.
  int Wait();

 private:
  void* m_process = nullptr;  // a handle, or the number of the process
};

}  // namespace support
