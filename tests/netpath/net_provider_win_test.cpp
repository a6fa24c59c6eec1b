// net_provider_win_test.cpp - shares and the provider's name through the system's real provider library, which loads a provider
// of the test's own. Windows only.

#include "qxv/identity.h"
#include "qxv/net_path.h"

#include "os/network.h"
#include "os/registry.h"
#include "os/win_api.h"
#include "support/fake_provider.h"
#include "support/private_registry.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace qxv::os;
using support::Text;
using support::TextOf;

constexpr const wchar_t* kComputerName = L"SYSTEM\\CurrentControlSet\\Control\\ComputerName\\ActiveComputerName";
constexpr const wchar_t* kOrder = L"SYSTEM\\CurrentControlSet\\Control\\NetworkProvider\\Order";
constexpr const wchar_t* kProvider = L"SYSTEM\\CurrentControlSet\\Services\\FakeNet\\NetworkProvider";
constexpr const wchar_t* kShares = L"SYSTEM\\CurrentControlSet\\Services\\LanmanServer\\Shares";

class NetworkProvider : public testing::Test {
 protected:
  NetworkProvider() {
    SetText(kComputerName, L"ComputerName", L"VM");
    SetText(kOrder, L"ProviderOrder", L"FakeNet");
    SetText(kProvider, L"Name", L"Fake LAN Manager");
    SetText(kProvider, L"ProviderPath", fileName);
    *state = {};
    state->shares = L"\0";
    EXPECT_EQ(::GetModuleHandleW(L"Mpr.dll"), nullptr) << "it would have read the registry already";
    QXVRefreshNetPathTable();
  }
  ~NetworkProvider() override {
    EXPECT_EQ(state->opened, 0);
    EXPECT_EQ(::GetModuleHandleW(L"Mpr.dll"), nullptr);
    QXVRefreshNetPathTable();
    ::FreeLibrary(module);
  }

  static void SetBytes(const wchar_t* keyName, const wchar_t* name, std::uint32_t type, const Text& text) {
    RegistryKey key;
    bool created = false;
    ASSERT_EQ(key.Create(HKEY_LOCAL_MACHINE, keyName, kRegistryFullAccess, created), 0u);
    ASSERT_EQ(SetRegistryValue(key.Key(), name, type,
                               {reinterpret_cast<const unsigned char*>(text.data()), text.size() * sizeof(wchar_t)}),
              0u);
  }
  static void SetText(const wchar_t* keyName, const wchar_t* name, const Text& text) {
    SetBytes(keyName, name, kRegistryText, text + L'\0');
  }
  static void SetFolder(const wchar_t* share, const Text& folder) {
    SetBytes(kShares, share, kRegistryMultiText,
             L"CSCFlags=0" + Text(1, L'\0') + L"Path=" + folder + L'\0' + L"Type=0" + Text(2, L'\0'));
  }

  // What the system's part of the table is: "\\VM\media=D:\media".
  std::vector<Text> Shares() const {
    std::vector<PublishedShare> shares;
    (void)SystemNetwork().PublishedShares(L"\\\\VM", shares);
    std::vector<Text> names;
    for (const PublishedShare& share : shares) {
      names.push_back(share.remoteName);
    }
    return names;
  }
  static Text Table() {
    CQXString lines;
    QXVDumpNetPathTable(lines);
    return TextOf(lines);
  }

  support::PrivateRegistry registry;
  Text fileName = [] {
    const std::string narrow = QXV_FAKE_PROVIDER;
    Text name(L"Z:");
    for (const char byte : narrow) {
      name += byte == '/' ? L'\\' : static_cast<wchar_t>(byte);
    }
    return name;
  }();
  HMODULE module = ::LoadLibraryW(fileName.c_str());
  FakeProviderState* state =
      reinterpret_cast<decltype(&::FakeProvider)>(reinterpret_cast<void*>(::GetProcAddress(module, "FakeProvider")))();
};

