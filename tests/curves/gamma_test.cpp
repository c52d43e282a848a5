// Gamma curves as text.
#include "curves/GammaText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/TempDir.h"

namespace velora {
namespace {

const std::string kRemarks =
    "// any text behind the '//' is treated as remark\n"
    "//Gamma Curve format : PinIndex,SamplePosition,LevelValue\n";

GammaRows DefaultRows() {
  GammaRows rows;
  rows.fill(DefaultGammaPoints());
  return rows;
}

TEST(GammaText, DefaultRowsAreTwoRemarksAndTwoLinesEach) {
  std::string expected = kRemarks;
  for (int row = 0; row < 32; ++row) {
    const std::string pin = "Pin" + std::to_string(row);
    expected += pin + ",0,0\n" + pin + ",255,255\n";
  }
  EXPECT_EQ(FormatGammaText(DefaultRows()), expected);
}

TEST(GammaText, RowsWithoutACurveWriteNothing) {
  GammaRows rows;
  rows[3] = {{1, 2}};
  rows[31] = {{9, 8}, {7, 6}, {7, 6}};
  EXPECT_EQ(FormatGammaText(rows), kRemarks + "Pin31,9,8\nPin31,7,6\nPin31,7,6\n");
}

TEST(GammaText, PositionsBeyondAByteAreWrittenButNotRead) {
  GammaRows rows;
  rows[0] = {{0, 1}, {256, 2}, {255, 3}};
  rows[1] = {{0, 1}, {70000, 2}};
  rows[2] = {{0, 1}, {0xFFFFFFFF, 2}};
  const std::string text = FormatGammaText(rows);
  EXPECT_EQ(text, kRemarks +
                      "Pin0,0,1\nPin0,256,2\nPin0,255,3\nPin1,0,1\nPin1,70000,2\n"
                      "Pin2,0,1\nPin2,-1,2\n");
  GammaRows read = DefaultRows();
  EXPECT_EQ(ApplyGammaText(ParseGammaText(text), read), 1u);
  EXPECT_EQ(read[0], (GammaPoints{{0, 1}, {255, 3}}));
  EXPECT_EQ(read[1], DefaultGammaPoints());
}

TEST(GammaText, RandomCurvesComeBack) {
  std::mt19937 random(1);
  for (int trial = 0; trial < 50; ++trial) {
    GammaRows rows;
    for (GammaPoints& row : rows) {
      row.resize(2 + random() % 300);
      for (auto& point : row) {
        point = {static_cast<uint32_t>(random() % 256), static_cast<uint8_t>(random())};
      }
    }
    GammaRows read = DefaultRows();
    const GammaText text = ParseGammaText(FormatGammaText(rows));
    EXPECT_EQ(text.faultCount, 0u);
    EXPECT_EQ(ApplyGammaText(text, read), 32u);
    EXPECT_EQ(read, rows);
  }
}

/// One line: the point it gives, or what is wrong with it.
TEST(GammaText, Lines) {
  struct Case {
    const char* line;
    int row;  // -1: no point
    uint32_t position;
    uint8_t level;
    const char* fault;
  };
  const char* const kNoPin = "expected \"Pin\" with a row number, found ";
  const Case cases[] = {
      {"Pin0,0,0", 0, 0, 0, ""},
      {"pIN31,255,255", 31, 255, 255, ""},
      {" \t Pin 5 , 6 , 7 \v\f", 5, 6, 7, ""},
      {"Pin5,6,7\r", 5, 6, 7, ""},
      {"Pin007,006,+5", 7, 6, 5, ""},
      {"Pin7th,6 or so,5,9,,", 7, 6, 5, ""},
      {"Pinx,a,b", 0, 0, 0, ""},
      {"Pin-0,-0,- 3", 0, 0, 0, ""},
      {"Pin1,+-4,0x10", 1, 0, 0, ""},
      {"// Pin1,2,3", -1, 0, 0, ""},
      {"//", -1, 0, 0, ""},
      {"", -1, 0, 0, ""},
      {" \t \r", -1, 0, 0, ""},
      {"Pin32,0,0", -1, 0, 0, "row is \"32\", expected 0 to 31"},
      {"PIN-1,0,0", -1, 0, 0, "row is \"-1\", expected 0 to 31"},
      {"Pin99999999999999999999,0,0", -1, 0, 0,
       "row is \"99999999999999999999\", expected 0 to 31"},
      {"Pin4294967296,0,0", -1, 0, 0, "row is \"4294967296\", expected 0 to 31"},
      {"Pin1,256,0", -1, 0, 0, "position is \"256\", expected 0 to 255"},
      {"Pin1,-1,0", -1, 0, 0, "position is \"-1\", expected 0 to 255"},
      {"Pin1,-99999999999999999999,0", -1, 0, 0,
       "position is \"-99999999999999999999\", expected 0 to 255"},
      {"Pin1,0,256", -1, 0, 0, "level is \"256\", expected 0 to 255"},
      {"Pin1,,0", -1, 0, 0, "position is missing"},
      {"Pin1, \t,0", -1, 0, 0, "position is missing"},
      {"Pin1", -1, 0, 0, "position is missing"},
      {"Pin1,2", -1, 0, 0, "level is missing"},
      {"Pin1,2, ", -1, 0, 0, "level is missing"},
      {"Pin,1,2", -1, 0, 0, "\"Pin\""},
      {"Pin ,1,2", -1, 0, 0, "\"Pin\""},
      {"Pim1,1,2", -1, 0, 0, "\"Pim1\""},
      {" // Pin1,2,3", -1, 0, 0, "\"// Pin1\""},
      {",,", -1, 0, 0, "\"\""},
      {"\x1b[31mred,1,2", -1, 0, 0, "\"?[31mred\""},
      {"a word that is far too long to be shown whole,1,2", -1, 0, 0,
       "\"a word that is far too long to b...\""},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.line);
    // A second good point, so that a row has its two.
    const GammaText text = ParseGammaText(std::string(test.line) + "\nPin" +
                                          std::to_string(std::max(test.row, 0)) + ",1,1\n");
    GammaText expected;
    const auto row = static_cast<size_t>(std::max(test.row, 0));
    if (test.row >= 0) expected.rows[row].push_back({test.position, test.level});
    expected.rows[row].push_back({1, 1});
    EXPECT_EQ(text.rows, expected.rows);

    std::string fault = test.fault;
    if (fault.starts_with("\"")) fault = kNoPin + fault;
    if (fault.empty()) {
      EXPECT_TRUE(text.faults.empty() || text.faults[0].line == 2) << text.faults[0].message;
    } else {
      ASSERT_FALSE(text.faults.empty());
      EXPECT_EQ(text.faults[0].line, 1u);
      EXPECT_EQ(text.faults[0].message, fault);
    }
  }
}

TEST(GammaText, LineEndsAndPieces) {
  const GammaPoints both = {{1, 2}, {3, 4}};
  const std::string blanks(300, ' ');
  const struct {
    const char* what;
    std::string text;
    GammaPoints expected;
  } cases[] = {
      {"LF", "Pin0,1,2\nPin0,3,4\n", both},
      {"CR LF", "Pin0,1,2\r\nPin0,3,4\r\n", both},
      {"no end at the end", "Pin0,1,2\nPin0,3,4", both},
      {"a lone CR ends nothing", "Pin0,1,2\rPin0,3,4\n", {{1, 2}}},
      {"255 characters", "Pin0,1" + std::string(247, ' ') + ",2\nPin0,3,4\n", both},
      {"256 characters: the level falls into the next piece",
       "Pin0,1" + std::string(248, ' ') + ",2\nPin0,3,4\n",
       {{3, 4}}},
      {"the second piece is a line of its own",
       "//" + std::string(253, 'x') + "Pin0,1,2\nPin0,3,4\n", both},
      {"so is the third",
       "//" + std::string(253, 'x') + std::string(255, ' ') + "Pin0,1,2\nPin0,3,4\n", both},
      {"points of a row need not stand together", "Pin0,1,2\nPin1,9,9\n\n//\nPin0,3,4\n", both},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(ParseGammaText(test.text).rows[0], test.expected) << test.what;
  }
}

TEST(GammaText, FaultsNameTheirLines) {
  const GammaText text = ParseGammaText(
      "//\n"
      "Pin0,0,0\n"
      "nonsense\n"
      "Pin5,1,1\r\n"
      "\n" +
      std::string(260, 'y') +
      "\n"
      "Pin0,1,300\n");
  std::string faults;
  for (const GammaFault& fault : text.faults) {
    faults += std::to_string(fault.line) + ": " + fault.message + "\n";
  }
  const std::string noPin = "expected \"Pin\" with a row number, found ";
  EXPECT_EQ(faults, "3: " + noPin + "\"nonsense\"\n" +                             //
                        "6: " + noPin + "\"" + std::string(32, 'y') + "...\"\n" +  //
                        "6: " + noPin + "\"yyyyy\"\n" +
                        "7: level is \"300\", expected 0 to 255\n"
                        "2: row 0 has this point alone, expected 2 or more\n"
                        "4: row 5 has this point alone, expected 2 or more\n");
  EXPECT_EQ(text.faultCount, 6u);
  GammaRows rows = DefaultRows();
  EXPECT_EQ(ApplyGammaText(text, rows), 0u);
  EXPECT_EQ(rows, DefaultRows());
}

TEST(GammaText, OnlyTheFirstFaultsAreKept) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "?\n";
  const GammaText read = ParseGammaText(text);
  EXPECT_EQ(read.faultCount, 5000u);
  ASSERT_EQ(read.faults.size(), GammaText::kMaxFaults);
  EXPECT_EQ(read.faults.back().line, GammaText::kMaxFaults);
}

