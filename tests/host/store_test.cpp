// A store over a text that a person owns.
#include "host/ProjectStore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "foundation/IniFile.h"
#include "platform/File.h"
#include "support/RawTable.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

constexpr char kHandWritten[] =
    "; my project\r\n"
    "\r\n"
    "[Motor]   ; turns\r\n"
    "Speed=7;fast\r\n"
    "  Name  =  Left  \r\n"
    "Mine = keep me\r\n"
    "[Other]\r\n"
    "x = 1\r\n"
    "\r\n"
    "[motor]\r\n"
    "Late = 0.5 ; half";

std::unique_ptr<ProjectStore> Loaded(const std::string& text) {
  auto store = std::make_unique<ProjectStore>();
  EXPECT_TRUE(store->LoadProjectText(text).Ok());
  return store;
}

/// The text with `count` more letters.
std::string Grown(const char* start, size_t count) {
  std::string text(start);
  text.append(count, 'y');
  return text;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  const size_t at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  return text.replace(at, what.size(), by);
}

TEST(ProjectStore, AnEditChangesTheBytesOfItsValueAlone) {
  struct Case {
    const char* label;
    const char* value;
    const char* before;
    const char* after;
  };
  const Case cases[] = {
      {"Speed", "8", "Speed=7;", "Speed=8;"},
      {"Speed", "7", "Speed=7;", "Speed=7;"},
      {"Speed", "", "Speed=7;", "Speed=;"},
      {"Name", "Right one", "  =  Left  \r", "  =  Right one  \r"},
      {"Late", "1", "0.5 ; half", "1 ; half"},
      {"New", "5", "Late = 0.5 ; half", "Late = 0.5 ; half\r\nNew = 5\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.label) + "=" + c.value);
    const auto store = Loaded(kHandWritten);
    EXPECT_EQ(store->ProjectText(), kHandWritten);
    EXPECT_EQ(store->SetString("Motor", c.label, c.value, 0, 0, 1), 1);
    EXPECT_EQ(store->ProjectText(), Replaced(kHandWritten, c.before, c.after));
    EXPECT_STREQ(store->GetString("MOTOR", c.label, 0, 0), c.value);
  }
}

TEST(ProjectStore, ANumberThatStaysKeepsItsSpelling) {
  const std::string text = "[A]\nn = 007\nm = +5 ; five\nd = 2.50\nword = 7 apples\n";
  const auto store = Loaded(text);
  EXPECT_EQ(store->SetInt("A", "n", 7, 1), 1);
  EXPECT_EQ(store->SetInt("A", "m", 5, 1), 1);
  EXPECT_EQ(store->SetDouble("A", "d", 2.5, 1), 1);
  EXPECT_EQ(store->ProjectText(), text);
  EXPECT_EQ(store->SetInt("A", "n", 8, 1), 1);
  EXPECT_EQ(store->SetInt("A", "word", 7, 1), 1);
  EXPECT_EQ(store->ProjectText(), "[A]\nn = 8\nm = +5 ; five\nd = 2.50\nword = 7\n");
}

TEST(ProjectStore, NewSectionsGoToTheEnd) {
  ProjectStore store;
  EXPECT_EQ(store.SetInt("A", "n", 1, 0), 0);
  EXPECT_EQ(store.GetLastError(), kIniNoSection);
  EXPECT_EQ(store.ProjectText(), "");
  EXPECT_EQ(store.SetInt("A", "n", 1, 1), 1);
  EXPECT_EQ(store.SetInt("B", "n", 2, 1), 1);
  EXPECT_EQ(store.SetInt("A", "m", 3, 1), 1);
  EXPECT_EQ(store.SetInt("", "top", 4, 1), 1);
  EXPECT_EQ(store.ProjectText(), "top = 4\n[A]\nn = 1\nm = 3\n\n[B]\nn = 2\n");
}

TEST(ProjectStore, DoublesComeBackExactly) {
  std::mt19937_64 random(5);
  std::vector<double> values = {0.0,
                                -0.0,
                                0.1,
                                1.0 / 3.0,
                                0.662528233225,
                                5e-324,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity()};
  while (values.size() < 2000) {
    const double value = std::bit_cast<double>(random());
    if (std::isfinite(value)) values.push_back(value);
  }
  ProjectStore store;
  for (size_t i = 0; i < values.size(); ++i) {
    ASSERT_EQ(store.SetDouble("A", std::to_string(i).c_str(), values[i], 1), 1);
  }
  const auto again = Loaded(store.ProjectText());
  for (size_t i = 0; i < values.size(); ++i) {
    const double read = again->GetDouble("A", std::to_string(i).c_str(), 99.0);
    EXPECT_EQ(std::bit_cast<uint64_t>(read), std::bit_cast<uint64_t>(values[i])) << values[i];
  }
  EXPECT_TRUE(again->Misreads().empty());
}

TEST(ProjectStore, WhatALineCannotHoldIsRefused) {
  const std::string text = Grown("[A]\nn = 1 ; ", 2000) + "\n";
  const char* const values[] = {"a;b", "a\nb", " a", "a ", "a\t", "a\r\n[B]\nx = 1"};
  for (const char* const value : values) {
    SCOPED_TRACE(value);
    const auto store = Loaded(text);
    EXPECT_EQ(store->SetString("A", "n", value, 1, 0, 1), 0);
    EXPECT_EQ(store->ProjectText(), text);
    EXPECT_STREQ(store->GetString("A", "n", 0, 0), "1");
    ASSERT_EQ(store->RefusedValues().size(), 1u);
    EXPECT_EQ(store->RefusedValues().front(), "[A] n");
  }
  const auto store = Loaded(text);
  EXPECT_EQ(store->SetString("A", "n", std::string(100, 'x').c_str(), 1, 0, 1), 0) << "too long";
  EXPECT_EQ(store->SetString("A", "[n", "x]", 1, 0, 1), 0) << "would be a section";
  EXPECT_EQ(store->SetString("A", "a=b", "x", 1, 0, 1), 0) << "would be another label";
  EXPECT_EQ(store->SetString("A]", "n", "x", 1, 0, 1), 0) << "would be another section";
}

TEST(ProjectStore, DeletedLabelsLeaveAndComeBackInPlace) {
  const auto store = Loaded("[A]\na = 1\n; between\nb = 2\na = 3\n");
  EXPECT_EQ(store->DeleteLabel("A", "a"), 1);
  EXPECT_EQ(store->ProjectText(), "[A]\n; between\nb = 2\n");
  EXPECT_EQ(store->DeleteLabel("A", "a"), 0);
  EXPECT_EQ(store->SetInt("A", "a", 3, 1), 1);
  EXPECT_EQ(store->ProjectText(), "[A]\n; between\nb = 2\na = 3\n");
}

TEST(ProjectStore, ADeletedSectionKeepsWhatNobodyAskedFor) {
  const std::string text = "[A]\n; mine\nknown = 1\nstrange = x\ngone = 2\n\n[B]\nonly = 1\n";
  const auto store = Loaded(text);
  EXPECT_EQ(store->GetInt("A", "known", 0), 1);
  EXPECT_EQ(store->GetInt("a", "gone", 0), 2);
  EXPECT_EQ(store->GetInt("B", "only", 0), 1);
  EXPECT_EQ(store->DeleteSection("A"), 1);
  EXPECT_EQ(store->DeleteSection("A"), 0);
  EXPECT_EQ(store->GetString("A", "strange", 0, 0), nullptr);
  EXPECT_EQ(store->ProjectText(), "[A]\n; mine\nstrange = x\n\n[B]\nonly = 1\n");
  EXPECT_EQ(store->SetInt("A", "known", 5, 1), 1);
  EXPECT_EQ(store->SetInt("A", "added", 6, 1), 1);
  EXPECT_EQ(store->DeleteSection("B"), 1);
  EXPECT_EQ(store->ProjectText(), "[A]\n; mine\nknown = 5\nstrange = x\nadded = 6\n\n");
}

/// Where the text has no oddities the store must read what the plain class reads.
TEST(ProjectStore, ReadsWhatThePlainClassReads) {
  const char* const pieces[] = {"[A]", "[ b ]", "[[A]]",   "x = 1",     "x=", "y",
                                ";",   " ",     "z = a;b", "=5",        "\t", "[A] = 2",
                                "[",   "]",     "\r",      "x  =  9 \r"};
  std::mt19937 random(11);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (int line = 0; line < 8; ++line) {
      text += pieces[random() % std::size(pieces)];
      if (random() % 8) text += random() % 4 ? "\n" : "\r\n";
    }
    C_CUIniFile plain;
    plain.LoadText(text);
    const auto store = Loaded(text);
    ASSERT_EQ(store->ProjectText(), text);
    size_t entries = 0;
    std::string section;
    for (const IniLine& line : store->Document().Lines()) {
      if (line.kind == IniLine::kSection) section = line.name;
      if (line.kind != IniLine::kEntry) continue;
      ++entries;
      const char* const value = plain.GetString(section.c_str(), line.name.c_str(), 0, 0);
      const IniLine* const last = store->Document().Find(section, line.name);
      ASSERT_TRUE(value && last) << text;
      ASSERT_EQ(std::string(last->Value()), value) << text;
    }
    ASSERT_EQ(entries == 0, plain.SaveText().find('=') == std::string::npos) << text;
  }
}

