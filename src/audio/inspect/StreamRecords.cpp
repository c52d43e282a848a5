#include "audio/inspect/StreamRecords.h"

#include <algorithm>
#include <string>

#include "audio/inspect/ChipFrame.h"

namespace velora {

namespace {

using layout::EventRecord;
using layout::SilenceRecord;

std::string Stretch(uint64_t first, uint64_t last) {
  return "samples " + std::to_string(first) + " to " + std::to_string(last);
}

/// Samples by which an event may come late where nothing crowds it: a cut that
/// moved, and the rounding to an even distance.
constexpr uint64_t kLate = 3;
/// An event takes two samples, and the cut before it may have moved by one.
constexpr uint64_t kCrowded = 3;
constexpr size_t kMostLost = 100;

/// The shortest command with an event: where events crowd at the end of a part they
/// go on in such commands, past the part's end as far as it takes.
bool IsCrowded(const StreamCommand& command) {
  return command.event.present && command.length == 2;
}

}  // namespace

bool SilencePlan::CheckOrder(uint64_t sampleCount, Checker& checker) {
  uint64_t reached = 0;
  bool good = true;
  for (size_t i = 0; i < records_.size(); ++i) {
    const SilenceRecord& record = records_[i];
    RecordCheck check(checker, "silence " + std::to_string(i), layout::kSilenceRecordLayout,
                      BytesOf(record), offset_ + i * sizeof(SilenceRecord));
    good &= check.Require(record.start >= reached, "start",
                          std::to_string(reached) + " or more, behind the region before");
    good &= check.Require(record.end >= record.start, "end", "at least the start");
    good &= check.Require(record.end < sampleCount, "end",
                          "below the sample count " + std::to_string(sampleCount));
    reached = uint64_t{record.end} + 1;
  }
  checker.Report().silenceRegions = records_.size();
  if (good) FindRegions();
  return good;
}

void SilencePlan::FindRegions() {
  uint64_t reached = 0;
  for (const SilenceRecord& record : records_) {
    if (record.start == reached + 1) gaps_.push_back(reached);
    reached = uint64_t{record.end} + 1;
    const uint64_t shift = gaps_.size();
    Region region;
    region.first = record.start - shift;
    region.last = record.end - shift + 1;
    region.coreFirst = region.first + 1;
    region.coreLast = record.end - shift;
    regions_.push_back(region);
  }
}

uint64_t SilencePlan::ToSound(uint64_t position) {
  while (gapsPassed_ < gaps_.size() && gaps_[gapsPassed_] <= position + gapsPassed_) ++gapsPassed_;
  return position + gapsPassed_;
}

/// A region loses its first sample to silence of odd length before it, or to a raw
/// run of one sample that had to become two.
bool SilencePlan::MayStartLate() const {
  return beforeKind_ == CommandKind::kSilence ||
         (beforeKind_ == CommandKind::kRaw && beforeLength_ == 2);
}

void SilencePlan::OnSilence(const StreamCommand& command, Checker& checker) {
  uint64_t at = command.position;
  const uint64_t end = command.position + command.length;
  const bool late = MayStartLate();
  beforeKind_ = command.kind;
  beforeLength_ = command.length;
  if (IsCrowded(command)) return;
  while (at < end) {
    while (silenceNext_ < regions_.size() && regions_[silenceNext_].last < at) ++silenceNext_;
    const bool told = silenceNext_ < regions_.size() &&
                      (late || at != command.position || at != regions_[silenceNext_].first + 1);
    if (!told || regions_[silenceNext_].first > at) {
      checker.Fault(command.fileOffset, "silence command", "a silence record for it",
                    Stretch(at, end - 1) + " of the stream in none");
      return;
    }
    at = regions_[silenceNext_].last + 1;
  }
  checker.CountChecks(1);
}

void SilencePlan::OnSound(const StreamCommand& command, Checker& checker) {
  const uint64_t end = command.position + command.length;
  beforeKind_ = command.kind;
  beforeLength_ = command.length;
  while (soundNext_ < regions_.size() &&
         (!regions_[soundNext_].HasCore() || regions_[soundNext_].coreLast < command.position)) {
    ++soundNext_;
  }
  checker.CountChecks(1);
  if (IsCrowded(command)) return;
  if (soundNext_ == regions_.size() || regions_[soundNext_].coreFirst >= end) return;
  const SilenceRecord& record = records_[soundNext_];
  checker.Fault(offset_ + soundNext_ * sizeof(SilenceRecord),
                "silence " + std::to_string(soundNext_),
                "silence commands for " + Stretch(record.start, record.end),
                std::string(CommandKindName(command.kind)) + " command at sample " +
                    std::to_string(command.position) + " of the stream");
  ++soundNext_;
}

void SilencePlan::Finish(uint64_t length, Checker& checker) {
  for (size_t i = 0; i < regions_.size(); ++i) {
    if (!regions_[i].HasCore() || regions_[i].coreLast < length) continue;
    checker.Fault(offset_ + i * sizeof(SilenceRecord), "silence " + std::to_string(i),
                  "inside the " + std::to_string(length) + " samples of the stream",
                  Stretch(records_[i].start, records_[i].end));
  }
}

bool EventMatcher::Fits(const StreamCommand& command, uint64_t last, uint64_t wanted) const {
  const uint64_t early = wanted > last ? wanted - last : 0;
  const uint64_t late = last > wanted ? last - wanted : 0;
  switch (command.kind) {
    case CommandKind::kShortFrame:
    case CommandKind::kLongFrame:
      return late == 0 && early < shortFrame_;
    case CommandKind::kRaw:
      if (early > 0 || (late > 0 && command.length > 2)) return false;
      break;
    default:
      if (early > 1) return false;
      break;
  }
  return late <= kLate || (any_ && last <= previous_ + kCrowded);
}

bool EventMatcher::WordFits(size_t index, const StreamCommand& command) const {
  return index < records_.size() && EventWordOf(records_[index]) == command.event.word;
}

void EventMatcher::FaultMissing(size_t index, Checker& checker) const {
  checker.Fault(OffsetOf(index), "event " + std::to_string(index), "an event in the stream",
                "none there");
}

void EventMatcher::OnEvent(const StreamCommand& command, uint64_t last, Checker& checker) {
  if (rawOnly_) {
    FindInSilence(command, last, checker);
    return;
  }
  if (next_ >= records_.size()) {
    checker.Fault(command.event.offset, "event in the stream", "none, the records are used up",
                  std::to_string(command.event.action));
    return;
  }
  if (!WordFits(next_, command) && WordFits(next_ + 1, command)) FaultMissing(next_++, checker);
  checker.Equal(command.event.offset, "event word in the stream", EventWordOf(records_[next_]),
                command.event.word);
  CheckPosition(command, last, checker);
  ++next_;
  any_ = true;
  previous_ = last;
}

void EventMatcher::CheckPosition(const StreamCommand& command, uint64_t last, Checker& checker) {
  const EventRecord& record = records_[next_];
  RecordCheck check(checker, "event " + std::to_string(next_), layout::kEventRecordLayout,
                    BytesOf(record), OffsetOf(next_));
  check.Require(Fits(command, last, record.position), "position",
                "near sample " + std::to_string(last) + ", where the stream has it");
}

void EventMatcher::FindInSilence(const StreamCommand& command, uint64_t last, Checker& checker) {
  if (lost_ >= kMostLost) return;
  for (size_t i = next_; i < records_.size(); ++i) {
    if (!WordFits(i, command) || !Fits(command, last, records_[i].position)) continue;
    checker.CountChecks(1);
    next_ = i + 1;
    any_ = true;
    previous_ = last;
    return;
  }
  ++lost_;
  checker.Fault(command.event.offset, "event in the stream",
                "an event record at sample " + std::to_string(last), "none");
}

void EventMatcher::OnPlaneEnd() {
  if (next_ + 1 == records_.size() && records_[next_].action == kLastPlaneAction) ++next_;
}

void EventMatcher::Finish(uint64_t end, Checker& checker) {
  if (rawOnly_) return;
  // No room was left for what comes behind the sound or crowds at its end.
  const bool crowded = any_ && previous_ + kCrowded >= end;
  for (size_t i = next_; i < records_.size(); ++i) {
    checker.CountChecks(1);
    if (records_[i].position < end && !crowded) FaultMissing(i, checker);
  }
}

void PlaneCheck::OnEvent(FileWindow& window, const CommandEvent& event, Checker& checker) {
  if (event.planesSize == 0) return;
  constexpr size_t kGroupSize = 9;
  const std::span<const std::byte> block = window.Get(event.offset + 2, event.planesSize);
  if (block.size() < event.planesSize) return;
  const auto mask = std::to_integer<unsigned>(block[1]);
  size_t at = 2;
  for (size_t group = 0; group < kGroups; ++group) {
    if ((mask >> group & 1) == 0) continue;
    const auto used = std::to_integer<uint8_t>(block[at]);
    if (known_[group]) {
      checker.Equal(event.offset + 2 + at, "used bits of port group " + std::to_string(group),
                    used_[group], used);
    }
    used_[group] = used;
    known_[group] = true;
    at += kGroupSize;
  }
}

}  // namespace velora
