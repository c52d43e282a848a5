// Writing a wave file.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "audio/WaveFileUtil/RiffFile.h"
#include "audio/WaveFileUtil/WavFile.h"
#include "audio/WaveFileUtil/WaveFormatRecord.h"
#include "audio/WaveFileUtil/WaveLabels.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr RiffTag kWaveForm{'W', 'A', 'V', 'E'};
constexpr RiffTag kFormatTag{'f', 'm', 't', ' '};
constexpr RiffTag kDataTag{'d', 'a', 't', 'a'};
constexpr RiffTag kCueTag{'c', 'u', 'e', ' '};
constexpr RiffTag kSamplerTag{'s', 'm', 'p', 'l'};
constexpr RiffTag kListTag{'L', 'I', 'S', 'T'};

struct SampleForm {
  uint16_t resolution;
  uint16_t container;
  bool isSigned;

  friend bool operator==(const SampleForm&, const SampleForm&) = default;
};

SampleForm FormOf(const C_WavInfo& info) {
  return {info.GetResolutionBits(), info.GetContainerBits(), info.IsSigned() != 0};
}

/// The form to write a sound in: the one asked for; else 12 bits, which wave readers do
/// not know, become 16, and everything else stays.
SampleForm FormToWrite(const C_WavData& sound) {
  const C_WriteWavParam& settings = sound.WriteParam();
  if (settings.HasTargetFormat()) {
    SampleForm form{};
    uint32_t isSigned = 0;
    settings.GetTargetFormat(&form.resolution, &form.container, &isSigned);
    form.isSigned = isSigned != 0;
    return form;
  }
  const SampleForm form = FormOf(sound.Info());
  return form.resolution == 12 ? SampleForm{16, 16, true} : form;
}

void AddFormat(C_WavData& sound, C_RiffChunkList& chunks) {
  WaveFormatRecord record;
  sound.GetWavInfo()->GetWaveFormat(&record);
  PcmFormat format;
  format.formatTag = record.FormatTag;
  format.channels = record.Channels;
  format.rate = record.SampleRate;
  format.bytesPerSecond = record.BytesPerSecond;
  format.blockAlign = record.BlockAlign;
  format.bits = record.BitsPerSample;
  chunks.AddChunk(kFormatTag, sizeof format)->SetData(&format);
}

/// A chunk that a chunk info fills.
template <typename Info>
Status AddInfo(const Info& info, const RiffTag& tag, C_RiffChunkList& chunks) {
  C_RiffChunk* chunk = chunks.AddChunk(tag, info.GetChunkSize());
  if (info.Write(chunk)) return {};
  return Status::Error("chunk " + QuotedTag(tag) + " of " + std::to_string(chunk->GetSize()) +
                       " bytes cannot be made");
}

/// What the file keeps beside format and samples.
Status AddMetadata(C_WavData& sound, C_RiffChunkList& chunks) {
  if (sound.CueInfo().HasPoints()) {
    if (Status status = AddInfo(sound.CueInfo(), kCueTag, chunks); !status) return status;
  }
  if (sound.SamplerInfo().HasLoops()) {
    if (Status status = AddInfo(sound.SamplerInfo(), kSamplerTag, chunks); !status) return status;
  }
  if (sound.ListInfo().GetLabelCount() > 0) {
    if (Status status = AddInfo(sound.ListInfo(), kListTag, chunks); !status) return status;
  }
  for (const C_WavDataExtraChunk* extra : sound.ExtraChunks()) {
    const std::span<const std::byte> bytes = extra->Bytes();
    if (bytes.empty()) continue;
    const RiffTag tag{extra->Tag()[0], extra->Tag()[1], extra->Tag()[2], extra->Tag()[3]};
    chunks.AddChunk(tag, static_cast<uint32_t>(bytes.size()))->Borrow(bytes);
  }
  return {};
}

/// `count` things, when there are any, as a sentence.
void AddLoss(std::vector<std::string>& losses, size_t count, const char* what) {
  if (count > 0) losses.push_back(std::to_string(count) + what);
}

/// Labels that make neither an event nor a region.
size_t CountNotes(const C_WavDataListInfo& labels) {
  return static_cast<size_t>(std::ranges::count_if(labels.Labels(), [](const auto& label) {
    const std::string_view text = label.Text();
    return !ParsePair(text, kRoundBrackets) && !ParsePair(text, kSquareBrackets) &&
           !IsSilenceLabel(text);
  }));
}

}  // namespace

std::vector<std::string> C_WavFile::ListLosses(const C_WavData& sound) const {
  std::vector<std::string> losses;
  // The infos offer no reading access through a constant sound.
  C_WavData& infos = const_cast<C_WavData&>(sound);
  const auto hasText = [](const C_ActionEvent* event) { return *event->GetText() != '\0'; };
  AddLoss(losses, static_cast<size_t>(std::ranges::count_if(sound.EventMgr().Events(), hasText)),
          " event texts: a wave file holds actions and parameters alone");
  AddLoss(losses, CountNotes(infos.ListInfo()), " labels that stand for no event");
  if (FormToWrite(sound) != FormOf(sound.Info())) {
    AddLoss(losses, infos.SamplerInfo().GetLoopCount(),
            " sample loops: a wave file with converted samples holds none");
    AddLoss(losses, infos.ExtraChunks().Items().size(),
            " private chunks: a wave file with converted samples holds none");
  }
  return losses;
}

Status C_WavFile::OnSave(const Path& path) {
  // A converted sound is a temporary one, without the sampler and private chunks of the
  // file's own sound.
  C_WavData& own = *wavData_;
  WavDataPtr converted;
  const SampleForm form = FormToWrite(own);
  if (form != FormOf(own.Info())) {
    converted.reset(own.CreateConverted(form.resolution, form.container, form.isSigned, nullptr));
    if (!converted) {
      return Status::Error("samples of " + std::to_string(own.Info().GetResolutionBits()) +
                           " bits in " + std::to_string(own.Info().GetContainerBits()) +
                           " cannot be converted to " + std::to_string(form.resolution) + " in " +
                           std::to_string(form.container));
    }
  }
  C_WavData& sound = converted ? *converted : own;
  if (!EventsToLabels(own.EventMgr(), sound.CueInfo(), sound.ListInfo())) {
    return Status::Error("no memory for the labels");
  }

  C_RiffFile riff;
  AddFormat(sound, riff.Chunks());
  riff.Chunks().AddChunk(kDataTag, sound.GetDataSize())->Borrow(sound.Bytes());
  if (Status status = AddMetadata(sound, riff.Chunks()); !status) return status;
  return riff.Save(path, kWaveForm);
}

}  // namespace velora
