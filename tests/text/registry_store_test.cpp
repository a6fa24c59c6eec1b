// registry_store_test.cpp - the codes that applications see where the Linux store is missing, read-only or damaged.

#include "qxv/registry.h"

#include "support/private_registry.h"
#include "support/text.h"
#include "support/unprivileged.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr const QXChar* kKey = QXT("Software\\Test");

int Code(unsigned code) { return static_cast<int>(code); }

class RegisterOverStore : public testing::Test {
 protected:
  support::PrivateRegistry m_registry;
  CQXVRegister m_register;
};

TEST_F(RegisterOverStore, AMissingStoreHasNoKeysAndIsCreatedByTheFirstWrite) {
  EXPECT_EQ(m_register.Open(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A45));
  int value = 5;
  EXPECT_EQ(QXVGetRegIntValue(HKEY_LOCAL_MACHINE, QXT(""), QXT("v"), value), 0);
  EXPECT_FALSE(fs::exists(m_registry.Store())) << "asking creates nothing";
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0);
  EXPECT_TRUE(fs::exists(m_registry.Store()));
}

TEST_F(RegisterOverStore, AStoreThatVanishesTakesItsKeysAlong) {
  ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0);
  fs::remove_all(m_registry.Store().parent_path());
  int value = 5;
  EXPECT_EQ(m_register.Read(QXT("v"), value), Code(0x89601A43));
  EXPECT_EQ(m_register.Write(QXT("v"), value), Code(0x89601A46));
  EXPECT_EQ(m_register.DeleteValue(QXT("v")), Code(0x89601A42));
  EXPECT_EQ(m_register.Close(), 0);
}

TEST_F(RegisterOverStore, AReadOnlyStoreRefusesWritersAndFullAccess) {
  ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0);
  ASSERT_EQ(m_register.Write(QXT("v"), 7), 0);
  const fs::path folder = m_registry.Store().parent_path();
  for (const fs::path& above : {folder, folder.parent_path(), folder.parent_path().parent_path()}) {
    fs::permissions(above, fs::perms(0755));
  }
  fs::permissions(m_registry.Store(), fs::perms(0444));
  const support::Unprivileged nobody;
  int value = 5;
  EXPECT_EQ(m_register.Read(QXT("v"), value), 0) << "a key that is open is read on";
  EXPECT_EQ(value, 7);
  EXPECT_EQ(m_register.Write(QXT("v"), 8), Code(0x89601A46));
  EXPECT_EQ(m_register.DeleteValue(QXT("v")), Code(0x89601A42));
  EXPECT_EQ(QXVGetRegIntValue(HKEY_LOCAL_MACHINE, kKey, QXT("v"), value), 0) << "full access is asked for";
  EXPECT_EQ(QXVSetRegIntValue(HKEY_LOCAL_MACHINE, kKey, QXT("v"), 8), 0);
  EXPECT_EQ(m_register.Open(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A45));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A41));
}

TEST_F(RegisterOverStore, ADamagedStoreIsToldAndLeftAlone) {
  ASSERT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), 0);
  const std::string rubbish(4096, 'x');
  std::ofstream(m_registry.Store()) << rubbish;
  int value = 5;
  EXPECT_EQ(m_register.Read(QXT("v"), value), Code(0x89601A43));
  EXPECT_EQ(m_register.Write(QXT("v"), value), Code(0x89601A46));
  EXPECT_EQ(m_register.Open(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A45));
  EXPECT_EQ(m_register.Create(HKEY_LOCAL_MACHINE, kKey), Code(0x89601A41));
  EXPECT_EQ(QXVGetRegIntValue(HKEY_LOCAL_MACHINE, kKey, QXT("v"), value), 0);
  std::ifstream file(m_registry.Store());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), rubbish);
}

}  // namespace
