// files.cpp - reading files, and names of files.

#include "qxvtool/support/files.h"

#include "qxv/path.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tool {

namespace {

[[noreturn]] void Refuse(const std::string& path, CException* thrown, std::int32_t number) {
  thrown->Delete();
  throw Failure(path, SystemReason(number));
}

}  // namespace

InputFile::InputFile(const std::string& path) : m_path(path) {
  if (IsFolder(path)) {
    throw Failure(path, "is a folder");
  }
  try {
    CFileException error;
    if (m_file.Open(Wide(path), CFile::modeRead | CFile::shareDenyNone, &error) == 0) {
      throw Failure(path, SystemReason(error.m_lOsError));
    }
    m_size = m_file.GetLength();
  } catch (CFileException* thrown) {
    Refuse(path, thrown, thrown->m_lOsError);
  }
}

void InputFile::Seek(std::uint64_t position) {
  try {
    m_file.Seek(static_cast<QXInt64>(position), CFile::begin);
  } catch (CFileException* thrown) {
    Refuse(m_path, thrown, thrown->m_lOsError);
  }
}

std::size_t InputFile::Read(std::span<unsigned char> room) {
  try {
    return m_file.Read(room.data(), static_cast<unsigned int>(room.size()));
  } catch (CFileException* thrown) {
    Refuse(m_path, thrown, thrown->m_lOsError);
  }
}

std::vector<unsigned char> ReadFile(const std::string& path) {
  constexpr std::uint64_t kMost = 0x7FFFFFFF;
  InputFile file(path);
  if (file.Size() > kMost) {
    throw Failure(path, "has " + SizeText(static_cast<double>(file.Size())) + ", more than 2 GiB");
  }
  std::vector<unsigned char> bytes(static_cast<std::size_t>(file.Size()));
  bytes.resize(bytes.empty() ? 0 : file.Read(bytes));
  return bytes;
}

bool Exists(const std::string& path) {
  CFileStatus status;
  return CFile::GetStatus(Wide(path), status) != 0;
}

bool IsFolder(const std::string& path) {
  CFileStatus status;
  return CFile::GetStatus(Wide(path), status) != 0 && (status.m_attribute & CFile::directory) != 0;
}

void MakeFolder(const std::string& path) {
  std::string backslashed = path;  // the only separator that QXVCreatePath knows
  std::replace(backslashed.begin(), backslashed.end(), '/', '\\');
  if (!IsFolder(path) && QXVCreatePath(Wide(backslashed)) == 0) {
    throw Failure(path, "cannot be made a folder");
  }
}

std::string AsFolder(const std::string& path) {
  return path.empty() || path.back() == '/' || path.back() == '\\' ? path
                                                                   : path + (path.find('\\') == std::string::npos ? '/' : '\\');
}

std::string NameOf(const std::string& path) { return Narrow(QXVGetFileName(Wide(path))); }

std::string StemOf(const std::string& path) {
  const std::string name = NameOf(path);
  const std::size_t point = name.rfind('.');
  return point == std::string::npos || point == 0 ? name : name.substr(0, point);
}

CQXString DecodeText(const std::vector<unsigned char>& bytes, const std::string& path) {
  const std::string_view view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const bool isLittle = view.starts_with("\xFF\xFE");
  if (isLittle || view.starts_with("\xFE\xFF")) {
    std::basic_string<QXChar> units;
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
      units += static_cast<QXChar>(isLittle ? bytes[at] | bytes[at + 1] << 8 : bytes[at] << 8 | bytes[at + 1]);
    }
    return qxv::ToString(units);
  }
  if (!IsUtf8(view)) {
    throw Failure(path, "is a text in neither UTF-8 nor UTF-16");
  }
  return Wide(view.starts_with("\xEF\xBB\xBF") ? view.substr(3) : view);
}

}  // namespace tool