TEST(GammaText, DamagedTextsGiveOnlyValidPoints) {
  std::mt19937 random(3);
  const std::string good = FormatGammaText(DefaultRows());
  for (int trial = 0; trial < 2000; ++trial) {
    std::string text = good;
    for (int change = 0; change < 40; ++change) {
      const size_t at = random() % text.size();
      const char wild[] = {',', '\n', '\0', '-', '9', '/', static_cast<char>(random())};
      switch (random() % 3) {
        case 0:
          text[at] = wild[random() % sizeof wild];
          break;
        case 1:
          text.erase(at, random() % 9);
          break;
        default:
          text.insert(at, random() % 30, wild[random() % sizeof wild]);
      }
    }
    const GammaText read = ParseGammaText(text);
    for (const GammaPoints& row : read.rows) {
      for (const auto& point : row) ASSERT_LE(uint32_t{point.Sample}, 255u);
    }
    // What was read once stays what it is.
    GammaRows rows;
    ApplyGammaText(read, rows);
    GammaRows again;
    ApplyGammaText(ParseGammaText(FormatGammaText(rows)), again);
    ASSERT_EQ(again, rows);
  }
}

TEST(GammaFile, ExportAndImport) {
  const test::TempDir directory;
  const Path path = Path::Native(directory / "gamma.txt");
  GammaRows rows = DefaultRows();
  rows[4] = {{0, 255}, {128, 3}, {255, 0}};
  ASSERT_TRUE(ExportGamma(path, rows));
  EXPECT_EQ(test::ReadText(directory / "gamma.txt"), FormatGammaText(rows));

  GammaRows read;
  const Result<GammaText> text = ImportGamma(path, read);
  ASSERT_TRUE(text);
  EXPECT_EQ(text->faultCount, 0u);
  EXPECT_EQ(read, rows);
}

