#include "foundation/ItemProperty.h"

#include <optional>
#include <utility>

#include "foundation/AsciiText.h"
#include "foundation/ItemFile.h"
#include "foundation/StringHelpers.h"

namespace velora {
namespace {

constexpr char kParentsLabel[] = "ISA";
constexpr std::string_view kListSeparators = ", \t";

const char* TextOf(const char* text) { return text ? text : ""; }

/// What stands between the two ends, when the text has both.
std::optional<std::string_view> Enclosed(std::string_view text, char first, char last) {
  if (text.size() < 2 || text.front() != first || text.back() != last) return std::nullopt;
  return text.substr(1, text.size() - 2);
}

std::optional<std::string_view> ReferredName(std::string_view text) {
  return Enclosed(text, '[', ']');
}

/// Calls `visit` with each entry; an entry is never empty.
template <typename Visit>
void ForEachEntry(std::string_view list, const Visit& visit) {
  while (true) {
    list = TrimLeft(list, kListSeparators);
    if (list.empty()) return;
    const std::string_view entry = list.substr(0, list.find_first_of(kListSeparators));
    visit(entry);
    list.remove_prefix(entry.size());
  }
}

bool IsTrue(std::string_view text) {
  return !text.empty() && text != "0" && !EqualsNoCase(text, "FALSE");
}

/// A list as the boundary hands it out.
template <typename Value>
const Value* HandOut(const std::vector<Value>& list, int32_t* count) {
  if (count) *count = static_cast<int32_t>(list.size());
  return list.empty() ? nullptr : list.data();
}

/// The cached value of the key, from `convert` at the first time.
template <typename Cache, typename Convert>
typename Cache::mapped_type& Cached(Cache& cache, const char* key, const Convert& convert) {
  const std::string_view text(TextOf(key));
  const auto found = cache.find(text);
  if (found != cache.end()) return found->second;
  return cache.emplace(text, convert()).first->second;
}

}  // namespace

struct C_ItemProperty::Family {
  std::shared_ptr<C_CUIniFile> File;
  std::optional<Path> OpenedPath;  ///< of a file that the founder opened by path
  C_ItemProperty* founder = nullptr;
  std::map<std::string, std::unique_ptr<C_ItemProperty>, std::less<>> Items;  ///< the others
  uint64_t walks = 0;
};

// Construction and families.

C_ItemProperty::C_ItemProperty() : C_ItemProperty(std::shared_ptr<C_CUIniFile>(), nullptr) {}

C_ItemProperty::C_ItemProperty(std::shared_ptr<C_CUIniFile> file, const char* name)
    : name_(TextOf(name)), ownFamily_(std::make_unique<Family>()) {
  family_ = ownFamily_.get();
  family_->File = std::move(file);
  family_->founder = this;
}

C_ItemProperty::C_ItemProperty(const Path& path, const char* name)
    : C_ItemProperty(std::shared_ptr<C_CUIniFile>(), name) {
  if (Result<std::shared_ptr<C_CUIniFile>> file = OpenItemFile(path)) {
    family_->File = std::move(file.Value());
    family_->OpenedPath = path;
  }
}

C_ItemProperty::C_ItemProperty(Family& family, std::string_view name)
    : name_(name), family_(&family) {}

C_ItemProperty::~C_ItemProperty() = default;

void C_ItemProperty::Release() {
  if (ownFamily_) delete this;
}

I_ItemProperty* C_ItemProperty::Clone() {
  if (ownFamily_ && family_->OpenedPath) {
    return new C_ItemProperty(*family_->OpenedPath, name_.c_str());
  }
  return new C_ItemProperty(family_->File, name_.c_str());
}

C_CUIniFile* C_ItemProperty::File() const { return family_->File.get(); }

C_ItemProperty::Caches& C_ItemProperty::NeedCaches() {
  if (!caches_) caches_ = std::make_unique<Caches>();
  return *caches_;
}

C_ItemProperty* C_ItemProperty::NeedItem(std::string_view name) {
  if (name == family_->founder->name_) return family_->founder;
  const auto found = family_->Items.find(name);
  if (found != family_->Items.end()) return found->second.get();
  std::unique_ptr<C_ItemProperty> item(new C_ItemProperty(*family_, name));
  return family_->Items.emplace(name, std::move(item)).first->second.get();
}

// Inheritance.

const std::vector<C_ItemProperty*>& C_ItemProperty::Parents() {
  if (std::exchange(parentsLoaded_, true)) return parents_;
  const char* const value = File()->GetString(name_.c_str(), kParentsLabel, kIniText, kMsgNone);
  if (!value) return parents_;
  ForEachEntry(value, [this](std::string_view entry) {
    if (const auto name = ReferredName(entry)) parents_.push_back(NeedItem(*name));
  });
  return parents_;
}

template <typename Accepts>
C_ItemProperty* C_ItemProperty::FindUpwards(const Accepts& accepts) {
  if (accepts(*this)) return this;
  // Not by recursion: a file may nest deeper than the stack.
  const uint64_t walk = ++family_->walks;
  lastWalk_ = walk;
  std::vector<C_ItemProperty*> ahead(Parents().rbegin(), Parents().rend());
  while (!ahead.empty()) {
    C_ItemProperty* const item = ahead.back();
    ahead.pop_back();
    if (std::exchange(item->lastWalk_, walk) == walk) continue;
    if (accepts(*item)) return item;
    const std::vector<C_ItemProperty*>& parents = item->Parents();
    ahead.insert(ahead.end(), parents.rbegin(), parents.rend());
  }
  return nullptr;
}

int32_t C_ItemProperty::IsLoaded() {
  return File() && File()->GetLabelCount(name_.c_str()) > 0 ? 1 : 0;
}

int32_t C_ItemProperty::IsA(const char* name) {
  if (!File()) return 0;
  const std::string_view wanted(TextOf(name));
  return FindUpwards([wanted](const C_ItemProperty& item) { return item.name_ == wanted; }) ? 1 : 0;
}

// Plain values.

const char* C_ItemProperty::GetOwnString(const char* key) {
  if (caches_) {
    const auto found = caches_->Strings.find(std::string_view(key));
    if (found != caches_->Strings.end()) return found->second.c_str();
  }
  const char* const value = File()->GetString(name_.c_str(), key, kIniText, kMsgNone);
  if (!value) return nullptr;
  return NeedCaches().Strings.emplace(key, value).first->second.c_str();
}

const char* C_ItemProperty::GetString(const char* key) {
  if (!File()) return nullptr;
  const char* value = nullptr;
  FindUpwards([key = TextOf(key), &value](C_ItemProperty& item) {
    value = item.GetOwnString(key);
    return value != nullptr;
  });
  return value;
}

int32_t C_ItemProperty::GetBool(const char* key) { return GetBoolEx(key, nullptr); }

int32_t C_ItemProperty::GetBoolEx(const char* key, int32_t* exists) {
  const std::string_view text(TextOf(GetString(key)));
  if (exists) *exists = text.empty() ? 0 : 1;
  return IsTrue(text) ? 1 : 0;
}

int32_t C_ItemProperty::GetNumber(const char* key) { return GetNumberEx(key, nullptr); }

int32_t C_ItemProperty::GetNumberEx(const char* key, int32_t* exists) {
  const std::string_view text(TextOf(GetString(key)));
  uint32_t number = static_cast<uint32_t>(-1);
  const bool isNumber = !text.empty() && ParseNumber(text, &number);
  if (exists) *exists = isNumber ? 1 : 0;
  return static_cast<int32_t>(number);
}

// Lists.

const std::vector<const char*>& C_ItemProperty::StringListOf(const char* key) {
  return Cached(NeedCaches().StringLists, key, [this, key] {
    std::vector<const char*> list;
    if (const auto entries = Enclosed(TextOf(GetString(key)), '{', '}')) {
      ForEachEntry(*entries, [this, &list](std::string_view entry) {
        list.push_back(caches_->ListStrings.emplace_back(entry).c_str());
      });
    }
    return list;
  });
}

const char* const* C_ItemProperty::GetStringList(const char* key, int32_t* count) {
  return HandOut(StringListOf(key), count);
}

const int32_t* C_ItemProperty::GetBoolList(const char* key, int32_t* count) {
  return HandOut(Cached(NeedCaches().BoolLists, key,
                        [this, key] {
                          std::vector<int32_t> list;
                          for (const char* const entry : StringListOf(key)) {
                            list.push_back(IsTrue(entry) ? 1 : 0);
                          }
                          return list;
                        }),
                 count);
}

const int32_t* C_ItemProperty::GetNumberList(const char* key, int32_t* count) {
  return HandOut(Cached(NeedCaches().NumberLists, key,
                        [this, key] {
                          std::vector<int32_t> list;
                          for (const char* const entry : StringListOf(key)) {
                            uint32_t number = 0;
                            if (ParseNumber(entry, &number)) {
                              list.push_back(static_cast<int32_t>(number));
                            }
                          }
                          return list;
                        }),
                 count);
}

// References.

I_ItemProperty* C_ItemProperty::GetItem(const char* key) {
  return Cached(NeedCaches().ItemRefs, key, [this, key]() -> C_ItemProperty* {
    const auto name = ReferredName(Trim(TextOf(GetString(key))));
    return name ? NeedItem(*name) : nullptr;
  });
}

I_ItemProperty* const* C_ItemProperty::GetItemList(const char* key, int32_t* count) {
  return HandOut(
      Cached(NeedCaches().ItemLists, key,
             [this, key] {
               std::vector<I_ItemProperty*> list;
               if (const auto entries = Enclosed(Trim(TextOf(GetString(key))), '{', '}')) {
                 ForEachEntry(*entries, [this, &list](std::string_view entry) {
                   if (const auto name = ReferredName(entry)) {
                     list.push_back(NeedItem(*name));
                   }
                 });
               }
               return list;
             }),
      count);
}

}  // namespace velora
