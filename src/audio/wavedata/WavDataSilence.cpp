// Finding silence, and turning regions and segments into each other.

#include <algorithm>
#include <array>
#include <utility>

#include "audio/wavedata/ProgressCallbackAgent.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr uint32_t kThresholdBits = 12;
constexpr size_t kGroups = 16;
constexpr size_t kBlockFrames = kGroups * kBandCount;

/// Sums of the channels whose mean counts as silent; both ends belong to the band.
struct Band {
  int64_t low;
  int64_t high;

  /// A mean m, cut toward zero, is silent from -threshold - 1 to threshold. The
  /// sums that give such a mean need no division.
  Band(uint32_t threshold, uint16_t resolution, int64_t channels) {
    int64_t scaled = threshold;
    if (resolution > kThresholdBits) scaled <<= resolution - kThresholdBits;
    if (resolution < kThresholdBits) scaled >>= kThresholdBits - resolution;
    low = -(scaled + 2) * channels + 1;
    high = (scaled + 1) * channels - 1;
  }

  bool IsOutside(int64_t sum) const { return sum < low || sum > high; }
};

/// Follows the frames of a range, told one by one or a group at a time, and writes
/// the stretches of silence.
class Stretches {
 public:
  Stretches(C_SilenceSegmentList& list, uint32_t minLength) : list_(list), min_(minLength) {}

  void Inside(uint32_t frame) {
    if (!silent_) begin_ = frame;
    silent_ = true;
  }
  void Outside(uint32_t frame) {
    if (silent_ && frame - begin_ >= min_) list_.Append(begin_, frame - 1);
    silent_ = false;
  }
  void Tell(uint32_t frame, bool outside) {
    if (outside) {
      Outside(frame);
    } else {
      Inside(frame);
    }
  }
  /// Silence that reaches the end counts however short it is, if it is more than
  /// one frame.
  void Finish(uint32_t last) {
    if (silent_ && begin_ < last) list_.Append(begin_, last);
  }

 private:
  C_SilenceSegmentList& list_;
  uint32_t min_;
  bool silent_ = false;
  uint32_t begin_ = 0;
};

/// Looks at blocks of a range. Groups that lie wholly in the band or wholly outside
/// are told as one; only in mixed ones each frame is looked at.
class SilenceScanner {
 public:
  SilenceScanner(const C_WavDataBuffer& buffer, const Band& band, uint16_t firstChannel,
                 uint16_t lastChannel, Stretches& stretches)
      : buffer_(buffer),
        band_(band),
        firstChannel_(firstChannel),
        lastChannel_(lastChannel),
        stretches_(stretches) {}

  /// At most kBlockFrames frames. Those that the block does not hold are silent.
  void Scan(uint32_t frame, size_t frames) {
    if (firstChannel_ == lastChannel_) {
      ScanChannel(frame, frames);
    } else {
      ScanSums(frame, frames);
    }
  }

 private:
  void ScanChannel(uint32_t frame, size_t frames) {
    const ConstSamples run = buffer_.Channel(frame, frames, firstChannel_);
    const size_t groups = run.count / kBandCount;
    std::array<uint8_t, kGroups> counts;
    CountOutside(run, buffer_.Format(), static_cast<int32_t>(band_.low),
                 static_cast<int32_t>(band_.high), {counts.data(), groups});
    for (size_t g = 0; g < groups; ++g) {
      TellGroup(frame, counts[g], [&] { return Slice(run, g * kBandCount, kBandCount); });
      frame += kBandCount;
    }
    const size_t rest = run.count % kBandCount;
    TellEach(frame, Slice(run, run.count - rest, rest));
    if (run.count < frames) stretches_.Inside(frame + static_cast<uint32_t>(rest));
  }

  static ConstSamples Slice(const ConstSamples& run, size_t from, size_t count) {
    return {run.data + from * run.stride, run.stride, count};
  }

  template <typename Mixed>
  void TellGroup(uint32_t frame, unsigned outside, Mixed mixed) {
    if (outside == 0) {
      stretches_.Inside(frame);
    } else if (outside == kBandCount) {
      stretches_.Outside(frame);
    } else {
      TellEach(frame, mixed());
    }
  }

  void TellEach(uint32_t frame, const ConstSamples& run) {
    std::array<int32_t, kBandCount> values;
    DecodeBlock(run, buffer_.Format(), values.data());
    for (size_t i = 0; i < run.count; ++i) stretches_.Tell(frame++, band_.IsOutside(values[i]));
  }

  void ScanSums(uint32_t frame, size_t frames) {
    std::array<int64_t, kBlockFrames> sums{};
    std::array<int32_t, kBlockFrames> values;
    for (uint32_t c = firstChannel_; c <= lastChannel_; ++c) {
      const ConstSamples run = buffer_.Channel(frame, frames, static_cast<uint16_t>(c));
      DecodeBlock(run, buffer_.Format(), values.data());
      for (size_t i = 0; i < run.count; ++i) sums[i] += values[i];
    }
    for (size_t i = 0; i < frames; ++i) stretches_.Tell(frame++, band_.IsOutside(sums[i]));
  }

