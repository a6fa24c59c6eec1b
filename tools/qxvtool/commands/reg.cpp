// reg.cpp - qxvtool reg: values below HKEY_LOCAL_MACHINE. On Linux they stand in the library's store.

#include "qxv/registry.h"

#include "qxv/conversion.h"
#include "qxv/interop.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <functional>

namespace {

using tool::Value;
using Texts = CQXArray<CQXString, CQXString&>;

struct Request {
  std::string key, name, type;
  std::vector<std::string> values;
};

std::string Place(const Request& request) { return request.key + " \"" + request.name + '"'; }

void Check(const std::string& subject, int status) {
  if (status != 0) {
    throw tool::Failure(subject, tool::RegistryReason(status));
  }
}

// One reading for each type: the value, or nothing for a value of another type when that does not matter.

struct Reading {
  const char* type;
  int (*read)(CQXVRegister& key, const QXChar* name, Value& value);
};

int ReadNumber(CQXVRegister& key, const QXChar* name, Value& value) {
  int number = 0;
  const int status = key.Read(name, number);
  value = number;
  return status;
}

int ReadString(CQXVRegister& key, const QXChar* name, Value& value) {
  CQXString text;
  const int status = key.Read(name, text);
  value = text;
  return status;
}

int ReadStrings(CQXVRegister& key, const QXChar* name, Value& value) {
  Texts texts;
  const int status = key.Read(name, texts);
  Value::List list;
  for (const CQXString& text : texts) {
    list.emplace_back(text);
  }
  value = std::move(list);
  return status;
}

int ReadPoint(CQXVRegister& key, const QXChar* name, Value& value) {
  CPoint point;
  const int status = key.Read(name, point);
  value = Value::List{point.x, point.y};
  return status;
}

int ReadRectangle(CQXVRegister& key, const QXChar* name, Value& value) {
  CRect rectangle;
  const int status = key.Read(name, rectangle);
  value = Value::List{rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
  return status;
}

// Without a type the first two are tried: a record does not tell what it is.
constexpr Reading kReadings[] = {
    {"string", ReadString}, {"int", ReadNumber}, {"strings", ReadStrings}, {"point", ReadPoint}, {"rectangle", ReadRectangle}};

void RunGet(const Request& request, tool::Context& context) {
  CQXVRegister key;
  Check(request.key, key.Open(HKEY_LOCAL_MACHINE, tool::Wide(request.key)));
  for (const Reading& reading : kReadings) {
    if (!request.type.empty() && request.type != reading.type) {
      continue;
    }
    Value value;
    const int status = reading.read(key, tool::Wide(request.name), value);
    if (status == 0) {
      context.Answer(Value::Record{{"key", request.key}, {"name", request.name}, {"type", reading.type}, {"value", value}},
                     value.Plain() + '\n');
      return;
    }
    if (!request.type.empty() || !tool::IsOtherRegistryType(status)) {
      Check(Place(request), status);
    }
    if (reading.read == ReadNumber) {
      break;
    }
  }
  throw tool::Failure(Place(request), "is a record: say with --type strings, point or rectangle what of");
}

std::vector<int> Numbers(const std::vector<std::string>& texts, std::size_t count, const std::string& type) {
  std::vector<int> numbers(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (QXVString2Int(tool::Wide(texts[i]), numbers[i]) != 0 || texts[i].empty()) {
      throw tool::WrongUse(texts[i] + ": no whole number of -2147483647 to 2147483647");
    }
  }
  if (numbers.size() != count) {
    throw tool::WrongUse("--type " + type + " takes " + std::to_string(count) + " number(s)");
  }
  return numbers;
}

using Write = std::function<int(CQXVRegister& key, const QXChar* name)>;

// What was typed, ready to be written: wrong use is found before a key is made.
Write ParseValue(const Request& request) {
  if (request.type == "int") {
    return
        [n = Numbers(request.values, 1, request.type)](CQXVRegister& key, const QXChar* name) { return key.Write(name, n[0]); };
  }
  if (request.type == "point") {
    return [n = Numbers(request.values, 2, request.type)](CQXVRegister& key, const QXChar* name) {
      return key.Write(name, CPoint(n[0], n[1]));
    };
  }
  if (request.type == "rectangle") {
    return [n = Numbers(request.values, 4, request.type)](CQXVRegister& key, const QXChar* name) {
      return key.Write(name, CRect(n[0], n[1], n[2], n[3]));
    };
  }
  if (request.type == "strings") {
    Texts texts;
    for (const std::string& value : request.values) {
      CQXString text = tool::Wide(value);
      texts.Add(text);
    }
    return [texts](CQXVRegister& key, const QXChar* name) { return key.Write(name, texts); };
  }
  if (request.values.size() != 1) {
    throw tool::WrongUse("--type string takes one value; several make --type strings");
  }
  return [text = tool::Wide(request.values[0])](CQXVRegister& key, const QXChar* name) { return key.Write(name, text); };
}

void RunSet(const Request& request, tool::Context& /*context*/) {
  const Write write = ParseValue(request);
  CQXVRegister key;
  Check(request.key, key.Create(HKEY_LOCAL_MACHINE, tool::Wide(request.key)));
  Check(Place(request), write(key, tool::Wide(request.name)));
}

void AddGet(CLI::App& reg, tool::Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = tool::NewCommand(reg, "get", "A value; exit code 1 without one",
                                       "  qxvtool reg get SOFTWARE\\Example Colour\n"
                                       "  qxvtool reg get SOFTWARE\\Example Window --type rectangle --json");
  command->add_option("KEY", request->key, "The key below HKEY_LOCAL_MACHINE")->required();
  command->add_option("NAME", request->name, "The name of the value")->required();
  command->add_option("--type", request->type, "string, int, strings, point or rectangle; without it string or int")
      ->check(CLI::IsMember({"string", "int", "strings", "point", "rectangle"}));
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunGet);
}

void AddSet(CLI::App& reg, tool::Context& context) {
  const auto request = std::make_shared<Request>();
  request->type = "string";
  CLI::App* command = tool::NewCommand(reg, "set", "Stores a value, in a key that is made when it is missing",
                                       "  qxvtool reg set SOFTWARE\\Example Colour red\n"
                                       "  qxvtool reg set SOFTWARE\\Example Count 7 --type int\n"
                                       "  qxvtool reg set SOFTWARE\\Example Recent a.avi b.avi --type strings\n"
                                       "  qxvtool reg set SOFTWARE\\Example Window 10 20 640 480 --type rectangle");
  command->add_option("KEY", request->key, "The key below HKEY_LOCAL_MACHINE")->required();
  command->add_option("NAME", request->name, "The name of the value")->required();
  command->add_option("VALUE", request->values, "The value; several for strings, point and rectangle")->required();
  command->add_option("--type", request->type, "string, int, strings, point or rectangle")
      ->check(CLI::IsMember({"string", "int", "strings", "point", "rectangle"}))
      ->capture_default_str();
  tool::OnCall(command, request, context, RunSet);
}

}  // namespace

void tool::AddReg(CLI::App& app, Context& context) {
  CLI::App* reg = NewGroup(app, "reg", "Registry values: get, set");
  AddGet(*reg, context);
  AddSet(*reg, context);
}
