// The chip catalogue, kept loaded as long as anyone uses it.
//
//   C_ChipInfoLoader guard;
//   if (LoadChipCatalog(parent)) {
//     if (I_ChipInfo* chip = GetChipCatalog()->GetChip("K668C036")) ...
//   }
//
// The catalogue belongs to the process and is used by one thread at a time.
#pragma once

#include <velora/I_ChipCatalog.h>
#include <velora/I_ChipInfo.h>
#include <velora/I_WindowHost.h>

namespace velora {

/// Keeps the catalogue and its module loaded. The last one to go destroys the
/// catalogue and frees the module, so every chip must be released before.
class C_ChipInfoLoader {
 public:
  C_ChipInfoLoader();
  C_ChipInfoLoader(const C_ChipInfoLoader&);
  C_ChipInfoLoader& operator=(const C_ChipInfoLoader&) = default;
  virtual ~C_ChipInfoLoader();
};

/// Makes sure that the catalogue is there: loads the module PartCatalog from this
/// module's directory and has it read ChipInfo.cfg there. False when one of them
/// fails; the next call then tries again. Only a module that cannot be loaded is
/// told, in a box over `parent` (null: as ShowBox does).
bool LoadChipCatalog(I_WindowHost* parent);

/// The catalogue; null before LoadChipCatalog and once the last loader is gone.
I_ChipCatalog* GetChipCatalog();

/// Releases a chip at the end of a scope: std::unique_ptr<I_ChipInfo, ChipRelease>.
struct ChipRelease {
  void operator()(I_ChipInfo* chip) const { chip->Release(); }
};

}  // namespace velora
