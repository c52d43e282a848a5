// How samples, silence and events become the commands of a stream.
#include <algorithm>
#include <string>

#include "audio/WaveFileUtil/MpmFile.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr uint16_t kRest = 2047;   // where the output comes home to behind the sound
constexpr unsigned kLeastRun = 2;  // samples of a raw command, and of silence to an event
constexpr unsigned kGroupCodes = 8;
constexpr unsigned kGroupBytes = 5;

/// Of `count` samples, those that frames take; fewer than a short frame are left.
uint32_t FramedSamples(uint32_t count, const MpmTraits& traits) {
  return count - (count % traits.longFrame) % traits.shortFrame;
}

StreamCode WithEvent(StreamCode code, bool present) {
  return present ? static_cast<StreamCode>(static_cast<uint8_t>(code) + 1) : code;
}

void SkipEventsBefore(uint64_t position, StreamEventCursor& events) {
  while (events.index < events.records.size() && events.records[events.index].position < position) {
    ++events.index;
  }
}

/// 8 signs in a byte, then the magnitudes two a byte, the earlier in the low nibble.
void PutGroup(std::span<const uint8_t, kGroupCodes> codes, std::span<std::byte, kGroupBytes> out) {
  unsigned signs = 0;
  for (unsigned i = 0; i < kGroupCodes; ++i) signs |= static_cast<unsigned>(codes[i] >> 7) << i;
  out[0] = static_cast<std::byte>(signs);
  const auto magnitude = [&codes](unsigned i) {
    const int code = static_cast<int8_t>(codes[i]);
    return static_cast<unsigned>(code < 0 ? -code : code) & 15u;
  };
  for (unsigned i = 0; i < kGroupCodes; i += 2) {
    out[1 + i / 2] = static_cast<std::byte>(magnitude(i) | magnitude(i + 1) << 4);
  }
}

}  // namespace

// --- the plan ------------------------------------------------------------------

Status C_MpmFile::RunPlan(std::span<const uint16_t> samples, std::span<const PlanSegment> plan,
                          StreamEventCursor& events, Sinks& sinks) {
  const auto count = static_cast<uint32_t>(samples.size());
  uint16_t previous = traits_.padValue;
  carry_ = 0;
  for (const PlanSegment& segment : plan) {
    if (carry_ >= segment.length) {
      carry_ -= segment.length;
      continue;
    }
    const uint32_t start = segment.start + carry_;
    const uint32_t length = segment.length - carry_;
    carry_ = 0;
    switch (segment.kind) {
      case SegmentKind::kCoded: {
        const uint32_t granule = traits_.regionGranule;
        const uint32_t grown = (length + granule - 1) / granule * granule;
        const uint32_t taken = std::min(grown, count - start);
        const Result<uint32_t> beyond =
            EncodeRegion(samples, start, taken, previous, events, sinks);
        if (!beyond) return beyond.GetStatus();
        carry_ = taken - length + beyond.Value();
        break;
      }
      case SegmentKind::kRaw: {
        // Raw segments carry no events; the table alone keeps them.
        SkipEventsBefore(uint64_t{start} + length, events);
        const bool last = start + length == count;
        if (length == 1 && last) break;
        carry_ = length == 1 ? 1 : 0;
        EncodeRaw(samples.subspan(start, length + carry_), previous, {}, sinks);
        break;
      }
      case SegmentKind::kSilence: {
        const bool odd = length % 2 != 0 && start + length < count;
        const uint32_t even = length + (odd ? 1 : 0);
        carry_ = (odd ? 1 : 0) + EmitSilence(start, even, previous, events, sinks);
        break;
      }
    }
  }
  // Events that crowded in at the very end have no samples left to stand on.
  if (events.index < events.records.size() && events.records[events.index].position < count) {
    EmitSilence(count, 0, previous, events, sinks);
  }
  WriteEnd(sinks.stream);
  return {};
}

// --- coded regions ---------------------------------------------------------------

