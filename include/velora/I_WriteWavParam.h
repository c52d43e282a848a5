// What a file writer should do with a sound.
#pragma once

#include <cstdint>

namespace velora {

class I_VeloraPinMapInfoMgr;

/// Settings that file classes read while saving. Embedded in the sound.
///
/// The order of the operations is the contract. 31 operations, 32 raw slots: the
/// destructor takes two.
class I_WriteWavParam {
 public:
  /// Slot 0. All fields to their defaults: 0, the three percents 100, no pin map
  /// manager.
  virtual void Reset() = 0;

  /// Slots 1 to 3. The sample format to write: bits of a sample, bits of its
  /// container, two's complement or not. Without one the writer decides. The out
  /// pointers may be null.
  virtual void SetTargetFormat(uint16_t resolution, uint16_t container, uint32_t isSigned) = 0;
  virtual int32_t HasTargetFormat() const = 0;
  virtual void GetTargetFormat(uint16_t* resolution, uint16_t* container,
                               uint32_t* isSigned) const = 0;

  /// Slots 4 and 5. The compression method of the chip formats.
  virtual void SetCodecParam(uint32_t param) = 0;
  virtual uint32_t GetCodecParam() const = 0;

  /// Slots 6 to 8. For finding silence: the shortest one in samples, and the
  /// threshold as a 12-bit magnitude, 0 to 2047. The out pointers may be null.
  virtual void SetSilenceParams(uint32_t minLength, uint32_t threshold) = 0;
  virtual int32_t HasSilenceParams() const = 0;
  virtual void GetSilenceParams(uint32_t* minLength, uint32_t* threshold) const = 0;

  /// Slots 9 and 10. The mode of the external codecs; each reads it its own way.
  virtual void SetValue1(uint32_t value) = 0;
  virtual uint32_t GetValue1() const = 0;

  /// Slots 11 to 14. Level shaping: on or off, and the table it uses, of which
  /// the low 16 bits count.
  virtual void SetLscEnabled(uint32_t enabled) = 0;
  virtual uint32_t GetLscEnabled() const = 0;
  virtual void SetLscTable(uint32_t table) = 0;
  virtual uint32_t GetLscTable() const = 0;

  /// Slots 15 and 16. Kept for the owner of the sound.
  virtual void SetValue4(uint32_t value) = 0;
  virtual uint32_t GetValue4() const = 0;

  /// Slots 17 and 18. The level adjustment's mode; 0 is off.
  virtual void SetLveMode(uint8_t mode) = 0;
  virtual uint8_t GetLveMode() const = 0;

  /// Slots 19 to 24. What the level adjustment reports, in percent.
  virtual void SetLvePercent1(uint16_t percent) = 0;
  virtual uint16_t GetLvePercent1() const = 0;
  virtual void SetLvePercent2(uint16_t percent) = 0;
  virtual uint16_t GetLvePercent2() const = 0;
  virtual void SetLvePercent3(uint16_t percent) = 0;
  virtual uint16_t GetLvePercent3() const = 0;

  /// Slots 25 and 26. The entry of the level shaping table; the low 16 bits count.
  virtual void SetLscIndex(uint32_t index) = 0;
  virtual uint32_t GetLscIndex() const = 0;

  /// Slot 27. How action events are stored: 1 plain, 2 MIPS-first, 3 BAM. The pin
  /// map manager's answer, 1 without one.
  virtual int32_t GetConvertMethod() const = 0;

  /// Slots 28 and 29. Borrowed: must live as long as it is set. May be null.
  virtual void SetPinMapMgr(I_VeloraPinMapInfoMgr* manager) = 0;
  virtual I_VeloraPinMapInfoMgr* GetPinMapMgr() const = 0;

  /// Slots 30 and 31.
  virtual ~I_WriteWavParam() = default;
};

}  // namespace velora
