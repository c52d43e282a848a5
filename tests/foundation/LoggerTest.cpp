// The log: levels, settings, sinks.
#include "foundation/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <sstream>
#include <string_view>
#include <thread>

#include "platform/System.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora {
namespace {

/// A module directory with the settings given.
class LoggerTest : public testing::Test {
 protected:
  void Settings(const std::string& keys) {
    test::WriteText(dir_ / "ZuLog.ini", std::string("[module]\n").append(keys));
  }

  std::string LogText(const std::string& name = "Module.log") const {
    return test::ReadText(dir_ / name);
  }

  /// The lines of a text without their time stamps; a line without one shows it.
  static std::string WithoutStamps(const std::string& text) {
    constexpr std::string_view kStamp = "[dddd/dd/dd dd:dd:dd] ";
    std::istringstream lines(text);
    std::string bare;
    for (std::string line; std::getline(lines, line);) {
      std::string start = line.substr(0, kStamp.size());
      std::replace_if(
          start.begin(), start.end(), [](unsigned char c) { return std::isdigit(c) != 0; }, 'd');
      bare += start == kStamp ? line.substr(kStamp.size()) : "<no stamp>" + line;
      bare += '\n';
    }
    return bare;
  }

  test::TempDir dir_;
  test::ModuleFile module_{dir_ / "Module.so"};
};

class RecordingLogger : public C_ZuLogger {
 public:
  void Write(const std::string& text) override { lines.push_back(text); }
  std::vector<std::string> lines;
};

TEST_F(LoggerTest, WithoutSettingsOnlyTheTwoHighestLevelsAreBuilt) {
  RecordingLogger log;
  EXPECT_EQ(log.Configure(), 0);
  log.Log("%s", 2, "dropped");
  log.Log("%s", 1, "kept");
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(WithoutStamps(log.lines[0]), "ERROR:kept\n");

  C_ZuMultiLogger multi;
  testing::internal::CaptureStderr();
  multi.Log("%s", 1, "nowhere");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(dir_.Entries(), (std::vector<std::string>{}));
}

TEST_F(LoggerTest, LinesAreBuiltFromLevelProcessTextAndPosition) {
  Settings("Level=9\nShowPID=1\n");
  RecordingLogger log;
  ASSERT_EQ(log.Configure(), 1);
  for (int level = 0; level < 8; ++level) log.LogAt("%d", level, "f.cpp", 5, level);
  log.Log("%s", 1, std::string(20000, 'x').c_str());
  log.Log("%s", 10, "above");
  char pid[32];
  std::snprintf(pid, sizeof(pid), "[PID_%.5d]", GetProcessId());
  const char* const names[] = {"FETAL", "ERROR", "WARNING", "INFO", "DEBUG", "TRACE", "Lv6", "Lv7"};
  ASSERT_EQ(log.lines.size(), 9u);
  for (int level = 0; level < 8; ++level) {
    EXPECT_EQ(WithoutStamps(log.lines[level]),
              std::string(names[level]) + ":" + pid + std::to_string(level) + "(f.cpp:5)\n");
  }
  EXPECT_EQ(WithoutStamps(log.lines[8]).size(),
            std::string("ERROR:\n").size() + std::strlen(pid) + 20000);
}

TEST_F(LoggerTest, SettingsDecide) {
  struct Case {
    const char* keys;
    int32_t result;
    bool file, console;
  };
  const Case cases[] = {
      {"", 0, false, false},
      {"Type=3\n", 0, false, false},
      {"Level=2147483647\nType=3\n", 0, false, false},
      {"Level=1\n", 0, false, false},
      {"Level=1\nType=2147483647\n", 0, false, false},
      {"Level=1\nType=0\n", 1, false, false},
      {"Level=1\nType=1\nFile=\n", 1, true, false},
      {"level=1\ntype=2\n", 1, false, true},
      {"Level=1\nType=3\n", 1, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.keys);
    Settings(c.keys);
    std::filesystem::remove(dir_ / "Module.log");
    testing::internal::CaptureStderr();
    C_ZuMultiLogger log;
    EXPECT_EQ(log.Configure(), c.result);
    static_cast<void>(testing::internal::GetCapturedStderr());
    testing::internal::CaptureStderr();
    log.Log("%s", 1, "one");
    log.Log("%s", 1, "two");
    const std::string console = testing::internal::GetCapturedStderr();
    EXPECT_EQ(WithoutStamps(console), c.console ? "ERROR:one\nERROR:two\n" : "");
    ASSERT_EQ(std::filesystem::exists(dir_ / "Module.log"), c.file);
    if (c.file) {
      EXPECT_EQ(WithoutStamps(LogText()), "ERROR:one\nERROR:two\n");
    }
  }
}

TEST_F(LoggerTest, TheConsoleBeginsWithTheModulesNameOnce) {
  Settings("Level=1\nType=2\n");
  testing::internal::CaptureStderr();
  {
    C_ZuConsoleLogger log;
    EXPECT_EQ(log.Configure(), 1);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "--- Module ---\n");
}

TEST_F(LoggerTest, TheFileMayBeNamed) {
  std::filesystem::create_directory(dir_.path() / "logs");
  struct Case {
    std::string value;
    const char* name;
  };
  const Case cases[] = {{"logs/a.log", "logs/a.log"},
                        {"logs\\b.log", "logs/b.log"},
                        {dir_ / "logs/c.log", "logs/c.log"}};
  for (const Case& c : cases) {
    Settings("Level=1\nType=1\nFile=" + c.value + "\n");
    C_ZuMultiLogger log;
    log.Log("%s", 1, "here");
    EXPECT_EQ(WithoutStamps(LogText(c.name)), "ERROR:here\n") << c.value;
  }
}

TEST_F(LoggerTest, AFileThatCannotBeOpenedStaysOff) {
  for (const std::string& name : {std::string("late/x.log"), std::string(300, 'n')}) {
    Settings("Level=1\nType=1\nFile=" + name + "\n");
    C_ZuFileLogger log;
    EXPECT_EQ(log.Configure(), 0);
    std::filesystem::create_directory(dir_.path() / "late");
    log.Write("lost\n");
    EXPECT_FALSE(std::filesystem::exists(dir_ / "late/x.log"));
  }
  C_ZuFileLogger named(dir_ / "default.log");
  Settings("Level=1\n");
  EXPECT_EQ(named.Configure(), 1);
  named.Write("kept\n");
  EXPECT_EQ(LogText("default.log"), "kept\n");
}

/// Holds the lock of the log until it is told to go on.
class SlowLogger : public C_ZuLogger {
 public:
  void Write(const std::string& text) override {
    std::unique_lock lock(mutex_);
    lines += text;
    writing_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return released_; });
  }
  void AwaitWriting() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return writing_; });
  }
  void Release() {
    const std::scoped_lock lock(mutex_);
    released_ = true;
    changed_.notify_all();
  }
  std::string lines;

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool writing_ = false, released_ = false;
};

TEST_F(LoggerTest, ALineWaitsHalfASecondForTheOthers) {
  SlowLogger log;
  std::thread other([&log] { log.Log("%s", 1, "slow"); });
  log.AwaitWriting();
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 10; ++i) log.Log("%s", 2, "above the level: no wait");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
  log.Log("%s", 1, "dropped");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
  log.Release();
  other.join();
  log.Log("%s", 1, "after");
  EXPECT_EQ(WithoutStamps(log.lines), "ERROR:slow\nERROR:after\n");
}

TEST_F(LoggerTest, TheModuleHasOne) {
  ASSERT_NE(GetZuLog(), nullptr);
  EXPECT_EQ(GetZuLog(), GetZuLog());
}

}  // namespace
}  // namespace velora
