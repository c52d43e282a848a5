// The order of the operations, as a caller sees it who knows nothing else.
#include "support/RawTable.h"

#include <gtest/gtest.h>

#include "foundation/CUTime.h"
#include "foundation/ElementList.h"
#include "foundation/IniFile.h"
#include "foundation/Lists.h"
#include "foundation/Logger.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

using test::RawTable;

/// Counts its death, so that the destructor's slot can be told.
template <typename Base>
struct Mortal : Base {
  explicit Mortal(bool& dead) : dead_(dead) {}
  ~Mortal() override { dead_ = true; }
  bool& dead_;
};

struct Item : C_CUItem {};

TEST(RawTableOrder, List) {
  bool dead = false;
  auto* const list = new Mortal<C_CUList<Item>>(dead);
  Item* const a = list->Add(new Item);
  Item* const b = list->Add(new Item);
  const RawTable table(static_cast<I_CUList<Item>*>(list));
  EXPECT_EQ(table.Call<int32_t>(0), 2);
  table.Call<void>(1);
  EXPECT_EQ(table.Call<Item*>(3), a);
  table.Call<void>(2);
  EXPECT_EQ(table.Call<Item*>(4), b);
  EXPECT_EQ(table.Call<Item*>(5, int32_t{1}), b);
  EXPECT_EQ(table.Call<Item*>(6, uint32_t{1}), a);
  table.Call<void>(7);
  table.Call<void>(8);
  EXPECT_FALSE(dead);
  table.Call<void>(10);
  EXPECT_TRUE(dead);
}

TEST(RawTableOrder, ElementList) {
  bool dead = false;
  auto* const list = new Mortal<C_CUDWordArray>(dead);
  const RawTable table(static_cast<I_CUElementList<uint32_t>*>(list));
  uint32_t value = 0, id = 0;
  EXPECT_EQ(table.Call<int32_t>(6, uint32_t{70}, &id), 1);
  EXPECT_EQ(id, 1u);
  EXPECT_EQ(table.Call<int32_t>(7, static_cast<I_CUElementList<uint32_t>*>(list)), 1);
  EXPECT_EQ(table.Call<int32_t>(0), 2);
  table.Call<void>(1);
  EXPECT_EQ(table.Call<int32_t>(3, &value, &id), 1);
  EXPECT_EQ(id, 1u);
  table.Call<void>(2);
  EXPECT_EQ(table.Call<int32_t>(4, &value, &id), 1);
  EXPECT_EQ(id, 2u);
  EXPECT_EQ(table.Call<int32_t>(5, int32_t{0}, &value, &id), 1);
  EXPECT_EQ(value, 70u);
  EXPECT_EQ(id, 1u);
  table.Call<void>(9);
  EXPECT_TRUE(dead);
}

TEST(RawTableOrder, StringList) {
  bool dead = false;
  auto* const list = new Mortal<C_CUStringList>(dead);
  const RawTable table(static_cast<I_CUStringList*>(list));
  const char* const text = "x";
  EXPECT_EQ(table.Call<int32_t>(6, text), 1);
  list->Add("y");
  EXPECT_EQ(table.Call<int32_t>(0), 2);
  table.Call<void>(1);
  EXPECT_STREQ(table.Call<const char*>(3), "x");
  table.Call<void>(2);
  EXPECT_STREQ(table.Call<const char*>(4), "y");
  EXPECT_STREQ(table.Call<const char*>(5, int32_t{0}), "x");
  EXPECT_EQ(table.Call<int32_t>(7, static_cast<I_CUStringList*>(list)), 1);
  EXPECT_EQ(list->GetCount(), 4);
  table.Call<void>(9);
  EXPECT_TRUE(dead);
}

