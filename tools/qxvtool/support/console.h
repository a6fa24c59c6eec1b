// console.h - what the program asks of the system's terminal, one source a system, which also holds the entry point.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class Stream { Out, Error };

/// Called by the system's entry point with the arguments behind the program's name, in UTF-8.
/// @return the exit code
int Main(const std::vector<std::string>& arguments);

/// Whether a person is at the other end.
bool IsTerminal(Stream stream) noexcept;

/// Columns of the terminal; 80 when there is none.
int TerminalColumns() noexcept;

/// UTF-8 to a stream, unbuffered. What cannot be written is lost.
void Write(Stream stream, std::string_view utf8);

/// Keeps from the standard error what the library tells the debugger, or lets it there again. On Windows it goes elsewhere
/// anyway.
void HoldBackDebugger(bool isHeldBack) noexcept;

/// From now on Ctrl-C does not end the program but is remembered.
void CatchInterrupt();
bool Interrupted() noexcept;

}  // namespace tool
