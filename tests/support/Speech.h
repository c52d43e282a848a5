// Sounds for tests: recorded speech where the machine has some, made ones elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace velora::test {

/// Recorded prompts, 8 kHz 16-bit mono wave files; empty when the package
/// asterisk-core-sounds-en-wav is not installed.
std::vector<std::filesystem::path> RecordedPrompts();

/// 16-bit signed samples of something like speech: bursts of a few harmonics with
/// noise, and pauses. The same for the same seed on every machine.
std::vector<int16_t> MakeSpeech(size_t samples, unsigned seed);

/// The same as 12-bit offset binary words.
std::vector<uint16_t> MakeSpeech12(size_t samples, unsigned seed);

}  // namespace velora::test
