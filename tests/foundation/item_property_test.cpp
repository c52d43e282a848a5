// Typed records with inheritance.
#include "foundation/ItemProperty.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "PublishedPC1.h"
#include "foundation/ItemFile.h"
#include "support/RawTable.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::RawTable;
using test::TempDir;
using test::WriteText;

std::shared_ptr<C_CUIniFile> FileOf(const std::string& text) {
  auto file = std::make_shared<C_CUIniFile>();
  file->LoadText(text);
  return file;
}

/// The list in braces, its entries one behind the other; "null" for none.
template <typename Entry, typename Show>
std::string Shown(const Entry* list, int32_t count, const Show& show) {
  if (!list) return count == 0 ? "null" : "null with a count";
  std::string text;
  for (int32_t i = 0; i < count; ++i) text.append(text.empty() ? "" : " ").append(show(list[i]));
  return text;
}

std::string Strings(I_ItemProperty& item, const char* key) {
  int32_t count = -1;
  const char* const* const list = item.GetStringList(key, &count);
  return Shown(list, count, [](const char* each) { return std::string(each); });
}

std::string Numbers(I_ItemProperty& item, const char* key) {
  int32_t count = -1;
  const int32_t* const list = item.GetNumberList(key, &count);
  return Shown(list, count, [](int32_t each) { return std::to_string(each); });
}

std::string Bools(I_ItemProperty& item, const char* key) {
  int32_t count = -1;
  const int32_t* const list = item.GetBoolList(key, &count);
  return Shown(list, count, [](int32_t each) { return std::to_string(each); });
}

std::string Items(I_ItemProperty& item, const char* key) {
  int32_t count = -1;
  I_ItemProperty* const* const list = item.GetItemList(key, &count);
  return Shown(list, count, [](I_ItemProperty* each) {
    return each->GetName() + std::string(each->IsLoaded() ? "" : "?");
  });
}

/// Each "%" of the pattern replaced by the number.
std::string Numbered(std::string_view pattern, int number) {
  std::string text;
  for (const char c : pattern) c == '%' ? text.append(std::to_string(number)) : text.append(1, c);
  return text;
}

std::string Text(const char* text) { return text ? text : "null"; }

TEST(ItemProperty, Lists) {
  C_ItemProperty item(FileOf("[I]\n"
                             "plain = 1, 2\n"
                             "loose = {1, 2 ,,\t3}\n"
                             "mixed = {1, a, 0x10, 11b, 12x, 0FFh, 4294967295}\n"
                             "flags = {1, 0, false, FALSE, False, no, 00, true}\n"
                             "none = {}\n"
                             "blank = { , }\n"
                             "open = {1, 2\n"
                             "brace = {\n"
                             "one = {a}\n"),
                      "I");
  struct Case {
    const char *key, *strings, *numbers, *bools;
  };
  for (const Case& each : {
           Case{"plain", "null", "null", "null"},
           Case{"loose", "1 2 3", "1 2 3", "1 1 1"},
           Case{"mixed", "1 a 0x10 11b 12x 0FFh 4294967295", "1 16 3 255 -1", "1 1 1 1 1 1 1"},
           Case{"flags", "1 0 false FALSE False no 00 true", "1 0 0", "1 0 0 0 0 1 1 1"},
           Case{"none", "null", "null", "null"},
           Case{"blank", "null", "null", "null"},
           Case{"open", "null", "null", "null"},
           Case{"brace", "null", "null", "null"},
           Case{"one", "a", "null", "1"},
           Case{"missing", "null", "null", "null"},
       }) {
    for (int round = 0; round < 2; ++round) {  // converted, then from the cache
      EXPECT_EQ(Strings(item, each.key), each.strings) << each.key;
      EXPECT_EQ(Numbers(item, each.key), each.numbers) << each.key;
      EXPECT_EQ(Bools(item, each.key), each.bools) << each.key;
    }
  }
  EXPECT_STREQ(item.GetStringList("loose", nullptr)[2], "3") << "the count may be null";
}

