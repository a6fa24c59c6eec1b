// module_entry_test.cpp - a module whose initialisation fails refuses to load: Windows gives error 1114, on Linux, where nothing
// can refuse, the process ends with a message.

#if defined(_WIN32)
#include "os/win_api.h"
#else
#include <dlfcn.h>
#endif

#include <gtest/gtest.h>

namespace {

#if defined(_WIN32)

TEST(ModuleEntry, AFailedInitialisationMakesTheModuleRefuseToLoad) {
  EXPECT_EQ(::LoadLibraryA(QXV_REFUSING_MODULE), nullptr);
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_DLL_INIT_FAILED));
}

TEST(ModuleEntry, TheLibraryItselfLoadsAndUnloadsAgainAndAgain) {
  for (int i = 0; i < 3; ++i) {
    const HMODULE module = ::LoadLibraryA(QXV_LIBRARY);
    ASSERT_NE(module, nullptr) << ::GetLastError();
    EXPECT_TRUE(::FreeLibrary(module));
  }
}

#else

TEST(ModuleEntry, AFailedInitialisationMakesTheModuleRefuseToLoad) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH((void)::dlopen(QXV_REFUSING_MODULE, RTLD_NOW), "could not be initialised");
}

TEST(ModuleEntry, TheLibraryItselfLoadsAndUnloadsAgainAndAgain) {
  for (int i = 0; i < 3; ++i) {
    void* module = ::dlopen(QXV_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << ::dlerror();
    EXPECT_EQ(::dlclose(module), 0);
  }
}

#endif

}  // namespace