  const C_WavDataBuffer& buffer_;
  Band band_;
  uint16_t firstChannel_;
  uint16_t lastChannel_;
  Stretches& stretches_;
};

}  // namespace

C_SilenceSegmentList* C_WavData::DetectSilence(uint32_t threshold, uint32_t minLength,
                                               I_ProgressCallback* progress) {
  const uint32_t frames = info_.GetFrameCount();
  if (frames == 0) return nullptr;
  return DetectSilenceRange(threshold, minLength, 0, frames - 1, 0,
                            static_cast<uint16_t>(info_.GetChannels() - 1), progress);
}

C_SilenceSegmentList* C_WavData::DetectSilenceRange(uint32_t threshold, uint32_t minLength,
                                                    uint32_t first, uint32_t last,
                                                    uint16_t firstChannel, uint16_t lastChannel,
                                                    I_ProgressCallback* progress) {
  if (threshold >= 1u << (kThresholdBits - 1) || first >= last || last >= info_.GetFrameCount() ||
      firstChannel > lastChannel || lastChannel >= info_.GetChannels()) {
    return nullptr;
  }
  detected_.Clear();
  const uint64_t frames = uint64_t{last} - first + 1;
  const Band band(threshold, info_.GetResolutionBits(), lastChannel - firstChannel + 1);
  Stretches stretches(detected_, minLength);
  SilenceScanner scanner(buffer_, band, firstChannel, lastChannel, stretches);
  ProgressMeter meter(progress, frames);
  for (uint64_t done = 0; done < frames; done += kBlockFrames) {
    const auto count = std::min<uint64_t>(kBlockFrames, frames - done);
    scanner.Scan(static_cast<uint32_t>(first + done), static_cast<size_t>(count));
    meter.Advance(count);
  }
  stretches.Finish(last);
  return &detected_;
}

void C_WavData::ClearSilence() {
  const uint64_t frames = FrameCount();
  for (const C_SilenceSegment* segment : detected_) {
    const uint64_t start = segment->GetStart();
    const uint64_t behind = std::min<uint64_t>(uint64_t{segment->GetEnd()} + 1, frames);
    if (start < behind) {
      FillBlock(buffer_.AllChannels(start, behind - start), buffer_.Format(), 0);
    }
  }
}

void C_WavData::SetSilenceSegments(I_CUList<I_SilenceSegment>* segments) {
  if (segments == &detected_) return;
  detected_.Clear();
  CopySegments(segments, &detected_);
}

void C_WavData::CopySegments(I_CUList<I_SilenceSegment>* segments, C_SilenceSegmentList* target) {
  if (segments && target) target->AppendCopies(*segments);
}

uint32_t C_WavData::GetSilenceRegionCount() {
  return static_cast<uint32_t>(eventMgr_.Regions().size());
}

void C_WavData::BuildSegments(std::span<C_ActionSilenceRegion* const> regions,
                              C_SilenceSegmentList& target, bool merge) const {
  target.Clear();
  const int64_t frames = info_.GetFrameCount();
  int64_t low = 0;
  int64_t high = 0;
  for (const C_ActionSilenceRegion* region : regions) {
    const int64_t start = region->GetStart();
    const int64_t length = std::max<int64_t>(region->GetLength(), 1);
    const int64_t end = std::min(start + length - 1, frames - 1);
    if (start > end) continue;  // behind the sound
    const bool apart = (start < low || start > high + 1) && (end + 1 < low || end > high);
    if (!merge || target.IsEmpty() || apart) {
      low = start;
      high = end;
      target.Append(static_cast<uint32_t>(low), static_cast<uint32_t>(high));
    } else {
      low = std::min(low, start);
      high = std::max(high, end);
      target.Items().back()->Set(static_cast<uint32_t>(low), static_cast<uint32_t>(high));
    }
  }
}

C_SilenceSegmentList* C_WavData::MergeSilenceRegions() {
  if (eventMgr_.Regions().empty()) return nullptr;
  BuildSegments(eventMgr_.Regions(), merged_, true);
  return &merged_;
}

void C_WavData::MergeSegmentLists(I_CUList<I_SilenceSegment>* a, I_CUList<I_SilenceSegment>* b,
                                  C_SilenceSegmentList* target, int32_t active) {
  if (!active || !target || (!a && !b)) return;
  C_ActionEventMgr sorted;
  for (I_CUList<I_SilenceSegment>* list : {a, b}) {
    const int32_t count = list ? list->GetCount() : 0;
    for (int32_t i = 0; i < count; ++i) {
      const I_SilenceSegment* segment = list->GetAt(i);
      sorted.AddSilenceRegion(segment->GetStart(), segment->GetLength());
    }
  }
  BuildSegments(sorted.Regions(), *target, true);
}

void C_WavData::SetSilenceRegions(I_CUList<I_SilenceSegment>* segments) {
  eventMgr_.ClearSilenceRegions();
  const int32_t count = segments ? segments->GetCount() : 0;
  for (int32_t i = 0; i < count; ++i) {
    const I_SilenceSegment* segment = segments->GetAt(i);
    eventMgr_.AddSilenceRegion(segment->GetStart(), segment->GetLength());
  }
}

}  // namespace velora
