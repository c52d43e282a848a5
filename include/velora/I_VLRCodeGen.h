// The code generator of a chip: a sibling module's object.
#pragma once

#include <cstdint>

namespace velora {

/// Takes the settings of a project's outputs, tells what RAM they need, and writes the
/// firmware's code for them. Implemented by the module VLRCodeGen.
///
/// The caller owns the object and releases it before it frees the module. Texts and
/// arrays handed in are borrowed for the call. Flags are 1 and 0. One thread at a time.
///
/// The order of the operations is the contract. Sixteen raw slots; the table has no
/// destructor.
class I_VLRCodeGen {
 public:
  /// Slot 0. The object is gone.
  virtual void Release() = 0;

  /// Slot 1. Settings of one curve; a later call replaces an earlier one. 1 on success.
  ///
  ///   pin        1 to 32
  ///   pwmType    a PwmType, or -1: the curve has no pin and counts for nothing
  ///   port       name of the port
  ///   multiPins  the low 32 bits of the multi-pin value
  virtual int32_t SetPin(int32_t pin, int32_t pwmType, const char* port, int32_t pinIndex,
                         int32_t stopValue, int32_t keepLevel, uint32_t multiPins) = 0;

  /// Slot 2. The largest level resolution of the firmware PWM pins, the host's value,
  /// and the PWM frequency in hertz. 1 on success.
  virtual int32_t SetPwm(int32_t maxResolution, intptr_t hostValue, int32_t frequency,
                         int32_t flag) = 0;

  /// Slot 3. The timer of the firmware PWM by name; may be empty. 1 on success.
  virtual int32_t SetPwmTimer(const char* name) = 0;

  /// Slot 4. Bytes of RAM that the settings need.
  virtual int32_t GetUsedRam() = 0;

  /// Slot 5. Writes the code. The host's value says where; 1 on success.
  virtual int32_t Generate(intptr_t hostValue, int32_t mode) = 0;

  /// Slot 6. Above 0 when pins are in use.
  virtual int32_t GetPinLoad() = 0;

  /// Slot 7. The project's output word, for chips that have one.
  virtual void SetOutputWord(const uint32_t* word) = 0;

  /// Slots 8 and 9. Values of the project, passed on unread.
  virtual void SetOptionA(int32_t value) = 0;
  virtual void SetOptionB(int32_t value) = 0;

  /// Slot 10. The multi-pin value of pin 1 to 32 without its low 8 bits, in two halves.
  virtual void SetMultiPinValue(int32_t pin, uint32_t low, uint32_t high) = 0;

  /// Slot 11. The clock source of a hardware PWM group, counted from 0.
  virtual void SetClockGroup(int32_t index, int32_t source) = 0;

  /// Slot 12. The first hardware PWM clock source.
  virtual void SetFirstClock(int32_t source) = 0;

  /// Slot 13.
  virtual void SetMemoryInfo(uint16_t timerLoad, int32_t value) = 0;

  /// Slot 14. An IO expander: its model, and 8 clock indexes for each of its ports.
  virtual void SetExpander(const char* model, const int32_t* values, int32_t count) = 0;

  /// Slot 15. The WizardMode of the run.
  virtual void SetMode(int32_t mode) = 0;

 protected:
  ~I_VLRCodeGen() = default;
};

// The exports of the module. Each makes a generator for a part, null when it knows none;
// the first is for convert method 1, the second for any other.

using SetChipPartNumFunction = I_VLRCodeGen* (*)(const char* partNumber);
inline constexpr char kSetChipPartNum[] = "SetChipPartNum";

using SetChipPartNumWithCvtMethodFunction = I_VLRCodeGen* (*)(const char* partNumber,
                                                              int32_t convertMethod);
inline constexpr char kSetChipPartNumWithCvtMethod[] = "SetChipPartNumWithCvtMethod";

}  // namespace velora