TEST(ProjectStore, OddTextsAreRefusedWithTheirLine) {
  ProjectStore store;
  EXPECT_EQ(store.LoadProjectText(std::string("[A]\nx = \0\n", 10)).Message(),
            "line 2: has a zero byte, so this is no text");
  EXPECT_EQ(store.LoadProjectText(Grown("\n\nx = ", 2076)).Message(),
            "line 3: has 2080 bytes; a line has at most 2079");
  EXPECT_TRUE(store.LoadProjectText(Grown("x = ", 2075) + "\r\n").Ok());
}

TEST(ProjectStore, TellsNumbersThatAreNone) {
  const auto store = Loaded("[A]\nn = 4MHz\nm = 12\nd = 1,5\nbig = 3000000000\ne =\n");
  EXPECT_EQ(store->GetInt("A", "n", 0), 4);
  EXPECT_EQ(store->GetInt("A", "n", 0), 4);
  EXPECT_EQ(store->GetInt("A", "m", 0), 12);
  EXPECT_EQ(store->GetInt("A", "none", 3), 3);
  EXPECT_EQ(store->GetInt("A", "e", 3), 0);
  EXPECT_EQ(store->GetInt("A", "big", 3), std::numeric_limits<int32_t>::max());
  EXPECT_EQ(store->GetDouble("A", "d", 0), 1.0);
  std::vector<std::string> told;
  for (const auto& misread : store->Misreads()) {
    told.push_back(std::to_string(misread.line) + " " + misread.label + " " + misread.value);
  }
  EXPECT_EQ(told, (std::vector<std::string>{"2 n 4MHz", "6 e ", "5 big 3000000000", "4 d 1,5"}));
}

