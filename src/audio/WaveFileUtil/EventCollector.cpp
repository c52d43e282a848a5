#include "audio/WaveFileUtil/EventCollector.h"

#include <algorithm>
#include <tuple>

#include "audio/wavedata/ActionEventMgr.h"

namespace velora {
namespace {

/// From this number on regions are sorted first, for shifting them one by one would
/// take minutes for a file made to that end. Only regions of one start that come out of
/// order can end up otherwise.
constexpr size_t kManyRegions = 4096;

}  // namespace

void EventCollector::AddEvent(int32_t type, uint32_t sample, int32_t param) {
  // Behind its equals when nothing later came before, else ahead of them.
  const int64_t number = static_cast<int64_t>(events_.size()) + 1;
  const bool behind = sample >= latest_;
  latest_ = std::max(latest_, sample);
  events_.push_back({type, sample, param, behind ? number : -number});
}

void EventCollector::AddRegion(uint32_t start, uint32_t length) {
  regions_.push_back({start, length});
}

void EventCollector::AddTo(C_ActionEventMgr& manager) {
  const auto before = [](const Event& a, const Event& b) {
    return std::tie(a.sample, a.rank) < std::tie(b.sample, b.rank);
  };
  if (!std::ranges::is_sorted(events_, before)) std::ranges::sort(events_, before);
  for (const Event& event : events_) {
    manager.AddEventAtSample(event.type, event.sample, "", event.param);
  }
  if (regions_.size() >= kManyRegions) std::ranges::stable_sort(regions_, {}, &Region::start);
  for (const Region& region : regions_) manager.AddSilenceRegion(region.start, region.length);
  *this = {};
}

}  // namespace velora