Result<uint32_t> C_MpmFile::EncodeRegion(std::span<const uint16_t> samples, uint32_t start,
                                         uint32_t length, uint16_t& previous,
                                         StreamEventCursor& events, Sinks& sinks) {
  const std::unique_ptr<C_MDPCMEncDec> codec = CreateCodec();
  const uint64_t end = uint64_t{start} + length;
  uint64_t cursor = start;

  // Writes the samples from the cursor on in frames, or raw when they fill none.
  const auto write = [&](uint32_t n, const StreamEvent& event) -> Status {
    const uint32_t framed = FramedSamples(n, traits_);
    if (framed == 0) {
      cursor += EncodeShortRun(samples, cursor, n, end, previous, event, sinks);
      return {};
    }
    const auto run = samples.subspan(static_cast<size_t>(cursor), framed);
    cursor += framed;
    return EncodeFrames(*codec, run, previous, event, sinks);
  };

  for (; events.index < events.records.size(); ++events.index) {
    const uint64_t position = events.records[events.index].position;
    if (position >= end) break;
    const uint64_t at = std::max(position, cursor);
    const StreamEvent event = GetEvent(events.records, events.index);
    if (Status status = write(static_cast<uint32_t>(at - cursor + 1), event); !status) {
      return status;
    }
  }
  while (cursor < end) {
    if (Status status = write(static_cast<uint32_t>(end - cursor), {}); !status) return status;
  }
  return static_cast<uint32_t>(cursor - end);
}

/// Past the region's end stands the pad, behind the sound the way home to silence.
uint16_t C_MpmFile::SampleAt(std::span<const uint16_t> samples, uint64_t at,
                             uint64_t regionEnd) const {
  if (at < std::min<uint64_t>(regionEnd, samples.size())) return samples[static_cast<size_t>(at)];
  if (at < samples.size()) return traits_.padValue;
  if (at == samples.size()) return static_cast<uint16_t>((samples.back() + kRest) / 2);
  return kRest;
}

/// Writes `length` samples raw, made at least two. Returns how many it wrote.
uint32_t C_MpmFile::EncodeShortRun(std::span<const uint16_t> samples, uint64_t start,
                                   uint32_t length, uint64_t regionEnd, uint16_t& previous,
                                   const StreamEvent& event, Sinks& sinks) {
  std::array<uint16_t, 256> run;
  const uint32_t count = std::max(length, kLeastRun);
  for (uint32_t i = 0; i < count; ++i) run[i] = SampleAt(samples, start + i, regionEnd);
  EncodeRaw(std::span(run).first(count), previous, event, sinks);
  return count;
}

std::unique_ptr<C_MDPCMEncDec> C_MpmFile::CreateCodec() const {
  return std::make_unique<C_MDPCMEncDec>(traits_.avoidZeroHeader, 16);
}

StreamEvent C_MpmFile::GetEvent(std::span<const MpmEventRecord> records, size_t index) const {
  if (index >= records.size()) return {};
  return {true, EventWord(records[index].action, records[index].parameter), index};
}

uint16_t C_MpmFile::GetSampleBefore(std::span<const uint16_t> samples, size_t index) const {
  return samples[index];
}

unsigned C_MpmFile::GetFrameCodes(StreamCode code) const {
  switch (code) {
    case StreamCode::kShortFrame:
    case StreamCode::kShortFrameEvent:
      return traits_.shortFrame;
    case StreamCode::kLongFrame:
    case StreamCode::kLongFrameEvent:
      return traits_.longFrame;
    default:
      return 0;
  }
}

Status C_MpmFile::EncodeFrames(C_MDPCMEncDec& codec, std::span<const uint16_t> samples,
                               uint16_t& previous, const StreamEvent& event, Sinks& sinks) {
  const unsigned longFrame = traits_.longFrame;
  const unsigned shortFrame = traits_.shortFrame;
  codes_.resize(codec.GetRequiredSize(longFrame, shortFrame, samples.size()));
  const size_t size =
      codec.Encode(longFrame, shortFrame, samples, codes_, MdpcmPadding::kHold, previous);
  const std::span<const uint8_t> stream = std::span(codes_).first(size);

  decoded_.resize(samples.size() + 1);
  decoded_[0] = previous;
  const std::span<uint16_t> decoded = std::span(decoded_).subspan(1);
  const Result<size_t> written = codec.Decode(longFrame, shortFrame, stream, decoded, previous);
  if (!written) return written.GetStatus();

  const size_t frames = size_t{codec.GetLongFrameCount()} + codec.GetShortFrameCount();
  const size_t eventFrame = traits_.eventOnLastFrame ? frames - 1 : 0;
  size_t at = 0;
  size_t sample = 0;
  for (size_t frame = 0; frame < frames; ++frame) {
    const uint8_t header = stream[at];
    const StreamCode plain = (header & 1) != 0 ? StreamCode::kLongFrame : StreamCode::kShortFrame;
    const StreamEvent here = frame == eventFrame ? event : StreamEvent{};
    const StreamCode code = WithEvent(plain, here.present);
    const unsigned codes = GetFrameCodes(code);
    WriteFrame(stream.subspan(at + 1, codes), GetSampleBefore(decoded_, sample), header >> 1, code,
               here, sinks.stream);
    at += 1 + codes;
    sample += codes;
  }
  sinks.decoded.PutWords(decoded.first(written.Value()));
  previous = decoded_.back();
  return {};
}

