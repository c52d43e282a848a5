// The lined text of an item file against the records that the module reads.
#include "catalogue/chipfile/ItemSource.h"

#include <gtest/gtest.h>

#include <random>

#include "catalogue/chipfile/ItemCheck.h"
#include "foundation/ItemProperty.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

/// Every key that the lines explain has the value that the record gives, and a key
/// that the record has is explained.
void ExpectSameAnswers(const std::string& text) {
  const ItemSource source = ItemSource::Parse(text);
  const auto file = std::make_shared<C_CUIniFile>();
  file->LoadText(text);
  ASSERT_EQ(static_cast<int32_t>(source.Sections().size()), file->GetSectionCount());
  for (const ItemSection& section : source.Sections()) {
    C_ItemProperty record(file, section.name.c_str());
    for (const KeyOrigin& origin : ExplainItem(source, section, ChipInfoSchema())) {
      const char* const value = record.GetString(origin.key.c_str());
      ASSERT_NE(value, nullptr) << section.name << " " << origin.key;
      EXPECT_EQ(origin.setBy.value, value) << "[" << section.name << "] " << origin.key;
    }
    for (const ItemSection* const above : source.Lineage(section)) {
      if (above != &section && above->name != section.name) {
        EXPECT_TRUE(record.IsA(above->name.c_str())) << section.name << " " << above->name;
      }
    }
  }
}

TEST(ItemSource, AgreesWithTheRecordsOfTheShippedFiles) {
  for (const char* const name : {"ChipInfo.cfg", "ChipProperty.cfg"}) {
    SCOPED_TRACE(name);
    ExpectSameAnswers(ReadText(std::string(VELORA_SOURCE_DIR).append("/data/").append(name)));
  }
}

TEST(ItemSource, AgreesWithTheRecordsOfWildFiles) {
  std::mt19937 random(20261122);
  const auto pick = [&random](size_t count) { return static_cast<int>(random() % count); };
  const std::string names = "ABCDEFGH";
  for (int round = 0; round < 200; ++round) {
    std::string text;
    for (int line = 0; line < 60; ++line) {
      const std::string name(1, names[static_cast<size_t>(pick(names.size()))]);
      switch (pick(10)) {
        case 0:
          text += "[" + name + "]\r\n";
          break;
        case 1:
          text += "[[ " + name + " ]] ; twice\n";
          break;
        case 2:
          text += "ISA = [" + name + "], [" + names[static_cast<size_t>(pick(8))] + "]\n";
          break;
        case 3:
          text += " Key" + name + "\t=  \t value " + std::to_string(pick(100)) + " ;x\n";
          break;
        case 4:
          text += "Key" + name + " =\n";
          break;
        case 5:
          text += "Key" + name + "=a=b\n";
          break;
        case 6:
          text += "word " + name + "\n";
          break;
        case 7:
          text += "= " + name + "\n";
          break;
        case 8:
          text += std::string("Key") + name + "=cut\0off\n";
          break;
        default:
          text += "ISA = {[" + name + "]}\n";
          break;
      }
    }
    SCOPED_TRACE(text);
    ExpectSameAnswers("[A]\n" + text);
  }
}

TEST(ItemSource, KnowsLinesAndSaysWhatItPassesOver) {
  const ItemSource source = ItemSource::Parse(
      "stray = 1\n"
      "[A]\n"
      "; remark\n"
      "x = 1\n"
      "nonsense\n"
      "[b]\n"
      "x = 2\n"
      "[a]\n"
      "x = 3 ; again\n");
  ASSERT_EQ(source.Sections().size(), 3u);
  const ItemSection* const a = source.Find("A");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a, source.Find("a"));
  EXPECT_EQ(a->line, 2u);
  ASSERT_NE(a->Find("x"), nullptr);
  EXPECT_EQ(a->Find("x")->value, "3");
  EXPECT_EQ(a->Find("x")->line, 9u);
  EXPECT_EQ(a->Find("X"), nullptr);

  std::vector<size_t> lines;
  for (const SourceRemark& remark : source.Remarks()) lines.push_back(remark.line);
  EXPECT_EQ(lines, (std::vector<size_t>{1, 5, 8, 9}));
}

TEST(ItemSource, LongLinesAreCutWhereTheLoaderCutsThem) {
  const std::string text = std::string("[A]\nx = ").append(2079 - 4, 'v').append("y = 5\nz = 6\n");
  ExpectSameAnswers(text);
  const ItemSource source = ItemSource::Parse(text);
  ASSERT_EQ(source.Remarks().size(), 1u);
  EXPECT_EQ(source.Remarks()[0].line, 2u);
  EXPECT_NE(source.Find("A")->Find("y"), nullptr);
}

TEST(ItemSource, SearchesParentsDepthFirstAndEachOnce) {
  const ItemSource source = ItemSource::Parse(
      "[Top]\nISA = [Left], [Right], [Missing]\n"
      "[Left]\nISA = [Root]\n[Right]\nISA = [Root], [Top]\n[Root]\n");
  std::vector<std::string> names;
  for (const ItemSection* const each : source.Lineage(*source.Find("Top"))) {
    names.push_back(each->name);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Top", "Left", "Root", "Right"}));
}

}  // namespace
}  // namespace velora::test
