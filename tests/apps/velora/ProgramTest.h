// What the tests of the program share: a directory of sounds made for the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "audio/WaveFileUtil/wave_bytes.h"
#include "support/RunVelora.h"
#include "support/Speech.h"
#include "support/TempDir.h"

namespace velora::test {

using Json = nlohmann::ordered_json;

/// The "data" chunk of 16-bit samples.
inline std::string DataChunk(const std::vector<int16_t>& samples) {
  std::string bytes;
  for (const int16_t sample : samples) bytes += U16(static_cast<uint16_t>(sample));
  return Chunk("data", bytes);
}

/// A 16-bit mono wave file at 8 kHz, with more chunks behind its samples.
inline std::string Wave(const std::vector<int16_t>& samples, const std::string& chunks = {}) {
  return Riff(Format(1, 8000, 16) + DataChunk(samples) + chunks);
}

/// A point with a label for each position, ids from 1.
struct Mark {
  uint32_t position;
  std::string label;
  uint32_t length = 0;  ///< a length record when not 0
};

inline std::string Marks(const std::vector<Mark>& marks) {
  std::string cues = U32(static_cast<uint32_t>(marks.size()));
  std::string labels = "adtl";
  uint32_t id = 0;
  for (const Mark& mark : marks) {
    cues += CueRecord(++id, mark.position);
    labels += Label(id, mark.label);
    if (mark.length) labels += Length(id, mark.length);
  }
  return Chunk("cue ", cues) + Chunk("LIST", labels);
}

class ProgramTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return dir_ / name; }

  /// Writes a speech-like wave file and gives its path.
  std::string MakeWave(const std::string& name, size_t samples = 4000,
                       const std::string& chunks = {}) const {
    std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
    WriteText(Path(name), Wave(MakeSpeech(samples, static_cast<unsigned>(samples)), chunks));
    return Path(name);
  }

  /// A chip file made by the program from such a wave.
  std::string MakeChip(const std::string& name, size_t samples = 4000,
                       const std::string& chunks = {}) const {
    const std::string wave = MakeWave(name + ".wav", samples, chunks);
    const Outcome run = RunVelora({"convert", wave, "-o", Path(name), "--no-flush"});
    EXPECT_EQ(run.status, 0) << run.err;
    return Path(name);
  }

  /// The one element of what `info --json` prints.
  static Json Info(const std::string& path, const std::vector<std::string>& options = {}) {
    std::vector<std::string> words = {"info", "--json", path};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome run = RunVelora(words);
    EXPECT_EQ(run.status, 0) << run.err;
    const Json all = Json::parse(run.out);
    EXPECT_EQ(all.size(), 1u);
    return all.at(0);
  }

  TempDir dir_;
};

}  // namespace velora::test
