// value.h - what a command answers: one tree that is printed as JSON for programs or as lines for people.
#pragma once

#include "qxv/string.h"

#include <concepts>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tool {

/// Nothing, a truth value, a number, a text, a list, or a record of named values in their order.
class Value {
 public:
  struct Field;
  using List = std::vector<Value>;
  using Record = std::vector<Field>;

  // Defined where Field is complete.
  Value();
  Value(bool truth);
  Value(std::integral auto number) : Value(Whole{static_cast<long long>(number)}) {}
  Value(double number);
  Value(const char* text);
  Value(std::string text);
  Value(const CQXString& text);
  Value(List list);
  Value(Record record);
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();

  const Record* AsRecord() const;
  const List* AsList() const;
  const std::string* AsText() const;

  /// As JSON, indented, without a line's end behind it. Numbers that JSON has no name for are null.
  std::string Json(int level = 0) const;

  /// For people: a number or text as it is, yes or no, "-" for nothing, the members of a list with commas between.
  std::string Plain() const;

 private:
  struct Whole {
    long long number;
  };
  explicit Value(Whole whole);

  std::variant<std::monostate, bool, long long, double, std::string, List, Record> m_value;
};

struct Value::Field {
  std::string name;
  Value value;
};

/// The fields of a record below one another, names in front of values, all values in one column.
std::string Lines(const Value::Record& record, std::string_view indent = "");

/// Rows below one another, columns as wide as their widest text, the first row underlined as the heading. Columns whose texts are
/// numbers stand to the right.
std::string Table(const std::vector<std::vector<std::string>>& rows);

/// The shortest text that gives the number again: 0.1, 1e+300.
std::string NumberText(double number);

}  // namespace tool
