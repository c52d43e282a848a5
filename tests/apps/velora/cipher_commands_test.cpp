// `velora encipher`, `decipher` and `passwords` as a person meets them.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunVelora.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

using Json = nlohmann::json;

class CipherCommands : public testing::Test {
 protected:
  CipherCommands() { WriteText(dir_ / "plain.txt", kPlain); }

  Outcome Run(const std::vector<std::string>& words, const std::string& input = {}) {
    return RunVelora(words, {.input = input, .directory = dir_.path().string()});
  }

  const std::string kPlain = "two lines\nof text\n";
  TempDir dir_;
};

TEST_F(CipherCommands, ThereAndBack) {
  for (const bool older : {false, true}) {
    std::vector<std::string> words = {"encipher", "-f", "--key", "k", "plain.txt", "-o", "a.kif"};
    if (older) words.push_back("--older");
    ASSERT_EQ(Run(words).status, 0);
    const std::string enciphered = ReadText(dir_ / "a.kif");
    EXPECT_EQ(enciphered.find("two"), std::string::npos);
    EXPECT_EQ(enciphered.starts_with("KENC"), !older);
    EXPECT_EQ(Run({"decipher", "--key", "k", "a.kif", "-o", "-"}).out, kPlain);
    WriteText(dir_ / "key", "k\nrest\n");
    EXPECT_EQ(Run({"decipher", "--key-file", "key", "a.kif", "-o", "-"}).out, kPlain);
    EXPECT_EQ(Run({"decipher", "--key", "q", "a.kif", "-o", "-"}).status, 1);
    EXPECT_EQ(Run({"decipher", "a.kif", "-o", "b.txt"}).status, 1);
  }
  EXPECT_EQ(dir_.Entries(), (std::vector<std::string>{"a.kif", "key", "plain.txt"}));
}

TEST_F(CipherCommands, TheNameComesBack) {
  ASSERT_EQ(Run({"encipher", "plain.txt", "-o", "a.kif"}).status, 0);
  const Outcome there = Run({"decipher", "a.kif"});
  EXPECT_EQ(there.status, 4);
  EXPECT_EQ(there.err, "velora: plain.txt: exists already\n");
  WriteText(dir_ / "plain.txt", "changed");
  const Json json = Json::parse(Run({"decipher", "--force", "--json", "a.kif"}).out);
  EXPECT_EQ(json, Json::parse(R"({"path": "a.kif", "target": "plain.txt", "bytes": 18})"));
  EXPECT_EQ(ReadText(dir_ / "plain.txt"), kPlain);
}

TEST_F(CipherCommands, StandardStreams) {
  const Outcome enciphered = Run({"encipher", "-", "-o", "-"}, kPlain);
  EXPECT_EQ(enciphered.status, 0);
  EXPECT_EQ(Run({"decipher", "-", "-o", "-"}, enciphered.out).out, kPlain);
  EXPECT_EQ(Run({"decipher", "-"}, enciphered.out).status, 2);
}

TEST_F(CipherCommands, Refusals) {
  struct Case {
    std::vector<std::string> words;
    int status;
    const char* says;
  };
  const std::string longKey(33, 'x');
  const Case cases[] = {
      {{"encipher", "plain.txt"}, 2, "--output"},
      {{"encipher", "none", "-o", "x"}, 3, "velora: none: "},
      {{"encipher", "plain.txt", "-o", "no/such/x"}, 4, "no/such/x"},
      {{"encipher", "plain.txt", "-f", "-o", "plain.txt"}, 4, "is the input itself"},
      {{"encipher", "plain.txt", "--key", longKey, "-o", "x"}, 2, "at most 32 bytes"},
      {{"encipher", "plain.txt", "--key", "a", "--key-file", "b", "-o", "x"}, 2, "only one"},
      {{"decipher", "plain.txt", "-o", "x"}, 3, "velora: plain.txt: is not enciphered"},
      {{"passwords", "list", "plain.txt"}, 3, "is not enciphered"},
      {{"passwords", "list", "none"}, 3, "cannot be read"},
      {{"passwords", "add", "plain.txt"}, 2, "a file and a password"},
  };
  for (const Case& c : cases) {
    const Outcome outcome = Run(c.words);
    SCOPED_TRACE(c.words[0] + " " + c.words.back());
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    EXPECT_NE(outcome.err.find(c.says), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(ReadText(dir_ / "plain.txt"), kPlain);
  EXPECT_EQ(dir_.Entries(), std::vector<std::string>{"plain.txt"});
}

TEST_F(CipherCommands, Passwords) {
  for (const bool older : {false, true}) {
    SCOPED_TRACE(older);
    std::vector<std::string> words = {"encipher", "-f", "plain.txt", "-o", "a.kif"};
    if (older) words.push_back("--older");
    ASSERT_EQ(Run(words).status, 0);
    EXPECT_EQ(Run({"passwords", "list", "a.kif"}).out, "");
    EXPECT_EQ(Run({"passwords", "add", "a.kif", "master"}).status, 0);
    EXPECT_EQ(Run({"passwords", "add", "a.kif", "guest"}).status, 1) << "without the key";
    EXPECT_EQ(Run({"passwords", "add", "--key", "master", "a.kif", "guest"}).status, 0);
    EXPECT_EQ(Run({"passwords", "add", "--key", "master", "a.kif", "guest"}).status, 1);
    EXPECT_EQ(Run({"passwords", "list", "a.kif"}).out, "master\nguest\n");
    EXPECT_EQ(Run({"passwords", "remove", "--key", "guest", "a.kif", "guest"}).status, 1);
    EXPECT_EQ(Run({"passwords", "remove", "--key", "master", "a.kif", "master"}).status, 1);
    EXPECT_EQ(Run({"decipher", "--key", "guest", "a.kif", "-o", "-"}).out, kPlain);
    const Json json = Json::parse(
        Run({"passwords", "remove", "--json", "--key", "master", "a.kif", "guest"}).out);
    EXPECT_EQ(json["passwords"], Json::parse(R"(["master"])"));
    EXPECT_EQ(Run({"decipher", "--key", "guest", "a.kif", "-o", "-"}).status, 1);
  }
}

}  // namespace
}  // namespace velora::test
