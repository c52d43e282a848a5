// The property wizard: the one object through which a host reaches the module.
#pragma once

#include <cstdint>

namespace velora {

class I_ProjectHost;
class I_WindowHost;

/// What the list of selectable pins of a run is made of.
enum WizardMode : int32_t {
  kModePorts = 1,      ///< the chip's pins, by port
  kModeOutPins = 2,    ///< the OUT pins of the board
  kModeNamedPins = 3,  ///< the OUT pins under the names of SetOutPinNames
};

/// What Run gives. Any other value is what closed the dialog, as it stands.
enum WizardAnswer : int32_t {
  kRunDone = 1,    ///< the project is updated
  kRunFailed = 2,  ///< an interface was missing, no dialog could be made, or it was cancelled
};

/// Configures the outputs of projects for one chip.
///
/// The order of calls is CreateServiceInstance, Init, SetOutPinNames if wanted, then
/// Run and GenerateCode as often as wanted, then Release. Init may be repeated. After
/// a failed Init, Run and GenerateCode give their failures.
///
/// Ownership: the wizard belongs to the caller until Release. Texts and arrays handed
/// in are borrowed for the call and copied; the window host is borrowed until the next
/// Init or Release, the project for the call. One thread at a time, the host's thread
/// of windows. No operation lets an exception out.
///
/// The order of the operations is the contract. Eight operations, nine raw slots: the
/// destructor takes two.
class I_VLRPropertyWizard {
 public:
  /// Slot 0. Destroys the wizard; the last one lets the chip catalogue go.
  virtual void Release() = 0;

  /// Slot 1. Binds the wizard to a chip. `parent` is what messages appear over; null
  /// means that there are no windows. A null part number counts as empty. 1, or 0 when
  /// the catalogue can't be loaded or doesn't have the part with its resources and PWM
  /// facts.
  virtual int32_t Init(I_WindowHost* parent, const char* partNumber) = 0;

  /// Slot 2. Turns the project's pin map into the data of the property dialog, lets
  /// the user change it or only checks it, and writes the outcome back.
  ///
  ///   mode           a WizardMode
  ///   project        null gives kRunFailed
  ///   reserved       not read
  ///   keepValues     0: the dialog can't be cancelled
  ///   showDialog     0: check without a window, see HasResourceError
  ///   omitOutNumber  1: names of OUT pins without their number
  ///   dialogValue    1: the chip can be changed in the dialog
  virtual int32_t Run(int32_t mode, I_ProjectHost* project, uint32_t reserved, int32_t keepValues,
                      int32_t showDialog, int32_t omitOutNumber, int32_t dialogValue) = 0;

  /// Slot 3. Hands the project's pin map to the code generator. The two values are the
  /// generator's: numbers or addresses that pass through unread. 1 on success or when
  /// generation is switched off, else 0.
  virtual int32_t GenerateCode(int32_t mode, I_ProjectHost* project, intptr_t pwmValue,
                               intptr_t generateValue) = 0;

  /// Slot 4. 1 when the last Run without a window found that the settings don't fit
  /// the chip.
  virtual int32_t HasResourceError() = 0;

  /// Slot 5. Replaces the names of the OUT pins, entry i for OUT i + 1; a null entry
  /// counts as empty, a count below 1 leaves none. 0 for a null array, which empties
  /// the names too, else 1.
  virtual int32_t SetOutPinNames(const char* const* names, int32_t count) = 0;

  /// Slot 6. The part number of the last Init, or the one chosen in a confirmed Run.
  /// Never null; valid until it changes or the wizard goes.
  virtual const char* GetPartNumber() = 0;

  /// Slots 7 and 8. A host uses Release.
  virtual ~I_VLRPropertyWizard() = default;
};

/// The service id of the wizard.
inline constexpr int32_t kWizardService = 1;

/// The one export of the module, "CreateServiceInstance": with kWizardService it makes
/// a wizard, stores it in `*out` and gives 1. 0 for any other id, which leaves `*out`
/// as it was, and for a null `out`.
using CreateWizardFunction = int32_t (*)(int32_t id, I_VLRPropertyWizard** out);
inline constexpr char kCreateServiceInstance[] = "CreateServiceInstance";

}  // namespace velora
