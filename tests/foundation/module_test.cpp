// module_test.cpp - the module's life and its lock class.

#include "foundation/module.h"
#include "os/module_entry.h"
#include "qxv/module.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(Module, IsLoadedUntilItIsUnloaded) {
  EXPECT_TRUE(qxv::ModuleIsLoaded());
  qxv::os::OnModuleUnload();
  EXPECT_FALSE(qxv::ModuleIsLoaded());
  EXPECT_TRUE(qxv::os::OnModuleLoad());
  EXPECT_TRUE(qxv::ModuleIsLoaded());
}

TEST(CriticalSection, KeepsOtherThreadsOut) {
  CMyCritialSection section;
  int counter = 0;  // not atomic: the lock alone keeps the sum whole
  const auto count = [&] {
    for (int i = 0; i < 20000; ++i) {
      section.Lock();
      section.Lock();  // the holder may take it again
      counter = counter + 1;
      section.Unlock();
      section.Unlock();
    }
  };
  std::thread first(count);
  std::thread second(count);
  first.join();
  second.join();
  EXPECT_EQ(counter, 40000);
}

}  // namespace
