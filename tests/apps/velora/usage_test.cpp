// Wrong command lines, and what every command has.
#include <algorithm>
#include <set>

#include "ProgramTest.h"

namespace velora::test {
namespace {

struct WrongLine {
  std::vector<std::string> words;
  std::string message;  // of standard error, a part of it
};

TEST(Usage, WrongLinesEndWithTwoAndOneLine) {
  const WrongLine lines[] = {
      {{}, "a command is missing"},
      {{"infoo"}, "did you mean 'info'?"},
      {{"xylophone"}, "no such command"},
      {{"info"}, "FILE is missing"},
      {{"info", "--bogus", "x"}, "there is no option --bogus"},
      {{"info", "x", "-Z"}, "there is no option -Z"},
      {{"info", "--json=yes", "x"}, "--json takes no value"},
      {{"dump", "a", "b"}, "'b' is one argument too many"},
      {{"help", "nothing"}, "nothing: no such command"},
      {{"completion", "tcsh"}, "'tcsh' is none of bash, zsh, fish"},
      {{"verify", "--jobs", "0", "x"}, "'0' is not an integer from 1 to 1024"},
      {{"verify", "--jobs", "two", "x"}, "'two' is not an integer"},
      {{"convert", "x"}, "--output or --out-dir"},
      {{"convert", "x", "-o"}, "--output needs a value"},
      {{"convert", "x", "-o", "a", "-o", "b"}, "--output may be given once only"},
      {{"convert", "x", "-o", "a.wav", "-d", "b"}, "do not go together"},
      {{"convert", "x", "y", "-o", "a.wav"}, "--output takes one input"},
      {{"convert", "x", "-d", "out"}, "--to is missing"},
      {{"convert", "x", "-o", "a"}, "no extension"},
      {{"convert", "x", "-o", "a.what"}, "no format with the extension '.what'"},
      {{"convert", "x", "-o", "a.mid"}, "cannot be written"},
      {{"convert", "x", "-o", "a", "--to", "QQ"}, "no format 'QQ'"},
      {{"convert", "x", "-o", "a", "--to", "id:999"}, "no format id:999"},
      {{"convert", "x", "-o", "a", "--to", "id:9"}, "cannot be written"},
      {{"convert", "x", "-o", "a.wav", "--bits", "12"}, "'12' is none of 8, 16"},
      {{"convert", "x", "-o", "-", "--to", "WAV", "--json"}, "standard output"},
      {{"events", "x", "--add", "5,6"}, "'5,6' is not SAMPLE,TYPE,PARAM"},
      {{"events", "x", "--add", "-5,6,7"}, "sample '-5' is not an integer"},
      {{"events", "x", "-o", "y"}, "--output needs an edit"},
      {{"events", "-", "--clear"}, "--output says where"},
  };
  for (const WrongLine& line : lines) {
    const Outcome run = RunVelora(line.words);
    SCOPED_TRACE(run.err);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find(line.message), std::string::npos) << "expected: " << line.message;
    EXPECT_EQ(Lines(run.err).size(), 1u);
    EXPECT_TRUE(run.err.starts_with("velora: "));
  }
}

TEST(Usage, VersionAndHelpNeedNothingElse) {
  const Outcome version = RunVelora({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("velora "));
  EXPECT_EQ(RunVelora({"dump", "--version"}).out, version.out);
  EXPECT_EQ(RunVelora({"-h"}).out, RunVelora({"help"}).out);
  EXPECT_EQ(RunVelora({"convert", "--help"}).out, RunVelora({"help", "convert"}).out);
}

TEST(Usage, StandardOutputThatTakesNothingIsAnError) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  const Outcome run = RunProgram({"sh", "-c", "exec \"$0\" formats > /dev/full", VeloraProgram()});
  EXPECT_EQ(run.status, 4);
  EXPECT_NE(run.err.find("velora: standard output: "), std::string::npos) << run.err;
}

class Formats : public ProgramTest {};

TEST_F(Formats, JsonHasEveryIdOnceAndSaysWhatCanBeDone) {
  const Json formats = Json::parse(RunVelora({"formats", "--json"}).out).at("formats");
  std::set<int> ids;
  for (const Json& row : formats) EXPECT_TRUE(ids.insert(row.at("id").get<int>()).second);
  EXPECT_EQ(ids.size(), 59u);
  const auto row = [&formats](int id) {
    return *std::ranges::find_if(formats, [id](const Json& r) { return r.at("id") == id; });
  };
  EXPECT_EQ(row(2).at("extensions"), Json({".WAV", ".KIO", ".KAX"}));
  EXPECT_EQ(row(6).at("tag"), "KMPM");
  EXPECT_TRUE(row(6).at("writable").get<bool>());
  EXPECT_EQ(row(9).at("kind"), "music");
  EXPECT_FALSE(row(9).at("readable").get<bool>());
}

TEST_F(Formats, TextHasALineForEachRow) {
  const auto lines = Lines(RunVelora({"formats"}).out);
  EXPECT_EQ(lines.size(), 60u);  // and the heading
}

}  // namespace
}  // namespace velora::test
