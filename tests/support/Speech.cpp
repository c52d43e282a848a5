#include "support/Speech.h"

#include <algorithm>
#include <random>

namespace velora::test {

std::vector<std::filesystem::path> RecordedPrompts() {
  const std::filesystem::path folder = "/usr/share/asterisk/sounds/en_US_f_Allison";
  std::vector<std::filesystem::path> files;
  std::error_code missing;
  for (std::filesystem::recursive_directory_iterator at(folder, missing), end; at != end; ++at) {
    if (at->path().extension() == ".wav") files.push_back(at->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<int16_t> MakeSpeech(size_t samples, unsigned seed) {
  // Integer arithmetic alone, so that no library's sine decides about a test.
  std::minstd_rand random(seed + 1);
  const auto upTo = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
  std::vector<int16_t> sound(samples);
  size_t at = 0;
  while (at < samples) {
    const bool pause = upTo(4) == 0;
    const size_t length = std::min<size_t>(samples - at, 200 + static_cast<size_t>(upTo(3000)));
    const int period = 30 + upTo(90);
    const int level = pause ? 0 : 500 + upTo(30000);
    int noise = 0;
    for (size_t i = 0; i < length; ++i) {
      const int phase = static_cast<int>(i) % period;
      const int triangle = std::abs(2 * phase - period) * 2 - period;  // -period to period
      noise += (upTo(2001) - 1000 - noise) / 3;
      const int envelope = static_cast<int>(std::min<size_t>({i, length - i, 200}));
      const int value = (triangle * level / period + noise * level / 4000) / 200 * envelope;
      sound[at + i] = static_cast<int16_t>(std::clamp(value, -32768, 32767));
    }
    at += length;
  }
  return sound;
}

std::vector<uint16_t> MakeSpeech12(size_t samples, unsigned seed) {
  const std::vector<int16_t> wide = MakeSpeech(samples, seed);
  std::vector<uint16_t> words(samples);
  std::transform(wide.begin(), wide.end(), words.begin(),
                 [](int16_t v) { return static_cast<uint16_t>(v / 16 + 2048); });
  return words;
}

}  // namespace velora::test
