// The action events and silence regions of a sound.
#pragma once

#include <cstdint>

#include <velora/I_ActionEvent.h>
#include <velora/I_CUList.h>

namespace velora {

/// Two lists, each in ascending order of position: events and silence regions.
/// The manager owns all of them; a pointer stays valid until its event or region
/// is removed. Embedded in the sound.
///
/// The order of the operations is the contract. 20 operations, 21 raw slots: the
/// destructor takes two.
class I_ActionEventMgr {
 public:
  /// Slot 0. Adds an event whose master position is the time. Behind all others
  /// if none is later; among events of the same time its place is not defined.
  /// `text` is copied and may be null. Null when memory is short.
  virtual I_ActionEvent* AddEventAtMs(int32_t type, uint32_t milliseconds, const char* text,
                                      int32_t param) = 0;

  /// Slot 1. Deletes the event. 0 for an unknown id.
  virtual int32_t RemoveEvent(uint32_t id) = 0;

  /// Slot 2.
  virtual void ClearEvents() = 0;

  /// Slot 3. Null for an unknown id.
  virtual I_ActionEvent* GetEventById(uint32_t id) = 0;

  /// Slots 4 and 5. The events at exactly this time or of this type. The list is
  /// the manager's, valid until its next find operation, and the events found
  /// have new ids from then on.
  virtual I_CUList<I_ActionEvent>* FindEventsByTimeMs(uint32_t milliseconds) = 0;
  virtual I_CUList<I_ActionEvent>* FindEventsByType(int32_t type) = 0;

  /// Slot 6. All events in order; the list is the manager's.
  virtual I_CUList<I_ActionEvent>* GetEvents() = 0;

  /// Slot 7. Adds a copy of each event by AddEventAtMs: positions become whole
  /// milliseconds. 0 for null and at the first event that cannot be added.
  virtual int32_t AddEvents(I_CUList<I_ActionEvent>* events) = 0;

  /// Slot 8. Adds an event whose master position is the sample. Behind all others
  /// if none is later, otherwise ahead of all events at the same sample. Null
  /// when memory is short.
  virtual I_ActionEvent* AddEventAtSample(int32_t type, uint32_t sample, const char* text,
                                          int32_t param) = 0;

  /// Slot 9. As slots 4 and 5, for the events at exactly this sample.
  virtual I_CUList<I_ActionEvent>* FindEventsBySample(uint32_t sample) = 0;

  /// Slots 10 and 11. Samples per second, passed on to every event, present and
  /// future. The order of the lists is not checked again.
  virtual void SetSampleRate(uint32_t rate) = 0;
  virtual uint32_t GetSampleRate() const = 0;

  /// Slot 12. Null when memory is short.
  virtual I_ActionSilenceRegion* AddSilenceRegion(uint32_t start, uint32_t length) = 0;

  /// Slot 13. 0 for an unknown id.
  virtual int32_t RemoveSilenceRegion(uint32_t id) = 0;

  /// Slot 14.
  virtual void ClearSilenceRegions() = 0;

  /// Slot 15. Null for an unknown id.
  virtual I_ActionSilenceRegion* GetSilenceRegionById(uint32_t id) = 0;

  /// Slot 16. The regions with exactly this start. The list is the manager's and
  /// valid until the next call; the regions found have new ids from then on.
  virtual I_CUList<I_ActionSilenceRegion>* FindSilenceRegionsByStart(uint32_t start) = 0;

  /// Slot 17. All regions in order; the list is the manager's.
  virtual I_CUList<I_ActionSilenceRegion>* GetSilenceRegions() = 0;

  /// Slot 18. Adds a copy of each region. 0 for null and at the first region that
  /// cannot be added.
  virtual int32_t AddSilenceRegions(I_CUList<I_ActionSilenceRegion>* regions) = 0;

  /// Slots 19 and 20.
  virtual ~I_ActionEventMgr() = default;
};

}  // namespace velora
