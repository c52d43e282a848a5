// What a project knows of its outputs.
#pragma once

#include <velora/VeloraTypes.h>

#include <cstdint>

namespace velora {

class I_CUIniFile;
class I_VeloraMotorModeMgr;
class I_VeloraSerialLEDMgr;

/// The pin map of one project: which of 32 logical output pins drives which chip pin
/// and how, the firmware PWM timer, colour events, dynamic curves, IO expanders, PWM
/// clocks, colour LED parameters, and the serial LED and motor settings.
///
/// The order of the operations is the contract: a caller may reach them by slot. The
/// number behind an operation is its slot; the destructor takes the last two.
///
/// Ownership: texts, arrays and records handed in are borrowed for the call and copied;
/// those handed out belong to the manager and stay valid until the next change of the
/// same value. A null text is taken as empty. A null address of a result is skipped.
///
/// Failure: a setter given a pin or an index out of range does nothing, a getter gives
/// 0, 0.0 or null. A count below 0 is 0; no list grows past 1,048,576 entries. Flags are
/// 1 and 0. No operation may be called from two threads at once.
class I_VeloraPinMapInfoMgr {
 public:
  // --- The project's store ---------------------------------------------------

  /// Writes the section "VeloraPinMapInfo", and the motor settings to theirs. 0 when
  /// one of the writes up to the number of event colours failed; what was written stays.
  virtual int32_t Save(I_CUIniFile* store) = 0;  // 0
  /// Reads what Save writes; missing keys take their defaults. Always 1 with a store.
  virtual int32_t Load(I_CUIniFile* store) = 0;  // 1

  // --- Pins, 0 to 31 ---------------------------------------------------------

  /// Stores a pin with a deep copy of its record; `record` may be the manager's own.
  /// `multiPinValue` holds the mask within the port in its low 8 bits, the mask over all
  /// ports above. 0 for a pin above 31 or a null record, else 1.
  virtual int32_t SetPin(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex, uint8_t pwmType,
                         uint8_t stopValue, uint8_t keepLevel, uint64_t multiPinValue,
                         const PinRecord* record) = 0;  // 2
  /// SetPin with a multi-pin value of 8 bits.
  virtual int32_t SetPin32(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex, uint8_t pwmType,
                           uint8_t stopValue, uint8_t keepLevel, uint8_t multiPinValue,
                           const PinRecord* record) = 0;  // 3
  /// Fills the six values and gives the pin's record; null for a pin above 31.
  virtual const PinRecord* GetPin(uint32_t pin, uint16_t* portIndex, uint8_t* portPinIndex,
                                  uint8_t* pwmType, uint8_t* stopValue, uint8_t* keepLevel,
                                  uint64_t* multiPinValue) const = 0;  // 4
  /// GetPin with the multi-pin value cut to 8 bits.
  virtual const PinRecord* GetPin8(uint32_t pin, uint16_t* portIndex, uint8_t* portPinIndex,
                                   uint8_t* pwmType, uint8_t* stopValue, uint8_t* keepLevel,
                                   uint8_t* multiPinValue) const = 0;  // 5
  /// Sets OutputLevels of all 32 records, converted or not: 1 without PWM, 255 with
  /// hardware PWM; with firmware PWM the largest YResolution of the converted firmware
  /// PWM pins. Other types stay as they are. Gives the record of pin 0.
  virtual const PinRecord* ComputeOutputLevels() = 0;  // 6

  // --- Firmware PWM and memory -----------------------------------------------

  virtual void SetFirmwarePWMTimer(const char* name) = 0;   // 7
  virtual const char* GetFirmwarePWMTimer() const = 0;      // 8
  virtual void SetFirmwarePWMFrequency(int32_t value) = 0;  // 9
  virtual int32_t GetFirmwarePWMFrequency() const = 0;      // 10
  virtual void SetUsedRAMSize(uint16_t bytes) = 0;          // 11
  virtual uint16_t GetUsedRAMSize() const = 0;              // 12
  virtual void SetUsedStackSize(uint16_t bytes) = 0;        // 13
  virtual uint16_t GetUsedStackSize() const = 0;            // 14

  // --- Values kept for the host, neither stored nor read ---------------------

  virtual void SetHostValue1(int32_t value) = 0;                   // 15
  virtual int32_t GetHostValue1() const = 0;                       // 16
  virtual void SetHostValue2(int32_t value) = 0;                   // 17
  virtual int32_t GetHostValue2() const = 0;                       // 18
  virtual void SetHostValue3(int32_t value) = 0;                   // 19
  virtual int32_t GetHostValue3() const = 0;                       // 20
  virtual void SetHostValue4(int32_t value) = 0;                   // 21
  virtual int32_t GetHostValue4() const = 0;                       // 22
  virtual void SetHostPinValue(uint32_t pin, uint32_t value) = 0;  // 23
  virtual uint32_t GetHostPinValue(uint32_t pin) const = 0;        // 24
  virtual void SetHostValue5(int32_t value) = 0;                   // 25
  virtual int32_t GetHostValue5() const = 0;                       // 26
  virtual void SetHostValue6(int32_t value) = 0;                   // 27
  virtual int32_t GetHostValue6() const = 0;                       // 28
  virtual void SetHostValue7(int32_t value) = 0;                   // 29
  virtual int32_t GetHostValue7() const = 0;                       // 30
  virtual void SetHostValue8(int32_t value) = 0;                   // 31
  virtual int32_t GetHostValue8() const = 0;                       // 32

