// The sound that curves follow, and the one that takes their events.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "CurveEvents.h"
#include "Inputs.h"
#include "SoundFile.h"
#include "platform/Status.h"

namespace velora::cli {

/// A sound file with its samples as curves take them: one channel, the mean of all,
/// 16 bits, signed.
class CurveSound {
 public:
  /// "-" is standard input.
  static Result<CurveSound> Open(const std::string& path, SampleView view);

  C_WavData& Sound() const { return *file_->Sound(); }
  const C_WavFile& File() const { return *file_; }
  uint32_t Rate() const;
  uint64_t Frames() const;
  std::span<const int16_t> Mono() const { return mono_; }

  /// What saving the sound in its own format would drop, a sentence each.
  std::vector<std::string> Losses() const;

 private:
  CurveSound(OpenedInput input, std::unique_ptr<C_WavFile> file)
      : input_(std::move(input)), file_(std::move(file)) {}
  Status TakeMono();

  OpenedInput input_;
  std::unique_ptr<C_WavFile> file_;
  std::vector<int16_t> mono_;
};

/// Puts the courses in place of the events that set their pins in their ranges. What
/// a chip file was written with stays.
PinChange PutIntoSound(std::span<const PinCourse> courses, const CurveSound& sound);

}  // namespace velora::cli
