#include "CurveSound.h"

#include <algorithm>

#include "SaveSound.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

constexpr uint16_t kCurveBits = 16;
constexpr uint32_t kWaveId = 2;
constexpr uint16_t kTagPcm = 1;

}  // namespace

Result<CurveSound> CurveSound::Open(const std::string& path, SampleView view) {
  auto opened = OpenedInput::Open({path, path, {}});
  if (!opened) return opened.GetStatus();
  auto file = OpenInputSound(opened->GetPath(), LoadScope::kAll, view);
  if (!file) return file.GetStatus();
  CurveSound sound(std::move(opened.Value()), std::move(file.Value()));
  if (sound.Frames() == 0) return Status::Error("holds no samples");
  if (Status mono = sound.TakeMono(); !mono) return mono;
  return sound;
}

Status CurveSound::TakeMono() {
  const WavDataPtr converted(Sound().CreateConverted(kCurveBits, kCurveBits, 1, nullptr));
  if (!converted) {
    return Status::Error("has samples of " + std::to_string(Sound().Info().GetContainerBits()) +
                         " bits, which curves cannot follow");
  }
  converted->MixToMono();
  const std::span<const uint16_t> words = std::as_const(*converted).Words();
  mono_.resize(words.size());
  std::ranges::transform(words, mono_.begin(),
                         [](uint16_t word) { return static_cast<int16_t>(word); });
  return {};
}

uint32_t CurveSound::Rate() const { return Sound().Info().GetSampleRate(); }

uint64_t CurveSound::Frames() const { return Sound().FrameCount(); }

std::vector<std::string> CurveSound::Losses() const {
  auto losses = ListDropped(*file_, input_.GetPath(), file_->GetSourceKind());
  if (file_->GetSourceKind() == kWaveId && file_->FormatTag() != kTagPcm) {
    losses.push_back("not kept: the ADPCM form; the samples are written as PCM");
  }
  return losses;
}

PinChange PutIntoSound(std::span<const PinCourse> courses, const CurveSound& sound) {
  KeepWriteSettings(sound.File());
  EventList list = ListEvents(sound.Sound().EventMgr());
  const PinChange change = ApplyPinCourses(courses, list);
  StoreEvents(list, *sound.Sound().GetEventMgr());
  return change;
}

}  // namespace velora::cli
