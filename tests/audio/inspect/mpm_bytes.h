// MPM files put together by hand, command by command, with a decoder of the
// writer's own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "audio/WaveFileUtil/wave_bytes.h"
#include "platform/File.h"

namespace velora::test {

inline std::vector<std::byte> ToBytes(const std::string& text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

inline InputFile FileOf(const std::string& text) { return InputFile::FromBytes(ToBytes(text)); }

/// Writes over the bytes from an offset on.
inline void Put(std::string& bytes, size_t at, const std::string& text) {
  std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

struct Event {
  int action = 0;
  int parameter = 0;
  /// Position of the record; by default where the stream has the event.
  std::optional<uint32_t> position;
};

/// Offsets of the parts of a written file.
struct MpmPlaces {
  size_t stream = 76;
  size_t decoded = 0;
  size_t source = 0;
  size_t events = 0;
  size_t silence = 0;
  size_t end = 0;
};

/// A file being put together. Source samples are the decoded ones unless told
/// otherwise; silence records are those of the silence commands.
class MpmWriter {
 public:
  uint32_t rate = 8000;
  uint32_t method = 4;
  std::string stream;
  std::vector<uint32_t> decoded;
  std::vector<uint32_t> source;
  std::string events;
  std::string silence;
  bool endMark = true;

  void Silence(uint32_t length, std::optional<Event> event = {}, bool record = true) {
    const auto start = static_cast<uint32_t>(source.size());
    stream += static_cast<char>(event ? 2 : 1);
    stream += U16(length);
    Append(std::vector<uint32_t>(length, value_));
    if (record) silence += U32(start) + U32(start + length - 1);
    if (event) AddEvent(*event);
  }

  void Raw(const std::vector<uint32_t>& samples, std::optional<Event> event = {}) {
    stream += static_cast<char>(event ? 4 : 3);
    stream += static_cast<char>(samples[0] >> 4);
    stream += U16(static_cast<uint32_t>(samples.size() - 1));
    for (size_t i = 1; i < samples.size(); ++i) stream += static_cast<char>(samples[i] >> 4);
    Append(samples);
    if (event) AddEvent(*event);
  }

  /// A frame of 16 or 64 codes. Row 0 is written as 14.
  void Frame(unsigned row, const std::vector<int>& codes, std::optional<Event> event = {}) {
    const int number = (codes.size() == 64 ? 7 : 5) + (event ? 1 : 0);
    stream += static_cast<char>((row == 0 ? 14 : row) << 4 | static_cast<unsigned>(number));
    stream += static_cast<char>(value_ >> 4);
    for (size_t group = 0; group < codes.size(); group += 8) {
      unsigned signs = 0;
      std::string magnitudes;
      for (size_t i = 0; i < 8; ++i) {
        const int code = codes[group + i];
        if (code < 0) signs |= 1u << i;
        const auto nibble = static_cast<unsigned>(code < 0 ? -code : code) & 15u;
        if (i % 2 == 0) {
          magnitudes += static_cast<char>(nibble);
        } else {
          magnitudes.back() =
              static_cast<char>(static_cast<unsigned>(magnitudes.back()) | nibble << 4);
        }
      }
      stream += static_cast<char>(signs) + magnitudes;
    }
    std::vector<uint32_t> words;
    int value = static_cast<int>(value_);
    for (const int code : codes) {
      value = std::clamp(value + code * static_cast<int>(8 * row + 8), 0, 4095);
      words.push_back(static_cast<uint32_t>(value));
    }
    Append(words);
    if (event) AddEvent(*event);
  }

  /// Codes that follow the samples with a row's step and stay in range.
  std::vector<int> Follow(unsigned row, const std::vector<uint32_t>& samples) const {
    const int step = static_cast<int>(8 * row + 8);
    int value = static_cast<int>(value_);
    std::vector<int> codes;
    for (const uint32_t sample : samples) {
      int code = std::clamp((static_cast<int>(sample) - value) / step, -15, 15);
      while (value + code * step > 4095) --code;
      while (value + code * step < 0) ++code;
      value += code * step;
      codes.push_back(code);
    }
    return codes;
  }

  void Follow(unsigned row, const std::vector<uint32_t>& samples, std::optional<Event> event) {
    Frame(row, Follow(row, samples), std::move(event));
  }

  void AddRecord(uint32_t position, int action, int parameter) {
    events += U32(position) + static_cast<char>(action) + static_cast<char>(parameter);
  }

  uint32_t value() const { return value_; }

  MpmPlaces Places() const {
    MpmPlaces places;
    places.decoded = places.stream + stream.size() + (endMark ? 1 : 0);
    places.source = places.decoded + 2 * decoded.size();
    places.events = places.source + 2 * source.size();
    places.silence = places.events + 14 + events.size();
    places.end = places.silence + 16 + silence.size();
    return places;
  }

  std::string Bytes() const {
    const MpmPlaces at = Places();
    const auto streamSize = static_cast<uint32_t>(at.decoded - at.stream);
    std::string file = "KMPM" + U16(0x0110) + U16(62) + U16(1) + U16(5) + U16(rate) +
                       U16(static_cast<uint32_t>((rate >> 1) * 0.85)) + N(at.end) + N(at.events) +
                       N(14 + events.size()) + U32(62) + U32(14 + streamSize) + U16(12) +
                       N(at.source) + N(source.size()) + U16(12) + N(at.decoded) +
                       N(decoded.size()) + U16(1) + U16(512) + U16(method);
    file += "MFRM" + U16(14) + U32(76) + U32(streamSize) + stream;
    if (endMark) file += '\0';
    for (const uint32_t word : decoded) file += U16(word);
    for (const uint32_t word : source) file += U16(word);
    file += "MCMD" + U16(14) + N(at.events + 14) + N(events.size() / 6) + events;
    file += "KSIL" + U16(16) + U16(8) + N(at.silence + 16) + N(silence.size() / 8) + silence;
    return file;
  }

 private:
  static std::string N(size_t number) { return U32(static_cast<uint32_t>(number)); }

  void Append(const std::vector<uint32_t>& words) {
    decoded.insert(decoded.end(), words.begin(), words.end());
    source.insert(source.end(), words.begin(), words.end());
    if (!words.empty()) value_ = words.back();
  }

  void AddEvent(const Event& event) {
    const auto parameter = static_cast<unsigned>(event.parameter);
    stream += static_cast<char>((parameter << 2 | parameter >> 6) & 0xFF);
    stream += static_cast<char>(event.action);
    AddRecord(event.position.value_or(static_cast<uint32_t>(source.size() - 1)), event.action,
              event.parameter);
  }

  uint32_t value_ = 2047;
};

/// Some of everything: silence, raw samples and frames, with and without events,
/// no value at rest.
inline MpmWriter RichFile() {
  MpmWriter file;
  uint32_t seed = 12345;
  const auto noise = [&](size_t count, uint32_t around, uint32_t width) {
    std::vector<uint32_t> samples;
    for (size_t i = 0; i < count; ++i) {
      seed = seed * 1664525u + 1013904223u;
      samples.push_back(around - width / 2 + (seed >> 8) % width);
    }
    return samples;
  };
  file.Silence(40);
  file.Follow(3, noise(64, 2048, 900), {});
  file.Follow(0, noise(64, 2000, 300), Event{20, 129, {}});
  file.Follow(15, noise(16, 1800, 3000), {});
  file.Raw(noise(9, 2048, 2000), Event{7, 3, {}});
  file.Silence(20, Event{30, 255, {}});
  file.Silence(300, {}, false);
  file.silence.replace(file.silence.size() - 4, 4,
                       U32(static_cast<uint32_t>(file.source.size() - 1)));
  file.Follow(1, noise(16, 2100, 500), Event{253, 64, {}});
  file.Follow(7, noise(64, 2048, 1200), {});
  file.Raw(noise(5, 2048, 4000), {});
  return file;
}

}  // namespace velora::test
