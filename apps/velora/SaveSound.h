// Writing a sound into a person's file, and what gets lost on the way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/WaveFileUtil/WavFile.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora::cli {

/// Writes the sound in the format, atomically, or through a temporary file to
/// standard output when the target is "-". The sound stays the caller's.
Status SaveSound(C_WavData& sound, uint32_t formatId, const std::string& target,
                 const SaveOptions& options);

/// What `file`, once written in the format, would no longer hold: a sentence each,
/// "not kept: ...". `path` is the file it was loaded from.
std::vector<std::string> ListDropped(const C_WavFile& file, const Path& path, uint32_t formatId);

/// Sets the write settings of a loaded chip file's sound to those that the file
/// was written with, as far as its header tells them.
void KeepWriteSettings(const C_WavFile& file);

}  // namespace velora::cli
