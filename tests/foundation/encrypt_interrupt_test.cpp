// Changing a password list must lose nothing, wherever it is interrupted.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>

#include "PublishedPC1.h"
#include "foundation/EncryptNewPC1.h"
#include "platform/System.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::NewForm;
using test::ReadText;
using test::TempDir;
using test::WriteText;

/// Runs the work in a process of its own and gives what it answers.
pid_t Start(const std::function<int()>& work) {
  const pid_t process = fork();
  if (process == 0) _exit(work());
  return process;
}

int Finish(pid_t process) {
  int status = 0;
  waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Sample(size_t size) {
  std::string text(size, 0);
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * i >> 5);
  return text;
}

// A disk that fills up after any number of bytes.
TEST(EncryptInterrupt, AFullDiskLeavesTheFileAsItWas) {
  TempDir dir;
  const std::string path = dir / "song.kmd";
  const std::string listed = NewForm({"master", "guest"}, "song.wav", Sample(300));
  const std::string open = NewForm({}, "song.wav", Sample(300));
  const auto limited = [](rlim_t limit, const std::function<int32_t(C_EncryptPC1&)>& work) {
    return Finish(Start([&] {
      signal(SIGXFSZ, SIG_IGN);
      const rlimit sizes{limit, limit};
      setrlimit(RLIMIT_FSIZE, &sizes);
      C_EncryptNewPC1 object;
      return static_cast<int>(work(object));
    }));
  };
  for (rlim_t limit = 0; limit < listed.size() - 20; limit += 13) {
    WriteText(path, listed);
    EXPECT_EQ(limited(limit,
                      [&](C_EncryptPC1& object) {
                        return object.AddPassword(path.c_str(), "master", "new");
                      }),
              3)
        << limit;
    EXPECT_EQ(limited(limit,
                      [&](C_EncryptPC1& object) {
                        return object.RemovePassword(path.c_str(), "master", "guest");
                      }),
              3)
        << limit;
    EXPECT_EQ(limited(limit,
                      [&](C_EncryptPC1& object) {
                        return object.DecipherFile(path.c_str(), (dir / "out").c_str(), "guest",
                                                   nullptr);
                      }),
              limit < 300 ? 2 : 0)
        << limit;
    EXPECT_TRUE(ReadText(path) == listed) << limit;
    std::filesystem::remove(dir / "out");
    WriteText(path, open);
    EXPECT_EQ(limited(limit,
                      [&](C_EncryptPC1& object) {
                        return object.AddPassword(path.c_str(), nullptr, "first");
                      }),
              3)
        << limit;
    EXPECT_TRUE(ReadText(path) == open) << limit;
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"song.kmd"}) << limit;
  }
}

// A process killed at any moment leaves one of the files it went through.
TEST(EncryptInterrupt, AKilledProcessLeavesAWholeFile) {
  TempDir dir;
  const std::string path = dir / "song.kmd";
  const std::string plain = Sample(400000);
  const std::vector<std::string> states = {NewForm({"master"}, "song.wav", plain),
                                           NewForm({"master", "guest"}, "song.wav", plain)};
  WriteText(path, states[0]);
  const auto start = std::chrono::steady_clock::now();
  const auto add = [&] { return C_EncryptNewPC1().AddPassword(path.c_str(), "master", "guest"); };
  EXPECT_EQ(Finish(Start(add)), 0);
  const std::chrono::duration<double, std::micro> once = std::chrono::steady_clock::now() - start;

  constexpr int kRounds = 25;
  int changed = 0;
  for (int round = 0; round < kRounds; ++round) {
    WriteText(path, states[0]);
    const pid_t process = Start([&] {
      C_EncryptNewPC1 object;
      while (object.AddPassword(path.c_str(), "master", "guest") == 0 &&
             object.RemovePassword(path.c_str(), "master", "guest") == 0) {
      }
      return 1;
    });
    usleep(static_cast<useconds_t>(1 + once.count() * 6 * round / kRounds));
    kill(process, SIGKILL);
    EXPECT_EQ(Finish(process), -1) << "ended by itself";
    const std::string left = ReadText(path);
    EXPECT_TRUE(left == states[0] || left == states[1]) << round;
    changed += left == states[1] ? 1 : 0;
  }
  EXPECT_GT(changed, 0) << "no kill came late enough to prove anything";
  // What the dead left beside the file goes with the next change.
  WriteText(path, states[0]);
  EXPECT_EQ(Finish(Start(add)), 0);
  EXPECT_EQ(dir.Entries(), std::vector<std::string>{"song.kmd"});
}

TEST(EncryptInterrupt, AnInterruptLeavesTheFileAsItWas) {
  TempDir dir;
  const std::string path = dir / "song.kmd";
  const std::string before = NewForm({"master"}, "song.wav", Sample(100));
  WriteText(path, before);
  const int code = Finish(Start([&] {
    CatchInterrupts();
    raise(SIGINT);
    C_EncryptNewPC1 object;
    return static_cast<int>(object.AddPassword(path.c_str(), "master", "new"));
  }));
  EXPECT_EQ(code, 3);
  EXPECT_EQ(ReadText(path), before);
  EXPECT_EQ(dir.Entries(), std::vector<std::string>{"song.kmd"});
}

}  // namespace
}  // namespace velora
