// Paths as text, and what is at a path.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include <velora/I_CUIniFile.h>
#include "foundation/FileHelpers.h"
#include "foundation/MessageBox.h"
#include "foundation/PathText.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora {
namespace {

struct PairCase {
  const char* first;
  const char* second;
  const char* result;
};

TEST(CombinePathTest, Joins) {
  const PairCase cases[] = {
      {"C:\\a\\b\\", "..\\..\\c", "C:\\c"},
      {"C:/a//", "/b/c", "C:\\a\\b\\c"},
      {"C:\\a\\\\", ".\\.\\\\b", "C:\\a\\b"},
      {"C:", "..\\b", "C:\\b"},
      {"C:\\a", "..", "C:\\a\\.."},
      {"C:\\a", "", "C:\\a\\"},
      {"C:\\a", "b\\..\\c", "C:\\a\\b\\..\\c"},
      {"C:\\\\a", "..\\b", "C:\\\\b"},  // no stripping after a cut
      {"", "x", "\\x"},
      {"..", "..x", "..\\..x"},
  };
  for (const PairCase& c : cases) {
    EXPECT_EQ(CombinePath(c.first, c.second), c.result) << c.first << " and " << c.second;
  }
  const std::string longest(2077, 'a');
  EXPECT_EQ(CombinePath("b", longest).size(), 2079u);
  EXPECT_EQ(CombinePath("bc", longest), "");
}

TEST(MakeRelativeTest, LeadsFromTheDirectoryToThePath) {
  const PairCase cases[] = {
      {"C:\\a\\b\\", "c:\\A\\x\\y.wav", "..\\x\\y.wav"},
      {"C:\\a\\b\\", "D:\\a\\b\\y.wav", "D:\\a\\b\\y.wav"},
      {"C:\\a\\b\\", "C:\\a\\b\\y.wav", "y.wav"},
      {"C:\\a\\b\\", "C:\\a\\b", "..\\b"},
      {"C:\\", "C:\\x\\y", "x\\y"},
      {"C:\\a\\b\\c\\", "C:\\y", "..\\..\\..\\y"},
      {"C:\\ab\\", "C:\\a\\y", "..\\a\\y"},
      {"C:\\a\\", "name.wav", "name.wav"},
      {"", "name.wav", "name.wav"},
      {"C:\\a\\", "CD:\\a\\y", "y"},
      {"", "C:\\a\\y", "a\\y"},
      {"C:\\a\\", "C:/a/y", "C:/a/y"},
      {"\\home\\u\\", "\\home\\v\\y", "..\\v\\y"},
  };
  for (const PairCase& c : cases) {
    EXPECT_EQ(MakeRelative(c.first, c.second), c.result) << c.first << " and " << c.second;
  }
}

TEST(MakeRelativeTest, ComesBackThroughMakeAbsolute) {
  const char* const directories[] = {"C:\\", "C:\\a\\", "C:\\a\\b c\\d\\", "\\", "\\a\\b\\"};
  const char* const files[] = {"x", "a\\x", "a\\b c\\x.y", "A\\b\\c\\d"};
  for (const std::string directory : directories) {
    const std::string root = directory.substr(0, directory.find('\\') + 1);
    for (const std::string file : files) {
      const std::string path = std::string(root).append(file);
      const std::string back = MakeAbsolute(directory, MakeRelative(directory, path));
      std::string upperBack = back, upperPath = path;
      for (std::string* text : {&upperBack, &upperPath}) {
        std::transform(text->begin(), text->end(), text->begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
      }
      EXPECT_EQ(upperBack, upperPath) << directory << " and " << path;
    }
  }
}

TEST(MakeAbsoluteTest, ResolvesAgainstTheDirectory) {
  const PairCase cases[] = {
      {"C:\\a", "b.ini", "C:\\a\\b.ini"},
      {"C:\\a\\", "..\\b\\.\\c", "C:\\b\\c"},
      {"C:\\a\\", "", "C:\\a\\"},
      {"C:\\a", "D:\\x", "D:\\x"},
      {"C:\\a", "\\x", "C:\\x"},
      {"C:\\a", "\\\\server\\x", "\\\\server\\x"},
      {"C:\\a", "..\\..\\..\\x", "C:\\x"},
      {"C:\\a", "..", "C:\\"},
      {"", "x\\..\\y", "y"},
      {"", "..", "\\"},
  };
  for (const PairCase& c : cases) {
    EXPECT_EQ(MakeAbsolute(c.first, c.second), c.result) << c.first << " and " << c.second;
  }
}

TEST(JoinPathTest, AppendsNames) {
  EXPECT_EQ(JoinPath("C:\\a", {}), "C:\\a");
  EXPECT_EQ(JoinPath("C:\\a\\", {"b", "c.ini"}), "C:\\a\\b\\c.ini");
  EXPECT_EQ(JoinPath("C:\\a", {"\\b"}), "C:\\a\\b");
  EXPECT_EQ(JoinPath("C:\\a", {"b", "..\\c"}), "C:\\a\\c");
  EXPECT_EQ(JoinPath("C:\\a", {"D:\\b"}), "D:\\b");
  EXPECT_EQ(JoinPath("C:\\", {std::string(256, 'n')}).size(), 259u);
  EXPECT_EQ(JoinPath("C:\\", {std::string(257, 'n')}), "");
}

TEST(SplitPathTest, SplitsOrRefuses) {
  std::string directory, name, extension;
  ASSERT_TRUE(SplitPath("C:\\a.b\\c/n.tar.gz", &directory, &name, &extension));
  EXPECT_EQ(directory, "C:\\a.b\\c\\");
  EXPECT_EQ(name, "n.tar");
  EXPECT_EQ(extension, ".gz");
  ASSERT_TRUE(SplitPath("\\x\\.rc", &directory, nullptr, &extension));
  EXPECT_EQ(directory, "\\x\\");
  EXPECT_EQ(extension, ".rc");

  const std::string n259(259, 'n');
  EXPECT_TRUE(SplitPath(n259 + ".12345678", nullptr, &name, nullptr));
  EXPECT_EQ(name, n259);
  EXPECT_FALSE(SplitPath(n259 + "n", nullptr, &name, nullptr));
  EXPECT_FALSE(SplitPath("n.123456789", nullptr, &name, nullptr));
  EXPECT_FALSE(SplitPath("\\" + n259 + "\\n", nullptr, &name, nullptr));
  EXPECT_EQ(name, n259);
}

TEST(PathSplitTest, TakesAnythingInFrontOfAColonForTheDrive) {
  struct Case {
    const char *path, *drive, *dir, *name, *ext;
  };
  const Case cases[] = {
      {"C:\\a\\n.e", "C:", "\\a\\", "n", ".e"},
      {"res:dir/n.e", "res:", "dir/", "n", ".e"},
      {"\\a:b\\n", "\\a:", "b\\", "n", ""},
      {"n", "", "", "n", ""},
      {"", "", "", "", ""},
  };
  C_CUPathSplit split;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_TRUE(split.SetPath(c.path));
    EXPECT_EQ(split.Path(), c.path);
    EXPECT_EQ(split.Drive(), c.drive);
    EXPECT_EQ(split.Dir(), c.dir);
    EXPECT_EQ(split.Name(), c.name);
    EXPECT_EQ(split.Ext(), c.ext);
  }
  EXPECT_TRUE(split.SetPath(std::string(300, 'd') + ":n"));
  EXPECT_EQ(split.Drive(), std::string(255, 'd'));
  EXPECT_FALSE(split.SetPath(std::string(256, 'n')));
  EXPECT_EQ(split.Path() + split.Name(), "");
}

TEST(ModuleDirTest, IsUpperCaseWithOrWithoutABackslash) {
  const test::ModuleFile module("/opt/Tool.d/lib/VeloraUtil.so");
  EXPECT_EQ(GetModuleDir(true), "\\OPT\\TOOL.D\\LIB\\");
  EXPECT_EQ(GetModuleDir(false), "\\OPT\\TOOL.D\\LIB");
  EXPECT_EQ(GetModuleBaseName(), "VeloraUtil");
}

TEST(ModuleDirTest, LeadsToTheRealDirectory) {
  test::TempDir dir;
  test::WriteText(dir / "Data.ini", "12345");
  const test::ModuleFile module(dir / "Module.so");
  const std::string file = JoinPath(GetModuleDir(true), {"DATA.ini"});
  EXPECT_TRUE(FileExists(file));
  EXPECT_FALSE(FileExists(GetModuleDir(true)));
  EXPECT_TRUE(DirExists(GetModuleDir(false)));
  EXPECT_FALSE(DirExists(file));
  EXPECT_EQ(GetFileLength(Path::System(file)), 5);
}

TEST(ResolvePathTest, ChecksAndReports) {
  test::TempDir dir;
  test::WriteText(dir / "f.txt", "");
  const test::ModuleFile module(dir / "Module.so");
  const std::string base = GetModuleDir(true);
  struct Case {
    const char* path;
    int32_t keyType;
    bool good;
  };
  const Case cases[] = {
      {"f.txt", 5, true},  {"f.txt", 3, true},  {"g.txt", 5, false}, {"g.txt", 3, false},
      {"f.txt", 6, false}, {"f.txt", 4, false}, {"", 6, true},       {"g.txt", 0, true},
      {"g.txt", 2, true},  {"", 5, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.path) + " " + std::to_string(c.keyType));
    std::string path = c.path;
    testing::internal::CaptureStderr();
    EXPECT_EQ(ResolvePath(base, path, c.keyType, kMsgBox), c.good);
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(path, base + c.path);
    EXPECT_EQ(report.empty(), c.good);
    if (!c.good) {
      EXPECT_NE(report.find(base + c.path), std::string::npos);
    }
  }
  std::string tooLong(2090, 'x');
  EXPECT_FALSE(ResolvePath(base, tooLong, 0, kMsgBox));
  EXPECT_EQ(tooLong.size(), 2090u);
}

TEST(FileStampTest, ReadsLengthAndTimesDirectly) {
  test::TempDir dir;
  const test::ModuleFile module(dir / "Module.so");
  const std::string name = dir / "a";
  test::WriteText(name, "abc");
  // 2001-02-03 04:05:06 UTC
  std::filesystem::last_write_time(
      name, std::filesystem::file_time_type(std::chrono::file_clock::from_sys(
                std::chrono::sys_seconds(std::chrono::seconds(981173106)))));
  const C_CUFileStamp stamp;
  FileTime creation = 0, access = 0, write = 0;
  EXPECT_EQ(stamp.GetFileLength(Path::Native(name)), 3);
  ASSERT_TRUE(stamp.GetFileTimes(Path::Native(name), &creation, &access, &write));
  EXPECT_EQ(write, 126256467060000000u);
  EXPECT_GT(creation, write);
  EXPECT_EQ(stamp.GetFileLength(Path::Native(dir / "none")), -1);
  EXPECT_FALSE(stamp.GetFileTimes(Path::Native(dir / "none"), &creation, &access, &write));
}

}  // namespace
}  // namespace velora
