// A list of strings.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <velora/I_CUStringList.h>
#include "foundation/Lists.h"

namespace velora {

/// The list behind I_CUStringList. A text that was handed out stays where it is
/// until its string is removed.
class C_CUStringList : public I_CUStringList {
  struct String : C_CUItem {
    explicit String(std::string_view text) : Text(text) {}
    std::string Text;
  };

 public:
  C_CUStringList() = default;
  C_CUStringList(const C_CUStringList& other);
  C_CUStringList& operator=(const C_CUStringList& other);

  // The interface.
  int32_t GetCount() override { return strings_.Count(); }
  void Rewind() override { strings_.Rewind(); }
  void SeekEnd() override { strings_.SeekEnd(); }
  const char* GetNext() override { return TextOf(strings_.GetNext()); }
  const char* GetPrev() override { return TextOf(strings_.GetPrev()); }
  const char* GetAt(int32_t index) override { return TextOf(strings_.ItemAt(index)); }
  int32_t Add(const char* text) override;
  int32_t Append(I_CUStringList* other) override;

  void AddText(std::string_view text);
  void Clear() { strings_.Clear(); }

  /// False, and nothing is done, for an index that is none. InsertAt takes the
  /// number of strings as well. The cursor moves as that of C_CUList.
  bool RemoveAt(int32_t index) { return strings_.RemoveAt(index); }
  bool InsertAt(int32_t index, const char* text);

  // Sorting is stable, also when descending.
  void Sort(bool ascending);        ///< by bytes
  void SortNoCase(bool ascending);  ///< by bytes of the text in lower case

  /// By the part of each text from the last `delimiter` on, which is the whole
  /// text where there is none.
  void SortAfter(char delimiter, bool ascending);

  int32_t Count() const { return strings_.Count(); }

  /// Only with 0 <= index < Count().
  const std::string& TextAt(int32_t index) const { return strings_.ItemAt(index)->Text; }

  /// Walks the texts in order.
  class Iterator {
   public:
    explicit Iterator(String* const* at) : at_(at) {}
    const std::string& operator*() const { return (*at_)->Text; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    bool operator==(const Iterator&) const = default;

   private:
    String* const* at_;
  };
  Iterator begin() const { return Iterator(strings_.Items().data()); }
  Iterator end() const { return Iterator(strings_.Items().data() + strings_.Items().size()); }

 private:
  static const char* TextOf(const String* string) {
    return string ? string->Text.c_str() : nullptr;
  }

  template <typename Less>
  void SortBy(Less less, bool ascending);

  C_CUList<String> strings_;
};

}  // namespace velora
