// Typed records of a configuration file, with inheritance.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <velora/I_ItemProperty.h>
#include "foundation/IniFile.h"
#include "platform/Path.h"

namespace velora {

/// A record over one section of an item file. Each conversion is made once and
/// kept, so the file must not change while records of it live.
///
/// A record that was constructed, and all records reached from it, form a
/// family: one record for each name, owned by the one that was constructed and
/// gone with it. So records that refer to each other in circles are finite, and
/// a search up the parents meets each record once, whatever the file says: it
/// takes time in proportion to the number of records it can reach.
class C_ItemProperty final : public I_ItemProperty {
 public:
  /// A record without a file: every answer is empty.
  C_ItemProperty();

  /// A record of an open file, which may be null. A null name counts as "".
  C_ItemProperty(std::shared_ptr<C_CUIniFile> file, const char* name);

  /// A record of a file that it opens, plain or enciphered. When the file cannot
  /// be read or deciphered the record has no file; OpenItemFile tells why.
  C_ItemProperty(const Path& path, const char* name);

  C_ItemProperty(const C_ItemProperty&) = delete;
  C_ItemProperty& operator=(const C_ItemProperty&) = delete;
  ~C_ItemProperty();

  // The interface. Release deletes: only for a record made by new or by Clone.
  void Release() override;
  I_ItemProperty* Clone() override;
  int32_t IsLoaded() override;
  const char* GetName() override { return name_.c_str(); }
  int32_t IsA(const char* name) override;
  const char* const* GetStringList(const char* key, int32_t* count) override;
  const char* GetString(const char* key) override;
  const int32_t* GetBoolList(const char* key, int32_t* count) override;
  int32_t GetBool(const char* key) override;
  const int32_t* GetNumberList(const char* key, int32_t* count) override;
  int32_t GetNumber(const char* key) override;
  I_ItemProperty* const* GetItemList(const char* key, int32_t* count) override;
  I_ItemProperty* GetItem(const char* key) override;
  int32_t GetBoolEx(const char* key, int32_t* exists) override;
  int32_t GetNumberEx(const char* key, int32_t* exists) override;

 private:
  template <typename Value>
  using CacheOf = std::map<std::string, Value, std::less<>>;

  /// What conversions gave, by key.
  struct Caches {
    CacheOf<std::string> Strings;
    CacheOf<C_ItemProperty*> ItemRefs;
    CacheOf<std::vector<int32_t>> NumberLists;
    CacheOf<std::vector<const char*>> StringLists;
    CacheOf<std::vector<I_ItemProperty*>> ItemLists;
    CacheOf<std::vector<int32_t>> BoolLists;
    std::deque<std::string> ListStrings;  ///< the texts of StringLists
  };

  /// What the records reached from one record share.
  struct Family;

  C_ItemProperty(Family& family, std::string_view name);

  C_CUIniFile* File() const;
  Caches& NeedCaches();

  /// The family's record of that name, made when it is met for the first time.
  C_ItemProperty* NeedItem(std::string_view name);

  /// The items of the label "ISA", in its order.
  const std::vector<C_ItemProperty*>& Parents();

  /// The value of the record's own section, or null.
  const char* GetOwnString(const char* key);

  /// The first record that `accepts` takes, from this one up its parents, depth
  /// first in file order, each once; null when it takes none.
  template <typename Accepts>
  C_ItemProperty* FindUpwards(const Accepts& accepts);

  const std::vector<const char*>& StringListOf(const char* key);

  std::string name_;
  Family* family_;
  std::unique_ptr<Family> ownFamily_;  ///< of the record that was constructed; null in the others
  std::unique_ptr<Caches> caches_;     ///< made when used: most records of a walk need none
  std::vector<C_ItemProperty*> parents_;
  bool parentsLoaded_ = false;
  uint64_t lastWalk_ = 0;  ///< number of the walk that met this record last
};

}  // namespace velora
