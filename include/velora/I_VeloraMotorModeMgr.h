// How a project's motor is sensed and driven.
#pragma once

#include <cstdint>

namespace velora {

class I_CUIniFile;

/// An angle range that the lines of a GPIO encoder tell. Degrees, inclusive ends.
struct GPIOSectorInfo {
  int32_t SectorIndex;  ///< unique within its table
  int32_t GPIOValue;    ///< what the lines read
  int32_t AngleRangeStart;
  int32_t AngleRangeEnd;

  bool operator==(const GPIOSectorInfo&) const = default;
};

/// An angle range that an ADC reading tells. Readings and degrees with inclusive ends.
struct ADCSectorInfo {
  int32_t SectorIndex;  ///< unique within its table
  int32_t ADCRangeStart;
  int32_t ADCRangeEnd;
  int32_t AngleRangeStart;
  int32_t AngleRangeEnd;

  bool operator==(const ADCSectorInfo&) const = default;
};

static_assert(sizeof(GPIOSectorInfo) == 16);
static_assert(sizeof(ADCSectorInfo) == 20);

/// The angle sectors of the motor and its servo pins. Angles are degrees, 0 to 360.
///
/// The order of the operations is the contract: a caller may reach them by slot. The
/// number behind an operation is its slot; the destructor takes the last two.
///
/// Ownership: what is passed by address is borrowed for the call and copied; arrays and
/// entries handed out belong to the manager and stay valid until the table changes. An
/// empty array is null with a count of 0; a null `count` is skipped.
///
/// Failure: a null argument does nothing and gives 0 or null.
class I_VeloraMotorModeMgr {
 public:
  /// Copies the four values and the three tables, not the generated ones. Null: nothing.
  virtual void CopyFrom(const I_VeloraMotorModeMgr* other) = 0;  // 0
  /// Compares what CopyFrom copies; 1 when it is the same, and when `other` is null.
  virtual int32_t IsSame(const I_VeloraMotorModeMgr* other) const = 0;  // 1
  /// Writes the section "VLRMotorInfo" anew. Leaves the three tables sorted. Always 1
  /// with a store.
  virtual int32_t Save(I_CUIniFile* store) = 0;  // 2
  /// Missing values keep theirs, missing tables become empty; of entries with the same
  /// index the first counts. Always 1 with a store.
  virtual int32_t Load(I_CUIniFile* store) = 0;  // 3

  virtual void SetEnableMotorMode(int32_t flag) = 0;  // 4
  virtual int32_t GetEnableMotorMode() const = 0;     // 5
  /// 0 to 2; other values are ignored.
  virtual void SetMotorMode(const uint32_t* mode) = 0;       // 6
  virtual uint32_t GetMotorMode() const = 0;                 // 7
  virtual void SetGPIOCount(const int32_t* count) = 0;       // 8
  virtual int32_t GetGPIOCount() const = 0;                  // 9
  virtual void SetADCSectorCount(const int32_t* count) = 0;  // 10
  virtual int32_t GetADCSectorCount() const = 0;             // 11

  /// Divides the circle evenly among the 2^gpioCount readings of the lines. Empty for a
  /// count below 1 or above 20.
  virtual const GPIOSectorInfo* BuildGPIOSectors(const int32_t* gpioCount,
                                                 int32_t* count) = 0;             // 12
  virtual const GPIOSectorInfo* GetGPIOSectors(int32_t* count) const = 0;         // 13
  virtual const GPIOSectorInfo* GetGPIOSectorAt(const int32_t* index) const = 0;  // 14
  /// The first entry whose range holds the angle.
  virtual const GPIOSectorInfo* FindGPIOSectorByAngle(const int32_t* angle) const = 0;  // 15
  /// 0 when the SectorIndex is in use, else 1.
  virtual int32_t AddGPIOSector(const GPIOSectorInfo* info) = 0;  // 16
  virtual int32_t ClearGPIOSectors() = 0;                         // 17
  /// By SectorIndex, ascending.
  virtual int32_t SortGPIOSectors() = 0;  // 18

  /// Divides readings from 0 to `adcRange` and the circle evenly. Empty for a count below
  /// 1 or above 1,048,576.
  virtual const ADCSectorInfo* BuildADCSectors(const int32_t* adcSectorCount,
                                               const int32_t* adcRange, int32_t* count) = 0;  // 19
  virtual const ADCSectorInfo* GetADCSectors(int32_t* count) const = 0;                       // 20
  virtual const ADCSectorInfo* GetADCSectorAt(const int32_t* index) const = 0;                // 21
  /// The first entry whose range holds the angle.
  virtual const ADCSectorInfo* FindADCSectorByAngle(const int32_t* angle) const = 0;  // 22
  /// 0 when the SectorIndex is in use, else 1.
  virtual int32_t AddADCSector(const ADCSectorInfo* info) = 0;  // 23
  virtual int32_t ClearADCSectors() = 0;                        // 24
  /// By SectorIndex, ascending.
  virtual int32_t SortADCSectors() = 0;  // 25

  virtual const int32_t* GetServoPins(int32_t* count) const = 0;  // 26
  virtual int32_t HasServoPin(const int32_t* pin) const = 0;      // 27
  /// 0 when the pin is there already, else 1.
  virtual int32_t AddServoPin(const int32_t* pin) = 0;  // 28
  virtual int32_t ClearServoPins() = 0;                 // 29
  virtual int32_t SortServoPins() = 0;                  // 30

  /// The level that turns a servo to the angle; 255 outside 0 to 360.
  virtual uint8_t AngleToServoLevel(const int32_t* angle) const = 0;  // 31

  virtual ~I_VeloraMotorModeMgr() = default;  // 32 and 33
};

}  // namespace velora
