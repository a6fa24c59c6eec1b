// value.cpp - answers as JSON, as lines and as tables.

#include "qxvtool/support/value.h"

#include "qxvtool/support/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <utility>

namespace tool {

namespace {

std::string Quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (c == '\n') {
      out += "\\n";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      std::array<char, 8> escape{};
      (void)std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
      out += escape.data();
    } else {
      out += c;
    }
  }
  return out + '"';
}

// The members of a list or record, each on a line of its own.
template <class Members, class Print>
std::string Bracketed(char open, char close, const Members& members, int level, Print print) {
  if (members.empty()) {
    return {open, close};
  }
  const std::string indent(static_cast<std::size_t>(2 * level + 2), ' ');
  std::string out(1, open);
  bool first = true;
  for (const auto& member : members) {
    out += first ? "\n" : ",\n";
    out += indent + print(member);
    first = false;
  }
  return out + '\n' + std::string(static_cast<std::size_t>(2 * level), ' ') + close;
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789.-+ %") == std::string::npos &&
         text.find_first_of("0123456789") != std::string::npos;
}

}  // namespace

Value::Value() = default;
Value::Value(bool truth) : m_value(truth) {}
Value::Value(double number) : m_value(number) {}
Value::Value(const char* text) : m_value(std::string(text)) {}
Value::Value(std::string text) : m_value(std::move(text)) {}
Value::Value(const CQXString& text) : m_value(Narrow(text)) {}
Value::Value(List list) : m_value(std::move(list)) {}
Value::Value(Record record) : m_value(std::move(record)) {}
Value::Value(Whole whole) : m_value(whole.number) {}
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

const Value::Record* Value::AsRecord() const { return std::get_if<Record>(&m_value); }
const Value::List* Value::AsList() const { return std::get_if<List>(&m_value); }
const std::string* Value::AsText() const { return std::get_if<std::string>(&m_value); }

std::string Value::Json(int level) const {
  if (const auto* truth = std::get_if<bool>(&m_value)) {
    return *truth ? "true" : "false";
  }
  if (const auto* whole = std::get_if<long long>(&m_value)) {
    return std::to_string(*whole);
  }
  if (const auto* number = std::get_if<double>(&m_value); number != nullptr && std::isfinite(*number)) {
    return NumberText(*number);
  }
  if (const auto* text = std::get_if<std::string>(&m_value)) {
    return Quoted(*text);
  }
  if (const auto* list = AsList()) {
    return Bracketed('[', ']', *list, level, [level](const Value& value) { return value.Json(level + 1); });
  }
  if (const auto* record = AsRecord()) {
    return Bracketed('{', '}', *record, level,
                     [level](const Field& field) { return Quoted(field.name) + ": " + field.value.Json(level + 1); });
  }
  return "null";
}

std::string Value::Plain() const {
  if (const auto* truth = std::get_if<bool>(&m_value)) {
    return *truth ? "yes" : "no";
  }
  if (const auto* number = std::get_if<double>(&m_value)) {
    return NumberText(*number);
  }
  if (const auto* text = std::get_if<std::string>(&m_value)) {
    return text->empty() ? "-" : *text;
  }
  if (const auto* list = AsList()) {
    std::string out;
    for (const Value& value : *list) {
      out += (out.empty() ? "" : ", ") + value.Plain();
    }
    return out.empty() ? "-" : out;
  }
  return std::holds_alternative<std::monostate>(m_value) ? "-" : Json();
}

std::string Lines(const Value::Record& record, std::string_view indent) {
  std::size_t widest = 0;
  for (const Value::Field& field : record) {
    widest = std::max(widest, ColumnsOf(field.name));
  }
  std::string out;
  for (const Value::Field& field : record) {
    out += std::string(indent) + PadRight(field.name, widest + 2) + field.value.Plain() + '\n';
  }
  return out;
}

std::string Table(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  std::vector<bool> numbers;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    widths.resize(std::max(widths.size(), rows[r].size()));
    numbers.resize(widths.size(), rows.size() > 1);
    for (std::size_t c = 0; c < rows[r].size(); ++c) {
      widths[c] = std::max(widths[c], ColumnsOf(rows[r][c]));
      numbers[c] = numbers[c] && (r == 0 || IsNumber(rows[r][c]));
    }
  }
  std::string out;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::string line, rule;
    for (std::size_t c = 0; c < rows[r].size(); ++c) {
      line += numbers[c] ? PadLeft(rows[r][c], widths[c]) : PadRight(rows[r][c], widths[c]);
      rule += std::string(widths[c], '-');
      if (c + 1 < rows[r].size()) {
        line += "  ";
        rule += "  ";
      }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + '\n' + (r == 0 ? rule + '\n' : "");
  }
  return out;
}

std::string NumberText(double number) {
  if (!std::isfinite(number)) {
    return std::isnan(number) ? "not a number" : number < 0 ? "-infinity" : "infinity";
  }
  std::array<char, 64> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), result.ptr};
}

}  // namespace tool