  // --- Conversion and the clocks of the hardware PWM groups ------------------

  /// A ConvertMethod.
  virtual int32_t GetConvertMethod() const = 0;                      // 33
  virtual void SetConvertMethod(int32_t method) = 0;                 // 34
  virtual void SetHwPwmSourceClk(int32_t index, int32_t value) = 0;  // 35
  /// Makes room for one entry if there is none.
  virtual void SetFirstHwPwmSourceClk(int32_t value) = 0;      // 36
  virtual int32_t GetHwPwmSourceClk(int32_t index) const = 0;  // 37
  virtual int32_t GetFirstHwPwmSourceClk() const = 0;          // 38

  // --- Colour events ---------------------------------------------------------

  virtual void SetEnableColorEvent(int32_t flag) = 0;  // 39
  virtual int32_t GetEnableColorEvent() const = 0;     // 40
  /// Resizes; the entries that stay keep their values, new ones are all 0.
  virtual void SetEventColorCount(int32_t count) = 0;  // 41
  virtual int32_t GetEventColorCount() const = 0;      // 42
  /// 1 colour, 2 curve set, 3 curve map, 4 speed, 5 level: which value of the event counts.
  virtual void SetEventType(int32_t index, int32_t type) = 0;  // 43
  virtual int32_t GetEventType(int32_t index) const = 0;       // 44
  /// 0xRRGGBB.
  virtual uint32_t GetEventColor(int32_t index) const = 0;        // 45
  virtual void SetEventColor(int32_t index, uint32_t color) = 0;  // 46
  virtual int32_t GetEventCurveMap(int32_t index) const = 0;      // 47
  virtual void SetEventCurveMap(int32_t index, int32_t map) = 0;  // 48
  /// The curve indices, at most 32; `count` tells those in front of the first negative one.
  virtual const int32_t* GetEventCurveSet(int32_t index, int32_t* count) const = 0;  // 49
  /// Copies at most 32 values and, below 32, ends them with -1. A count below 1 empties.
  virtual void SetEventCurveSet(int32_t index, const int32_t* values, int32_t count) = 0;  // 50
  virtual float GetEventSpeed(int32_t index) const = 0;                                    // 51
  virtual void SetEventSpeed(int32_t index, float speed) = 0;                              // 52
  virtual int32_t GetEventLevel(int32_t index) const = 0;                                  // 53
  virtual void SetEventLevel(int32_t index, int32_t level) = 0;                            // 54
  /// Pin indices, ended as the curve set is.
  virtual const int32_t* GetEventBindedPins(int32_t index, int32_t* count) const = 0;        // 55
  virtual void SetEventBindedPins(int32_t index, const int32_t* values, int32_t count) = 0;  // 56

  // --- IO expanders: 3 groups of 8 entries each ------------------------------

  virtual void SetIOExpanderCount(int32_t count) = 0;                   // 57
  virtual int32_t GetIOExpanderCount() const = 0;                       // 58
  virtual void SetIOExpanderName(int32_t index, const char* name) = 0;  // 59
  virtual const char* GetIOExpanderName(int32_t index) const = 0;       // 60
  virtual void SetIOExpanderClkSource(int32_t index, int32_t group, int32_t entry,
                                      int32_t value) = 0;  // 61
  virtual int32_t GetIOExpanderClkSource(int32_t index, int32_t group,
                                         int32_t entry) const = 0;  // 62
  virtual void SetIOExpanderCurrentType(int32_t index, int32_t group, int32_t entry,
                                        int32_t value) = 0;  // 63
  virtual int32_t GetIOExpanderCurrentType(int32_t index, int32_t group,
                                           int32_t entry) const = 0;  // 64
  virtual void SetIoExpanderSelectPinCount(int32_t count) = 0;        // 65
  virtual int32_t GetIoExpanderSelectPinCount() const = 0;            // 66
  /// Grows the list as far as `index`; 0 for a negative index or one past the limit of
  /// lists, else 1. Only the low 8 bits of `pin` count.
  virtual int32_t SetIoExpanderSelectPin(int32_t index, uint32_t port, uint32_t pin) = 0;  // 67
  /// 0 outside the list, else 1.
  virtual int32_t GetIoExpanderSelectPin(int32_t index, uint32_t* port,
                                         uint32_t* pin) const = 0;  // 68
  virtual void SetHwPwmSourceClkCount(int32_t count) = 0;           // 69
  virtual int32_t GetHwPwmSourceClkCount() const = 0;               // 70

  // --- Copy and comparison ---------------------------------------------------

