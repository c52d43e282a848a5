// The string class, the string list, numbers and fields in text.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "foundation/AsciiText.h"
#include "foundation/CUString.h"
#include "foundation/StringHelpers.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

std::vector<std::string> TextsOf(const C_CUStringList& list) {
  std::vector<std::string> texts;
  for (const std::string& text : list) texts.push_back(text);
  return texts;
}

C_CUStringList ListOf(std::initializer_list<const char*> texts) {
  C_CUStringList list;
  for (const char* text : texts) list.Add(text);
  return list;
}

using Texts = std::vector<std::string>;

TEST(CUStringTest, NullIsEmpty) {
  const char* const null = nullptr;
  C_CUString text(null);
  EXPECT_EQ(text, "");
  text = "x";
  text = null;
  EXPECT_EQ(text, "");
  EXPECT_EQ(C_CUString("a") + null, "a");
  EXPECT_EQ(null + C_CUString("a"), "a");
  EXPECT_EQ('<' + C_CUString("a") + '>' + C_CUString("b"), "<a>b");
}

TEST(CUStringTest, FormatFailsFromTheBuffersSizeOn) {
  C_CUString text;
  EXPECT_TRUE(text.Format("%d-%s", 7, "x"));
  EXPECT_EQ(text, "7-x");
  const std::string longest(10239, 'a');
  EXPECT_TRUE(text.Format("%s", longest.c_str()));
  EXPECT_EQ(text, longest);
  EXPECT_FALSE(text.Format("%sb", longest.c_str()));
  EXPECT_EQ(text, "");
  text = "own";
  EXPECT_TRUE(text.Format("<%s>", text.c_str()));
  EXPECT_EQ(text, "<own>");
}

TEST(CUStringTest, LoadsTheResourcesThatThereAre) {
  C_CUString text = "old";
  for (const uint32_t id : {40960u, 40961u, 41217u, 41218u}) {
    EXPECT_EQ(text.LoadString(id), 1);
    EXPECT_NE(text, "");
  }
  EXPECT_EQ(text.LoadString(40962), 0);
  EXPECT_EQ(text, "");
}

TEST(CUStringTest, TakesParts) {
  const C_CUString text("abcdef");
  EXPECT_EQ(text.Left(2), "ab");
  EXPECT_EQ(text.Left(9), "abcdef");
  EXPECT_EQ(text.Left(0), "");
  EXPECT_EQ(text.Left(-3), "");
  EXPECT_EQ(text.Right(2), "ef");
  EXPECT_EQ(text.Right(9), "abcdef");
  EXPECT_EQ(text.Right(-1), "");
  EXPECT_EQ(text.Mid(4, 9), "ef");
  EXPECT_EQ(text.Mid(6), "");
  EXPECT_THROW(text.Mid(7), std::out_of_range);
}

TEST(CUStringTest, TrimsAndChangesCase) {
  C_CUString text(" \t\n a\r \n");
  text.TrimLeft();
  EXPECT_EQ(text, "a\r \n");
  text.TrimRight();
  EXPECT_EQ(text, "a\r");  // a carriage return is no blank
  text = "xxayx";
  text.TrimLeft('x');
  text.TrimRight("xy");
  EXPECT_EQ(text, "a");
  text.TrimLeft('a');
  EXPECT_EQ(text, "");
  text = "aZ\xE4\xC4";
  text.MakeUpper();
  EXPECT_EQ(text, "AZ\xE4\xC4");
  text.MakeLower();
  EXPECT_EQ(text, "az\xE4\xC4");
}

TEST(StringListTest, TextsStayWhereTheyAre) {
  C_CUStringList list;
  list.Add("first");
  list.Add(nullptr);
  const char* const first = list.GetAt(0);
  for (int i = 0; i < 1000; ++i) list.Add("more");
  EXPECT_EQ(list.GetAt(0), first);
  EXPECT_STREQ(list.GetAt(1), "");
  EXPECT_EQ(list.GetAt(1002), nullptr);
}

TEST(StringListTest, CopiesInsertsAndRemoves) {
  C_CUStringList list = ListOf({"a", "b"});
  C_CUStringList copy = list;
  EXPECT_EQ(copy.Append(&copy), 1);
  EXPECT_EQ(copy.Append(nullptr), 0);
  EXPECT_EQ(TextsOf(copy), (Texts{"a", "b", "a", "b"}));
  copy = *&copy;
  copy = list;
  EXPECT_TRUE(copy.InsertAt(2, "c"));
  EXPECT_FALSE(copy.InsertAt(4, "e"));
  EXPECT_TRUE(copy.RemoveAt(0));
  EXPECT_EQ(TextsOf(copy), (Texts{"b", "c"}));
  EXPECT_EQ(TextsOf(list), (Texts{"a", "b"}));
}