TEST(ItemProperty, NumbersAndFlags) {
  C_ItemProperty item(FileOf("[I]\nn=12\nx=0x1F\nh=1Fh\nb=101b\ntail=12x\nword=abc\nempty=\n"
                             "big=0xFFFFFFFF\nwrap=4294967297\nzero=0\nneg=-5\n"
                             "f1=false\nf2=FALSE\nf3=False\nno=no\noff= 0 \n"),
                      "I");
  struct Case {
    const char* key;
    int32_t number, isNumber, flag, exists;
  };
  for (const Case& each : {
           Case{"n", 12, 1, 1, 1},
           Case{"x", 31, 1, 1, 1},
           Case{"h", 31, 1, 1, 1},
           Case{"b", 5, 1, 1, 1},
           Case{"tail", 12, 0, 1, 1},
           Case{"word", 0, 0, 1, 1},
           Case{"empty", -1, 0, 0, 0},
           Case{"missing", -1, 0, 0, 0},
           Case{"big", -1, 1, 1, 1},
           Case{"wrap", 1, 1, 1, 1},
           Case{"zero", 0, 1, 0, 1},
           Case{"neg", 0, 0, 1, 1},
           Case{"f1", 0, 0, 0, 1},
           Case{"f2", 0, 0, 0, 1},
           Case{"f3", 0, 0, 0, 1},
           Case{"no", 0, 0, 1, 1},
           Case{"off", 0, 1, 0, 1},
       }) {
    int32_t isNumber = -7, exists = -7;
    EXPECT_EQ(item.GetNumber(each.key), each.number) << each.key;
    EXPECT_EQ(item.GetNumberEx(each.key, &isNumber), each.number) << each.key;
    EXPECT_EQ(isNumber, each.isNumber) << each.key;
    EXPECT_EQ(item.GetBool(each.key), each.flag) << each.key;
    EXPECT_EQ(item.GetBoolEx(each.key, &exists), each.flag) << each.key;
    EXPECT_EQ(exists, each.exists) << each.key;
  }
}

TEST(ItemProperty, References) {
  C_ItemProperty item(FileOf("[I]\n"
                             "one = [A]\n"
                             "lost = [Nobody]\n"
                             "blanks = [ A ]\n"
                             "noname = []\n"
                             "half = [A\n"
                             "plain = A\n"
                             "all = {[A], [B] [A],A,[ B ],[Nobody],[]}\n"
                             "single = [A],[B]\n"
                             "[A]\nX = 1\n[B]\nX = 2\n"),
                      "I");
  EXPECT_STREQ(item.GetItem("one")->GetName(), "A");
  EXPECT_STREQ(item.GetItem("one")->GetString("X"), "1");
  EXPECT_EQ(item.GetItem("lost")->IsLoaded(), 0);
  EXPECT_STREQ(item.GetItem("blanks")->GetName(), " A ");
  EXPECT_STREQ(item.GetItem("noname")->GetName(), "");
  for (const char* const key : {"half", "plain", "missing", "all"}) {
    EXPECT_EQ(item.GetItem(key), nullptr) << key;
    EXPECT_EQ(item.GetItem(key), nullptr) << key;
  }
  EXPECT_STREQ(item.GetItem("single")->GetName(), "A],[B") << "the ends alone count";
  EXPECT_EQ(Items(item, "all"), "A B A Nobody? ?");
  EXPECT_EQ(Items(item, "one"), "null");
  EXPECT_EQ(item.GetItemList("all", nullptr)[0], item.GetItem("one")) << "one record for a name";
}

constexpr char kFamily[] =
    "[Chip]\nISA = [Series], [Extra] Nobody\nOwn = chip\nHidden =\n"
    "[Series]\nISA = [664]\nOwn = series\nHidden = shown\nBoth = series\nLink = [Extra]\n"
    "[664]\nDeep = deep\nBoth = 664\nRanges = {1, 2}\n"
    "[Extra]\nDeep = extra\nLast = last\n";

TEST(ItemProperty, InheritsDepthFirstInFileOrder) {
  C_ItemProperty chip(FileOf(kFamily), "Chip");
  struct Case {
    const char *key, *value;
  };
  for (const Case& each : {Case{"Own", "chip"}, Case{"Hidden", ""}, Case{"Both", "series"},
                           Case{"Deep", "deep"}, Case{"Last", "last"}, Case{"None", "null"}}) {
    EXPECT_EQ(Text(chip.GetString(each.key)), each.value) << each.key;
    EXPECT_EQ(Text(chip.GetString(each.key)), each.value) << each.key;
  }
  EXPECT_EQ(Numbers(chip, "Ranges"), "1 2");
  EXPECT_STREQ(chip.GetItem("Link")->GetString("Last"), "last");
}

