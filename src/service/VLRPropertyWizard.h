// The property wizard of the module.
#pragma once

#include <velora/I_ChipInfo.h>
#include <velora/I_ChipPwmInfo.h>
#include <velora/I_ChipResources.h>
#include <velora/I_VLRPropertyWizard.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/ChipInfoLoader.h"
#include "chip/PortMap.h"
#include "foundation/CUString.h"
#include "foundation/ItemProperty.h"

namespace velora {

/// See I_VLRPropertyWizard for what the operations do. Made by new, released by Release.
class C_VLRPropertyWizard final : public I_VLRPropertyWizard {
 public:
  C_VLRPropertyWizard() = default;
  C_VLRPropertyWizard(const C_VLRPropertyWizard&) = delete;
  C_VLRPropertyWizard& operator=(const C_VLRPropertyWizard&) = delete;
  ~C_VLRPropertyWizard() override;

  void Release() override { delete this; }
  int32_t Init(I_WindowHost* parent, const char* partNumber) override;
  int32_t Run(int32_t mode, I_ProjectHost* project, uint32_t reserved, int32_t keepValues,
              int32_t showDialog, int32_t omitOutNumber, int32_t dialogValue) override;
  int32_t GenerateCode(int32_t mode, I_ProjectHost* project, intptr_t pwmValue,
                       intptr_t generateValue) override;
  int32_t HasResourceError() override { return resourceError_; }
  int32_t SetOutPinNames(const char* const* names, int32_t count) override;
  const char* GetPartNumber() override { return partNumber_.c_str(); }

  // What Init bound the wizard to.
  const PortMap& GetPortMap() const { return portMap_; }
  C_ItemProperty* GetChipProperty() const { return chipProperty_; }
  I_CUList<I_ChipPinRange>* GetPwmPinRanges() const { return pwmPinRanges_; }
  I_CUList<I_ChipPinRange>* GetReservedPinRanges() const { return reservedPinRanges_; }
  const std::vector<std::string>& GetOutPinNames() const { return outPinNames_; }

 private:
  bool Bind(I_WindowHost* parent, const char* partNumber);
  bool TakeChip();
  void ForgetChip();

  I_WindowHost* parentWindow_ = nullptr;
  C_CUString partNumber_;
  C_ChipInfoLoader chipInfoGuard_;  ///< goes after the chip
  std::unique_ptr<I_ChipInfo, ChipRelease> chip_;
  I_ChipResources* chipResources_ = nullptr;               ///< the chip's
  I_ChipPwmInfo* chipPwmInfo_ = nullptr;                   ///< the chip's
  I_CUList<I_ChipPinRange>* pwmPinRanges_ = nullptr;       ///< the chip's
  I_CUList<I_ChipPinRange>* reservedPinRanges_ = nullptr;  ///< the chip's
  C_ItemProperty* chipProperty_ = nullptr;                 ///< the loader's
  PortMap portMap_;
  int32_t resourceError_ = 0;
  std::vector<std::string> outPinNames_;
};

}  // namespace velora