void C_MpmFile::WriteFrame(std::span<const uint8_t> codes, uint16_t before, unsigned row,
                           StreamCode code, const StreamEvent& event, ByteSink& stream) {
  const size_t groups = codes.size() / kGroupCodes;
  const std::span<std::byte> out = stream.Extend(2 + groups * kGroupBytes);
  out[0] = static_cast<std::byte>(row << 4 | MapCommand(code));
  out[1] = static_cast<std::byte>(before >> 4);
  for (size_t group = 0; group < groups; ++group) {
    PutGroup(codes.subspan(group * kGroupCodes).first<kGroupCodes>(),
             out.subspan(2 + group * kGroupBytes).first<kGroupBytes>());
  }
  if (event.present) WriteEvent(event, stream);
}

// --- raw samples -------------------------------------------------------------------

void C_MpmFile::EncodeRaw(std::span<const uint16_t> samples, uint16_t& previous,
                          const StreamEvent& event, Sinks& sinks) {
  if (samples.empty()) return;
  previous = samples.back();
  while (!samples.empty()) {
    size_t taken = std::min<size_t>(samples.size(), traits_.rawLimit);
    // No command of a single sample stays over.
    if (samples.size() - taken == 1) --taken;
    const bool last = taken == samples.size();
    const StreamEvent here = last ? event : StreamEvent{};
    WriteRaw(samples.first(taken), WithEvent(StreamCode::kRaw, here.present), here, sinks.stream);
    sinks.decoded.PutWords(samples.first(taken));
    samples = samples.subspan(taken);
  }
}

void C_MpmFile::WriteRaw(std::span<const uint16_t> samples, StreamCode code,
                         const StreamEvent& event, ByteSink& stream) {
  stream.Put8(MapCommand(code));
  stream.Put8(static_cast<uint8_t>(samples.front() >> 4));
  stream.Put16(static_cast<unsigned>(samples.size() - 1));
  const std::span<std::byte> rest = stream.Extend(samples.size() - 1);
  for (size_t i = 0; i < rest.size(); ++i) rest[i] = static_cast<std::byte>(samples[i + 1] >> 4);
  if (event.present) WriteEvent(event, stream);
}

// --- silence -------------------------------------------------------------------------

uint32_t C_MpmFile::EmitSilence(uint32_t start, uint32_t length, uint16_t previous,
                                StreamEventCursor& events, Sinks& sinks) {
  const uint64_t end = uint64_t{start} + length;
  uint64_t cursor = start;
  const auto run = [&](uint64_t samples, const StreamEvent& event) {
    cursor += samples;
    sinks.decoded.PutWordRun(previous, static_cast<size_t>(samples) * traits_.channels);
    for (; samples > traits_.maxRun; samples -= traits_.maxRun) {
      WriteSilenceCommand(StreamCode::kSilence, traits_.maxRun, {}, sinks.stream);
    }
    WriteSilenceCommand(WithEvent(StreamCode::kSilence, event.present),
                        static_cast<uint32_t>(samples), event, sinks.stream);
  };

  for (; events.index < events.records.size(); ++events.index) {
    const uint64_t position = events.records[events.index].position;
    if (position >= end) break;
    // The distance to an event is even and at least two; what it is too long the next
    // distance gives back, since it counts from the cursor.
    const uint64_t distance = position < cursor ? kLeastRun : position + 1 - cursor;
    run(std::max<uint64_t>(distance + distance % 2, kLeastRun),
        GetEvent(events.records, events.index));
  }
  if (cursor < end) run(end - cursor, {});
  return static_cast<uint32_t>(cursor > end ? cursor - end : 0);
}

void C_MpmFile::WriteSilenceCommand(StreamCode code, uint32_t length, const StreamEvent& event,
                                    ByteSink& stream) {
  stream.Put8(MapCommand(code));
  stream.Put16(length);
  if (event.present) WriteEvent(event, stream);
}

// --- events and the end ----------------------------------------------------------------

void C_MpmFile::WriteEvent(const StreamEvent& event, ByteSink& stream) { stream.Put16(event.word); }

void C_MpmFile::WriteEnd(ByteSink& stream) { stream.Put8(MapCommand(StreamCode::kEnd)); }

}  // namespace velora
