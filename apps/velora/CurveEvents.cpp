#include "CurveEvents.h"

#include <algorithm>

namespace velora::cli {

std::vector<EventRow> MakePinEvents(std::span<const uint8_t> levels, uint32_t start, uint8_t pin,
                                    const EventGrid& grid) {
  std::vector<EventRow> events;
  for (uint64_t k = 0;; ++k) {
    const uint64_t index = k * grid.rate / grid.sampleFreq;
    if (index >= levels.size()) return events;
    const auto param =
        static_cast<int32_t>(static_cast<double>(levels[index] * grid.resolution) / 255 + 0.5);
    if (!events.empty() && events.back().param == param) continue;
    events.push_back({static_cast<uint32_t>(start + index), kPinActionBase - pin, param, {}});
  }
}

Result<std::vector<PinCourse>> MakePinCourses(std::span<const CurveLane> lanes, uint32_t rate) {
  std::vector<PinCourse> courses;
  for (const CurveLane& lane : lanes) {
    for (const CurveChannel& channel : lane.channels) {
      if (!channel.pin) continue;
      if (lane.sampleFreq > rate) {
        return Status::Error(lane.name + ": a sample frequency of " +
                             std::to_string(lane.sampleFreq) + " Hz passes the sound's rate of " +
                             std::to_string(rate));
      }
      const auto overlaps = [&](const PinCourse& other) {
        return other.pin == *channel.pin && other.start <= lane.end && lane.start <= other.end;
      };
      if (std::ranges::any_of(courses, overlaps)) {
        return Status::Error(lane.ColumnName(channel) + ": another curve sets pin " +
                             std::to_string(*channel.pin) + " at the same time");
      }
      courses.push_back({*channel.pin, lane.start, lane.end,
                         MakePinEvents(channel.levels, lane.start, *channel.pin,
                                       {rate, lane.sampleFreq, lane.resolution})});
    }
  }
  if (courses.empty())
    return Status::Error("no curve has a pin; --pin or the key \"pin\" names it");
  return courses;
}

PinChange ApplyPinCourses(std::span<const PinCourse> courses, EventList& list) {
  PinChange change;
  for (const PinCourse& course : courses) {
    change.replaced += std::erase_if(list.events, [&course](const EventRow& row) {
      return row.type == kPinActionBase - course.pin && row.sample >= course.start &&
             row.sample <= course.end;
    });
  }
  for (const PinCourse& course : courses) {
    change.added += course.events.size();
    list.events.insert(list.events.end(), course.events.begin(), course.events.end());
  }
  return change;
}

}  // namespace velora::cli
