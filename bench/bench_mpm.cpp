// The root compressed format over ten minutes of something like speech at 8 kHz:
// samples a second from memory to file and back, without flushing to the disk.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "audio/WaveFileUtil/MpmFile.h"
#include "support/Speech.h"

namespace velora {
namespace {

constexpr size_t kSamples = 4'800'000;

std::string TargetPath() {
  return (std::filesystem::temp_directory_path() / "velora-bench.MPM").string();
}

C_WavData& Speech() {
  static const WavDataPtr sound = [] {
    WavDataPtr made = C_WavData::Create();
    const std::vector<int16_t> samples = test::MakeSpeech(kSamples, 5);
    const auto bytes = static_cast<uint32_t>(samples.size() * 2);
    made->SetFormat(8000, bytes, 1, 16, 16, 1);
    made->SetData(samples.data(), bytes);
    for (uint32_t i = 0; i < 3000; ++i) {
      made->GetEventMgr()->AddEventAtSample(static_cast<int>(i % 32), i * 1600, "", 7);
    }
    return made;
  }();
  return *sound;
}

Status SaveSpeech() {
  C_MpmFile file;
  file.AttachWavData(&Speech());
  const Status status = file.SaveFile(Path::Native(TargetPath()));
  file.DetachWavData();
  return status;
}

void BM_MpmSave(benchmark::State& state) {
  for (auto _ : state) {
    if (const Status status = SaveSpeech(); !status) state.SkipWithError(status.Message().c_str());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSamples));
  std::filesystem::remove(TargetPath());
}
BENCHMARK(BM_MpmSave)->Unit(benchmark::kMillisecond);

void BM_MpmLoad(benchmark::State& state) {
  if (const Status status = SaveSpeech(); !status) state.SkipWithError(status.Message().c_str());
  for (auto _ : state) {
    C_MpmFile file;
    if (const Status status = file.LoadFile(Path::Native(TargetPath())); !status) {
      state.SkipWithError(status.Message().c_str());
    }
    benchmark::DoNotOptimize(file.Sound());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSamples));
  std::filesystem::remove(TargetPath());
}
BENCHMARK(BM_MpmLoad)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora
