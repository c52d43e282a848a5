#include "service/VLRPropertyWizard.h"

#include "chip/ChipPropertyLoader.h"
#include "foundation/MessageBox.h"

namespace velora {
namespace {

template <typename Interface>
Interface* InterfaceOf(I_ChipInfo& chip, ChipInterface id) {
  void* found = nullptr;
  if (!chip.GetInterface(id, &found)) return nullptr;
  return static_cast<Interface*>(found);
}

/// Runs an operation; what it throws ends here and becomes its failure.
template <typename Operation>
int32_t AtBoundary(int32_t failure, const Operation& operation) {
  try {
    return operation();
  } catch (...) {
    return failure;
  }
}

}  // namespace

C_VLRPropertyWizard::~C_VLRPropertyWizard() {
  if (parentWindow_ && GetBoxOwner() == parentWindow_) SetBoxOwner(nullptr);
}

int32_t C_VLRPropertyWizard::Init(I_WindowHost* parent, const char* partNumber) {
  return AtBoundary(0, [&] { return Bind(parent, partNumber) ? 1 : 0; });
}

bool C_VLRPropertyWizard::Bind(I_WindowHost* parent, const char* partNumber) {
  parentWindow_ = parent;
  SetBoxOwner(parent);
  partNumber_ = partNumber;
  chipProperty_ = velora::GetChipProperty(partNumber_);
  if (!LoadChipCatalog(parent)) return false;
  ForgetChip();
  if (!TakeChip()) {
    ForgetChip();
    return false;
  }
  portMap_ = ReadPortMap(*chipProperty_, chip_->GetChipCode());
  return true;
}

bool C_VLRPropertyWizard::TakeChip() {
  chip_.reset(GetChipCatalog()->GetChip(partNumber_.c_str()));
  if (!chip_) return false;
  chipResources_ = InterfaceOf<I_ChipResources>(*chip_, kChipResources);
  chipPwmInfo_ = InterfaceOf<I_ChipPwmInfo>(*chip_, kChipPwmInfo);
  if (!chipResources_ || !chipPwmInfo_) return false;
  pwmPinRanges_ = chipPwmInfo_->GetPwmRanges();
  reservedPinRanges_ = chipResources_->GetReservedRanges();
  return true;
}

void C_VLRPropertyWizard::ForgetChip() {
  pwmPinRanges_ = nullptr;
  reservedPinRanges_ = nullptr;
  chipResources_ = nullptr;
  chipPwmInfo_ = nullptr;
  chip_.reset();
}

int32_t C_VLRPropertyWizard::Run(int32_t /*mode*/, I_ProjectHost* /*project*/,
                                 uint32_t /*reserved*/, int32_t /*keepValues*/,
                                 int32_t /*showDialog*/, int32_t /*omitOutNumber*/,
                                 int32_t /*dialogValue*/) {
  resourceError_ = 0;
  return kRunFailed;  // this module has no dialog for any chip
}

int32_t C_VLRPropertyWizard::GenerateCode(int32_t /*mode*/, I_ProjectHost* /*project*/,
                                          intptr_t /*pwmValue*/, intptr_t /*generateValue*/) {
  return 0;  // this module drives no generator
}

int32_t C_VLRPropertyWizard::SetOutPinNames(const char* const* names, int32_t count) {
  return AtBoundary(0, [&] {
    outPinNames_.clear();
    if (!names) return 0;
    for (int32_t i = 0; i < count; ++i) outPinNames_.emplace_back(names[i] ? names[i] : "");
    return 1;
  });
}

}  // namespace velora
