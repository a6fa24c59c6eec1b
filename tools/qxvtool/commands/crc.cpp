// crc.cpp - qxvtool crc: the checksum of files or of a text.

#include "qxv/crc.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <optional>

namespace {

using tool::Value;

struct Request {
  std::vector<std::string> files;
  std::optional<std::string> text;
  std::string expected;
};

std::string Hexadecimal(unsigned int crc) {
  std::array<char, 16> digits{};
  (void)std::snprintf(digits.data(), digits.size(), "%08x", crc);
  return digits.data();
}

std::string CrcOf(const unsigned char* bytes, std::size_t count) { return Hexadecimal(QXVCalculateCRC(bytes, bytes + count)); }

std::string ExpectedCrc(const std::string& text) {
  unsigned int crc = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), crc, 16);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    throw tool::WrongUse("--expect " + text + ": a CRC is up to eight hexadecimal digits");
  }
  return Hexadecimal(crc);
}

void Run(const Request& request, tool::Context& context) {
  if (request.files.empty() != request.text.has_value()) {
    throw tool::WrongUse("name files, or give a text with --text");
  }
  const std::string expected = request.expected.empty() ? "" : ExpectedCrc(request.expected);
  const auto answer = [&](const std::string& subject) -> Value::Record {
    std::string crc;
    if (request.text) {
      crc = CrcOf(reinterpret_cast<const unsigned char*>(subject.data()), subject.size());
    } else {
      const std::vector<unsigned char> bytes = tool::ReadFile(subject);
      crc = CrcOf(bytes.data(), bytes.size());
    }
    if (!expected.empty() && crc != expected) {
      throw tool::Failure(subject, "has the CRC " + crc + ", not " + expected);
    }
    return {{"crc", crc}};
  };
  const auto text = [](const std::string& subject, const Value::Record& record) {
    return record.front().value.Plain() + "  " + subject + '\n';
  };
  context.AnswerEach(request.text ? "text" : "file", request.text ? std::vector{*request.text} : request.files, answer, text);
}

}  // namespace

void tool::AddCrc(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "crc", "CRC-32/MPEG-2 of files or of a text",
                                 "  qxvtool crc a.bin b.bin\n"
                                 "  qxvtool crc --text 123456789            0376e6e7, the check value of this CRC\n"
                                 "  qxvtool crc a.bin --expect 0376e6e7     exit code 1 when it is another one");
  command->add_option("FILE", request->files, "Files of up to 2 GiB");
  command->add_option("--text", request->text, "The bytes of this text in UTF-8, in place of files");
  command->add_option("--expect", request->expected, "The CRC that it must be, in hexadecimal digits");
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
