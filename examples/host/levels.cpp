// A sound and a curve from the static libraries: prints the length of the sound named, and
// a ramp over its first samples.
#include <cstdio>
#include <vector>

#include "audio/WaveFileUtil/WavFileFormat.h"
#include "audio/wavedata/WavData.h"
#include "curves/VLRRampCtrlCurve.h"

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: levels SOUND\n"), 2;
  const auto sound = velora::OpenSound(velora::Path::Native(argv[1]));
  if (!sound) return std::fprintf(stderr, "%s: %s\n", argv[1], sound.Message().c_str()), 3;
  std::printf("%u frames\n", sound.Value()->Sound()->Info().GetFrameCount());
  velora::C_VLRRampCtrlCurve ramp(0, 4, 0, 0, 255);
  std::vector<uint16_t> levels(ramp.GetSampleCount());
  ramp.GenerateSamples(levels.data());
  for (const uint16_t level : levels) std::printf("%u ", unsigned{level});
  std::printf("\n");
}
