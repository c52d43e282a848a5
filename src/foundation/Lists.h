// Ordered lists of objects.
//
//   C_CUList<C_Item, I_Item, kOwning> items;
//   items.Add(new C_Item(...));
//   for (C_Item* item : items) ...
//
// C++ code walks a list with range-for or by index; the cursor is for readers
// behind the boundary. A list may change only outside such a loop.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <velora/I_CUList.h>
#include "foundation/CUItem.h"
#include "foundation/ListCursor.h"
#include "foundation/UniqueIDGenerator.h"

namespace velora {

/// Whether a list deletes its items when it drops them.
inline constexpr int kNotOwning = 0;
inline constexpr int kOwning = 1;

/// A list of `Item` that is read as `Interface`, an I_CUList<ItemInterface> or
/// an interface derived from one. `Item` has a field `ID` and derives from
/// `ItemInterface` (or is it). With kOwning the items are deleted when they are
/// removed and with the list; with kNotOwning they stay their owner's.
///
/// The list is an item itself, so that lists can stand in lists. It starts with
/// one reference; a list that is a plain member is never released.
template <typename Interface, typename Item, typename ItemInterface, int Owning>
class C_CUCustomList : public Interface, public C_CUItem {
  static_assert(Owning == kNotOwning || Owning == kOwning);

 public:
  C_CUCustomList() = default;
  ~C_CUCustomList() override { DeleteItems(); }
  C_CUCustomList(const C_CUCustomList&) = delete;
  C_CUCustomList& operator=(const C_CUCustomList&) = delete;

  // The interface.
  int32_t GetCount() override { return Count(); }
  void Rewind() override { cursor_.Rewind(); }
  void SeekEnd() override { cursor_.SeekEnd(Count()); }
  ItemInterface* GetNext() override {
    return cursor_.MoveNext(Count()) ? ItemAt(cursor_.Index()) : nullptr;
  }
  ItemInterface* GetPrev() override {
    return cursor_.MovePrev(Count()) ? ItemAt(cursor_.Index()) : nullptr;
  }
  ItemInterface* GetAt(int32_t index) override { return ItemAt(index); }
  ItemInterface* FindByID(uint32_t id) override { return ItemAt(IndexOfID(id)); }
  void AddRef() override { ++refCount_; }
  void Release() override {
    if (--refCount_ < 1) delete this;
  }

  /// Appends the item under a new id and returns it. The item must not be null
  /// nor stand in the list already.
  Item* Add(Item* item) {
    items_.push_back(item);
    item->ID = ids_.Get();
    return item;
  }

  /// As Add, for an item in a smart pointer; the list must be an owning one.
  Item* Add(std::unique_ptr<Item> item) {
    static_assert(Owning == kOwning, "the list would lose the item");
    Add(item.get());
    return item.release();
  }

  /// Puts the item in front of the one at `index`, or at the end for the number
  /// of items. False, and nothing is done, for any other index. A cursor at or
  /// behind the index moves on with its item.
  bool InsertAt(int32_t index, Item* item) {
    if (index < 0 || index > Count()) return false;
    items_.insert(items_.begin() + index, item);
    item->ID = ids_.Get();
    cursor_.OnInsert(index);
    return true;
  }

  /// Takes the item out without deleting it, and gives its id back (the item
  /// still shows it). Null for an index that is none.
  Item* Detach(int32_t index) {
    Item* const item = ItemAt(index);
    if (!item) return nullptr;
    items_.erase(items_.begin() + index);
    ids_.Free(item->ID);
    cursor_.OnRemove(Count());
    return item;
  }

  /// Takes the item out, and deletes it if the list owns it. The cursor keeps
  /// its index but does not stay behind the new end. False for an index that is
  /// none.
  bool RemoveAt(int32_t index) {
    Item* const item = Detach(index);
    if (!item) return false;
    if constexpr (Owning == kOwning) delete item;
    return true;
  }

  /// Drops all items. Their ids are not handed out again, so that an id that
  /// somebody remembers finds nothing rather than a newer item.
  void Clear() {
    DeleteItems();
    items_.clear();
    cursor_.Rewind();
  }

  /// Orders the items by `less(a, b)` over item references; equal items keep
  /// their order. The cursor keeps its index.
  template <typename Less>
  void StableSort(Less less) {
    std::stable_sort(items_.begin(), items_.end(),
                     [&less](const Item* a, const Item* b) { return less(*a, *b); });
  }

  void Reserve(size_t count) { items_.reserve(count); }

  /// Number of items.
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  bool IsEmpty() const { return items_.empty(); }

  /// The item itself, or null. Constant time.
  Item* ItemAt(int32_t index) const {
    return index >= 0 && index < Count() ? items_[static_cast<size_t>(index)] : nullptr;
  }

  /// Index of the first item with this id; -1 when there is none.
  int32_t IndexOfID(uint32_t id) const {
    for (int32_t i = 0; i < Count(); ++i) {
      if (ItemAt(i)->ID == id) return i;
    }
    return -1;
  }

  /// Index of this very item; -1 when it is not in the list.
  int32_t IndexOf(const Item* item) const {
    for (int32_t i = 0; i < Count(); ++i) {
      if (ItemAt(i) == item) return i;
    }
    return -1;
  }

  std::span<Item* const> Items() const { return items_; }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  void DeleteItems() {
    if constexpr (Owning == kOwning) {
      for (Item* item : items_) delete item;
    }
  }

  int32_t refCount_ = 1;
  std::vector<Item*> items_;
  ListCursor cursor_{0};
  C_UniqueIDGenerator ids_;
};

/// The list that most owners want: read through I_CUList<ItemInterface>.
template <typename Item, typename ItemInterface = Item, int Owning = kOwning>
class C_CUList : public C_CUCustomList<I_CUList<ItemInterface>, Item, ItemInterface, Owning> {};

}  // namespace velora
