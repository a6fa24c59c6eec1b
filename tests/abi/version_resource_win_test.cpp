// version_resource_win_test.cpp - what the DLL says about itself, read back as the file's properties page reads it.

#include "qxv/types.h"
#include "qxv/version.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<unsigned char> ReadVersionResource() {
  DWORD handle = 0;
  std::vector<unsigned char> resource(::GetFileVersionInfoSizeA(QXV_LIBRARY_FILE, &handle));
  if (!resource.empty() && !::GetFileVersionInfoA(QXV_LIBRARY_FILE, 0, static_cast<DWORD>(resource.size()), resource.data())) {
    resource.clear();
  }
  return resource;
}

// Empty where the resource has no such value.
std::wstring TextOf(std::vector<unsigned char>& resource, const std::wstring& name) {
  void* text = nullptr;
  UINT units = 0;
  if (!::VerQueryValueW(resource.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &units)) {
    return {};
  }
  return static_cast<const wchar_t*>(text);
}

TEST(VersionResource, NumbersAreThoseOfTheHeader) {
  std::vector<unsigned char> resource = ReadVersionResource();
  ASSERT_FALSE(resource.empty());
  void* record = nullptr;
  UINT bytes = 0;
  ASSERT_TRUE(::VerQueryValueW(resource.data(), L"\\", &record, &bytes));
  ASSERT_EQ(bytes, sizeof(VS_FIXEDFILEINFO));
  const auto* numbers = static_cast<const VS_FIXEDFILEINFO*>(record);
  EXPECT_EQ(numbers->dwSignature, 0xFEEF04BDu);
  EXPECT_EQ(numbers->dwFileVersionMS, static_cast<DWORD>(QXV_VERSION_MAJOR) << 16 | QXV_VERSION_MINOR);
  EXPECT_EQ(numbers->dwFileVersionLS, static_cast<DWORD>(QXV_VERSION_PATCH) << 16);
  EXPECT_EQ(numbers->dwProductVersionMS, numbers->dwFileVersionMS);
  EXPECT_EQ(numbers->dwProductVersionLS, numbers->dwFileVersionLS);
  EXPECT_EQ(numbers->dwFileType, 2u);  // a DLL
}

TEST(VersionResource, TextsNameTheLibraryAndItsVersion) {
  std::vector<unsigned char> resource = ReadVersionResource();
  ASSERT_FALSE(resource.empty());
  const std::wstring version =
      std::to_wstring(QXV_VERSION_MAJOR) + L'.' + std::to_wstring(QXV_VERSION_MINOR) + L'.' + std::to_wstring(QXV_VERSION_PATCH);
  EXPECT_EQ(TextOf(resource, L"FileVersion"), version);
  EXPECT_EQ(TextOf(resource, L"ProductVersion"), version);
  EXPECT_EQ(TextOf(resource, L"OriginalFilename"), L"QXVCommonLibU.dll");
  EXPECT_EQ(TextOf(resource, L"InternalName"), L"QXVCommonLibU");
  EXPECT_EQ(TextOf(resource, L"ProductName"), L"QXVCommonLib");
  EXPECT_EQ(TextOf(resource, L"FileDescription"), L"Utility library of a media-production suite");
}

}  // namespace
