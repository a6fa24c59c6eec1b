// context.cpp - answers go to the standard output, words beside them to the standard error.

#include "qxvtool/support/context.h"

#include "qxvtool/support/console.h"
#include "qxvtool/support/failure.h"

#include <algorithm>
#include <utility>

namespace tool {

void Context::Answer(const Value& value, const std::string& text) const { Write(Stream::Out, json ? value.Json() + '\n' : text); }

void Context::Answer(const Value::Record& record) const { Answer(record, Lines(record)); }

void Context::Remark(const std::string& text) const { Write(Stream::Error, "qxvtool: " + text + '\n'); }

void Context::Complain(const std::exception& failure) {
  Remark(failure.what());
  exitCode = std::max(exitCode, kExitNotFound);
}

void Context::AnswerEach(const char* name, const std::vector<std::string>& subjects,
                         const std::function<Value::Record(const std::string&)>& answer,
                         const std::function<std::string(const std::string&, const Value::Record&)>& text) {
  Value::List all;
  bool first = true;
  for (const std::string& subject : subjects) {
    Value::Record record = {{name, subject}};
    try {
      Value::Record found = answer(subject);
      if (!json) {
        const std::string block = text(subject, found);
        const bool isParagraph = std::count(block.begin(), block.end(), '\n') > 1;
        Write(Stream::Out, (isParagraph && !first ? "\n" : "") + block);
        first = false;
      }
      std::move(found.begin(), found.end(), std::back_inserter(record));
    } catch (const Failure& failure) {
      Complain(failure);
      record.push_back({"error", failure.what()});
    }
    all.emplace_back(std::move(record));
  }
  if (json) {
    Write(Stream::Out, Value(std::move(all)).Json() + '\n');
  }
}

}  // namespace tool