TEST(ItemProperty, IsAAsksTheWholeFamily) {
  C_ItemProperty chip(FileOf(kFamily), "Chip");
  for (const char* const name : {"Chip", "Series", "664", "Extra"}) EXPECT_EQ(chip.IsA(name), 1);
  for (const char* const name : {"chip", "series", "Nobody", "", "L664"}) {
    EXPECT_EQ(chip.IsA(name), 0) << name;
  }
  EXPECT_EQ(C_ItemProperty(FileOf(""), "Alone").IsA("Alone"), 1);
  EXPECT_EQ(C_ItemProperty(FileOf(""), nullptr).IsA(""), 1);
  EXPECT_EQ(C_ItemProperty(nullptr, "Alone").IsA("Alone"), 0) << "no file";
}

TEST(ItemProperty, SectionsHaveNoCaseAndNamesDo) {
  C_ItemProperty item(FileOf("[Chip]\nX = 1\nisa = [Base]\n[Base]\nY = 2\n"), "CHIP");
  EXPECT_EQ(item.IsLoaded(), 1);
  EXPECT_STREQ(item.GetString("X"), "1");
  EXPECT_EQ(item.IsA("Chip"), 0);
  EXPECT_EQ(item.GetString("Y"), nullptr) << "the label is ISA, in capitals";
}

TEST(ItemProperty, CirclesEnd) {
  const auto file = FileOf(
      "[A]\nISA = [B]\nKA = a\n[B]\nISA = [C], [A]\nKB = b\n[C]\nISA = [A],[C]\nKC = c\n"
      "[Self]\nISA = [Self]\nMe = [Self]\nX = 1\n"
      "[Upper]\nISA = [upper]\nX = 1\n");
  for (const char* const name : {"A", "B", "C"}) {
    C_ItemProperty item(file, name);
    EXPECT_STREQ(item.GetString("KA"), "a");
    EXPECT_STREQ(item.GetString("KB"), "b");
    EXPECT_STREQ(item.GetString("KC"), "c");
    EXPECT_EQ(item.GetString("None"), nullptr);
    EXPECT_EQ(item.IsA("A") + item.IsA("B") + item.IsA("C"), 3);
    EXPECT_EQ(item.IsA("D"), 0);
  }
  C_ItemProperty self(file, "Self");
  EXPECT_EQ(self.GetString("None"), nullptr);
  EXPECT_STREQ(self.GetItem("Me")->GetItem("Me")->GetString("X"), "1");
  C_ItemProperty upper(file, "Upper");
  EXPECT_EQ(upper.IsA("upper"), 1);
  EXPECT_EQ(upper.GetString("None"), nullptr);
}

/// The rule of inheritance as it is told: the own section, else each parent in
/// order; a record that is being asked answers nothing.
const std::string* Ask(const std::map<std::string, std::vector<std::string>>& parents,
                       const std::map<std::string, std::string>& values, const std::string& name,
                       std::set<std::string>& asked) {
  if (!asked.insert(name).second) return nullptr;
  const auto own = values.find(name);
  const std::string* found = own == values.end() ? nullptr : &own->second;
  for (const std::string& parent : parents.at(name)) {
    if (!found) found = Ask(parents, values, parent, asked);
  }
  asked.erase(name);
  return found;
}

TEST(ItemProperty, AnswersByTheRuleInAnyFamily) {
  std::mt19937 random(11);
  for (int round = 0; round < 500; ++round) {
    std::map<std::string, std::vector<std::string>> parents;
    std::map<std::string, std::string> values;
    std::string text;
    for (int i = 0; i < 7; ++i) {
      const std::string name = Numbered("i%", i);
      text += Numbered("[i%]\nISA =", i);
      std::vector<std::string>& own = parents[name];
      for (uint32_t left = random() % 4; left > 0; --left) {
        own.push_back(Numbered("i%", static_cast<int>(random() % 7)));
        text.append(" [").append(own.back()).append("]");
      }
      text += "\n";
      if (random() % 4 == 0) {
        values[name] = Numbered("v%", i);
        text += Numbered("X = v%\n", i);
      }
    }
    const auto file = FileOf(text);
    for (const auto& [name, ignored] : parents) {
      std::set<std::string> asked;
      const std::string* const expected = Ask(parents, values, name, asked);
      EXPECT_EQ(Text(C_ItemProperty(file, name.c_str()).GetString("X")),
                expected ? *expected : "null")
          << name << " of\n"
          << text;
    }
  }
}

// Every item names the next two twice: 4^200 ways up, 200 records.
TEST(ItemProperty, EachRecordIsAskedOnceHoweverTheFileNests) {
  std::string text;
  for (int i = 0; i < 200; ++i) {
    text += Numbered("[%]\n", i) + "ISA =";
    for (const int next : {1, 2, 1, 2}) text += Numbered(" [%]", i + next);
    text += "\n";
  }
  C_ItemProperty item(FileOf(text + "[200]\nX = found\n"), "0");
  EXPECT_STREQ(item.GetString("X"), "found");
  EXPECT_EQ(item.GetString("None"), nullptr);
  EXPECT_EQ(item.IsA("None"), 0);
}

