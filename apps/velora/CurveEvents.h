// From the levels of an output to the events of a sound.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "CurveKinds.h"
#include "EventText.h"

namespace velora::cli {

/// The action that sets an output, by custom.
inline constexpr int32_t kPinActionBase = 253;

/// How often and how finely an output is set.
struct EventGrid {
  uint32_t rate;        ///< samples a second, not 0
  uint32_t sampleFreq;  ///< levels taken a second, 1 to the rate
  uint32_t resolution;  ///< parameter for level 255, 1 to 255
};

/// Level k is taken k x rate / sampleFreq samples behind the start, cut to a whole
/// sample. There is an event for the first one, and wherever the parameter
/// level x resolution / 255, rounded, is another than before.
std::vector<EventRow> MakePinEvents(std::span<const uint8_t> levels, uint32_t start, uint8_t pin,
                                    const EventGrid& grid);

/// The events of all channels that have a pin, and which events they stand for.
struct PinCourse {
  uint8_t pin;
  uint32_t start;
  uint32_t end;  ///< inclusive
  std::vector<EventRow> events;
};

/// An error when no channel has a pin, when two courses of a pin overlap, and when
/// a sample frequency passes the rate.
Result<std::vector<PinCourse>> MakePinCourses(std::span<const CurveLane> lanes, uint32_t rate);

struct PinChange {
  size_t added = 0;
  size_t replaced = 0;
};

/// Takes out the events that set a course's pin within its range, and adds the
/// course's own.
PinChange ApplyPinCourses(std::span<const PinCourse> courses, EventList& list);

}  // namespace velora::cli
