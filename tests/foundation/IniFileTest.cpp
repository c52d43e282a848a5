// INI files: what a line means, typed values, errors, paths, saving.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "foundation/IniFile.h"
#include "foundation/MessageBox.h"
#include "foundation/PathText.h"
#include "foundation/StringHelpers.h"
#include "platform/Path.h"
#include "support/TempDir.h"

namespace velora {
namespace {

/// "section|label=value" of everything in the file, sorted in each section.
std::vector<std::string> ContentsOf(C_CUIniFile& ini) {
  std::vector<std::string> contents;
  for (int32_t i = 0; i < ini.GetSectionCount(); ++i) {
    const std::string section = ini.GetSectionName(i);
    std::vector<std::string> lines;
    for (int32_t at = 0; const char* label = ini.GetLabelName(section.c_str(), at); ++at) {
      const char* const value = ini.GetString(section.c_str(), label, kIniText, kMsgNone);
      lines.push_back(section + "|" + label + "=" + (value ? value : "<deleted>"));
    }
    std::sort(lines.begin(), lines.end());
    if (lines.empty()) lines.push_back(section + "|");
    contents.insert(contents.end(), lines.begin(), lines.end());
  }
  return contents;
}

TEST(IniTextTest, ReadsLines) {
  struct Case {
    std::string text;
    std::vector<std::string> contents;
  };
  const std::string longValue(2079 - 4, 'v');
  const Case cases[] = {
      {"", {}},
      {"[S]", {"S|"}},
      {"[S]\nA = 1 ; note\n", {"S|A=1"}},
      {"[S]\nA = x;y\n", {"S|A=x"}},
      {"[S]\nkey\n", {"S|=key"}},
      {"[[Name]]\nA=1", {"Name|A=1"}},
      {"[a]b]\n[]\n[ x ]\n[A] = [B]\n", {"a]b|", "|", " x |", "A] = [B|"}},
      {"A=1\n[S]\nB=2", {"|A=1", "S|B=2"}},
      {"[S] ; remark ]\nA=1", {"S|A=1"}},
      {"[S]\nA=1\n[T]\nB=2\n[s]\nA=3\nC=4", {"S|A=3", "S|C=4", "T|B=2"}},
      {"[S]\r\nA = 1\r\nB=\r\n\r\n", {"S|A=1", "S|B="}},
      {"[S]\nA=1\r2\r\r\n", {"S|A=1\r2\r"}},
      {"[S]\n \tA b\t=\t c = d \n", {"S|A b=c = d"}},
      {"[S]\n=x\n;only a remark\n", {"S|=x"}},
      {"[S\nA=1", {"|=[S", "|A=1"}},
      {"[", {"|=["}},
      {std::string("[S]\nA=1\0junk\nB=2", 16), {"S|A=1", "S|B=2"}},
      {"[S]\nAB =" + longValue + "\nC=1", {"S|AB=" + longValue, "S|C=1"}},
      {"[S]\r\nAB =" + longValue + "\r\nC=1", {"S|AB=" + longValue, "S|C=1"}},
      {"[S]\nAB =" + longValue + "D=2\n", {"S|AB=" + longValue, "S|D=2"}},
      {"[S]\nAB =" + longValue + "\r", {"S|=\r", "S|AB=" + longValue}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    C_CUIniFile ini;
    ini.LoadText(c.text);
    EXPECT_EQ(ContentsOf(ini), c.contents);
  }
}

TEST(IniTextTest, LoadingAddsToWhatIsThere) {
  C_CUIniFile ini;
  ini.LoadText("[S]\nA=1\nB=2");
  ini.LoadText("B=0\n[s]\nB=3");
  EXPECT_EQ(ContentsOf(ini), (std::vector<std::string>{"S|A=1", "S|B=3", "|B=0"}));
  ini.RemoveAll();
  EXPECT_EQ(ini.GetSectionCount(), 0);
  EXPECT_EQ(ini.GetLabelCount("S"), -1);
}

TEST(IniTextTest, SavesInTheOrderOfTheTable) {
  C_CUIniFile ini;
  ini.LoadText("; lost\n[Two]\nB = 1\nA=2\nA=3\n[Empty]\n[One]\nX=1\n");
  ASSERT_EQ(ini.DeleteLabel("One", "X"), 1);
  std::string lines;
  for (int32_t i = 0; i < 2; ++i) {
    const std::string label = ini.GetLabelName("Two", i);
    lines += label + " = " + (label == "A" ? "3" : "1") + "\n";
  }
  EXPECT_EQ(ini.SaveText(), "[Two]\n" + lines + "\n[Empty]\n[One]\n\n");

  C_CUIniFile again;
  again.LoadText(ini.SaveText());
  EXPECT_EQ(again.GetSectionCount(), 3);
  EXPECT_EQ(again.GetLabelCount("One"), 0);
}

TEST(IniTextTest, LoadsAndSavesFiles) {
  test::TempDir dir;
  test::WriteText(dir / "in.ini", "[S]\r\nA=1\r\n");
  C_CUIniFile ini;
  EXPECT_FALSE(ini.Load(Path::Native(dir / "none.ini")));
  EXPECT_EQ(ini.GetFailureText(), "Unable to open ini file!!");
  EXPECT_FALSE(ini.Load(Path::Native(dir.path().string())));
  ASSERT_TRUE(ini.Load(Path::Native(dir / "in.ini")));
  EXPECT_EQ(ini.GetFileName(), dir / "in.ini");
  ini.SetFileName(Path::Native(dir / "out.ini"));
  ASSERT_TRUE(ini.Save());
  EXPECT_EQ(test::ReadText(dir / "out.ini"), "[S]\nA = 1\n\n");
  ini.SetFileName(Path::Native(dir / "no/such/out.ini"));
  EXPECT_FALSE(ini.Save());
  EXPECT_EQ(ini.GetFailureText(), "Unable to open ini file!!");
}

TEST(IniTextTest, HostileSizesStayLinear) {
  // Sections alone, labels alone, and neither: each far too slow if any step
  // went through what came before.
  std::string sections, labels;
  for (int i = 0; i < 120000; ++i) {
    sections.append("[").append(std::to_string(i)).append("]\n");
    labels.append(std::to_string(i)).append("=\n");
  }
  for (const std::string& text : {sections, labels, std::string(1 << 20, '['),
                                  std::string(1 << 20, '\n'), std::string(1 << 20, '=')}) {
    C_CUIniFile ini;
    const auto start = std::chrono::steady_clock::now();
    ini.LoadText(text);
    const std::string saved = ini.SaveText();
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_LT(std::chrono::duration<double>(spent).count(), 5.0);
  }
}

TEST(IniFileTest, NumbersAndDefaults) {
  C_CUIniFile ini;
  ini.LoadText("[S]\ntext=abc\nempty=\nbig=9999999999\nhalf=0.5x\n");
  EXPECT_EQ(ini.GetInt("S", "text", 7), 0);
  EXPECT_EQ(ini.GetInt("S", "empty", 7), 0);
  EXPECT_EQ(ini.GetInt("S", "big", 7), 2147483647);
  EXPECT_EQ(ini.GetInt("S", "none", 7), 7);
  EXPECT_EQ(ini.GetLastError(), kIniNoLabel);
  EXPECT_EQ(ini.GetInt("T", "text", 7), 7);
  EXPECT_EQ(ini.GetLastError(), kIniNoSection);
  EXPECT_EQ(ini.GetDouble("S", "half", 7.0), 0.5);
  EXPECT_EQ(ini.GetLastError(), kIniOk);
  EXPECT_EQ(ini.GetDouble("S", "none", 7.0), 7.0);

  EXPECT_EQ(ini.SetInt("S", "n", -12, 0), 1);
  EXPECT_STREQ(ini.GetString("S", "n", kIniText, kMsgNone), "-12");
  EXPECT_EQ(ini.SetDouble("S", "d", 0.125, 0), 1);
  EXPECT_STREQ(ini.GetString("S", "d", kIniText, kMsgNone), "1.250000e-01");
}

TEST(IniFileTest, TheCreateFlagIsAboutSections) {
  C_CUIniFile ini(Path::System("C:\\f.ini"));
  EXPECT_EQ(ini.SetString("S", "A", "1", 0, kIniText, 0), 0);
  EXPECT_EQ(ini.GetLastError(), kIniNoSection);
  EXPECT_STREQ(ini.GetErrorText(), "Unable to locate specified section [S]\nin file 'C:\\f.ini'");
  EXPECT_EQ(ini.SetString("S", "A", "1", 1, kIniText, 0), 1);
  EXPECT_EQ(ini.SetString("s", "B", nullptr, 0, kIniText, 0), 1);
  EXPECT_STREQ(ini.GetErrorText(), "No error.");
  EXPECT_EQ(ContentsOf(ini), (std::vector<std::string>{"S|A=1", "S|B="}));
  EXPECT_EQ(ini.GetString("S", "C", kIniText, kMsgNone), nullptr);
  EXPECT_STREQ(ini.GetErrorText(),
               "Unable to locate specified label 'C' of section [S]\nin file 'C:\\f.ini'");
}

TEST(IniFileTest, SectionsByIndex) {
  C_CUIniFile ini(Path::System("f.ini"));
  ini.LoadText("[A]\n[B]\n[C]\n");
  EXPECT_STREQ(ini.GetSectionName(1), "B");
  EXPECT_EQ(ini.GetSectionName(3), nullptr);
  EXPECT_STREQ(ini.GetErrorText(),
               "Unable to locate specified section [Section Index(3)]\nin file 'f.ini'");
  EXPECT_EQ(ini.GetSectionName(-1), nullptr);
  EXPECT_EQ(ini.DeleteSection("b"), 1);
  EXPECT_EQ(ini.DeleteSection("b"), 0);
  EXPECT_EQ(ini.GetLastError(), kIniNoSection);
  EXPECT_STREQ(ini.GetSectionName(1), "C");
  EXPECT_EQ(ini.SetString("B", "x", "1", 1, 0, 0), 1);
  EXPECT_STREQ(ini.GetSectionName(2), "B");
}

TEST(IniFileTest, ADeletedLabelKeepsItsPlace) {
  C_CUIniFile ini;
  ini.LoadText("[S]\nA=1\nB=2\n");
  const std::string first = ini.GetLabelName("S", 0);
  EXPECT_EQ(ini.DeleteLabel("S", first.c_str()), 1);
  EXPECT_EQ(ini.DeleteLabel("S", first.c_str()), 0);
  EXPECT_EQ(ini.GetLastError(), kIniNoLabel);
  EXPECT_EQ(ini.GetLabelCount("S"), 2);
  EXPECT_EQ(ini.GetLabelName("S", 0), first);
  EXPECT_EQ(ini.SaveText().find(first + " ="), std::string::npos);
  ini.SetString("S", first.c_str(), "3", 0, 0, 0);
  EXPECT_EQ(ini.GetLabelCount("S"), 2);
  EXPECT_EQ(ini.GetLabelName("S", 0), first);
  EXPECT_EQ(ini.GetLabelName("S", 2), nullptr);
  EXPECT_EQ(ini.GetLastError(), kIniOk);
  EXPECT_EQ(ini.GetLabelName("S", -1), nullptr);
}

TEST(IniFileTest, TheLabelCountWraps) {
  std::string text = "[S]\n";
  for (int i = 0; i < 65536 + 3; ++i) text += std::to_string(i) + "=\n";
  C_CUIniFile ini;
  ini.LoadText(text);
  EXPECT_EQ(ini.GetLabelCount("S"), 3);
  EXPECT_NE(ini.GetLabelName("S", 65538), nullptr);
}

TEST(IniFileTest, StringLists) {
  C_CUIniFile ini;
  ini.LoadText("[S]\nL1=a\nL2=b\nL4=d\n");
  I_CUStringList* list = ini.GetStringList("S", "L", kIniText, kMsgNone);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetCount(), 2);
  EXPECT_STREQ(list->GetAt(1), "b");
  EXPECT_EQ(ini.GetLastError(), kIniOk);
  EXPECT_EQ(ini.GetStringList("S", "M", kIniText, kMsgNone), nullptr);
  EXPECT_EQ(ini.GetLastError(), kIniNoLabel);

  C_CUStringList fresh;
  fresh.Add("x");
  EXPECT_EQ(ini.SetStringList("T", "L", &fresh, 0, kIniText, 0), 0);
  EXPECT_EQ(ini.GetSectionCount(), 1);
  EXPECT_EQ(ini.SetStringList("S", "L", nullptr, 0, kIniText, 0), 0);
  EXPECT_EQ(ini.SetStringList("S", "L", &fresh, 0, kIniText, 0), 1);
  EXPECT_EQ(ContentsOf(ini), (std::vector<std::string>{"S|L1=x", "S|L2=<deleted>", "S|L4=d"}));

  // The list may be the one that was handed out.
  ini.LoadText("[S]\nL2=y\n");
  EXPECT_EQ(ini.SetStringList("S", "Copy", ini.GetStringList("S", "L", 0, 0), 0, kIniText, 0), 1);
  EXPECT_STREQ(ini.GetString("S", "Copy2", kIniText, kMsgNone), "y");
}

class BoxRecorder final : public I_WindowHost {
 public:
  BoxRecorder() { SetBoxOwner(this); }
  ~BoxRecorder() { SetBoxOwner(nullptr); }
  int32_t ShowBox(const char* text, const char* caption, uint32_t) override {
    boxes.push_back(std::string(caption) + ": " + text);
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::vector<std::string> boxes;
};

TEST(IniFileTest, FailuresAreReportedOnTheChosenChannel) {
  BoxRecorder recorder;
  C_CUIniFile ini(Path::System("f.ini"));
  ini.GetString("S", "A", kIniText, kMsgNone);
  EXPECT_TRUE(recorder.boxes.empty());
  ini.GetString("S", "A", kIniText, kMsgBox);
  EXPECT_EQ(
      recorder.boxes,
      (std::vector<std::string>{"Error: Unable to locate specified section [S]\nin file 'f.ini'"}));
  ini.GetStringList("S", "A", kIniText, kMsgBox);
  EXPECT_EQ(recorder.boxes.size(), 1u);
}

TEST(IniFileTest, StoresPathsRelativeAndAbsolute) {
  C_CUIniFile ini(Path::System("C:\\proj\\cfg\\f.ini"));
  ini.SetString("S", "near", "c:\\Proj\\snd\\a.wav", 1, kIniPath, 0);
  ini.SetString("S", "far", "D:\\x.wav", 1, kIniExistingFile, 0);
  EXPECT_STREQ(ini.GetString("S", "near", kIniText, kMsgNone),
               "..\\snd\\a.wav,c:\\Proj\\snd\\a.wav");
  EXPECT_STREQ(ini.GetString("S", "far", kIniText, kMsgNone), "D:\\x.wav,D:\\x.wav");
  EXPECT_STREQ(ini.GetString("S", "near", kIniPath, kMsgNone), "C:\\proj\\snd\\a.wav");
}

TEST(IniFileTest, ReadsPathsByTheirKeyType) {
  test::TempDir dir;
  std::filesystem::create_directory(dir.path() / "sub");
  test::WriteText(dir / "sub/a.wav", "");
  std::string base = dir.path().string() + "\\";
  std::replace(base.begin(), base.end(), '/', '\\');
  const std::string elsewhere = base + "sub\\a.wav";

  C_CUIniFile ini(Path::Native(dir / "f.ini"));
  ini.LoadText(
      "[S]\nfirst=sub\\a.wav,Z:\\none.wav\nsecond=gone.wav," + elsewhere +
      "\nboth=gone.wav,sub\\gone.wav\nalone=gone.wav\ndir=sub\nL1=gone.wav\nL2=sub\\a.wav");
  struct Case {
    const char* label;
    int32_t keyType;
    const char* path;  // null: fails
    int32_t error;
    size_t boxes;
  };
  const std::string subGone = base + "sub\\gone.wav", gone = base + "gone.wav", sub = base + "sub";
  const Case cases[] = {
      {"first", kIniPath, elsewhere.c_str(), 0, 0},
      {"first", kIniExistingFile, elsewhere.c_str(), 0, 0},
      {"second", kIniExistingFile, elsewhere.c_str(), 0, 0},
      {"second", kIniPath, gone.c_str(), 0, 0},
      {"both", kIniFile, subGone.c_str(), 0, 1},
      {"both", kIniExistingFile, nullptr, kIniNoFile, 2},
      {"alone", kIniFile, gone.c_str(), 0, 1},
      {"alone", kIniExistingFile, nullptr, kIniNoFile, 2},
      {"alone", kIniExistingDirectory, nullptr, kIniNoDirectory, 2},
      {"dir", kIniExistingDirectory, sub.c_str(), 0, 0},
      {"dir", kIniExistingFile, nullptr, kIniNoFile, 2},
      {"first", kIniDirectory, "Z:\\none.wav", 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.label) + " " + std::to_string(c.keyType));
    BoxRecorder recorder;
    const char* const path = ini.GetString("S", c.label, c.keyType, kMsgBox);
    EXPECT_EQ(path ? std::string(path) : "null", c.path ? c.path : "null");
    EXPECT_EQ(ini.GetLastError(), c.error);
    EXPECT_EQ(recorder.boxes.size(), c.boxes);
  }
  ini.GetString("S", "alone", kIniExistingFile, kMsgNone);
  EXPECT_EQ(ini.GetErrorText(),
            "Key value is not an existing file: '" + (dir / "f.ini") + ":[S][alone]=gone.wav'");

  BoxRecorder recorder;
  I_CUStringList* const list = ini.GetStringList("S", "L", kIniExistingFile, kMsgBox);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetCount(), 1);
  EXPECT_STREQ(list->GetAt(0), elsewhere.c_str());
  EXPECT_EQ(recorder.boxes.size(), 2u);
}

}  // namespace
}  // namespace velora