TEST(ItemProperty, AChainDeeperThanTheStack) {
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) {
    text += Numbered("[%]\n", i) + Numbered("ISA = [%]\n", i + 1);
  }
  C_ItemProperty item(FileOf(text + Numbered("[%]\nX = found\n", kDepth)), "0");
  EXPECT_STREQ(item.GetString("X"), "found");
}

TEST(ItemProperty, LoadedMeansALabelInTheSection) {
  const auto file = FileOf("[Full]\nX=1\n[Bare]\n");
  EXPECT_EQ(C_ItemProperty(file, "Full").IsLoaded(), 1);
  EXPECT_EQ(C_ItemProperty(file, "Bare").IsLoaded(), 0);
  EXPECT_EQ(C_ItemProperty(file, "None").IsLoaded(), 0);
  EXPECT_EQ(C_ItemProperty().IsLoaded(), 0);
}

TEST(ItemProperty, WithoutAFileEveryAnswerIsEmpty) {
  TempDir dir;
  C_ItemProperty nothing;
  C_ItemProperty missing(Path::Native(dir / "none.cfg"), "I");
  for (C_ItemProperty* const item : {&nothing, &missing}) {
    int32_t exists = 1;
    EXPECT_EQ(item->IsLoaded(), 0);
    EXPECT_EQ(item->GetString("X"), nullptr);
    EXPECT_EQ(item->GetNumberEx("X", &exists), -1);
    EXPECT_EQ(exists, 0);
    EXPECT_EQ(item->GetBoolEx("X", &exists), 0);
    EXPECT_EQ(item->GetItem("X"), nullptr);
    EXPECT_EQ(Strings(*item, "X") + Numbers(*item, "X") + Bools(*item, "X") + Items(*item, "X"),
              "nullnullnullnull");
    EXPECT_EQ(item->GetString(nullptr), nullptr);
  }
  EXPECT_STREQ(nothing.GetName(), "");
  EXPECT_STREQ(missing.GetName(), "I");
}

TEST(ItemProperty, ACloneOfAnOpenedFileOpensItAgain) {
  TempDir dir;
  const std::string path = dir / "a.cfg";
  WriteText(path, "[I]\nX = 1\nLink = [J]\n[J]\nX = 10\n");
  C_ItemProperty item(Path::Native(path), "I");
  WriteText(path, "[I]\nX = 2\n[J]\nX = 20\n");
  I_ItemProperty* const again = item.Clone();
  I_ItemProperty* const shared = item.GetItem("Link")->Clone();
  EXPECT_STREQ(item.GetString("X"), "1") << "answers from memory";
  EXPECT_STREQ(again->GetName(), "I");
  EXPECT_STREQ(again->GetString("X"), "2");
  EXPECT_STREQ(shared->GetString("X"), "10") << "a record reached from another shares its file";
  again->Release();
  shared->Release();
}

TEST(ItemProperty, ACloneOutlivesWhatItCameFrom) {
  I_ItemProperty* copy = nullptr;
  {
    C_ItemProperty item(FileOf("[I]\nLink = [J]\n[J]\nX = 10\n"), "I");
    item.GetItem("Link")->Release();  // not the caller's to release: nothing happens
    copy = item.GetItem("Link")->Clone();
  }
  EXPECT_STREQ(copy->GetString("X"), "10");
  copy->Release();
}

TEST(ItemProperty, AnswersStayWhereTheyAre) {
  std::string text = "[I]\nISA = [P]\n";
  for (int i = 0; i < 500; ++i) text += Numbered("k% = {v%}\n", i);
  C_ItemProperty item(FileOf(text + "[P]\nUp = above\n"), "I");
  const char* const first = item.GetString("k0");
  const char* const up = item.GetString("Up");
  const char* const* const list = item.GetStringList("k0", nullptr);
  for (int i = 1; i < 500; ++i) item.GetStringList(Numbered("k%", i).c_str(), nullptr);
  EXPECT_EQ(item.GetString("k0"), first);
  EXPECT_EQ(item.GetString("Up"), up);
  EXPECT_EQ(item.GetStringList("k0", nullptr), list);
  EXPECT_STREQ(first, "{v0}");
  EXPECT_STREQ(up, "above");
  EXPECT_STREQ(list[0], "v0");
}

