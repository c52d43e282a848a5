// Plain records and enumerations that several interfaces share.
//
// The records are byte-packed: they cross the boundary in arrays and by pointer.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velora {

/// How the events of a sound reach the chip.
enum ConvertMethod : int32_t {
  kConvertPwm = 1,           ///< plain events
  kConvertMipsFirstPwm = 2,  ///< PWM records that cost the chip the least time
  kConvertBam = 3,           ///< bit angle modulation planes
};

/// What drives an output pin.
enum PwmType : uint8_t {
  kPwmNone = 0,        ///< on and off only
  kPwmHardware = 1,    ///< a PWM unit of the chip
  kPwmFirmware = 2,    ///< the chip's program, on a timer
  kPwmIoExpander = 3,  ///< a PWM unit of an IO expander
};

/// Number of logical output pins of a project, and of channels of its events.
inline constexpr uint32_t kOutPinCount = 32;

#pragma pack(push, 1)

/// One point of a control curve or a gamma curve.
struct tagVLRCurveCtrlPoint {
  uint32_t Sample;  ///< position (x), in samples
  uint8_t Level;    ///< level there (y), 0 to 255

  bool operator==(const tagVLRCurveCtrlPoint&) const = default;
};

/// How the events of one logical output pin are converted.
struct PinRecord {
  uint8_t Convert;                   ///< non-zero: in use; 0: no other value of the pin counts
  uint8_t MapEventIndex;             ///< action number in the event stream, 253 - pin by custom
  uint16_t XResolution;              ///< PWM frequency
  uint8_t YResolution;               ///< output resolution, in levels
  uint8_t OutputLevels;              ///< derived from the PWM types, see ComputeOutputLevels
  uint32_t AdjustCurveCtrlPointNum;  ///< points of the gamma curve
  const tagVLRCurveCtrlPoint* AdjustCurveCtrlPoints;  ///< null without points
};

#pragma pack(pop)

static_assert(sizeof(tagVLRCurveCtrlPoint) == 5);
static_assert(offsetof(tagVLRCurveCtrlPoint, Level) == 4);

static_assert(sizeof(PinRecord) == 10 + sizeof(void*));
static_assert(offsetof(PinRecord, XResolution) == 2);
static_assert(offsetof(PinRecord, YResolution) == 4);
static_assert(offsetof(PinRecord, AdjustCurveCtrlPointNum) == 6);
static_assert(offsetof(PinRecord, AdjustCurveCtrlPoints) == 10);

}  // namespace velora
