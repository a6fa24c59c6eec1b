// fuzz_text_file.cpp - any operations on a text file of any bytes, beside a model that works a unit at a time on a byte string.
// First byte: length of the file at first; then its bytes; then operations.

#include "fuzz/fuzz_input.h"
#include "os/code_page.h"
#include "qxv/factories.h"
#include "qxv/text_file.h"

#include <memory>
#include <string>
#include <vector>

namespace {

using fuzz::Require;
using fuzz::Text;

// What a text file does, as slowly and plainly as can be.
class Model {
 public:
  std::string bytes;
  int index = -1;
  int count = -1;

  void Open() {
    m_open = true;
    m_ansi = bytes.substr(0, 2) != "\xFF\xFE";
    m_at = Start();
  }
  void Close() {
    m_open = false;
    index = count = -1;
  }

  int ReadLine(Text& line) {
    line.clear();
    if (!m_open) {
      return 0;
    }
    int read = 0;
    Text units;
    std::string narrow;
    for (unsigned unit = 0; Next(unit); ++read) {
      if (unit == 13) {
        (void)Next(unit);
        ++index;
        break;
      }
      if (m_ansi) {
        narrow += static_cast<char>(unit);
      } else if (unit != 0) {
        units += static_cast<QXChar>(unit);
      }
    }
    if (m_ansi) {
      Require(qxv::os::MultiByteToWide(qxv::os::kCodePageAnsi, narrow.c_str(), units));
    }
    line = units;
    return read;
  }

  int GetLineCount() {
    if (count >= 0 || !m_open) {
      return count;
    }
    const std::size_t at = m_at;
    m_at = 0;
    count = 1;
    for (unsigned unit = 0; Next(unit);) {
      if (unit == 13) {
        ++count;
        (void)Next(unit);
      }
    }
    m_at = at;
    return count;
  }

  int FindLine(const Text& text) {
    if (!m_open || text.empty()) {
      return -1;
    }
    const std::size_t start = m_at;
    const int before = index;
    for (const bool wrapped : {false, true}) {
      m_at = wrapped ? Start() : m_at;
      while (m_at < bytes.size() && (!wrapped || m_at <= start)) {
        const std::size_t place = m_at;
        Text line;
        (void)ReadLine(line);
        if (line.find(text) != Text::npos) {
          m_at = place;
          return index - before;
        }
      }
    }
    m_at = start;
    index = before;
    return -1;
  }

  int WriteLine(const Text& text) {
    if (!m_open) {
      return 0;
    }
    std::string added;
    if (m_ansi) {
      Require(qxv::os::WideToMultiByte(qxv::os::kCodePageAnsi, text, added));
    } else {
      added = fuzz::BytesOf(text);
    }
    bytes += added + (m_ansi ? std::string("\r\n") : std::string("\r\0\n\0", 4));
    m_at = bytes.size();
    ++count;
    index = count - 1;
    return static_cast<int>(m_ansi ? added.size() : text.size());
  }

  void Clear() {
    if (m_open) {
      bytes = m_ansi ? "" : "\xFF\xFE";
      m_at = Start();
      count = 1;
    }
  }

 private:
  std::size_t Start() const { return m_ansi ? 0 : 2; }

  bool Next(unsigned& unit) {
    const std::size_t width = m_ansi ? 1 : 2;
    if (bytes.size() - m_at < width) {
      m_at = bytes.size();
      return false;
    }
    unit = static_cast<unsigned char>(bytes[m_at]);
    unit |= m_ansi ? 0u : static_cast<unsigned>(static_cast<unsigned char>(bytes[m_at + 1])) << 8;
    m_at += width;
    return true;
  }

  bool m_open = false;
  bool m_ansi = true;
  std::size_t m_at = 0;
};

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteTxtRW(object); }
};

void Split(const Text& line, QXChar separator, std::vector<Text>& fields) {
  std::size_t at = 0;
  for (std::size_t cut = 0; separator != 0 && (cut = line.find(separator, at)) != Text::npos; at = cut + 1) {
    fields.push_back(line.substr(at, cut - at));
  }
  fields.push_back(line.substr(at));
}

void Operate(fuzz::Input& input, const fuzz::ScratchFile& scratch, CQXVtxtRW& file, Model& model) {
  const unsigned operation = input.Byte();
  Text expected;
  CQXString line;
  if (operation % 4 == 0) {
    Require(file.ReadLine(line) == model.ReadLine(expected) && fuzz::TextOf(line) == expected);
    return;
  }
  switch (operation / 4 % 9) {
    case 0: {
      const Text text = input.TextUpToZero();
      Require(file.WriteLine(text.c_str()) == model.WriteLine(text));
      break;
    }
    case 1:
      Require(file.GetLineCount() == model.GetLineCount());
      break;
    case 2: {
      const Text text = input.TextUpToZero();
      Require(file.FindLine(text.c_str()) == model.FindLine(text));
      break;
    }
    case 3: {
      const Text text = input.TextUpToZero();
      int result = 0;
      if (!text.empty()) {
        (void)model.FindLine(text);
        result = model.ReadLine(expected);
      }
      Require(file.FindAndReadLine(text.c_str(), line) == result && fuzz::TextOf(line) == expected);
      break;
    }
    case 4: {
      const QXChar separator = input.Unit();
      CQXArray<CQXString, CQXString&> fields;
      std::vector<Text> parts;
      const int result = model.ReadLine(expected);
      if (result != 0) {
        Split(expected, separator, parts);
      }
      Require(file.ReadFields(fields, separator) == result && fields.GetSize() == static_cast<QXInt64>(parts.size()));
      for (std::size_t i = 0; i < parts.size(); ++i) {
        Require(fuzz::TextOf(fields[static_cast<QXInt64>(i)]) == parts[i]);
      }
      break;
    }
    case 5: {
      const Text first = input.TextUpToZero();
      const Text second = input.TextUpToZero();
      Require(file.WriteLine(first.c_str(), second.c_str()) == model.WriteLine(first + second));
      break;
    }
    case 6:
      file.Clear();
      model.Clear();
      break;
    case 7:
      file.Close();
      model.Close();
      break;
    default:
      Require(file.Open(scratch.Name()) == 0);
      model.Open();
      break;
  }
  Require(scratch.Read() == model.bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile scratch("text_file");
  fuzz::Input input(data, size);
  Model model;
  model.bytes = input.Bytes(input.Byte());
  scratch.Write(model.bytes);
  const std::unique_ptr<CQXVtxtRW, Release> file(QXV_ConstructTxtRW());
  Require(file->Open(scratch.Name()) == 0);
  model.Open();
  for (int i = 0; i < 40 && !input.AtEnd(); ++i) {
    Operate(input, scratch, *file, model);
  }
  return 0;
}
