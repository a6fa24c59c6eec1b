// child_process.cpp - the test program once more, with one test chosen and the argument in its environment.

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <system_error>

#if defined(_WIN32)
#include "os/win_api.h"
#else
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace support {
namespace {

constexpr const char* kVariable = "QXV_TEST_CHILD";

std::string CurrentTest() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(test->test_suite_name()) + "." + test->name();
}

}  // namespace

const char* ChildArgument() { return std::getenv(kVariable); }

#if defined(_WIN32)

namespace {

std::filesystem::path ThisProgram() {
  wchar_t program[MAX_PATH];
  return ::GetModuleFileNameW(nullptr, program, MAX_PATH) < MAX_PATH ? program : L"";
}

}  // namespace

ChildProcess::ChildProcess(const std::string& argument, const std::filesystem::path& other) {
  const std::wstring program = (other.empty() ? ThisProgram() : other).wstring();
  const std::string options = " --gtest_brief=1 --gtest_filter=" + CurrentTest();
  std::wstring command = L"\"" + program + L"\"" + std::wstring(options.begin(), options.end());
  ::SetEnvironmentVariableA(kVariable, argument.c_str());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
    ::CloseHandle(process.hThread);
    m_process = process.hProcess;
  }
  ::SetEnvironmentVariableA(kVariable, nullptr);
}

int ChildProcess::Wait() {
  DWORD code = 99;
  if (m_process != nullptr) {
    ::WaitForSingleObject(m_process, INFINITE);
    ::GetExitCodeProcess(m_process, &code);
    ::CloseHandle(m_process);
    m_process = nullptr;
  }
  return static_cast<int>(code);
}

int ChildProcess::Kill() {
  if (m_process != nullptr) {
    (void)::TerminateProcess(m_process, kKilled);
  }
  return Wait();
}

#else

namespace {

std::filesystem::path ThisProgram() { return std::filesystem::read_symlink("/proc/self/exe"); }

}  // namespace

ChildProcess::ChildProcess(const std::string& argument, const std::filesystem::path& other) {
  std::string program = (other.empty() ? ThisProgram() : other).string();
  std::string brief = "--gtest_brief=1";
  std::string filter = "--gtest_filter=" + CurrentTest();
  char* arguments[] = {program.data(), brief.data(), filter.data(), nullptr};
  ::setenv(kVariable, argument.c_str(), 1);
  pid_t process = 0;
  if (::posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ) == 0) {
    m_process = reinterpret_cast<void*>(static_cast<std::intptr_t>(process));
  }
  ::unsetenv(kVariable);
}

int ChildProcess::Wait() {
  const auto process = static_cast<pid_t>(reinterpret_cast<std::intptr_t>(m_process));
  m_process = nullptr;
  int status = 0;
  if (process == 0 || ::waitpid(process, &status, 0) != process) {
    return 99;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
}

int ChildProcess::Kill() {
  if (m_process != nullptr) {
    (void)::kill(static_cast<pid_t>(reinterpret_cast<std::intptr_t>(m_process)), SIGKILL);
  }
  return Wait();
}

#endif

namespace {

void LinkFile(const std::filesystem::path& file, const std::filesystem::path& name) {
  std::error_code failed;
  std::filesystem::create_hard_link(file, name, failed);
  if (failed) {  // another file system
    std::filesystem::copy_file(file, name, std::filesystem::copy_options::overwrite_existing);
  }
}

}  // namespace

void LinkProgram(const std::filesystem::path& name) {
  LinkFile(ThisProgram(), name);
  // Windows looks for libraries beside the program.
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(ThisProgram()).parent_path())) {
    if (entry.path().extension() == ".dll" && !std::filesystem::exists(name.parent_path() / entry.path().filename())) {
      LinkFile(entry.path(), name.parent_path() / entry.path().filename());
    }
  }
}

ChildProcess::~ChildProcess() {
  if (m_process != nullptr) {
    (void)Wait();
  }
}

}  // namespace support
