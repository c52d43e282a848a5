#include "audio/WaveFileUtil/MpmFormatBase.h"

#include <algorithm>
#include <string>

#include "audio/WaveFileUtil/SrcFile.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

std::string Quote(const FileTag& tag) {
  std::string text;
  for (const char c : tag) text += c >= 0x20 && c < 0x7F ? c : '.';
  return "\"" + text + "\"";
}

template <typename T>
Status ReadRecordAt(const InputFile& file, uint64_t offset, T& record) {
  return file.ReadExactly(offset, std::as_writable_bytes(std::span(&record, 1)));
}

/// Reads `count` records of type T in pieces, handing each to `take`, until the file
/// ends. Returns whether all were there.
template <typename T, typename Take>
Result<bool> ReadRecords(const InputFile& file, uint64_t offset, uint64_t count, Take take) {
  constexpr size_t kPiece = 4096;
  std::vector<T> piece(static_cast<size_t>(std::min<uint64_t>(count, kPiece)));
  while (count > 0) {
    const std::span<T> wanted(piece.data(),
                              static_cast<size_t>(std::min<uint64_t>(count, piece.size())));
    const Result<size_t> got = file.ReadAt(offset, std::as_writable_bytes(wanted));
    if (!got) return got.GetStatus();
    const size_t whole = got.Value() / sizeof(T);
    for (const T& record : wanted.first(whole)) take(record);
    if (whole < wanted.size()) return false;
    offset += wanted.size_bytes();
    count -= wanted.size();
  }
  return true;
}

}  // namespace

template <typename SourceBase>
Status T_MpmFormatBase<SourceBase>::OnReadHeader(const Path& path, bool load, uint32_t*) {
  if (Status status = this->OpenInput(path); !status) return status;
  const InputFile& file = this->Input();
  MpmHeader header;
  if (Status status = ReadRecordAt(file, 0, header); !status) {
    return Status::Error("header: " + status.Message());
  }
  const FileTag tag = MakeTag(identity_.tag);
  if (header.tag != tag) {
    return Status::Error("header: the tag is " + Quote(header.tag) + ", not " + Quote(tag));
  }
  MpmBlock events;
  if (Status status = ReadRecordAt(file, header.eventBlockOffset, events); !status) {
    return Status::Error("event block: " + status.Message());
  }
  if (events.tag != MakeTag("MCMD")) {
    return Status::Error("event block at offset " + std::to_string(header.eventBlockOffset) +
                         ": the tag is " + Quote(events.tag) + ", not \"MCMD\"");
  }

  header_ = header;
  uint32_t source = this->GetSourceKind();
  if (load) {
    this->BeginSound(header.sampleRate, header.sampleCount * 2, header.channels, header.sampleBits,
                     16, false);
    this->SetDataOffset(header.samplesOffset);
    source = identity_.sourceKind;
  }
  this->SetKinds(source, identity_.targetKind);
  return {};
}

template <typename SourceBase>
Status T_MpmFormatBase<SourceBase>::OnReadSamples() {
  if (this->GetSampleView() == SampleView::kDecoded) return ReadStoredSamples();
  const Status status =
      this->ReadSamplesAt(header_.samplesOffset, uint64_t{header_.sampleCount} * 2);
  return status ? status : Status::Error("source samples: " + status.Message());
}

template <typename SourceBase>
Status T_MpmFormatBase<SourceBase>::ReadStoredSamples() {
  const Status status =
      this->ReadSamplesAt(header_.decodedOffset, uint64_t{header_.decodedCount} * 2);
  return status ? status : Status::Error("decoded stream: " + status.Message());
}

template <typename SourceBase>
Status T_MpmFormatBase<SourceBase>::OnReadEvents() {
  StateSizeOfView();
  ReadCompressedData();

  MpmBlock block;
  if (Status status = ReadRecordAt(this->Input(), header_.eventBlockOffset, block); !status) {
    return Status::Error("event block: " + status.Message());
  }
  EventCollector found;
  const Result<bool> whole = ReadRecords<MpmEventRecord>(
      this->Input(), block.offset, block.size, [&found](const MpmEventRecord& record) {
        found.AddEvent(record.action, record.position, record.parameter);
      });
  Status status = whole.GetStatus();
  if (whole && whole.Value()) {
    status = ReadSilence(block.offset + uint64_t{block.size} * sizeof(MpmEventRecord), found);
  }
  C_ActionEventMgr& manager = *this->Sound()->GetEventMgr();
  manager.SetSampleRate(this->Sound()->Info().GetSampleRate());
  found.AddTo(manager);
  return status;
}

template <typename SourceBase>
Status T_MpmFormatBase<SourceBase>::ReadSilence(uint64_t offset, EventCollector& found) {
  SilenceBlock block;
  if (!ReadRecordAt(this->Input(), offset, block) || block.tag != MakeTag("KSIL")) return {};

  C_SilenceSegmentList segments;
  const Result<bool> whole = ReadRecords<SilenceRecord>(
      this->Input(), block.offset, block.count, [&](const SilenceRecord& record) {
        segments.Append(record.start, record.end);
        if (record.end >= record.start) {
          found.AddRegion(record.start, record.end - record.start + 1);
        }
      });
  this->Sound()->SetSilenceSegments(&segments);
  return whole.GetStatus();
}

/// Without samples the format still states the size of those that the view would give.
template <typename SourceBase>
void T_MpmFormatBase<SourceBase>::StateSizeOfView() {
  C_WavData& sound = *this->Sound();
  if (!sound.Bytes().empty() || this->GetSampleView() == SampleView::kSource) return;
  const C_WavInfo& info = sound.Info();
  sound.SetFormat(info.GetSampleRate(), header_.decodedCount * 2, info.GetChannels(),
                  info.GetResolutionBits(), info.GetContainerBits(), info.IsSigned());
}

template <typename SourceBase>
void T_MpmFormatBase<SourceBase>::ReadCompressedData() {
  compressedData_.clear();
  MpmBlock block;
  if (!ReadRecordAt(this->Input(), header_.streamBlockOffset, block)) return;
  if (uint64_t{block.offset} + block.size > this->Input().Size()) return;
  compressedData_.resize(block.size);
  if (!this->Input().ReadExactly(block.offset, compressedData_)) compressedData_.clear();
}

template class T_MpmFormatBase<C_SrcFile>;

}  // namespace velora
