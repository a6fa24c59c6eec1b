// failure.h - why a command did not come to its answer, in words. Exit codes: 0 all is well, 1 not found or different, 2 wrong
// use.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tool {

inline constexpr int kExitNotFound = 1;
inline constexpr int kExitWrongUse = 2;

/// What was asked for is not there, or is something else: the file (or whatever it is) and the reason.
class Failure : public std::runtime_error {
 public:
  Failure(const std::string& subject, const std::string& reason) : std::runtime_error(subject + ": " + reason) {}
};

/// The command was given something that it cannot mean.
class WrongUse : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// In words: a system error number of Windows, which the library gives on both systems, a status code of an image or of the
/// registry.
std::string SystemReason(std::int32_t number);
std::string ImageReason(int status);
std::string RegistryReason(int status);

/// Whether a registry status says that the value has another type.
bool IsOtherRegistryType(int status);

}  // namespace tool
