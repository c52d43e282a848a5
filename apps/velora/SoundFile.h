// Opening sounds for a command, and the fields that several commands print.
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "audio/WaveFileUtil/WavFileFormat.h"
#include "platform/Status.h"

namespace velora {
class C_WavData;
}

namespace velora::cli {

/// Opens a sound as OpenSound does and refuses what the library cannot count: 512
/// MB of samples or more, and a file whose header promises no sound at all. The
/// sound is there whatever the scope.
Result<std::unique_ptr<C_WavFile>> OpenInputSound(const Path& path, LoadScope scope,
                                                  SampleView view = SampleView::kDecoded);

/// Whether a format's files are made for a chip, with a stream beside the samples.
bool IsChipFormat(uint32_t id);

/// {"id", "name", "extension"}
nlohmann::ordered_json FormatJson(uint32_t id);

/// [{"type", "sample", "timeMs", "param", "text"}]
nlohmann::ordered_json EventsJson(const C_WavData& sound);

/// [{"start", "length"}]
nlohmann::ordered_json RegionsJson(const C_WavData& sound);

/// "1 event", "2 events".
std::string Counted(uint64_t count, const char* noun);

/// Blanks behind (Left) or in front (Right) up to the width.
std::string PadRight(std::string text, size_t width);
std::string PadLeft(std::string text, size_t width);

}  // namespace velora::cli
