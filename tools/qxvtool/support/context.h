// context.h - what all commands of a run share: how to answer, and how it went.
#pragma once

#include "qxvtool/support/value.h"

#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace tool {

class Context {
 public:
  bool json = false;  ///< set by --json
  int exitCode = 0;

  /// Prints the answer: as JSON when that was asked for, else the text.
  void Answer(const Value& value, const std::string& text) const;

  /// The same with a record's plain lines for the text.
  void Answer(const Value::Record& record) const;

  /// A word to the person at the terminal, beside the answer.
  void Remark(const std::string& text) const;

  /// Tells of a failure and goes on; the exit code will be 1.
  void Complain(const std::exception& failure);

  /// Answers for each subject in turn, a list of records in JSON. One that fails is told and has an "error" in its record; the
  /// others are answered all the same.
  void AnswerEach(const char* name, const std::vector<std::string>& subjects,
                  const std::function<Value::Record(const std::string&)>& answer,
                  const std::function<std::string(const std::string&, const Value::Record&)>& text);
};

}  // namespace tool