using NetworkProviderKept = NetworkProvider;
using Names = std::vector<Text>;

TEST_F(NetworkProvider, ItsNameIsTheProvidersName) {
  CQXString name;
  EXPECT_EQ(QXVGetNetProviderName(name), 1);
  EXPECT_EQ(name, L"Fake LAN Manager");
}

TEST_F(NetworkProvider, SharesTakeTheirFoldersFromTheRegistry) {
  state->shares = L"\\\\VM\\media\0\\\\VM\\clips\0";
  SetFolder(L"media", L"D:\\media\\");
  SetFolder(L"clips", L"E:\\clips");
  EXPECT_EQ(Table(), L"\\\\VM\\media\t\tD:\\media\n\\\\VM\\clips\t\tE:\\clips\n");
  Text computer;
  ASSERT_TRUE(SystemNetwork().ComputerName(computer));
  EXPECT_EQ(Text(state->container), L"\\\\" + computer);

  CQXString path;
  QXVUNC2Local(path, L"\\\\vm\\MEDIA\\a.mxf");
  EXPECT_EQ(path, L"D:\\media\\a.mxf");
  QXVLocal2UNC(path, L"e:\\Clips\\a.mxf");
  EXPECT_EQ(path, L"\\\\VM\\clips\\a.mxf");
}

TEST_F(NetworkProvider, SharesWithoutSettingsAndWithTooLongOnesAreSkipped) {
  state->shares = L"\\\\VM\\none\0\\\\VM\\long\0\\\\VM\\most\0";
  SetFolder(L"long", Text(1100, L'x'));
  const Text most = L"Path=" + Text(1024 - 5, L'm');  // 2,048 bytes without a terminator
  SetBytes(kShares, L"most", kRegistryMultiText, most);
  EXPECT_EQ(Shares(), (Names{L"\\\\VM\\most"}));
  EXPECT_EQ(Table(), L"\\\\VM\\most\t\t" + Text(1024 - 5, L'm') + L"\n");
}

TEST_F(NetworkProvider, WithoutTheKeyOfSharesThereAreNone) {
  state->shares = L"\\\\VM\\media\0";
  EXPECT_EQ(Shares(), Names());
}

TEST_F(NetworkProvider, EntriesWithoutANameAreSkipped) {
  state->shares = L"?\0\\\\VM\\media\0?\0";
  SetFolder(L"media", L"D:\\media");
  EXPECT_EQ(Shares(), (Names{L"\\\\VM\\media"}));
}

TEST_F(NetworkProvider, AnEnumerationThatDoesNotOpenGivesNone) {
  state->shares = L"\\\\VM\\media\0";
  state->openResult = ERROR_BAD_NETPATH;
  SetFolder(L"media", L"D:\\media");
  EXPECT_EQ(Shares(), Names());
  EXPECT_EQ(state->enumerations, 0);
}

TEST_F(NetworkProvider, AnEnumerationThatFailsGivesNoneAndIsClosed) {
  state->shares = L"\\\\VM\\media\0";
  state->enumResult = ERROR_ACCESS_DENIED;
  SetFolder(L"media", L"D:\\media");
  EXPECT_EQ(Shares(), Names());
}

TEST_F(NetworkProvider, NoEntriesAreNone) {
  SetFolder(L"media", L"D:\\media");
  EXPECT_EQ(Shares(), Names());
}

TEST_F(NetworkProviderKept, SharesBehindTheFirstBlockAreNotSeen) {
  Text list;
  for (int i = 0; i < 500; ++i) {
    const Text share = L"share" + std::to_wstring(i);
    list += L"\\\\VM\\" + share + L'\0';
    SetFolder(share.c_str(), L"D:\\" + share);
  }
  list += L'\0';
  state->shares = list.c_str();
  const Names names = Shares();
  EXPECT_GT(names.size(), 100u);
  EXPECT_LT(names.size(), 300u);
  EXPECT_EQ(state->enumerations, 1);
}

}  // namespace