TEST(ItemFile, PlainAndEncipheredFilesReadTheSame) {
  TempDir dir;
  const std::string text = "[I]\nX = found\n";
  struct Case {
    const char *what, *file;
    std::string bytes;
    const char* value;
  };
  const std::vector<Case> cases = {
      {"plain", "a.cfg", text, "found"},
      {"plain with the enciphered extension", "a.kif", text, "found"},
      {"newer form", "a.cfg", test::NewForm({"QZK40372"}, "a.cfg", text), "found"},
      {"newer form, another master key", "a.kif", test::NewForm({"own", "QZK40372"}, "a", text),
       "found"},
      {"newer form, no password", "a.kif", test::NewForm({}, "a.cfg", text), "found"},
      {"older form", "a.kif", test::OldForm({"QZK40372"}, text), "found"},
      {"older form under another extension", "a.cfg", test::OldForm({"QZK40372"}, text), "null"},
      {"another key", "a.kif", test::NewForm({"own"}, "a.cfg", text), "null"},
  };
  for (const Case& each : cases) {
    WriteText(dir / each.file, each.bytes);
    C_ItemProperty item(Path::Native(dir / each.file), "I");
    EXPECT_EQ(Text(item.GetString("X")), each.value) << each.what;
    EXPECT_EQ(dir.Entries().size(), 1u) << "plain text beside " << each.what;
    std::filesystem::remove(dir / each.file);
  }
}

TEST(ItemFile, TellsWhyItIsNotRead) {
  TempDir dir;
  EXPECT_NE(OpenItemFile(Path::Native(dir / "none.cfg")).Message(), "");
  WriteText(dir / "a.cfg", test::NewForm({"own"}, "a.cfg", "[I]\n"));
  EXPECT_EQ(OpenItemFile(Path::Native(dir / "a.cfg")).Message(),
            "is enciphered, and not for the key of the module's data files");
}

TEST(ItemFile, IsParsedOnceForManyRecords) {
  TempDir dir;
  const std::string path = dir / "a.cfg";
  WriteText(path, "[I]\nX = 1\n[J]\nX = 2\n");
  const auto file = OpenItemFile(Path::Native(path));
  std::filesystem::remove(path);
  EXPECT_STREQ(C_ItemProperty(file.Value(), "I").GetString("X"), "1");
  EXPECT_STREQ(C_ItemProperty(file.Value(), "J").GetString("X"), "2");
}

TEST(ItemProperty, TableOrder) {
  auto* const item = new C_ItemProperty(
      FileOf("[I]\nS = text\nN = 7\nB = 1\nL = {5, 0}\nR = [J]\nRs = {[J], [K]}\n"), "I");
  const RawTable table(static_cast<I_ItemProperty*>(item));
  int32_t count = 0, exists = 0;
  auto* const clone = table.Call<I_ItemProperty*>(1);
  EXPECT_STREQ(clone->GetName(), "I");
  RawTable(clone).Call<void>(0);
  EXPECT_EQ(table.Call<int32_t>(2), 1);
  EXPECT_STREQ(table.Call<const char*>(3), "I");
  EXPECT_EQ(table.Call<int32_t>(4, static_cast<const char*>("I")), 1);
  const char* const list = "L";
  EXPECT_STREQ(table.Call<const char* const*>(5, list, &count)[0], "5");
  EXPECT_EQ(count, 2);
  EXPECT_STREQ(table.Call<const char*>(6, static_cast<const char*>("S")), "text");
  EXPECT_EQ(table.Call<const int32_t*>(7, list, &count)[1], 0);
  EXPECT_EQ(table.Call<int32_t>(8, static_cast<const char*>("B")), 1);
  EXPECT_EQ(table.Call<const int32_t*>(9, list, &count)[0], 5);
  EXPECT_EQ(table.Call<int32_t>(10, static_cast<const char*>("N")), 7);
  count = 0;
  EXPECT_STREQ(
      table.Call<I_ItemProperty* const*>(11, static_cast<const char*>("Rs"), &count)[1]->GetName(),
      "K");
  EXPECT_EQ(count, 2);
  EXPECT_STREQ(table.Call<I_ItemProperty*>(12, static_cast<const char*>("R"))->GetName(), "J");
  EXPECT_EQ(table.Call<int32_t>(13, static_cast<const char*>("N"), &exists), 1);
  EXPECT_EQ(exists, 1);
  EXPECT_EQ(table.Call<int32_t>(14, static_cast<const char*>("S"), &exists), 0);
  EXPECT_EQ(exists, 0);
  table.Call<void>(0);  // a leak when this is not the release
}

}  // namespace
}  // namespace velora
