#include "catalogue/ChipInfoLoader.h"

#include <string>
#include <utility>

#include "foundation/DynamicLoad.h"
#include "foundation/PathText.h"

namespace velora {
namespace {

constexpr char kModuleName[] = "PartCatalog.dll";
constexpr char kFileName[] = "ChipInfo.cfg";
constexpr char kLoadTitle[] = "ChipInfo Loader";

int LoaderCount = 0;
void* CatalogModule = nullptr;
I_ChipCatalog* Catalog = nullptr;

void DestroyCatalog() {
  if (I_ChipCatalog* const catalog = std::exchange(Catalog, nullptr)) catalog->Destroy();
}

/// A new catalogue of the loaded module, null on failure.
I_ChipCatalog* MakeCatalog() {
  const auto make = reinterpret_cast<ChipCatalogFactory>(
      GetExport(CatalogModule, "CreateServiceInstance", nullptr, nullptr, false));
  void* object = nullptr;
  if (!make || !make(kChipCatalogService, &object)) return nullptr;
  return static_cast<I_ChipCatalog*>(object);
}

}  // namespace

C_ChipInfoLoader::C_ChipInfoLoader() { ++LoaderCount; }
C_ChipInfoLoader::C_ChipInfoLoader(const C_ChipInfoLoader&) { ++LoaderCount; }

C_ChipInfoLoader::~C_ChipInfoLoader() {
  if (--LoaderCount > 0) return;
  DestroyCatalog();
  FreeModule(std::exchange(CatalogModule, nullptr));
}

bool LoadChipCatalog(I_WindowHost* parent) {
  if (Catalog) return true;
  const std::string directory = GetModuleDir(true);
  if (!CatalogModule) CatalogModule = LoadModule(directory + kModuleName, kLoadTitle, parent, true);
  if (!CatalogModule) return false;
  Catalog = MakeCatalog();
  if (!Catalog) return false;
  if (Catalog->Load((directory + kFileName).c_str())) return true;
  DestroyCatalog();
  return false;
}

I_ChipCatalog* GetChipCatalog() { return Catalog; }

}  // namespace velora
