// The entry of the module.
#include <velora/ModuleExport.h>

#include <cstdint>
#include <new>

#include "service/VLRPropertyWizard.h"
#include "service/VeloraUtilApp.h"

namespace {

const velora::CVeloraUtilApp theApp(&theApp);

}  // namespace

VELORA_EXPORT int32_t CreateServiceInstance(int32_t id, velora::I_VLRPropertyWizard** out) {
  if (id != velora::kWizardService || !out) return 0;
  velora::I_VLRPropertyWizard* const wizard = new (std::nothrow) velora::C_VLRPropertyWizard;
  if (!wizard) return 0;
  *out = wizard;
  return 1;
}
