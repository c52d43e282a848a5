// The settings of a project's chain of serial LEDs.
#pragma once

#include <velora/VeloraTypes.h>

#include <cstdint>

namespace velora {

class I_CUIniFile;

/// Size and wiring of the chain, the bit timing of its protocol, and the pins by mode.
/// Times and ticks stand side by side; nothing converts one into the other.
///
/// The order of the operations is the contract: a caller may reach them by slot. The
/// number behind an operation is its slot; the destructor takes the last two.
///
/// Ownership: texts and arrays handed in are borrowed for the call and copied, those
/// handed out belong to the manager and stay valid until the next change of the same
/// value. A null text is taken as empty.
///
/// Failure: a setter that has a range replaces a value outside it as told; a setter
/// given a mode above 3 does nothing.
class I_VeloraSerialLEDMgr {
 public:
  /// Copies every value through the setters, so their range rules hold. Null: nothing.
  virtual void CopyFrom(const I_VeloraSerialLEDMgr* other) = 0;  // 0
  /// 1 when every value is the same, and when `other` is null.
  virtual int32_t IsSame(const I_VeloraSerialLEDMgr* other) const = 0;  // 1
  /// Writes its keys to the section "VeloraPinMapInfo". Always 1 with a store.
  virtual int32_t Save(I_CUIniFile* store) = 0;  // 2
  /// Missing numbers keep their value; missing texts and a missing curve become empty.
  /// Values are taken as stored: the setters' range rules don't apply. Always 1.
  virtual int32_t Load(I_CUIniFile* store) = 0;  // 3

  /// 1 to 100; else 30.
  virtual void SetSampleFreq(int32_t value) = 0;  // 4
  virtual uint8_t GetSampleFreq() const = 0;      // 5
  virtual void SetColorType(uint8_t value) = 0;   // 6
  virtual uint8_t GetColorType() const = 0;       // 7
  virtual void SetScanType(uint8_t value) = 0;    // 8
  virtual uint8_t GetScanType() const = 0;        // 9
  virtual void SetEnable(int32_t flag) = 0;       // 10
  virtual int32_t GetEnable() const = 0;          // 11
  /// LEDs of the chain, 1 to 65,025; else 64.
  virtual void SetCount(int32_t count) = 0;  // 12
  virtual int32_t GetCount() const = 0;      // 13
  /// 0 to 3; -1 before it is set.
  virtual void SetWireMode(int32_t mode) = 0;                // 14
  virtual int32_t GetWireMode() const = 0;                   // 15
  virtual void SetPinUse(uint8_t value, uint32_t mode) = 0;  // 16
  /// 0xFF for a mode above 3.
  virtual uint8_t GetPinUse(uint32_t mode) const = 0;  // 17

  /// How long the line is high and low in a bit of value 0 and 1, as time and in ticks.
  virtual void SetHighLevel0Time(double time) = 0;   // 18
  virtual double GetHighLevel0Time() const = 0;      // 19
  virtual void SetHighLevel1Time(double time) = 0;   // 20
  virtual double GetHighLevel1Time() const = 0;      // 21
  virtual void SetLowLevel0Time(double time) = 0;    // 22
  virtual double GetLowLevel0Time() const = 0;       // 23
  virtual void SetLowLevel1Time(double time) = 0;    // 24
  virtual double GetLowLevel1Time() const = 0;       // 25
  virtual void SetHighLevel0Tick(uint8_t tick) = 0;  // 26
  virtual uint8_t GetHighLevel0Tick() const = 0;     // 27
  virtual void SetHighLevel1Tick(uint8_t tick) = 0;  // 28
  virtual uint8_t GetHighLevel1Tick() const = 0;     // 29
  virtual void SetLowLevel0Tick(uint8_t tick) = 0;   // 30
  virtual uint8_t GetLowLevel0Tick() const = 0;      // 31
  virtual void SetLowLevel1Tick(uint8_t tick) = 0;   // 32
  virtual uint8_t GetLowLevel1Tick() const = 0;      // 33

  /// 1 to 31; else 31.
  virtual void SetBrightnessLevel(int32_t level) = 0;  // 34
  virtual uint8_t GetBrightnessLevel() const = 0;      // 35
  /// 0 to 3; else 0.
  virtual void SetClockRateMode(int32_t mode) = 0;     // 36
  virtual uint8_t GetClockRateMode() const = 0;        // 37
  virtual void SetOrderBit(uint8_t value) = 0;         // 38
  virtual uint8_t GetOrderBit() const = 0;             // 39
  virtual void SetIsSupportConvert(int32_t flag) = 0;  // 40
  virtual int32_t GetIsSupportConvert() const = 0;     // 41
  /// Channels that one LED takes: 3 for colour types 0 to 2, 2 for 3 and 4, both only
  /// with a wire mode from 0 to 3; else 0.
  virtual int32_t GetColorChannelCount() const = 0;  // 42
  virtual void SetSPIClock(int32_t clock) = 0;       // 43
  virtual int32_t GetSPIClock() const = 0;           // 44

  virtual void SetOneWireDeviceName(const char* name) = 0;             // 45
  virtual const char* GetOneWireDeviceName() const = 0;                // 46
  virtual void SetTwoWireDeviceName(const char* name) = 0;             // 47
  virtual const char* GetTwoWireDeviceName() const = 0;                // 48
  virtual void SetExtendPinInfo(uint32_t mode, const char* text) = 0;  // 49
  /// The empty text for a mode above 3.
  virtual const char* GetExtendPinInfo(uint32_t mode) const = 0;                       // 50
  virtual void SetVixenImportInterval(int32_t interval) = 0;                           // 51
  virtual int32_t GetVixenImportInterval() const = 0;                                  // 52
  virtual void SetAdjustCurve(const tagVLRCurveCtrlPoint* points, int32_t count) = 0;  // 53
  /// Null and 0 when empty.
  virtual const tagVLRCurveCtrlPoint* GetAdjustCurve(int32_t* count) const = 0;  // 54

  virtual ~I_VeloraSerialLEDMgr() = default;  // 55 and 56
};

}  // namespace velora
