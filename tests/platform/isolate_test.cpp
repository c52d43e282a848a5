// Work in a process of its own, and what a module file exports.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Isolate.h"
#include "platform/ModuleExports.h"
#include "platform/System.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

TEST(Isolate, GivesWhatTheWorkGave) {
  const int parent = GetProcessId();
  int changed = 0;
  const auto result = RunIsolated(
      [&]() -> std::string {
        changed = 1;
        NoteStep("a step");
        return GetProcessId() == parent ? "the same" : std::string(100000, 'x');
      },
      20);
  ASSERT_TRUE(result) << result.Message();
  EXPECT_EQ(result.Value(), std::string(100000, 'x'));
  EXPECT_EQ(changed, 0);
}

TEST(Isolate, SaysHowTheWorkEnded) {
  struct Case {
    std::string (*work)();
    double seconds;
    const char* says;
  };
  const Case cases[] = {
      {[]() -> std::string { _Exit(7); }, 20, "the process ended itself with status 7"},
      {[]() -> std::string {
         NoteStep("first");
         NoteStep("second");
         _Exit(0);
       },
       20, "second: the process ended itself with status 0"},
      {[]() -> std::string {
         NoteStep("waiting");
         for (;;) GetClockSeconds();
       },
       0.2, "waiting: took longer than 0 seconds"},
      {[]() -> std::string { std::abort(); }, 20, "was ended by signal 6"},
  };
  for (const Case& c : cases) {
    const auto result = RunIsolated(c.work, c.seconds);
    EXPECT_FALSE(result);
    EXPECT_NE(result.Message().find(c.says), std::string::npos) << result.Message();
  }
}

TEST(Isolate, TheHeapIsMeasured) {
  const uint64_t before = GetHeapBytesInUse();
  const std::vector<char> block(1 << 20);
  EXPECT_GE(GetHeapBytesInUse(), before + block.size());
}

TEST(ModuleExports, WhatIsNoModule) {
  const TempDir dir;
  WriteText(dir / "text.so", "not a module");
  EXPECT_EQ(ListModuleExports(Path::Native(dir / "text.so")).Message(),
            "is no module: it does not begin as one");
  EXPECT_FALSE(ListModuleExports(Path::Native(dir / "none.so")));
}

}  // namespace
}  // namespace velora::test
