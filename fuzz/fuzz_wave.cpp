// Any bytes as a wave file: loaded, saved and loaded again. What was loaded once must
// be saved so that it loads with as many samples and the same events.
#include <cstdlib>
#include <memory>
#include <tuple>
#include <vector>

#include "audio/WaveFileUtil/WavFile.h"
#include "audio/wavedata/WavData.h"
#include "fuzz_file.h"

namespace {

using namespace velora;

/// Type, sample and parameter of all events, start and length of all regions.
auto Events(const C_WavData& sound) {
  std::vector<std::tuple<int32_t, uint32_t, int32_t>> events;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    events.emplace_back(event->GetType(), event->GetSample(), event->GetParam());
  }
  std::vector<std::pair<uint32_t, uint32_t>> regions;
  for (const C_ActionSilenceRegion* region : sound.EventMgr().Regions()) {
    regions.emplace_back(region->GetStart(), region->GetLength());
  }
  return std::pair(events, regions);
}

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fuzz::FuzzDirectory directory;
  C_WavFile file;
  if (!file.LoadFile(directory.Write("in.wav", data, size))) return 0;
  if (!file.SaveFile(directory.At("out.wav"))) return 0;

  C_WavFile again;
  Require(again.LoadFile(directory.At("out.wav")).Ok());
  Require(Events(*again.Sound()) == Events(*file.Sound()));
  // Twelve bits are widened on saving; all else keeps its size.
  const bool widened = file.Sound()->Info().GetResolutionBits() == 12;
  Require(widened || again.Sound()->GetDataSize() == file.Sound()->GetDataSize());
  return 0;
}
