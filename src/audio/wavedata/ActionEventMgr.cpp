#include "audio/wavedata/ActionEventMgr.h"

#include <memory>
#include <new>
#include <vector>

namespace velora {
namespace {

/// Where an item with this position goes in an ascending list. Behind everything
/// when nothing is later; otherwise ahead of the first later item, or of the item
/// of the same position that the search happens to hit.
template <typename Item, typename Position>
size_t FindPlace(std::span<Item* const> items, uint32_t key, Position positionOf) {
  if (items.empty() || key >= positionOf(*items.back())) return items.size();
  size_t low = 0;
  size_t high = items.size() - 1;
  while (low != high) {
    const size_t middle = (low + high) / 2;
    const uint32_t position = positionOf(*items[middle]);
    if (key == position) return middle;
    if (key < position) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

uint32_t TimeOf(const C_ActionEvent& event) { return event.GetTimeMs(); }
uint32_t SampleOf(const C_ActionEvent& event) { return event.GetSample(); }
uint32_t StartOf(const C_ActionSilenceRegion& region) { return region.GetStart(); }

/// Hands the item over to the list; null when it cannot be put there.
template <typename List, typename Item>
Item* InsertOwned(List& list, size_t place, std::unique_ptr<Item> item) {
  if (!item || !list.InsertAt(static_cast<int32_t>(place), item.get())) return nullptr;
  return item.release();
}

template <typename List>
bool RemoveOwned(List& list, uint32_t id) {
  auto* const item = list.Detach(list.IndexOfID(id));
  delete item;
  return item != nullptr;
}

template <typename List>
void ClearOwned(List& list, List& found) {
  for (auto* item : list) delete item;
  list.Clear();
  found.Clear();
}

/// Empties `found` and puts the items that fit into it, which gives them new ids.
template <typename List, typename Fits>
List* Collect(const List& list, List& found, Fits fits) {
  found.Clear();
  for (auto* item : list) {
    if (fits(*item)) found.Add(item);
  }
  return &found;
}

/// The items as they are now: adding copies to the list itself must not go on for
/// ever.
template <typename Item>
std::vector<Item*> Snapshot(I_CUList<Item>& list) {
  std::vector<Item*> items(static_cast<size_t>(list.GetCount()));
  for (size_t i = 0; i < items.size(); ++i) items[i] = list.GetAt(static_cast<int32_t>(i));
  return items;
}

}  // namespace

C_ActionEventMgr::C_ActionEventMgr(std::span<C_ActionEvent* const> events) {
  events_.Reserve(events.size());
  for (const C_ActionEvent* event : events) events_.Add(new C_ActionEvent(*event));
}

C_ActionEventMgr::~C_ActionEventMgr() {
  ClearEvents();
  ClearSilenceRegions();
}

C_ActionEvent* C_ActionEventMgr::NewEvent(int32_t type, const char* text, int32_t param) const {
  auto* const event = new (std::nothrow) C_ActionEvent;
  if (!event) return nullptr;
  event->SetType(type);
  event->SetText(text);
  event->SetParam(param);
  event->SetSampleRate(sampleRate_);
  return event;
}

C_ActionEvent* C_ActionEventMgr::AddEventAtMs(int32_t type, uint32_t milliseconds, const char* text,
                                              int32_t param) {
  std::unique_ptr<C_ActionEvent> event(NewEvent(type, text, param));
  if (event) event->SetTimeMs(milliseconds);
  const size_t place = FindPlace(Events(), milliseconds, TimeOf);
  return InsertOwned(events_, place, std::move(event));
}

C_ActionEvent* C_ActionEventMgr::AddEventAtSample(int32_t type, uint32_t sample, const char* text,
                                                  int32_t param) {
  std::unique_ptr<C_ActionEvent> event(NewEvent(type, text, param));
  if (event) event->SetSample(sample);
  const auto events = Events();
  size_t place = FindPlace(events, sample, SampleOf);
  if (place < events.size()) {
    while (place > 0 && events[place - 1]->GetSample() == sample) --place;
  }
  return InsertOwned(events_, place, std::move(event));
}

int32_t C_ActionEventMgr::RemoveEvent(uint32_t id) { return RemoveOwned(events_, id); }

void C_ActionEventMgr::ClearEvents() { ClearOwned(events_, foundEvents_); }

C_ActionEvent* C_ActionEventMgr::GetEventById(uint32_t id) {
  return events_.ItemAt(events_.IndexOfID(id));
}

I_CUList<I_ActionEvent>* C_ActionEventMgr::FindEventsByTimeMs(uint32_t milliseconds) {
  return Collect(events_, foundEvents_,
                 [&](const C_ActionEvent& event) { return event.GetTimeMs() == milliseconds; });
}

I_CUList<I_ActionEvent>* C_ActionEventMgr::FindEventsByType(int32_t type) {
  return Collect(events_, foundEvents_,
                 [&](const C_ActionEvent& event) { return event.GetType() == type; });
}

I_CUList<I_ActionEvent>* C_ActionEventMgr::FindEventsBySample(uint32_t sample) {
  return Collect(events_, foundEvents_,
                 [&](const C_ActionEvent& event) { return event.GetSample() == sample; });
}

int32_t C_ActionEventMgr::AddEvents(I_CUList<I_ActionEvent>* events) {
  if (!events) return 0;
  for (const I_ActionEvent* event : Snapshot(*events)) {
    if (!AddEventAtMs(event->GetType(), event->GetTimeMs(), event->GetText(), event->GetParam())) {
      return 0;
    }
  }
  return 1;
}

void C_ActionEventMgr::SetSampleRate(uint32_t rate) {
  if (rate == sampleRate_) return;
  sampleRate_ = rate;
  for (C_ActionEvent* event : events_) event->SetSampleRate(rate);
}

C_ActionSilenceRegion* C_ActionEventMgr::AddSilenceRegion(uint32_t start, uint32_t length) {
  std::unique_ptr<C_ActionSilenceRegion> region(new (std::nothrow)
                                                    C_ActionSilenceRegion(start, length));
  return InsertOwned(regions_, FindPlace(Regions(), start, StartOf), std::move(region));
}

int32_t C_ActionEventMgr::RemoveSilenceRegion(uint32_t id) { return RemoveOwned(regions_, id); }

void C_ActionEventMgr::ClearSilenceRegions() { ClearOwned(regions_, foundRegions_); }

C_ActionSilenceRegion* C_ActionEventMgr::GetSilenceRegionById(uint32_t id) {
  return regions_.ItemAt(regions_.IndexOfID(id));
}

I_CUList<I_ActionSilenceRegion>* C_ActionEventMgr::FindSilenceRegionsByStart(uint32_t start) {
  return Collect(regions_, foundRegions_,
                 [&](const C_ActionSilenceRegion& region) { return region.GetStart() == start; });
}

int32_t C_ActionEventMgr::AddSilenceRegions(I_CUList<I_ActionSilenceRegion>* regions) {
  if (!regions) return 0;
  for (const I_ActionSilenceRegion* region : Snapshot(*regions)) {
    if (!AddSilenceRegion(region->GetStart(), region->GetLength())) return 0;
  }
  return 1;
}

}  // namespace velora
