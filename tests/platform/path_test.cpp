#include "platform/Path.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/File.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::TempDir;

std::string Backslashed(std::string path) {
  for (char& c : path) {
    if (c == '/') c = '\\';
  }
  return path;
}

TEST(Path, SystemPathsFindEntriesWithoutRegardToCase) {
  TempDir dir;
  std::filesystem::create_directories(dir / "Data/Inner");
  test::WriteText(dir / "Data/Inner/Chip.Cfg", "x");

  struct Case {
    const char* given;
    const char* found;
  };
  const Case cases[] = {
      {"\\Data\\Inner\\Chip.Cfg", "/Data/Inner/Chip.Cfg"},
      {"\\DATA\\inner\\CHIP.CFG", "/Data/Inner/Chip.Cfg"},
      {"\\data/INNER\\chip.cfg", "/Data/Inner/Chip.Cfg"},
      {"\\data\\none\\chip.cfg", "/Data/none/chip.cfg"},
  };
  for (const Case& c : cases) {
    const Path path = Path::System(Backslashed(dir.path().string()) + c.given);
    EXPECT_EQ(NativeForReading(path), dir.path().string() + c.found) << c.given;
  }
  const Path withDrive = Path::System("C:" + Backslashed(dir.path().string()) + "\\data");
  EXPECT_EQ(NativeForReading(withDrive), dir / "Data");
}

TEST(Path, AnExactSpellingWinsOverAnother) {
  TempDir dir;
  test::WriteText(dir / "a.cfg", "lower");
  test::WriteText(dir / "A.CFG", "upper");
  const std::string base = Backslashed(dir.path().string());
  EXPECT_EQ(NativeForReading(Path::System(base + "\\a.cfg")), dir / "a.cfg");
  EXPECT_EQ(NativeForReading(Path::System(base + "\\A.cfg")), dir / "A.CFG");
}

TEST(Path, WritingKeepsTheSpellingOfTheLastComponentOnly) {
  TempDir dir;
  std::filesystem::create_directories(dir / "Out");
  test::WriteText(dir / "Out/old.wav", "x");
  const Path path = Path::System(Backslashed(dir.path().string()) + "\\OUT\\OLD.WAV");
  EXPECT_EQ(NativeForWriting(path), dir / "Out/OLD.WAV");
}

TEST(Path, NativePathsMeanWhatTheySay) {
  TempDir dir;
  const std::string odd = dir / "C:a\\b.wav";
  test::WriteText(odd, "odd");
  EXPECT_EQ(NativeForReading(Path::Native(odd)), odd);
  const Result<std::string> text = ReadWholeText(Path::Native(odd));
  ASSERT_TRUE(text.Ok()) << text.Message();
  EXPECT_EQ(text.Value(), "odd");
}

TEST(Path, ModuleDirectoryTextLeadsToItsRealDirectory) {
  TempDir dir;
  std::filesystem::create_directories(dir / "Lib");
  test::WriteText(dir / "Lib/IOMap.ini", "x");
  const std::string before = GetModuleFile();
  SetModuleFile(dir / "Lib/VeloraUtil.so");
  std::string text = GetModuleFileText();
  EXPECT_TRUE(text.ends_with("\\LIB\\VELORAUTIL.SO")) << text;
  text.resize(text.rfind('\\'));
  EXPECT_EQ(NativeForReading(Path::System(text + "\\iomap.INI")), dir / "Lib/IOMap.ini");
  EXPECT_EQ(NativeForWriting(Path::System(text + "\\new.log")), dir / "Lib/new.log");
  SetModuleFile(before);
}

}  // namespace
}  // namespace velora
