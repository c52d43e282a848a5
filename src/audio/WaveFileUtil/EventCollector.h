// Events and silence regions on their way from a file into a sound.
#pragma once

#include <cstdint>
#include <vector>

namespace velora {

class C_ActionEventMgr;

/// Collects events and regions in the order of a file and adds them in their final
/// order, so that each goes to the end of the manager's lists: a file that lists them
/// in any order takes n log n time. The lists are as if each had been added at once.
class EventCollector {
 public:
  void AddEvent(int32_t type, uint32_t sample, int32_t param);
  void AddRegion(uint32_t start, uint32_t length);

  /// Hands everything over and is empty again.
  void AddTo(C_ActionEventMgr& manager);

 private:
  struct Event {
    int32_t type;
    uint32_t sample;
    int32_t param;
    int64_t rank;  ///< among the events of one sample
  };
  struct Region {
    uint32_t start;
    uint32_t length;
  };

  std::vector<Event> events_;
  std::vector<Region> regions_;
  uint32_t latest_ = 0;
};

}  // namespace velora
