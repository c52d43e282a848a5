// The steps of a save. What goes into the command stream is in MpmStream.cpp.
#include "audio/WaveFileUtil/MpmFile.h"

#include <algorithm>
#include <atomic>
#include <string>

#include "audio/wavedata/WavData.h"
#include "foundation/MessageBox.h"

namespace velora {
namespace {

constexpr MpmTraits kMpmTraits = [] {
  MpmTraits traits;
  traits.identity = {"KMPM", "KMDM", 6, 1};
  traits.avoidZeroHeader = true;
  return traits;
}();

constexpr uint32_t kDefaultThreshold = 1;
constexpr uint32_t kDefaultMinLength = 64;
constexpr uint16_t kLargestWord = 4095;
constexpr int kFirstTypeBeyondRecords = 257;

/// What a project can choose for its events.
enum ConvertMethod : int32_t { kPlainEvents = 1, kMipsFirstPwm = 2, kBam = 3 };

/// Shown once in a process, however many saves fail for it.
void ReportWrongMethod(I_WindowHost* owner, int32_t method) {
  static std::atomic_flag shown;
  if (shown.test_and_set()) return;
  ShowBox(owner,
          "Wrong Converting Method:" + std::to_string(method) +
              "(Src\\LibProject\\Audio\\WaveFileUtil\\MpmFile:" + std::to_string(__LINE__) + ")",
          "Error", kBoxOk | kBoxStop);
}

/// Ascending, without overlap and inside the sound, whatever a caller set.
std::vector<SilenceSpan> Tidy(std::vector<SilenceSpan> spans, uint32_t count) {
  std::ranges::sort(spans, {}, &SilenceSpan::start);
  std::vector<SilenceSpan> tidy;
  for (SilenceSpan span : spans) {
    if (span.start >= count) break;
    span.end = std::min(span.end, count - 1);
    if (!tidy.empty()) span.start = std::max(span.start, tidy.back().end + 1);
    if (span.start <= span.end) tidy.push_back(span);
  }
  return tidy;
}

/// An event exactly on a region's last sample takes that sample out of the region,
/// so that the event stays in a coded part.
void YieldLastSamples(std::vector<SilenceSpan>& silence, std::span<const MpmEventRecord> records) {
  std::vector<uint32_t> positions;
  positions.reserve(records.size());
  for (const MpmEventRecord& record : records) positions.push_back(record.position);
  std::ranges::sort(positions);
  std::erase_if(silence, [&positions](SilenceSpan& span) {
    if (!std::ranges::binary_search(positions, span.end)) return false;
    if (span.start == span.end) return true;
    --span.end;
    return false;
  });
}

}  // namespace

C_MpmFile::C_MpmFile() : C_MpmFile(kMpmTraits) {}
C_MpmFile::C_MpmFile(const MpmTraits& traits)
    : T_MpmFormatBase<C_SrcFile>(traits.identity), traits_(traits) {}

Status C_MpmFile::OnSave(const Path& path) {
  C_WavData& sound = *Sound();
  if (sound.Bytes().empty()) return Status::Error("there are no samples");

  Result<WavDataPtr> prepared = PrepareData(sound);
  if (!prepared) return prepared.GetStatus();
  C_WavData& data = *prepared.Value();
  if (Status status = CheckData(data); !status) return status;
  const std::span<uint16_t> samples = data.Words();
  const auto count = static_cast<uint32_t>(samples.size());

  Result<std::vector<MpmEventRecord>> records = BuildRecords(sound);
  if (!records) return records.GetStatus();
  std::vector<SilenceSpan> silence = Tidy(ChooseSilence(sound), count);
  YieldLastSamples(silence, records.Value());

  ApplyLve(samples.data(), count, 1);

  const bool raw = sound.WriteParam().GetCodecParam() == 1;
  const std::vector<PlanSegment> plan = MakePlan(silence, count, raw);
  Sinks sinks;
  StreamEventCursor events{records.Value(), 0};
  if (Status status = WriteBody(data, plan, events, sinks); !status) return status;
  return WriteFile(path, samples, sinks, records.Value(), silence);
}

Result<WavDataPtr> C_MpmFile::PrepareData(const C_WavData& sound) {
  // The treatments work on the prepared samples, so these are never the sound's own.
  WavDataPtr prepared(const_cast<C_WavData&>(sound).CreateConverted(12, 16, 0, nullptr));
  if (!prepared) return Status::Error("the sample format cannot be converted to 12 bits");
  for (uint16_t& word : prepared->Words()) word = std::min(word, kLargestWord);
  return prepared;
}

Status C_MpmFile::CheckData(const C_WavData& prepared) const {
  const C_WavInfo& info = prepared.Info();
  if (info.GetChannels() != traits_.channels) {
    return Status::Error("the format holds " + std::to_string(traits_.channels) +
                         " channel(s), the sound has " + std::to_string(info.GetChannels()));
  }
  if (info.GetSampleRate() == 0 || info.GetSampleRate() > 0xFFFF) {
    return Status::Error("the format states rates from 1 to 65535 Hz, the sound has " +
                         std::to_string(info.GetSampleRate()));
  }
  return {};
}

std::vector<SilenceSpan> C_MpmFile::ChooseSilence(C_WavData& sound) {
  const C_SilenceSegmentList* segments = sound.MergeSilenceRegions();
  if (!segments) {
    if (sound.SilenceSegments().empty()) {
      uint32_t minLength = kDefaultMinLength;
      uint32_t threshold = kDefaultThreshold;
      if (sound.WriteParam().HasSilenceParams()) {
        sound.WriteParam().GetSilenceParams(&minLength, &threshold);
      }
      sound.DetectSilence(threshold, minLength, nullptr);
    }
    segments = sound.GetSilenceSegments();
  }
  std::vector<SilenceSpan> spans;
  spans.reserve(segments->Items().size());
  for (const C_SilenceSegment* segment : segments->Items()) {
    spans.push_back({segment->GetStart(), segment->GetEnd()});
  }
  return spans;
}

Result<std::vector<MpmEventRecord>> C_MpmFile::BuildRecords(C_WavData& sound) {
  const int32_t method = sound.WriteParam().GetConvertMethod();
  if (method == kMipsFirstPwm || method == kBam) {
    return Status::Error("the project converts events by method " + std::to_string(method) +
                         ", which this version does not write yet");
  }
  if (method != kPlainEvents) {
    ReportWrongMethod(OwnerWindow(), method);
    return Status::Error("the project converts events by the unknown method " +
                         std::to_string(method));
  }
  std::vector<MpmEventRecord> records;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    if (event->GetType() >= kFirstTypeBeyondRecords) continue;
    records.push_back({event->GetSample(), static_cast<uint8_t>(event->GetType()),
                       static_cast<uint8_t>(event->GetParam())});
  }
  return records;
}

