// Loads and saves sounds in a directory of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "audio/WaveFileUtil/WavFile.h"
#include "audio/wavedata/WavData.h"
#include "support/TempDir.h"

namespace velora::test {

class WaveFixture : public testing::Test {
 protected:
  Path At(const std::string& name) const { return Path::Native(dir_ / name); }

  /// Removes an old file first: emptying one waits for the disk on some file systems.
  Path Write(const std::string& bytes, const std::string& name = "in.wav") const {
    std::filesystem::remove(dir_ / name);
    WriteText(dir_ / name, bytes);
    return At(name);
  }

  std::string Read(const std::string& name) const { return ReadText(dir_ / name); }

  Status Load(C_WavFile& file, const std::string& bytes) const {
    return file.LoadFile(Write(bytes));
  }

  TempDir dir_;
};

inline std::string BytesOf(const C_WavData& sound) {
  const auto bytes = sound.Bytes();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Makes a sound of these bytes.
inline void Fill(C_WavData& sound, uint32_t rate, uint16_t channels, uint16_t resolution,
                 uint16_t container, bool isSigned, std::string_view bytes) {
  sound.SetFormat(rate, static_cast<uint32_t>(bytes.size()), channels, resolution, container,
                  isSigned);
  sound.SetData(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

/// "type@sample=param" of each event.
inline std::string EventListing(const C_WavData& sound) {
  std::string text;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    if (!text.empty()) text += ' ';
    text += std::to_string(event->GetType()) + '@' + std::to_string(event->GetSample()) + '=' +
            std::to_string(event->GetParam());
  }
  return text;
}

/// "start+length" of each region.
inline std::string RegionListing(const C_WavData& sound) {
  std::string text;
  for (const C_ActionSilenceRegion* region : sound.EventMgr().Regions()) {
    if (!text.empty()) text += ' ';
    text += std::to_string(region->GetStart()) + '+' + std::to_string(region->GetLength());
  }
  return text;
}

}  // namespace velora::test
