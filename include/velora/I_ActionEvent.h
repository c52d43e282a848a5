// A numbered action at a position in a sound, and a region of silence.
#pragma once

#include <cstdint>

namespace velora {

/// An action event. It keeps the position it was given, in milliseconds or in
/// samples, and derives the other one from the sample rate; so its place survives
/// a change of the rate in the unit in which it was set.
///
/// Owned by the event manager it stands in. Setting a position does not move the
/// event in the manager's order: to move one, remove it and add it again.
///
/// The order of the operations is the contract. 16 operations, 17 raw slots: the
/// destructor takes two.
class I_ActionEvent {
 public:
  /// Slot 0. Unique in the list that took the event last; a find operation of
  /// the manager gives the events it finds new ids.
  virtual uint32_t GetId() const = 0;

  /// Slots 1 and 2. The number of the action; -1 when none was set.
  virtual int32_t GetType() const = 0;
  virtual void SetType(int32_t type) = 0;

  /// Slots 3 and 4. Milliseconds, cut to whole ones when derived; 0 when they
  /// cannot be derived because the rate is 0. Setting makes them the master.
  virtual uint32_t GetTimeMs() const = 0;
  virtual void SetTimeMs(uint32_t milliseconds) = 0;

  /// Slots 5 and 6. Free text; the pointer stays valid until the next SetText.
  /// Null sets the empty text.
  virtual const char* GetText() const = 0;
  virtual void SetText(const char* text) = 0;

  /// Slots 7 and 8. The parameter of the action.
  virtual int32_t GetParam() const = 0;
  virtual void SetParam(int32_t param) = 0;

  /// Slots 9 and 10. Samples, cut to whole ones when derived. Setting makes them
  /// the master.
  virtual uint32_t GetSample() const = 0;
  virtual void SetSample(uint32_t sample) = 0;

  /// Slots 11 and 12. Samples per second.
  virtual uint32_t GetSampleRate() const = 0;
  virtual void SetSampleRate(uint32_t rate) = 0;

  /// Slots 13 and 14. A number for the owner of the sound, not used here.
  virtual uint32_t GetExtra() const = 0;
  virtual void SetExtra(uint32_t extra) = 0;

  /// Slots 15 and 16.
  virtual ~I_ActionEvent() = default;
};

/// A region that is to be silent. Owned by the event manager it stands in;
/// SetStart does not move it in the manager's order.
///
/// The order of the operations is the contract. Eight operations, nine raw slots:
/// the destructor takes two.
class I_ActionSilenceRegion {
 public:
  /// Slot 0.
  virtual uint32_t GetId() const = 0;

  /// Slots 1 and 2. The first frame.
  virtual void SetStart(uint32_t start) = 0;
  virtual uint32_t GetStart() const = 0;

  /// Slots 3 and 4. Frames; 0 stands for a length that nobody stated and counts
  /// as one frame where a length is needed.
  virtual void SetLength(uint32_t length) = 0;
  virtual uint32_t GetLength() const = 0;

  /// Slots 5 and 6. A number for the owner of the sound, not used here.
  virtual void SetExtra(uint32_t extra) = 0;
  virtual uint32_t GetExtra() const = 0;

  /// Slots 7 and 8.
  virtual ~I_ActionSilenceRegion() = default;
};

}  // namespace velora