std::vector<PlanSegment> C_MpmFile::MakePlan(std::span<const SilenceSpan> silence, uint32_t count,
                                             bool raw) const {
  const SegmentKind sounding = raw ? SegmentKind::kRaw : SegmentKind::kCoded;
  std::vector<PlanSegment> plan;
  uint32_t reached = 0;
  for (const SilenceSpan& span : silence) {
    // A gap of a single sample is passed over.
    if (reached + 1 < span.start) plan.push_back({sounding, reached, span.start - reached});
    plan.push_back({SegmentKind::kSilence, span.start, span.end - span.start + 1});
    reached = span.end + 1;
  }
  if (reached < count) plan.push_back({sounding, reached, count - reached});
  return plan;
}

void C_MpmFile::WriteTempHeader(ByteSink& sink, uint32_t rate, uint32_t count) const {
  SourceHeader header;
  header.version = 0x0063;
  header.sampleRate = static_cast<uint16_t>(rate);
  header.bandLimit = BandLimit(rate);
  header.count = count;
  if (sink.Size() == 0) {
    sink.Put(header);
  } else {
    sink.Patch(0, header);
  }
}

void C_MpmFile::MakeHeaders(MpmHeader& header, MpmBlock& block, const C_WavData& prepared,
                            size_t events) {
  const uint32_t rate = prepared.Info().GetSampleRate();
  const C_WriteWavParam& param = prepared.WriteParam();
  header.tag = MakeTag(traits_.identity.tag);
  header.channels = traits_.channels;
  header.sampleRate = static_cast<uint16_t>(rate);
  header.bandLimit = BandLimit(rate);
  header.eventBlockSize = static_cast<uint32_t>(sizeof(MpmBlock) + events * sizeof(MpmEventRecord));
  header.sampleCount = static_cast<uint32_t>(prepared.Words().size());
  if (param.HasSilenceParams()) {
    uint32_t minLength = 0;
    uint32_t threshold = 0;
    param.GetSilenceParams(&minLength, &threshold);
    header.silenceThreshold = static_cast<uint16_t>(threshold);
    header.silenceLength = static_cast<uint16_t>(uint64_t{minLength} * rate / 1000);
  }
  header.compressionMethod = param.GetCodecParam() == 1 ? 5 : 4;
  block.tag = MakeTag("MFRM");
  block.offset = static_cast<uint32_t>(sizeof(MpmHeader) + sizeof(MpmBlock));
}

