// The tables beside a stream, held against what the stream does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "audio/inspect/Checker.h"
#include "audio/inspect/FileWindow.h"
#include "audio/inspect/Layouts.h"
#include "audio/inspect/StreamWalker.h"

namespace velora {

/// The silence records as the stream should follow them.
///
/// A save cuts the sound at the regions. Two things move the cuts by a sample: a
/// part that had to grow to an even length takes its last sample from the next
/// part; and a gap of one sample ahead of a region goes into no part at all, so
/// that all later positions in the stream are one less than in the sound.
class SilencePlan {
 public:
  /// Takes the records in file order. `offset` is that of the first one.
  SilencePlan(std::vector<layout::SilenceRecord> records, uint64_t offset)
      : records_(std::move(records)), offset_(offset) {}

  /// Checks the records against each other and against the sound's length. False
  /// when they are in no order that a plan could follow: then nothing else here
  /// is to be asked.
  bool CheckOrder(uint64_t sampleCount, Checker& checker);

  /// Position in the sound of a position in the stream. Positions must not go
  /// back from call to call.
  uint64_t ToSound(uint64_t position);

  /// Gaps of one sample in the whole sound.
  uint64_t GapCount() const { return gaps_.size(); }

  /// A stretch of the stream that is silence, or is not; in stream order, without
  /// holes. Faults where that contradicts the records.
  void OnSilence(const StreamCommand& command, Checker& checker);
  void OnSound(const StreamCommand& command, Checker& checker);

  /// Faults for regions behind the stream's last sample.
  void Finish(uint64_t length, Checker& checker);

 private:
  /// In stream positions, both ends included; the core is silent however the
  /// cuts moved.
  struct Region {
    uint64_t first = 0;
    uint64_t last = 0;
    uint64_t coreFirst = 0;
    uint64_t coreLast = 0;
    bool HasCore() const { return coreFirst <= coreLast; }
  };

  void FindRegions();
  bool MayStartLate() const;

  std::vector<layout::SilenceRecord> records_;
  uint64_t offset_;
  std::vector<uint64_t> gaps_;  // positions in the sound
  std::vector<Region> regions_;
  size_t gapsPassed_ = 0;
  size_t silenceNext_ = 0;  // first region that does not end before the silence told so far
  size_t soundNext_ = 0;    // the same for the sound told so far
  CommandKind beforeKind_ = CommandKind::kEnd;  // of the command told last
  uint32_t beforeLength_ = 0;
};

/// The event records, met in the order of the events in the stream.
///
/// An event stands at the end of a command. A frame may end up to a short frame's
/// length less one sample before the event's position; raw samples end on it;
/// silence may end one sample off. Where events crowd, each takes at least two
/// samples and the later ones come late.
class EventMatcher {
 public:
  /// `offset` is that of the first record. `rawOnly`: the stream carries the events
  /// of silence alone.
  EventMatcher(std::vector<layout::EventRecord> records, uint64_t offset, uint32_t shortFrame,
               bool rawOnly)
      : records_(std::move(records)), offset_(offset), shortFrame_(shortFrame), rawOnly_(rawOnly) {}

  /// An event whose command's last sample is sample `last` of the sound.
  void OnEvent(const StreamCommand& command, uint64_t last, Checker& checker);

  /// The command that closes a stream whose plane data came to no end.
  void OnPlaneEnd();

  /// Faults for records that the stream should have carried: those below `end`, the
  /// length of the sound, unless events crowd there.
  void Finish(uint64_t end, Checker& checker);

 private:
  bool Fits(const StreamCommand& command, uint64_t last, uint64_t wanted) const;
  bool WordFits(size_t index, const StreamCommand& command) const;
  void FindInSilence(const StreamCommand& command, uint64_t last, Checker& checker);
  void CheckPosition(const StreamCommand& command, uint64_t last, Checker& checker);
  void FaultMissing(size_t index, Checker& checker) const;
  uint64_t OffsetOf(size_t index) const { return offset_ + index * sizeof(layout::EventRecord); }

  std::vector<layout::EventRecord> records_;
  uint64_t offset_;
  uint32_t shortFrame_;
  bool rawOnly_;
  size_t next_ = 0;
  bool any_ = false;       // an event was met
  uint64_t previous_ = 0;  // its place in the sound
  size_t lost_ = 0;        // searches without a find
};

/// Checks that the plane blocks of a stream agree on the bits each port group uses.
class PlaneCheck {
 public:
  void OnEvent(FileWindow& window, const CommandEvent& event, Checker& checker);

 private:
  static constexpr size_t kGroups = 4;
  uint8_t used_[kGroups] = {};
  bool known_[kGroups] = {};
};

}  // namespace velora
