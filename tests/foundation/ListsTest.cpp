// Lists of objects and of values: ids, cursors, ownership.
#include <gtest/gtest.h>

#include <functional>
#include <numeric>

#include "foundation/ElementList.h"
#include "foundation/Lists.h"
#include "foundation/UniqueIDGenerator.h"

namespace velora {
namespace {

struct Item : C_CUItem {
  explicit Item(int value, int* deaths = nullptr) : Value(value), deaths_(deaths) {}
  ~Item() {
    if (deaths_) ++*deaths_;
  }
  int Value;

 private:
  int* deaths_;
};
using ItemList = C_CUList<Item>;

void Fill(ItemList& list, int count) {
  for (int value = 0; value < count; ++value) list.Add(new Item(value));
}

std::vector<int> ValuesOf(const ItemList& list) {
  std::vector<int> values;
  for (const Item* item : list) values.push_back(item->Value);
  return values;
}

int NextValue(ItemList& list) {
  const Item* const item = list.GetNext();
  return item ? item->Value : -1;
}

int PrevValue(ItemList& list) {
  const Item* const item = list.GetPrev();
  return item ? item->Value : -1;
}

TEST(UniqueIDGeneratorTest, ReusesTheLastReturnedFirst) {
  C_UniqueIDGenerator ids;
  EXPECT_EQ(ids.Get(), 1u);
  EXPECT_EQ(ids.Get(), 2u);
  EXPECT_EQ(ids.Get(), 3u);
  ids.Free(1);
  ids.Free(3);
  ids.Free(1);  // free already
  ids.Free(0);  // no id
  ids.Free(4);  // never handed out
  EXPECT_EQ(ids.Get(), 3u);
  EXPECT_EQ(ids.Get(), 1u);
  EXPECT_EQ(ids.Get(), 4u);
  ids.Free(2);
  ids.Reset();
  EXPECT_EQ(ids.Get(), 1u);
  EXPECT_EQ(ids.Get(), 2u);
}

TEST(UniqueIDGeneratorTest, ManyIdsComeBackOnceEach) {
  constexpr uint32_t kCount = 300000;
  C_UniqueIDGenerator ids;
  for (uint32_t i = 0; i < kCount; ++i) ids.Get();
  for (int round = 0; round < 2; ++round) {
    for (uint32_t id = 1; id <= kCount; ++id) ids.Free(id);
  }
  for (uint32_t id = kCount; id >= 1; --id) ASSERT_EQ(ids.Get(), id);
  EXPECT_EQ(ids.Get(), kCount + 1);
}

TEST(ListTest, ANewListStandsOnItsFirstItem) {
  ItemList list;
  Fill(list, 3);
  EXPECT_EQ(NextValue(list), 1);
  list.Rewind();
  EXPECT_EQ(NextValue(list), 0);
}

TEST(ListTest, TheCursorStopsAtBothEnds) {
  ItemList list;
  Fill(list, 3);
  list.Rewind();
  for (const int value : {0, 1, 2, -1, -1}) EXPECT_EQ(NextValue(list), value);
  for (const int value : {1, 0, -1, -1}) EXPECT_EQ(PrevValue(list), value);
  EXPECT_EQ(NextValue(list), 1);
  list.SeekEnd();
  EXPECT_EQ(NextValue(list), -1);
  EXPECT_EQ(PrevValue(list), 2);
}

TEST(ListTest, RemovalReturnsTheId) {
  ItemList list;
  Fill(list, 2);
  const uint32_t first = list.ItemAt(0)->ID;
  EXPECT_TRUE(list.RemoveAt(0));
  list.Add(new Item(7));
  EXPECT_EQ(list.ItemAt(1)->ID, first);
  EXPECT_EQ(list.FindByID(first)->Value, 7);
  EXPECT_EQ(list.FindByID(99), nullptr);
  EXPECT_FALSE(list.RemoveAt(2));
  EXPECT_FALSE(list.RemoveAt(-1));
}

TEST(ListTest, RemovalKeepsTheCursorsIndex) {
  struct Case {
    const char* name;
    int steps;   // from the start, over 0 1 2 3
    int remove;  // this index
    int next;
    int prevAfterThat;
  };
  const Case cases[] = {
      {"the cursor's own item: the one that moved up is skipped", 2, 1, 3, 2},
      {"in front of the cursor: it slips one item on", 2, 0, 3, 2},
      {"behind the cursor", 2, 3, 2, 1},
      {"the last item, under the cursor", 4, 3, -1, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ItemList list;
    Fill(list, 4);
    list.Rewind();
    for (int i = 0; i < c.steps; ++i) list.GetNext();
    ASSERT_TRUE(list.RemoveAt(c.remove));
    EXPECT_EQ(NextValue(list), c.next);
    EXPECT_EQ(PrevValue(list), c.prevAfterThat);
  }
}

TEST(ListTest, ACursorBehindTheEndComesBackToIt) {
  ItemList list;
  Fill(list, 3);
  list.SeekEnd();
  list.RemoveAt(0);
  list.RemoveAt(0);
  EXPECT_EQ(PrevValue(list), 2);
}

TEST(ListTest, InsertionKeepsTheCursorOnItsItem) {
  for (int at = 0; at <= 3; ++at) {
    SCOPED_TRACE(at);
    ItemList list;
    Fill(list, 3);
    list.Rewind();
    list.GetNext();
    list.GetNext();  // on 1
    ASSERT_TRUE(list.InsertAt(at, new Item(9)));
    EXPECT_EQ(list.ItemAt(at)->Value, 9);
    EXPECT_EQ(list.ItemAt(at)->ID, 4u);
    EXPECT_EQ(NextValue(list), at == 2 ? 9 : 2);
  }
  ItemList list;
  Item item(1);
  EXPECT_FALSE(list.InsertAt(1, &item));
  EXPECT_FALSE(list.InsertAt(-1, &item));
}

TEST(ListTest, OnlyAnOwningListDeletesItsItems) {
  int deaths = 0;
  {
    ItemList list;
    for (int i = 0; i < 4; ++i) list.Add(std::make_unique<Item>(i, &deaths));
    list.RemoveAt(0);
    EXPECT_EQ(deaths, 1);
    const std::unique_ptr<Item> kept(list.Detach(0));
    EXPECT_EQ(kept->Value, 1);
    EXPECT_EQ(deaths, 1);
    list.Clear();
    EXPECT_EQ(deaths, 3);
    list.Add(new Item(5, &deaths));
  }
  EXPECT_EQ(deaths, 5);

  Item mine(1, &deaths);
  {
    C_CUList<Item, Item, kNotOwning> borrowed;
    borrowed.Add(&mine);
    borrowed.RemoveAt(0);
    borrowed.Add(&mine);
    borrowed.Clear();
    borrowed.Add(&mine);
  }
  EXPECT_EQ(deaths, 5);
}

TEST(ListTest, ClearedItemsDoNotLendTheirIds) {
  ItemList list;
  Fill(list, 2);
  list.Clear();
  EXPECT_EQ(list.GetCount(), 0);
  EXPECT_EQ(list.GetNext(), nullptr);
  EXPECT_EQ(list.GetPrev(), nullptr);
  list.Add(new Item(8));
  EXPECT_EQ(list.ItemAt(0)->ID, 3u);
  EXPECT_EQ(NextValue(list), 8);
}

TEST(ListTest, TheLastReleaseDeletesTheList) {
  int deaths = 0;
  auto* const list = new ItemList;
  list->Add(new Item(1, &deaths));
  list->AddRef();
  list->Release();
  EXPECT_EQ(deaths, 0);
  list->Release();
  EXPECT_EQ(deaths, 1);
}

TEST(ListTest, ListsStandInLists) {
  C_CUList<ItemList> lists;
  ItemList* const inner = lists.Add(new ItemList);
  Fill(*inner, 2);
  EXPECT_EQ(lists.FindByID(inner->ID)->GetCount(), 2);
}

TEST(ListTest, ReadsThroughTheInterfaceOfItsItems) {
  struct I_Thing {
    virtual int Answer() = 0;

   protected:
    ~I_Thing() = default;
  };
  struct Thing final : C_CUItem, I_Thing {
    int Answer() override { return 42; }
  };
  C_CUList<Thing, I_Thing> things;
  things.Add(new Thing);
  I_CUList<I_Thing>& read = things;
  ASSERT_NE(read.GetAt(0), nullptr);  // behind the item's first base
  EXPECT_EQ(read.GetAt(0)->Answer(), 42);
  EXPECT_EQ(read.GetAt(1), nullptr);
}

TEST(ListTest, ACopiedItemIsInNoList) {
  ItemList list;
  Fill(list, 1);
  EXPECT_EQ(Item(*list.ItemAt(0)).ID, 0u);
  const uint32_t id = list.ItemAt(0)->ID;
  *list.ItemAt(0) = Item(6);
  EXPECT_EQ(list.ItemAt(0)->ID, id);
}

TEST(ListTest, SortsStably) {
  ItemList list;
  for (const int value : {31, 12, 32, 11}) list.Add(new Item(value));
  list.StableSort([](const Item& a, const Item& b) { return a.Value / 10 < b.Value / 10; });
  EXPECT_EQ(ValuesOf(list), (std::vector<int>{12, 11, 31, 32}));
}

#pragma pack(push, 1)
struct Point {
  uint32_t Sample;
  uint8_t Level;
};
#pragma pack(pop)

static_assert(sizeof(C_CUElementList<uint8_t>::Element) == 5);
static_assert(sizeof(C_CUDWordArray::Element) == 8);
static_assert(sizeof(C_CUElementArray<Point>::Element) == 9);

TEST(ElementListTest, WalksFromInFrontOfTheFirst) {
  C_CUDWordArray list;
  for (uint32_t value = 10; value < 13; ++value) list.Add(value);
  uint32_t value = 0, id = 0;
  EXPECT_EQ(list.GetPrev(&value, &id), 0);
  for (uint32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(list.GetNext(&value, &id), 1);
    EXPECT_EQ(value, 10 + i);
    EXPECT_EQ(id, 1 + i);
  }
  EXPECT_EQ(list.GetNext(&value, &id), 0);
  EXPECT_EQ(list.GetPrev(&value, nullptr), 1);
  EXPECT_EQ(value, 11u);
  list.SeekEnd();
  EXPECT_EQ(list.GetPrev(&value, nullptr), 1);
  EXPECT_EQ(value, 12u);
  EXPECT_EQ(list.GetAt(3, &value, &id), 0);
  EXPECT_EQ(list.GetAt(-1, &value, &id), 0);
  EXPECT_EQ(list.GetAt(0, nullptr, &id), 0);
}

TEST(ElementListTest, InsertsRemovesAndRestartsItsIds) {
  C_CUElementArray<Point> points;
  points.Add({100, 1});
  points.Add({300, 3});
  uint32_t id = 0;
  ASSERT_TRUE(points.InsertAt(1, {200, 2}, &id));
  EXPECT_EQ(id, 3u);
  EXPECT_FALSE(points.InsertAt(4, {400, 4}));
  EXPECT_EQ(points.ValueAt(1).Sample, 200u);
  ASSERT_TRUE(points.RemoveAt(0));
  EXPECT_FALSE(points.RemoveAt(2));
  EXPECT_EQ(points.Add({500, 5}), 1u);
  EXPECT_EQ(points.IndexOfID(1), 2);
  points.Clear();
  EXPECT_EQ(points.IndexOfID(1), -1);
  EXPECT_EQ(points.Add({600, 6}), 1u);
}

TEST(ElementListTest, AppendsAlsoItself) {
  C_CUDWordArray list;
  list.Add(5u);
  list.Add(6u);
  EXPECT_EQ(list.Append(&list), 1);
  EXPECT_EQ(list.Append(nullptr), 0);
  std::vector<std::pair<uint32_t, uint32_t>> entries;
  for (const auto& element : list) entries.emplace_back(element.ID, element.Value);
  EXPECT_EQ(entries, (std::vector<std::pair<uint32_t, uint32_t>>{{1, 5}, {2, 6}, {3, 5}, {4, 6}}));
}

}  // namespace
}  // namespace velora
