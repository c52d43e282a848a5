// Figures of a chip file: how small it is and how well it keeps the sound.
#pragma once

#include <cstdint>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

struct SoundFigures {
  double seconds = 0;        ///< of the source samples
  uint64_t samples = 0;      ///< source samples
  uint64_t waveBytes = 0;    ///< of a plain 16-bit wave file with them
  uint64_t streamBytes = 0;  ///< of the command stream, what the chip stores
  double bitsPerSample = 0;  ///< of the stream
  double snrDb = 0;          ///< source against decoded stream; infinite when they agree
  uint64_t events = 0;       ///< in the event table
  double silenceShare = 0;   ///< of the samples, 0 to 1
};

/// Reads source samples and decoded block side by side, in windows. A sample between
/// two silences, which the stream passes over, is passed over here too. An error when
/// the file cannot be read or is no chip file of a known format.
Result<SoundFigures> MeasureChipFile(const Path& path);

}  // namespace velora
