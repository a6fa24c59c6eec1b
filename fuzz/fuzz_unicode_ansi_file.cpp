// fuzz_unicode_ansi_file.cpp - any operations on a file of any bytes in either encoding, beside a model that works a unit at a
// time on a byte string. First byte: length of the file at first; then its bytes; then operations.

#include "fuzz/fuzz_input.h"
#include "os/code_page.h"
#include "qxv/factories.h"
#include "qxv/unicode_ansi_file.h"

#include <memory>
#include <string>

namespace {

using fuzz::Require;
using fuzz::Text;

constexpr unsigned kPage = qxv::os::kCodePageThreadAnsi;

Text Widen(const std::string& bytes) {
  Text text;
  Require(qxv::os::MultiByteToWide(kPage, bytes, text));
  return text;
}

std::string Narrow(const Text& text) {
  std::string bytes;
  Require(qxv::os::WideToMultiByte(kPage, text, bytes));
  return bytes;
}

Text Units(const std::string& bytes, std::size_t from) {
  Text text;
  for (std::size_t i = from; i + 1 < bytes.size(); i += 2) {
    text += static_cast<QXChar>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
  }
  return text;
}

class Model {
 public:
  std::string bytes;

  unsigned Open(int encoding, unsigned flags) {
    m_reads = m_writes = false;
    const bool reads = (flags & 3) == 1;
    if (!reads && (flags & 3) != 2) {
      return 0xFFFFFFFF;
    }
    bool wantsUnicode = encoding == 0;
    bool isUnicode = bytes.size() >= 2 ? bytes.substr(0, 2) == "\xFF\xFE" : !reads && wantsUnicode;
    if (!reads && (flags & 32) != 0) {
      isUnicode = wantsUnicode;
      bytes = wantsUnicode ? "\xFF\xFE" : "";
    }
    wantsUnicode = (flags & 16) != 0 ? isUnicode : wantsUnicode;
    if (wantsUnicode != isUnicode && !bytes.empty()) {
      bytes = wantsUnicode ? "\xFF\xFE" + fuzz::BytesOf(Widen(bytes.c_str())) : Narrow(Units(bytes, 2).c_str());
    }
    m_unicode = wantsUnicode;
    m_writes = !reads;
    m_reads = reads && bytes.size() > (m_unicode ? 2u : 0u);
    m_view = bytes + std::string(8, '\0');
    m_at = m_unicode ? 2 : 0;
    m_size = bytes.size();
    return 0;
  }

  void Close() { m_reads = m_writes = false; }

  void WriteLine(Text text) {
    if (!m_writes) {
      return;
    }
    while (!text.empty() && text.back() == 10) {
      text.pop_back();
    }
    text += QXChar(10);
    Text line;
    for (const QXChar unit : text) {
      line += unit == 10 ? Text(QXT("\r\n")) : Text(1, unit);
    }
    bytes += m_unicode ? fuzz::BytesOf(line) : Narrow(line);
  }

  int ReadLine(Text& line) {
    if (!m_reads) {
      return 0;
    }
    line.clear();
    if (m_at > m_size) {
      return 0;
    }
    const std::size_t from = m_at;
    while (m_view[m_at] != 10 && m_view[m_at] != 0) {
      m_at += m_unicode ? 2 : 1;
    }
    m_at += m_unicode ? 2 : 1;
    const std::string piece = m_view.substr(from, m_at - from);
    line = m_unicode ? Units(piece, 0).c_str() : Widen(piece.c_str()).c_str();
    return 1;
  }

 private:
  bool m_reads = false;
  bool m_writes = false;
  bool m_unicode = false;
  std::string m_view;
  std::size_t m_at = 0;
  std::size_t m_size = 0;
};

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteUnicodeAnsiFile(object); }
};

void Open(fuzz::Input& input, const fuzz::ScratchFile& scratch, CQXVUnicodeAnsiFile& file, Model& model) {
  const unsigned choice = input.Byte();
  const unsigned flags = choice & 0x3F;
  const int encoding = choice >> 6 == 0 ? 0 : static_cast<int>(choice >> 6);
  Require(file.Open(scratch.Name(), encoding, flags) == model.Open(encoding, flags));
}

void Operate(fuzz::Input& input, const fuzz::ScratchFile& scratch, CQXVUnicodeAnsiFile& file, Model& model) {
  switch (input.Byte() % 8) {
    case 0:
    case 1:
    case 2: {
      CQXString line(QXT("old"));
      Text expected = QXT("old");
      Require(file.ReadLine(line) == model.ReadLine(expected) && fuzz::TextOf(line) == expected);
      return;
    }
    case 3:
    case 4: {
      const Text text = input.TextUpToZero();
      file.WriteLine(text.c_str());
      model.WriteLine(text);
      break;
    }
    case 5:
      file.Close();
      model.Close();
      break;
    case 6:
      (void)file.Convert(nullptr);
      break;
    default:
      Open(input, scratch, file, model);
      break;
  }
  Require(scratch.Read() == model.bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile scratch("unicode_ansi_file");
  fuzz::Input input(data, size);
  Model model;
  model.bytes = input.Bytes(input.Byte());
  scratch.Write(model.bytes);
  const std::unique_ptr<CQXVUnicodeAnsiFile, Release> file(QXV_ConstructUnicodeAnsiFile());
  Open(input, scratch, *file, model);
  for (int i = 0; i < 40 && !input.AtEnd(); ++i) {
    Operate(input, scratch, *file, model);
  }
  return 0;
}
