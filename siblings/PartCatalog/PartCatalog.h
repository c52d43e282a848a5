// The catalogue that the module hands out.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <velora/I_ChipCatalog.h>
#include <velora/ModuleExport.h>
#include "ObjectCount.h"
#include "catalogue/chipfile/ChipFile.h"

namespace velora {

class C_PartCatalog final : public I_ChipCatalog {
 public:
  int32_t GetLiveChipCount() override;
  void Destroy() override;
  int32_t Load(const char* path) override;
  I_ChipInfo* GetChip(const char* partNumber) override;

 private:
  /// Null for an unknown or faulty part.
  std::shared_ptr<const ChipFacts> FindFacts(std::string_view part);

  std::optional<ChipFile> file_;
  std::map<std::string, std::shared_ptr<const ChipFacts>> facts_;  ///< read ones, by upper case
  Counted counted_{liveCatalogs};
};

}  // namespace velora

/// The module's one export; see ChipCatalogFactory.
VELORA_EXPORT int32_t CreateServiceInstance(int32_t id, void** out);