TEST(RawTableOrder, Time) {
  bool dead = false;
  auto* const time = new Mortal<C_CUTime>(dead);
  time->SetFromSystemTime({2001, 1, 2, 3, 4, 5, 6, 7});
  const RawTable table(static_cast<I_CUTime*>(time));
  EXPECT_EQ(table.Call<uint16_t>(0), 2001);
  for (uint16_t slot = 1; slot < 8; ++slot) EXPECT_EQ(table.Call<uint16_t>(slot), slot);
  EXPECT_STREQ(table.Call<const char*>(8), "2001/01/03 AM 04:05");
  table.Call<void>(10);
  EXPECT_TRUE(dead);
}

TEST(RawTableOrder, IniFile) {
  bool dead = false;
  auto* const ini = new Mortal<C_CUIniFile>(dead);
  ini->SetFileName(Path::System("f.ini"));
  const RawTable table(static_cast<I_CUIniFile*>(ini));
  const char* const section = "S";
  const char* const label = "A";
  const char* const list = "L";
  const char* const value = "1.5";
  constexpr int32_t kYes = 1, kNo = 0;
  EXPECT_STREQ(table.Call<const char*>(0), "f.ini");
  EXPECT_EQ(table.Call<int32_t>(5, section, label, value, kYes, kNo, kNo), 1);
  EXPECT_STREQ(table.Call<const char*>(1, section, label, kNo, kNo), "1.5");
  EXPECT_EQ(table.Call<int32_t>(3, section, label, int32_t{9}), 1);
  EXPECT_EQ(table.Call<double>(4, section, label, 9.0), 1.5);
  C_CUStringList strings;
  strings.Add("s");
  EXPECT_EQ(
      table.Call<int32_t>(6, section, list, static_cast<I_CUStringList*>(&strings), kNo, kNo, kNo),
      1);
  auto* const read = table.Call<I_CUStringList*>(2, section, list, kNo, kNo);
  ASSERT_NE(read, nullptr);
  EXPECT_STREQ(read->GetAt(0), "s");
  EXPECT_EQ(table.Call<int32_t>(7, section, label, int32_t{8}, kNo), 1);
  EXPECT_STREQ(ini->GetString("S", "A", 0, 0), "8");
  EXPECT_EQ(table.Call<int32_t>(8, section, label, 2.0, kNo), 1);
  EXPECT_STREQ(ini->GetString("S", "A", 0, 0), "2.000000e+00");
  EXPECT_EQ(table.Call<int32_t>(11), 1);
  EXPECT_STREQ(table.Call<const char*>(12, int32_t{0}), "S");
  EXPECT_EQ(table.Call<int32_t>(13, section, label), 1);
  EXPECT_EQ(table.Call<int32_t>(13, section, label), 0);
  EXPECT_EQ(table.Call<int32_t>(9), 2);
  EXPECT_NE(std::string(table.Call<const char*>(10)).find("label 'A'"), std::string::npos);
  const std::string first = table.Call<const char*>(15, section, int32_t{0});
  EXPECT_TRUE(first == "A" || first == "L1") << first;
  EXPECT_EQ(table.Call<int32_t>(14, section), 1);
  EXPECT_EQ(ini->GetSectionCount(), 0);
  table.Call<void>(17);
  EXPECT_TRUE(dead);
}

TEST(RawTableOrder, Log) {
  struct Recorder : C_ZuLogger {
    void Write(const std::string& text) override { written = text.substr(text.find(']') + 2); }
    int32_t Configure() override { return 77; }
    std::string written;
  };
  Recorder log;
  const RawTable table(static_cast<I_ZuLog*>(&log));
  using Log = void (*)(void*, const char*, int32_t, ...);
  reinterpret_cast<Log>(table.Slot(0))(table.Object(), "%s %.1f", 1, "text", 2.5);
  EXPECT_EQ(log.written, "ERROR:text 2.5\n");
  using LogAt = void (*)(void*, const char*, int32_t, const char*, int32_t, ...);
  reinterpret_cast<LogAt>(table.Slot(1))(table.Object(), "%d", 0, "a.cpp", 12, 3);
  EXPECT_EQ(log.written, "FETAL:3(a.cpp:12)\n");
  EXPECT_EQ(table.Call<int32_t>(3), 77);
}

}  // namespace
}  // namespace velora