TEST(StringListTest, Sorts) {
  const auto names = {"b.2", "A.3", "\xE4", "a.3", "none", "B.1"};
  C_CUStringList list = ListOf(names);
  list.Sort(true);
  EXPECT_EQ(TextsOf(list), (Texts{"A.3", "B.1", "a.3", "b.2", "none", "\xE4"}));
  list = ListOf(names);
  list.SortNoCase(true);
  EXPECT_EQ(TextsOf(list), (Texts{"A.3", "a.3", "B.1", "b.2", "none", "\xE4"}));
  list = ListOf(names);
  list.SortAfter('.', true);
  EXPECT_EQ(TextsOf(list), (Texts{"B.1", "b.2", "A.3", "a.3", "none", "\xE4"}));
  list = ListOf(names);
  list.SortAfter('.', false);
  EXPECT_EQ(TextsOf(list), (Texts{"\xE4", "none", "A.3", "a.3", "b.2", "B.1"}));
  list = ListOf({"x.b.1", "y.a.2"});
  list.SortAfter('.', false);
  EXPECT_EQ(TextsOf(list), (Texts{"y.a.2", "x.b.1"}));
}

TEST(ParseNumberTest, ReadsThreeFormsAndLeavesWhatItReached) {
  struct Case {
    const char* text;
    bool good;
    uint32_t value;
  };
  const Case cases[] = {
      {"0", true, 0},          {"4294967295", true, 4294967295u},
      {"4294967296", true, 0}, {"101b", true, 5},
      {"101B", true, 5},       {"10h", true, 16},
      {"fFH", true, 255},      {"0x", true, 0},
      {"0X1f", true, 31},      {"0xb", true, 11},
      {"h", true, 0},          {"b", true, 0},
      {"1bh", true, 27},       {"0x1FFFFFFFF", true, 0xFFFFFFFF},
      {"12x", false, 12},      {"0x12h", false, 0x12},
      {"0x12g", false, 18},    {"12b", false, 1},
      {"2b", false, 0},        {"", false, 0},
      {" 1", false, 0},        {"1 ", false, 1},
      {"-1", false, 0},        {"+1", false, 0},
      {"1gh", false, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    uint32_t value = 999;
    EXPECT_EQ(ParseNumber(c.text, &value), c.good);
    EXPECT_EQ(value, c.value);
  }
  uint32_t value = 999;
  EXPECT_FALSE(ParseHex("12", &value));
  EXPECT_FALSE(ParseBinary("12", &value));
  EXPECT_EQ(value, 999u);
}

TEST(ReadNumberTest, TakesTheNumberInFront) {
  EXPECT_EQ(ReadInt(" \r-12abc"), -12);
  EXPECT_EQ(ReadInt("+7"), 7);
  EXPECT_EQ(ReadInt("abc"), 0);
  EXPECT_EQ(ReadInt("--1"), 0);
  EXPECT_EQ(ReadInt("0x10"), 0);
  EXPECT_EQ(ReadInt("99999999999999999999"), 2147483647);
  EXPECT_EQ(ReadInt("-2147483648"), -2147483647 - 1);
  EXPECT_EQ(ReadInt("-99999999999"), -2147483647 - 1);

  EXPECT_EQ(ReadDouble("-1.5e2x"), -150.0);
  EXPECT_EQ(ReadDouble("+.25"), 0.25);
  EXPECT_EQ(ReadDouble("1,5"), 1.0);
  EXPECT_EQ(ReadDouble("0x10"), 0.0);
  EXPECT_EQ(ReadDouble("inf"), 0.0);
  EXPECT_EQ(ReadDouble("nan"), 0.0);
  EXPECT_EQ(ReadDouble("-+1"), 0.0);
  EXPECT_EQ(ReadDouble("-1e999"), -HUGE_VAL);
  EXPECT_EQ(ReadDouble("1e-999"), 0.0);
  EXPECT_EQ(WriteDouble(0.125), "1.250000e-01");
  EXPECT_EQ(WriteDouble(-1e100), "-1.000000e+100");
}

TEST(GetTokenTest, FieldsAreTrimmed) {
  struct Case {
    const char* list;
    int32_t index;
    const char* token;
  };
  const Case cases[] = {
      {" a , b ", 1, "a"},     {" a , b ", 2, "b"}, {" a , b ", 3, ""},
      {" a , b ", 0, "a , b"}, {"a;\tb\n", 2, "b"}, {"a,,b", 2, ""},
      {"a,,b", 3, "b"},        {"", 1, ""},         {"\r", -1, "\r"},
  };
  for (const Case& c : cases) EXPECT_EQ(GetToken(c.list, c.index), c.token) << c.list;
}

TEST(SplitListTest, StopsAtTheFirstEmptyField) {
  const std::pair<const char*, Texts> cases[] = {
      {"a,,b", {"a"}}, {" a ; b,c,", {"a", "b", "c"}}, {",a", {}},
      {"", {}},        {"one two", {"one two"}},
  };
  for (const auto& [text, fields] : cases) {
    C_CUStringList list = ListOf({"old"});
    SplitList(text, list);
    EXPECT_EQ(TextsOf(list), fields) << text;
  }
}

TEST(FindStringTest, WithAndWithoutCase) {
  C_CUStringList list = ListOf({"Ab", "aB", "\xC4"});
  list.Rewind();
  EXPECT_EQ(FindString("aB", &list), 1);
  EXPECT_EQ(FindString("ab", &list), -1);
  EXPECT_EQ(FindStringNoCase("AB", &list), 0);
  EXPECT_EQ(FindStringNoCase("\xE4", &list), -1);
  EXPECT_EQ(FindString("a", nullptr), -1);
  EXPECT_TRUE(IsInList("ab", &list));
  EXPECT_FALSE(IsInList("abc", &list));
  EXPECT_STREQ(list.GetNext(), "Ab");
}

}  // namespace
}  // namespace velora
