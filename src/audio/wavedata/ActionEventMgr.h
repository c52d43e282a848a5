// The owner of a sound's action events and silence regions.
#pragma once

#include <cstdint>
#include <span>

#include <velora/I_ActionEventMgr.h>
#include "audio/wavedata/ActionEvent.h"
#include "foundation/Lists.h"

namespace velora {

/// Keeps both lists in ascending order. Ascending input is appended in constant
/// time; anything else costs a binary search and a shift of the list's tail.
class C_ActionEventMgr final : public I_ActionEventMgr {
 public:
  C_ActionEventMgr() = default;

  /// Copies the events in the order they have, with their own rates and fresh ids.
  /// Regions there are none, and the manager's rate is 0.
  explicit C_ActionEventMgr(std::span<C_ActionEvent* const> events);
  ~C_ActionEventMgr() override;
  C_ActionEventMgr(const C_ActionEventMgr&) = delete;
  C_ActionEventMgr& operator=(const C_ActionEventMgr&) = delete;

  C_ActionEvent* AddEventAtMs(int32_t type, uint32_t milliseconds, const char* text,
                              int32_t param) override;
  int32_t RemoveEvent(uint32_t id) override;
  void ClearEvents() override;
  C_ActionEvent* GetEventById(uint32_t id) override;
  I_CUList<I_ActionEvent>* FindEventsByTimeMs(uint32_t milliseconds) override;
  I_CUList<I_ActionEvent>* FindEventsByType(int32_t type) override;
  I_CUList<I_ActionEvent>* GetEvents() override { return &events_; }
  int32_t AddEvents(I_CUList<I_ActionEvent>* events) override;
  C_ActionEvent* AddEventAtSample(int32_t type, uint32_t sample, const char* text,
                                  int32_t param) override;
  I_CUList<I_ActionEvent>* FindEventsBySample(uint32_t sample) override;
  void SetSampleRate(uint32_t rate) override;
  uint32_t GetSampleRate() const override { return sampleRate_; }
  C_ActionSilenceRegion* AddSilenceRegion(uint32_t start, uint32_t length) override;
  int32_t RemoveSilenceRegion(uint32_t id) override;
  void ClearSilenceRegions() override;
  C_ActionSilenceRegion* GetSilenceRegionById(uint32_t id) override;
  I_CUList<I_ActionSilenceRegion>* FindSilenceRegionsByStart(uint32_t start) override;
  I_CUList<I_ActionSilenceRegion>* GetSilenceRegions() override { return &regions_; }
  int32_t AddSilenceRegions(I_CUList<I_ActionSilenceRegion>* regions) override;

  /// In order, for walking. Valid until an event or region is added or removed.
  std::span<C_ActionEvent* const> Events() const { return events_.Items(); }
  std::span<C_ActionSilenceRegion* const> Regions() const { return regions_.Items(); }

 private:
  using EventList = C_CUList<C_ActionEvent, I_ActionEvent, kNotOwning>;
  using RegionList = C_CUList<C_ActionSilenceRegion, I_ActionSilenceRegion, kNotOwning>;

  /// At no position yet; null when memory is short.
  C_ActionEvent* NewEvent(int32_t type, const char* text, int32_t param) const;

  EventList events_;
  EventList foundEvents_;
  RegionList regions_;
  uint32_t sampleRate_ = 0;
  RegionList foundRegions_;
};

}  // namespace velora
