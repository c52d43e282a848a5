#include "chip/ChipPropertyLoader.h"

#include <utility>

#include "foundation/AsciiText.h"
#include "foundation/CUString.h"
#include "foundation/ItemFile.h"
#include "foundation/MessageBox.h"
#include "foundation/PathText.h"

namespace velora {
namespace {

constexpr char kFileName[] = "ChipProperty.cfg";
constexpr size_t kMostMaskDigits = 16;

/// The value of a hexadecimal digit; 16 for any other character.
unsigned DigitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  const char upper = ToUpper(c);
  return upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A' + 10) : 16;
}

bool IsUnchanged(const FileFacts& before, const FileFacts& now) {
  return before.size == now.size && before.times.write == now.times.write &&
         before.times.creation == now.times.creation;
}

}  // namespace

C_ItemProperty* C_ChipPropLoader::GetChipProperty(const std::string& partNumber) {
  const auto found = records_.find(partNumber);
  if (found != records_.end()) return found->second.get();

  const std::string path = GetModuleDir(true) + kFileName;
  C_CUString fault;
  std::unique_ptr<C_ItemProperty> record;
  if (FileExists(Path::System(path))) {
    record = std::make_unique<C_ItemProperty>(NeedFile(Path::System(path)), partNumber.c_str());
    if (!record->IsLoaded()) {
      fault.Format("Fail to load chip item [%s] from file %s", partNumber.c_str(), path.c_str());
    }
  } else {
    fault.Format("Cannot find file %s to load chip item info[%s]", path.c_str(),
                 partNumber.c_str());
    record = std::make_unique<C_ItemProperty>();
  }
  // Kept before it is told: whoever asks again while the box is open gets it too.
  C_ItemProperty* const kept = records_.emplace(partNumber, std::move(record)).first->second.get();
  if (!fault.empty()) ShowBox(nullptr, fault, "Error", kBoxOk | kBoxStop);
  return kept;
}

const std::shared_ptr<C_CUIniFile>& C_ChipPropLoader::NeedFile(const Path& path) {
  const Result<FileFacts> facts = GetFileFacts(path);
  const bool known = file_.items && file_.path == path.Text();
  if (known && facts && IsUnchanged(file_.facts, facts.Value())) return file_.items;
  Result<std::shared_ptr<C_CUIniFile>> items = OpenItemFile(path);
  file_.path = path.Text();
  file_.facts = facts ? facts.Value() : FileFacts();
  file_.items = items ? std::move(items.Value()) : nullptr;
  return file_.items;
}

C_ItemProperty* GetChipProperty(const std::string& partNumber) {
  static const std::shared_ptr<C_ChipPropLoader> loader = std::make_shared<C_ChipPropLoader>();
  return loader->GetChipProperty(partNumber);
}

int32_t ReadNumberOr(I_ItemProperty* record, const char* key, int32_t otherwise) {
  if (!record) return otherwise;
  const char* const text = record->GetString(key);
  return text && *text ? record->GetNumber(key) : otherwise;
}

uint64_t ReadMask(I_ItemProperty* record, const char* key) {
  const char* const text = record ? record->GetString(key) : nullptr;
  if (!text) return 0;
  std::string_view digits = text;
  if (StartsWithNoCase(digits, "0x")) digits.remove_prefix(2);
  uint64_t mask = 0;
  for (const char c : digits.substr(0, kMostMaskDigits)) {
    const unsigned digit = DigitOf(c);
    if (digit == 16) break;
    mask = mask << 4 | digit;
  }
  return mask;
}

}  // namespace velora
