// buffer_file_duel.h - a sequence of operations, told by bytes, on a buffered file and on its model; both must agree.
#pragma once

#include "streams/byte_reader.h"
#include "support/buffer_file_fixture.h"
#include "support/buffer_file_model.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace streams_test {

/// What each byte sequence means is of no concern; any is good. Returns what differed, empty when nothing did.
class BufferFileDuel {
 public:
  BufferFileDuel(std::span<const unsigned char> script, const support::Text& name) : m_script(script), m_name(name) {}

  std::string Run() {
    const unsigned first = m_script.U8();
    const bool forReading = (first & 1) != 0;
    const OpenedBy way = kAllWays[(first >> 1) % 4];
    const std::uint32_t size = 1024 + m_script.U8() % 80;
    std::vector<unsigned char> content;
    if (forReading) {
      // Some bytes of the script, repeated: counts that are small, large and nonsense.
      const auto seed = m_script.Bytes(std::min<std::size_t>(m_script.U8(), m_script.Left()));
      content.resize(m_script.U16() % 6000);
      for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = seed.empty() ? static_cast<unsigned char>(i) : seed[i % seed.size()];
      }
      if (!support::WriteBytes(m_name, std::string(content.begin(), content.end()))) {
        return "cannot write the file";
      }
    }
    OpenedFile file = OpenFile(way, m_name, forReading, size);
    if (file.opened == 0) {
      return "cannot open the file";
    }
    BufferFileModel model(content, forReading, size);
    for (int turn = 0; turn < 400 && !m_script.Failed(); ++turn) {
      const unsigned operation = m_script.U8();
      if (!(forReading ? ReadTurn(*file.file, model, operation) : WriteTurn(*file.file, model, operation))) {
        return "turn " + std::to_string(turn) + ", operation " + std::to_string(operation % 16);
      }
    }
    file->Close();
    model.Close();
    const auto& expected = model.File();
    return support::ReadBytes(m_name) == std::string(expected.begin(), expected.end()) ? "" : "the file's bytes";
  }

 private:
  template <class T>
  using Array = CQXArray<T, T&>;

  static constexpr std::size_t kMostTexts = 2000;  // each has a guarded page of its own in test programs

  template <class Value>
  bool ReadValue(CQXVBufferFileRW& file, BufferFileModel& model) {
    Value value{};
    unsigned char expected[sizeof(Value)] = {};
    const auto bytes = model.Read(expected, sizeof value);
    return file.Read(value) == bytes && std::memcmp(&value, expected, sizeof value) == 0;
  }

  template <class Values>
  bool ReadValues(CQXVBufferFileRW& file, BufferFileModel& model) {
    Values values;
    values.SetSize(3);
    const std::size_t each = sizeof(*values.GetData());
    std::memset(static_cast<void*>(values.GetData()), 0xEE, 3 * each);
    std::vector<unsigned char> expected(3 * each, 0xEE);
    const auto bytes = model.ReadArray(expected, static_cast<std::uint32_t>(each));
    return file.Read(values) == bytes && static_cast<std::size_t>(values.GetSize()) * each == expected.size() &&
           (expected.empty() || std::memcmp(values.GetData(), expected.data(), expected.size()) == 0);
  }

  static std::u16string UnitsOf(const CQXString& text) {
    const QXChar* units = text;
    return std::u16string(units, units + text.GetLength());
  }

  bool SeekTurn(CQXVBufferFileRW& file, BufferFileModel& model) {
    const unsigned kind = m_script.U8();
    const std::int64_t offset = kind < 16    ? m_script.I64()
                                : kind < 128 ? m_script.I16()
                                             : static_cast<std::int8_t>(m_script.U8());
    const std::uint32_t origin = kind % 8 == 7 ? 0xFFFFFFFF : kind % 4;
    return file.Seek(offset, origin) == model.Seek(offset, origin);
  }

  bool ReadTurn(CQXVBufferFileRW& file, BufferFileModel& model, unsigned operation) {
    switch (operation % 16) {
      case 0:
        return ReadValue<char>(file, model);
      case 1:
        return ReadValue<short>(file, model);
      case 2:
        return ReadValue<int>(file, model);
      case 3:
        return ReadValue<double>(file, model);
      case 4:
        return ReadValue<GUID>(file, model);
      case 5:
        return ReadValue<SYSTEMTIME>(file, model);
      case 6:
      case 7:
      case 8: {
        std::vector<unsigned char> bytes(m_script.U16() % 1200 + 1, 0);
        std::vector<unsigned char> expected(bytes);
        const auto count = static_cast<std::uint32_t>(bytes.size() - 1);
        const auto taken = model.ReadRaw(expected.data(), count);
        return file.Read(bytes.data(), count) == taken && bytes == expected;
      }
      case 9: {
        CQXString text(QXT("old"));
        std::u16string expected = u"old";
        const auto bytes = model.ReadText(expected);
        return file.Read(text) == bytes && UnitsOf(text) == expected;
      }
      case 10: {
        Array<CQXString> texts;
        std::vector<std::u16string> expected;
        BufferFileModel after(model);
        const auto bytes = after.ReadTexts(expected);
        if (expected.size() > kMostTexts) {
          return true;  // not tried
        }
        model = after;
        bool same = file.Read(texts) == bytes && static_cast<std::size_t>(texts.GetSize()) == expected.size();
        for (std::size_t i = 0; same && i < expected.size(); ++i) {
          same = UnitsOf(texts[static_cast<QXInt64>(i)]) == expected[i];
        }
        return same;
      }
      case 11:
        return ReadValues<Array<unsigned char>>(file, model);
      case 12:
        return ReadValues<Array<QXChar>>(file, model);
      case 13:
        return ReadValues<Array<float>>(file, model);
      case 14:
        return operation < 128 ? ReadValues<Array<CRect>>(file, model) : ReadValues<CArray<SYSTEMTIME>>(file, model);
      default:
        return SeekTurn(file, model);
    }
  }

  template <class Value>
  bool WriteValue(CQXVBufferFileRW& file, BufferFileModel& model) {
    unsigned char image[sizeof(Value)];
    std::memset(image, m_script.U8(), sizeof image);
    Value value;
    std::memcpy(static_cast<void*>(&value), image, sizeof value);
    return file.Write(value) == model.Write(image, sizeof image);
  }

  template <class Values>
  bool WriteValues(CQXVBufferFileRW& file, BufferFileModel& model) {
    Values values;
    values.SetSize(m_script.U8());
    const std::size_t bytes = static_cast<std::size_t>(values.GetSize()) * sizeof(*values.GetData());
    std::vector<unsigned char> image(bytes);
    for (std::size_t i = 0; i < bytes; ++i) {
      image[i] = static_cast<unsigned char>(i * 7);
    }
    if (bytes > 0) {
      std::memcpy(static_cast<void*>(values.GetData()), image.data(), bytes);
    }
    return file.Write(values) == model.WriteArray(image, sizeof(*values.GetData()));
  }

  std::u16string NextText() { return std::u16string(m_script.U16() % 700, static_cast<char16_t>(1 + m_script.U8())); }

  static CQXString TextOf(const std::u16string& units) {
    const std::basic_string<QXChar> text(units.begin(), units.end());
    return CQXString(text.c_str());
  }

  bool WriteTurn(CQXVBufferFileRW& file, BufferFileModel& model, unsigned operation) {
    switch (operation % 16) {
      case 0:
        return WriteValue<char>(file, model);
      case 1:
        return WriteValue<short>(file, model);
      case 2:
        return WriteValue<int>(file, model);
      case 3:
        return WriteValue<QXInt64>(file, model);
      case 4:
        return WriteValue<GUID>(file, model);
      case 5:
        return WriteValue<SYSTEMTIME>(file, model);
      case 6:
      case 7:
      case 8: {
        const std::vector<unsigned char> bytes(m_script.U16() % 1200 + 1, m_script.U8());
        const auto count = static_cast<std::uint32_t>(bytes.size() - 1);
        return file.Write(bytes.data(), count) == model.WriteRaw(bytes.data(), count);
      }
      case 9: {
        const std::u16string text = NextText();
        return file.Write(TextOf(text)) == model.WriteText(text);
      }
      case 10: {
        Array<CQXString> texts;
        std::vector<std::u16string> expected(m_script.U8() % 4);
        for (auto& units : expected) {
          units = NextText();
          CQXString text = TextOf(units);
          texts.Add(text);
        }
        return file.Write(texts) == model.WriteTexts(expected);
      }
      case 11:
        return WriteValues<Array<unsigned char>>(file, model);
      case 12:
        return WriteValues<Array<QXChar>>(file, model);
      case 13:
        return WriteValues<Array<int>>(file, model);
      case 14:
        return operation < 128 ? WriteValues<Array<CRect>>(file, model) : WriteValues<CArray<SYSTEMTIME>>(file, model);
      default:
        return SeekTurn(file, model);
    }
  }

  qxv::ByteReader m_script;
  support::Text m_name;
};

}  // namespace streams_test