TEST(GammaFile, ImportKeepsRowsThatTheFileDoesNotDescribe) {
  const test::TempDir directory;
  test::WriteText(directory / "some.txt", "Pin2,1,1\nPin2,2,2\nPin3,1,1\n");
  GammaRows rows = DefaultRows();
  const Result<GammaText> text = ImportGamma(Path::Native(directory / "some.txt"), rows);
  ASSERT_TRUE(text);
  ASSERT_EQ(text->faults.size(), 1u);
  EXPECT_EQ(text->faults[0].line, 3u);
  GammaRows expected = DefaultRows();
  expected[2] = {{1, 1}, {2, 2}};
  EXPECT_EQ(rows, expected);
}

TEST(GammaFile, FilesThatCannotBeOpenedChangeNothing) {
  const test::TempDir directory;
  GammaRows rows = DefaultRows();
  const Result<GammaText> text = ImportGamma(Path::Native(directory / "missing.txt"), rows);
  EXPECT_FALSE(text);
  EXPECT_FALSE(text.Message().empty());
  EXPECT_EQ(rows, DefaultRows());
  const Status status = ExportGamma(Path::Native(directory / "no such/gamma.txt"), rows);
  EXPECT_FALSE(status);
  EXPECT_FALSE(status.Message().empty());
  EXPECT_TRUE(directory.Entries().empty());
}

}  // namespace
}  // namespace velora
