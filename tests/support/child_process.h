// child_process.h - runs the current test once more in a process of its own, for what only two processes can show.
//   TEST(FileShare, HoldsAcrossProcesses) {
//     if (const char* argument = support::ChildArgument()) { ...the child's part, with EXPECTs...; return; }
//     support::ChildProcess child("argument");
//     EXPECT_EQ(child.Wait(), 0);
//   }
#pragma once

#include <filesystem>
#include <string>

namespace support {

/// The text that the parent gave; null in the parent.
const char* ChildArgument();

/// A link to this program (or a copy of it) under another name, so that it runs from another folder; Windows libraries come
/// along.
void LinkProgram(const std::filesystem::path& name);

class ChildProcess {
 public:
  /// The argument is ASCII without quotation marks.
  /// @param program  a link made by LinkProgram, to be run instead of this program
  explicit ChildProcess(const std::string& argument, const std::filesystem::path& program = {});
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// Waits for the end: 0 when the child's expectations held, another number when not or when it did not start.
  int Wait();

  /// Ends the child at once, wherever it is: nothing of it runs afterwards. kKilled when it was still running, else as Wait.
  int Kill();
  static constexpr int kKilled = 98;

 private:
  void* m_process = nullptr;  // a handle, or the number of the process
};

}  // namespace support