  /// Copies the settings of `other`, with the colour events if asked. The host values,
  /// UserCtrlIOExpEnable and the select pins stay. Null or itself: nothing happens.
  /// `reserved` is not used.
  virtual void CopyFrom(void* reserved, I_VeloraPinMapInfoMgr* other,
                        int32_t withEvents) = 0;  // 71
  /// 1 when a setting differs. Pins that neither side converts don't count, nor do
  /// OutputLevels, the used stack, the dynamic curve, the colour LED and the host values.
  /// Null differs.
  virtual int32_t IsDifferent(void* reserved, I_VeloraPinMapInfoMgr* other,
                              int32_t withEvents) = 0;  // 72

  // --- Dynamic curve ---------------------------------------------------------

  virtual void SetDynamicCurveEnable(int32_t flag) = 0;                                      // 73
  virtual int32_t GetDynamicCurveEnable() const = 0;                                         // 74
  virtual int32_t GetDynamicCurveColorCount() const = 0;                                     // 75
  virtual void SetDynamicCurveColorCount(int32_t count) = 0;                                 // 76
  virtual void SetDynamicCurveColor(int32_t index, int32_t color) = 0;                       // 77
  virtual int32_t GetDynamicCurveColor(int32_t index) const = 0;                             // 78
  virtual void SetDynamicCurveTable(const tagVLRCurveCtrlPoint* points, int32_t count) = 0;  // 79
  /// Null and 0 when empty.
  virtual const tagVLRCurveCtrlPoint* GetDynamicCurveTable(int32_t* count) const = 0;  // 80
  virtual void SetDynamicCurveActiveHigh(int32_t flag) = 0;                            // 81
  virtual int32_t GetDynamicCurveActiveHigh() const = 0;                               // 82
  virtual void SetDynamicCurveGroupNum(int32_t value) = 0;                             // 83
  virtual int32_t GetDynamicCurveGroupNum() const = 0;                                 // 84

  // --- Colour LED ------------------------------------------------------------

  virtual void SetWavLenColorLEDMixEn(int32_t flag) = 0;  // 85
  virtual int32_t GetWavLenColorLEDMixEn() const = 0;     // 86
  /// Nanometres.
  virtual void SetLEDWaveLength(int32_t red, int32_t green, int32_t blue) = 0;           // 87
  virtual void GetLEDWaveLength(int32_t* red, int32_t* green, int32_t* blue) const = 0;  // 88
  virtual void SetLEDMaxLumen(int32_t red, int32_t green, int32_t blue) = 0;             // 89
  virtual void GetLEDMaxLumen(int32_t* red, int32_t* green, int32_t* blue) const = 0;    // 90
  virtual void SetLEDMixingScale(double scale) = 0;                                      // 91
  virtual double GetLEDMixingScale() const = 0;                                          // 92
  virtual void SetColorLEDParamSource(int32_t source) = 0;                               // 93
  virtual int32_t GetColorLEDParamSource() const = 0;                                    // 94
  /// Chromaticity x and y, luminance Y, compensation.
  virtual void SetColorLEDx(double red, double green, double blue) = 0;              // 95
  virtual void GetColorLEDx(double* red, double* green, double* blue) const = 0;     // 96
  virtual void SetColorLEDy(double red, double green, double blue) = 0;              // 97
  virtual void GetColorLEDy(double* red, double* green, double* blue) const = 0;     // 98
  virtual void SetColorLEDBigY(double red, double green, double blue) = 0;           // 99
  virtual void GetColorLEDBigY(double* red, double* green, double* blue) const = 0;  // 100
  virtual void SetColorLEDComp(double red, double green, double blue) = 0;           // 101
  virtual void GetColorLEDComp(double* red, double* green, double* blue) const = 0;  // 102

  // --- Embedded managers, never null -----------------------------------------

  virtual I_VeloraSerialLEDMgr* GetSerialLEDMgr() = 0;  // 103
  virtual I_VeloraMotorModeMgr* GetMotorModeMgr() = 0;  // 104

  // --- Later settings --------------------------------------------------------

  virtual void SetUserCtrlIOExpEnable(int32_t flag) = 0;              // 105
  virtual int32_t GetUserCtrlIOExpEnable() const = 0;                 // 106
  virtual void SetRuntimeEnvelopEnabled(int32_t flag) = 0;            // 107
  virtual int32_t GetRuntimeEnvelopEnabled() const = 0;               // 108
  virtual void SetRuntimeEnvelopSamplePerGroup(int32_t samples) = 0;  // 109
  virtual int32_t GetRuntimeEnvelopSamplePerGroup() const = 0;        // 110
  virtual void SetRuntimeEnvelopGammaCP(const tagVLRCurveCtrlPoint* points,
                                        int32_t count) = 0;  // 111
  /// Null and 0 when empty.
  virtual const tagVLRCurveCtrlPoint* GetRuntimeEnvelopGammaCP(int32_t* count) const = 0;  // 112
  virtual void SetRuntimeEnvelopActiveHigh(int32_t flag) = 0;                              // 113
  virtual int32_t GetRuntimeEnvelopActiveHigh() const = 0;                                 // 114

  virtual ~I_VeloraPinMapInfoMgr() = default;  // 115 and 116
};

}  // namespace velora
