// The module: a catalogue of chips read from ChipInfo.cfg.
#include "PartCatalog.h"

#include "ChipInfo.h"
#include "foundation/AsciiText.h"
#include "platform/Module.h"
#include "platform/Path.h"

namespace velora {

constinit ObjectCounter liveCatalogs("catalogue");
constinit ObjectCounter liveChips("chip");

int32_t C_PartCatalog::GetLiveChipCount() { return liveChips.Count(); }

void C_PartCatalog::Destroy() { delete this; }

int32_t C_PartCatalog::Load(const char* path) {
  if (!path) return 0;
  Result<ChipFile> file = ChipFile::Open(Path::System(path));
  if (!file) return 0;
  file_ = std::move(file.Value());
  facts_.clear();
  return 1;
}

I_ChipInfo* C_PartCatalog::GetChip(const char* partNumber) {
  if (!file_ || !partNumber) return nullptr;
  std::shared_ptr<const ChipFacts> facts = FindFacts(partNumber);
  return facts ? new C_ChipInfo(std::move(facts)) : nullptr;
}

std::shared_ptr<const ChipFacts> C_PartCatalog::FindFacts(std::string_view part) {
  const std::string key = ToUpper(part);
  const auto found = facts_.find(key);
  if (found != facts_.end()) return found->second;
  Result<ChipFacts> facts = file_->Read(part);
  if (!facts) return nullptr;
  return facts_.emplace(key, std::make_shared<const ChipFacts>(std::move(facts.Value())))
      .first->second;
}

}  // namespace velora

VELORA_EXPORT int32_t CreateServiceInstance(int32_t id, void** out) {
  if (id != velora::kChipCatalogService || !out) return 0;
  // Paths that begin with the module's directory are then read as they are spelt on disk.
  velora::SetModuleFile(
      velora::LoadedModule::FileAt(reinterpret_cast<const void*>(&CreateServiceInstance)));
  velora::I_ChipCatalog* const catalog = new velora::C_PartCatalog;
  *out = catalog;
  return 1;
}
