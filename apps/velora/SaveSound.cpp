#include "SaveSound.h"

#include <algorithm>

#include "SoundFile.h"
#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/WaveFileUtil/MpmFormatBase.h"
#include "audio/WaveFileUtil/RiffFile.h"
#include "audio/WaveFileUtil/SrcFile.h"
#include "audio/WaveFileUtil/WavFileFormat.h"
#include "audio/wavedata/WavData.h"
#include "platform/Directory.h"

namespace velora::cli {
namespace {

constexpr uint32_t kWaveId = 2;
constexpr uint32_t kRawMethod = 5;      // of a chip file's header
constexpr uint32_t kRawCodecParam = 1;  // the write setting that gives it

// What a wave reader takes, and what nobody misses.
constexpr std::string_view kKeptChunks[] = {"fmt ", "data", "cue ", "smpl",
                                            "KIOD", "VLRW", "MIOW", "VLRI"};
constexpr std::string_view kFillerChunks[] = {"fact", "JUNK", "PAD ", "FLLR"};

Status WriteSound(C_WavData& sound, uint32_t formatId, const Path& path) {
  const std::unique_ptr<C_WavFile> file = MakeWavFile(formatId);
  if (!file) return Status::Error("the format cannot be written");
  file->AttachWavData(&sound);
  Status status = file->SaveFile(path);
  file->DetachWavData();
  return status;
}

void AddLoss(std::vector<std::string>& losses, size_t count, const char* noun) {
  if (count) losses.push_back(Counted(count, noun));
}

/// Metadata that only a wave file has a place for.
void AddWaveMetadata(C_WavData& sound, std::vector<std::string>& losses) {
  const auto isNote = [](const C_WavDataListInfo::Label& label) {
    return ParseLabel(label.Text(), kRoundBrackets, nullptr).empty() &&
           ParseLabel(label.Text(), kSquareBrackets, nullptr).empty() &&
           !IsSilenceLabel(label.Text());
  };
  const auto& labels = sound.ListInfo().Labels();
  AddLoss(losses, static_cast<size_t>(std::ranges::count_if(labels, isNote)),
          "label without an event");
  AddLoss(losses, sound.SamplerInfo().Loops().size(), "loop");
  AddLoss(losses, sound.ExtraChunks().Items().size(), "private chunk");
}

/// Chunks of a wave file that no reader here takes, so that no writer has them.
void AddForeignChunks(const Path& path, std::vector<std::string>& losses) {
  C_RiffFile riff;
  if (!riff.Open(path, "WAVE")) return;
  for (C_RiffChunk* chunk : riff.Chunks().Items()) {
    const auto has = [chunk](std::string_view tag) { return chunk->HasTag(tag); };
    if (std::ranges::any_of(kKeptChunks, has) || std::ranges::any_of(kFillerChunks, has)) continue;
    if (chunk->HasTag("LIST")) {
      const auto content = chunk->Content();
      constexpr std::string_view kForm = "adtl";
      if (content && content->size() >= kForm.size() &&
          std::equal(kForm.begin(), kForm.end(), content->begin(),
                     [](char a, std::byte b) { return static_cast<std::byte>(a) == b; })) {
        continue;
      }
    }
    losses.push_back("the chunk " + QuotedTag(chunk->Tag()));
  }
}

}  // namespace

Status SaveSound(C_WavData& sound, uint32_t formatId, const std::string& target,
                 const SaveOptions& options) {
  if (target == "-") {
    const Result<TemporaryFile> spool = TemporaryFile::Create("velora-stdout-");
    if (!spool) return spool.GetStatus();
    if (Status status = WriteSound(sound, formatId, spool->GetPath()); !status) return status;
    return CopyToStandardOutput(spool->GetPath());
  }
  return SaveAtomically(
      Path::Native(target),
      [&](const Path& temporary) { return WriteSound(sound, formatId, temporary); }, options);
}

std::vector<std::string> ListDropped(const C_WavFile& file, const Path& path, uint32_t formatId) {
  C_WavData& sound = *file.Sound();
  std::vector<std::string> losses;
  if (const auto target = MakeWavFile(formatId)) losses = target->ListLosses(sound);
  if (formatId != kWaveId) AddWaveMetadata(sound, losses);
  if (file.GetSourceKind() == kWaveId) AddForeignChunks(path, losses);
  for (std::string& loss : losses) loss.insert(0, "not kept: ");
  return losses;
}

void KeepWriteSettings(const C_WavFile& file) {
  const auto* chip = dynamic_cast<const T_MpmFormatBase<C_SrcFile>*>(&file);
  if (!chip) return;
  const MpmHeader& header = chip->GetHeader();
  C_WriteWavParam& param = *file.Sound()->GetWriteParam();
  if (header.compressionMethod == kRawMethod) param.SetCodecParam(kRawCodecParam);
  const uint32_t rate = header.sampleRate;
  if ((header.silenceThreshold == 0 && header.silenceLength == 0) || rate == 0) return;
  // The header has the length times rate div 1000; the least number that gives it.
  const uint32_t scaled = uint32_t{header.silenceLength} * 1000;
  param.SetSilenceParams((scaled + rate - 1) / rate, header.silenceThreshold);
}

}  // namespace velora::cli