TEST(ProjectStore, SavesAtomically) {
  const TempDir dir;
  const std::string path = dir / "project.ini";
  WriteText(path, kHandWritten);
  ProjectStore store;
  ASSERT_TRUE(store.LoadFile(Path::Native(path)).Ok());
  EXPECT_EQ(store.SetInt("Motor", "Speed", 9, 0), 1);
  EXPECT_FALSE(store.SaveFile(Path::Native(dir / "no/such/dir.ini")).Ok());
  ASSERT_TRUE(store.SaveFile(Path::Native(path)).Ok());
  EXPECT_EQ(ReadText(path), Replaced(kHandWritten, "Speed=7", "Speed=9"));
  EXPECT_EQ(dir.Entries(), std::vector<std::string>{"project.ini"});
  EXPECT_FALSE(store.LoadFile(Path::Native(dir / "none.ini")).Ok());
}

TEST(ProjectStore, AnswersByTable) {
  const auto store = Loaded("[A]\nn = 7\nd = 0.5\nl1 = a\nl2 = b\n");
  I_CUIniFile* const plain = store.get();
  const RawTable table(plain);
  const auto text = [](const char* t) { return t; };
  EXPECT_EQ(table.Call<int32_t>(3, text("A"), text("n"), int32_t{0}), 7);
  EXPECT_EQ(table.Call<double>(4, text("A"), text("d"), 0.0), 0.5);
  EXPECT_EQ(table.Call<int32_t>(7, text("A"), text("n"), int32_t{8}, int32_t{1}), 1);
  EXPECT_EQ(table.Call<int32_t>(13, text("A"), text("d")), 1);
  I_CUStringList* const list = table.Call<I_CUStringList*>(2, text("A"), text("l"), 0, 0);
  ASSERT_TRUE(list);
  EXPECT_EQ(list->GetCount(), 2);
  EXPECT_EQ(store->ProjectText(), "[A]\nn = 8\nl1 = a\nl2 = b\n");
}

}  // namespace
}  // namespace velora::test
