// Which of the layouts told here a file has.
#pragma once

#include <cstdint>
#include <string>

#include "audio/inspect/FileWindow.h"

namespace velora {

enum class FileKind : uint8_t {
  kUnknown,
  kWave,    ///< RIFF of the form WAVE, in either case
  kSource,  ///< "KPCM"
  kChip,    ///< a compressed chip format: see ChipFrame.h
};

FileKind DetectKind(FileWindow& window);

/// "WAV", "SRC", the name of the chip format; empty for kUnknown.
std::string KindName(FileWindow& window);

/// Why a file of kind kUnknown is not told here: "too short for any sound file",
/// "no sound file begins with ...".
std::string UnknownReason(FileWindow& window);

}  // namespace velora
