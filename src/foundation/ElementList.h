// Ordered lists of plain values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <velora/I_CUElementList.h>
#include "foundation/ListCursor.h"
#include "foundation/UniqueIDGenerator.h"

namespace velora {

/// A list of values of the plain type T, each with an id. A new or cleared list
/// stands before its first value.
template <typename T>
class C_CUElementList : public I_CUElementList<T> {
 public:
#pragma pack(push, 1)
  struct Element {
    uint32_t ID;
    T Value;
  };
#pragma pack(pop)
  static_assert(sizeof(Element) == sizeof(uint32_t) + sizeof(T));

  // The interface.
  int32_t GetCount() override { return Count(); }
  void Rewind() override { cursor_.Rewind(); }
  void SeekEnd() override { cursor_.SeekEnd(Count()); }
  int32_t GetNext(T* value, uint32_t* id) override {
    return value && cursor_.MoveNext(Count()) && Copy(cursor_.Index(), value, id);
  }
  int32_t GetPrev(T* value, uint32_t* id) override {
    return value && cursor_.MovePrev(Count()) && Copy(cursor_.Index(), value, id);
  }
  int32_t GetAt(int32_t index, T* value, uint32_t* id) override { return Copy(index, value, id); }
  int32_t Add(T value, uint32_t* id) override {
    elements_.push_back({ids_.Get(), value});
    if (id) *id = elements_.back().ID;
    return 1;
  }
  int32_t Append(I_CUElementList<T>* other) override {
    if (!other) return 0;
    const int32_t count = other->GetCount();  // the list may be appended to itself
    T value;
    for (int32_t i = 0; i < count; ++i) {
      if (other->GetAt(i, &value, nullptr)) Add(value, nullptr);
    }
    return 1;
  }

  /// Appends the value and returns its id.
  uint32_t Add(T value) {
    uint32_t id = 0;
    Add(value, &id);
    return id;
  }

  /// Puts the value in front of the one at `index`, or at the end for the number
  /// of values. False, and nothing is done, for any other index. `id` may be
  /// null. A cursor at or behind the index moves on with its value.
  bool InsertAt(int32_t index, T value, uint32_t* id = nullptr) {
    if (index < 0 || index > Count()) return false;
    const uint32_t newID = ids_.Get();
    elements_.insert(elements_.begin() + index, {newID, value});
    cursor_.OnInsert(index);
    if (id) *id = newID;
    return true;
  }

  /// Takes the value out and gives its id back. The cursor keeps its index but
  /// does not stay behind the new end. False for an index that is none.
  bool RemoveAt(int32_t index) {
    if (!IsIndex(index)) return false;
    ids_.Free(elements_[static_cast<size_t>(index)].ID);
    elements_.erase(elements_.begin() + index);
    cursor_.OnRemove(Count());
    return true;
  }

  /// Drops all values; ids start at 1 again.
  void Clear() {
    elements_.clear();
    ids_.Reset();
    cursor_.Rewind();
  }

  void Reserve(size_t count) { elements_.reserve(count); }

  int32_t Count() const { return static_cast<int32_t>(elements_.size()); }
  bool IsEmpty() const { return elements_.empty(); }
  bool IsIndex(int32_t index) const { return index >= 0 && index < Count(); }

  /// Only with IsIndex(index).
  T ValueAt(int32_t index) const { return elements_[static_cast<size_t>(index)].Value; }
  uint32_t IDAt(int32_t index) const { return elements_[static_cast<size_t>(index)].ID; }
  void SetValueAt(int32_t index, T value) { elements_[static_cast<size_t>(index)].Value = value; }

  /// Index of the value with this id; -1 when there is none.
  int32_t IndexOfID(uint32_t id) const {
    for (int32_t i = 0; i < Count(); ++i) {
      if (IDAt(i) == id) return i;
    }
    return -1;
  }

  std::span<const Element> Elements() const { return elements_; }
  auto begin() const { return elements_.begin(); }
  auto end() const { return elements_.end(); }

 private:
  bool Copy(int32_t index, T* value, uint32_t* id) const {
    if (!value || !IsIndex(index)) return false;
    *value = ValueAt(index);
    if (id) *id = IDAt(index);
    return true;
  }

  std::vector<Element> elements_;
  ListCursor cursor_{-1};
  C_UniqueIDGenerator ids_;
};

/// An element list under the name that says what it is used as.
template <typename T>
class C_CUElementArray : public C_CUElementList<T> {};

using C_CUDWordArray = C_CUElementArray<uint32_t>;

}  // namespace velora
