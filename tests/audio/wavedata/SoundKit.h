// Sounds, callbacks and chunks that the tests of this folder share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <velora/I_ProgressCallback.h>
#include <velora/I_RiffChunk.h>
#include "audio/wavedata/WavData.h"

namespace velora::test {

struct Form {
  uint16_t channels;
  uint16_t resolution;
  uint16_t container;
  int32_t isSigned;
};

inline std::string Describe(const Form& form) {
  return std::to_string(form.channels) + " channels, " + std::to_string(form.resolution) + " in " +
         std::to_string(form.container) + (form.isSigned ? " signed" : " offset");
}

/// Gives the sound these bytes in this form.
inline void Fill(C_WavData& sound, const Form& form, std::span<const std::byte> bytes,
                 uint32_t rate = 8000) {
  const auto size = static_cast<uint32_t>(bytes.size());
  sound.SetData(bytes.data(), size);
  sound.SetFormat(rate, size, form.channels, form.resolution, form.container, form.isSigned);
}

/// A 16-bit signed sound.
inline void Fill16(C_WavData& sound, uint16_t channels, const std::vector<int16_t>& samples) {
  Fill(sound, {channels, 16, 16, 1}, std::as_bytes(std::span(samples)));
}

/// All decoded samples, frame by frame.
inline std::vector<int32_t> Decoded(C_WavData& sound) {
  std::vector<int32_t> values;
  const C_WavInfo& info = sound.Info();
  for (uint32_t frame = 0; frame < info.GetFrameCount(); ++frame) {
    for (uint16_t c = 0; c < info.GetChannels(); ++c) {
      values.push_back(sound.GetBuffer()->GetSample(frame, c));
    }
  }
  return values;
}

/// Notes the calls: kBegan, each percent, kEnded.
class ProgressLog final : public I_ProgressCallback {
 public:
  static constexpr int32_t kBegan = -1;
  static constexpr int32_t kEnded = -2;

  void Begin() override { calls.push_back(kBegan); }
  void Report(int32_t percent) override { calls.push_back(percent); }
  void End() override { calls.push_back(kEnded); }

  std::vector<int32_t> calls;
};

/// A chunk in memory, as a file would hand it out.
class MemoryChunk final : public I_RiffChunk {
 public:
  explicit MemoryChunk(std::string content) : content_(std::move(content)) {}
  explicit MemoryChunk(uint32_t size) : content_(size, '\xEE') {}

  uint32_t GetSize() override { return claimed ? claimed : static_cast<uint32_t>(content_.size()); }
  int32_t Read(void* buffer, uint32_t length, uint32_t offset) override {
    if (content_.empty() || uint64_t{offset} + length > content_.size()) return 0;
    std::memcpy(buffer, content_.data() + offset, length);
    return 1;
  }
  void SetData(const void* bytes) override { std::memcpy(content_.data(), bytes, content_.size()); }

  const std::string& Content() const { return content_; }

  uint32_t claimed = 0;  ///< a size in the header that the file does not hold

 private:
  std::string content_;
};

/// Four bytes, lowest first.
inline std::string Le(uint32_t value) {
  std::string text(4, '\0');
  for (char& byte : text) {
    byte = static_cast<char>(value);
    value >>= 8;
  }
  return text;
}

using Segments = std::vector<std::pair<uint32_t, uint32_t>>;

inline Segments Read(std::span<C_SilenceSegment* const> list) {
  Segments segments;
  for (const C_SilenceSegment* segment : list) {
    segments.emplace_back(segment->GetStart(), segment->GetEnd());
  }
  return segments;
}

}  // namespace velora::test