Status C_MpmFile::WriteBody(const C_WavData& prepared, std::span<const PlanSegment> plan,
                            StreamEventCursor& events, Sinks& sinks) {
  const std::span<const uint16_t> samples = prepared.Words();
  const uint32_t rate = prepared.Info().GetSampleRate();
  WriteTempHeader(sinks.decoded, rate, 0);
  sinks.decoded.Reserve(sizeof(SourceHeader) + samples.size_bytes() + kLargestWord);

  MpmHeader header;
  MpmBlock block;
  MakeHeaders(header, block, prepared, events.records.size());
  sinks.stream.Reserve(samples.size());
  sinks.stream.Put(header);
  sinks.stream.Put(block);
  if (Status status = RunPlan(samples, plan, events, sinks); !status) return status;

  const size_t decodedCount = (sinks.decoded.Size() - sizeof(SourceHeader)) / 2;
  WriteTempHeader(sinks.decoded, rate, static_cast<uint32_t>(decodedCount));

  const uint64_t streamEnd = sinks.stream.Size();
  const uint64_t samplesOffset = streamEnd + 2 * decodedCount;
  const uint64_t eventOffset = samplesOffset + samples.size_bytes();
  if (eventOffset + header.eventBlockSize > INT32_MAX) {
    return Status::Error("the file would pass 2 GB");
  }
  header.streamBlockSize = static_cast<uint32_t>(streamEnd - sizeof(MpmHeader));
  header.decodedOffset = static_cast<uint32_t>(streamEnd);
  header.decodedCount = static_cast<uint32_t>(decodedCount);
  header.samplesOffset = static_cast<uint32_t>(samplesOffset);
  header.eventBlockOffset = static_cast<uint32_t>(eventOffset);
  block.size = header.streamBlockSize - static_cast<uint32_t>(sizeof(MpmBlock));
  sinks.stream.Patch(0, header);
  sinks.stream.Patch(sizeof header, block);
  return {};
}

Status C_MpmFile::WriteFile(const Path& path, std::span<const uint16_t> samples, const Sinks& sinks,
                            std::span<const MpmEventRecord> records,
                            std::span<const SilenceSpan> silence) const {
  const std::span<const std::byte> decoded = sinks.decoded.Bytes().subspan(sizeof(SourceHeader));
  const uint64_t eventOffset = sinks.stream.Size() + decoded.size() + samples.size_bytes();
  ByteSink tail;
  MpmBlock events;
  events.tag = MakeTag("MCMD");
  events.offset = static_cast<uint32_t>(eventOffset + sizeof events);
  events.size = static_cast<uint32_t>(records.size());
  tail.Put(events);
  tail.PutBytes(std::as_bytes(records));
  SilenceBlock block;
  block.offset = static_cast<uint32_t>(eventOffset + tail.Size() + sizeof block);
  block.count = static_cast<uint32_t>(silence.size());
  tail.Put(block);
  for (const SilenceSpan& span : silence) tail.Put(SilenceRecord{span.start, span.end});

  MpmHeader header;
  std::memcpy(&header, sinks.stream.Bytes().data(), sizeof header);
  header.fileSize = static_cast<uint32_t>(eventOffset + tail.Size());

  Result<OutputFile> file = OutputFile::Create(path);
  if (!file) return file.GetStatus();
  const std::span<const std::byte> pieces[] = {std::as_bytes(std::span(&header, 1)),
                                               sinks.stream.Bytes().subspan(sizeof header), decoded,
                                               std::as_bytes(samples), tail.Bytes()};
  for (const std::span<const std::byte> piece : pieces) {
    if (Status status = file->Write(piece); !status) return status;
  }
  return file->Close();
}

std::vector<std::string> C_MpmFile::ListLosses(const C_WavData& sound) const {
  size_t beyond = 0;
  size_t cut = 0;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    if (event->GetType() >= kFirstTypeBeyondRecords) {
      ++beyond;
    } else if (event->GetType() != static_cast<uint8_t>(event->GetType()) ||
               event->GetParam() != static_cast<uint8_t>(event->GetParam())) {
      ++cut;
    }
  }
  std::vector<std::string> losses;
  if (beyond > 0) losses.push_back(std::to_string(beyond) + " events of type 257 and above");
  if (cut > 0) {
    losses.push_back("all but the low 8 bits of type and parameter of " + std::to_string(cut) +
                     " events");
  }
  return losses;
}

}  // namespace velora
