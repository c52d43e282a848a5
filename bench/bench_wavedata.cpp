// Speed of the operations that touch every sample of a sound, in samples, and of
// the event list, in events a second.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <random>

#include "audio/wavedata/ActionEventMgr.h"
#include "audio/wavedata/WavData.h"
#include <velora/I_ProgressCallback.h>

namespace velora {
namespace {

constexpr uint32_t kSamples = 1 << 20;  // 2 MB: more than the second cache holds

/// Speech in its outline: bursts and pauses, 16-bit samples side by side.
WavDataPtr MakeSound(uint16_t channels) {
  WavDataPtr sound = C_WavData::Create();
  sound->AllocData(2 * kSamples);
  sound->SetFormat(16000, 2 * kSamples, channels, 16, 16, 1);
  std::mt19937 random(1);
  for (uint32_t i = 0; i < kSamples; ++i) {
    const bool pause = (i / 5000) % 3 == 0;
    const int32_t span = pause ? 10 : 20000;
    const auto sample =
        static_cast<int16_t>(static_cast<int32_t>(random() % (2 * span + 1)) - span);
    std::memcpy(sound->GetData() + 2 * i, &sample, sizeof sample);
  }
  return sound;
}

void CountSamples(benchmark::State& state) {
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kSamples);
}

void Convert16To8(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(1);
  for (auto _ : state) {
    const WavDataPtr converted(sound->CreateConverted(8, 8, 0, nullptr));
    benchmark::DoNotOptimize(converted->GetData());
  }
  CountSamples(state);
}
BENCHMARK(Convert16To8);

void Convert16To12(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(1);
  for (auto _ : state) {
    const WavDataPtr converted(sound->CreateConverted(12, 16, 0, nullptr));
    benchmark::DoNotOptimize(converted->GetData());
  }
  CountSamples(state);
}
BENCHMARK(Convert16To12);

void Convert12To16(benchmark::State& state) {
  const WavDataPtr sound(MakeSound(1)->CreateConverted(12, 16, 0, nullptr));
  for (auto _ : state) {
    const WavDataPtr converted(sound->CreateConverted(16, 16, 1, nullptr));
    benchmark::DoNotOptimize(converted->GetData());
  }
  CountSamples(state);
}
BENCHMARK(Convert12To16);

/// Argument: channels.
void ApplyGain(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(static_cast<uint16_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(sound->ApplyGain(0.999, 1.001, nullptr));
  }
  CountSamples(state);
}
BENCHMARK(ApplyGain)->Arg(1)->Arg(2);

void GetPeak(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(1);
  for (auto _ : state) {
    benchmark::DoNotOptimize(sound->GetBuffer()->GetPeak(0, kSamples - 1, 0, 0));
  }
  CountSamples(state);
}
BENCHMARK(GetPeak);

void RemoveDCOffset(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(1);
  for (auto _ : state) sound->RemoveDCOffset();
  CountSamples(state);
}
BENCHMARK(RemoveDCOffset);

void MixToMono(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(2);
  for (auto _ : state) {
    const WavDataPtr copy(sound->Clone());
    copy->MixToMono();
  }
  CountSamples(state);
}
BENCHMARK(MixToMono);

class Listener final : public I_ProgressCallback {
 public:
  void Begin() override {}
  void Report(int32_t percent) override { benchmark::DoNotOptimize(percent); }
  void End() override {}
};

/// Arguments: channels, and whether somebody listens to the progress.
void DetectSilence(benchmark::State& state) {
  const WavDataPtr sound = MakeSound(static_cast<uint16_t>(state.range(0)));
  Listener listener;
  for (auto _ : state) {
    benchmark::DoNotOptimize(sound->DetectSilence(1, 64, state.range(1) ? &listener : nullptr));
  }
  CountSamples(state);
}
BENCHMARK(DetectSilence)->Args({1, 0})->Args({1, 1})->Args({2, 0});

void AddEventsAscending(benchmark::State& state) {
  const auto count = static_cast<uint32_t>(state.range(0));
  for (auto _ : state) {
    C_ActionEventMgr events;
    for (uint32_t i = 0; i < count; ++i) events.AddEventAtSample(100, 10 * i, "", 1);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * count);
}
BENCHMARK(AddEventsAscending)->Arg(1000000)->Unit(benchmark::kMillisecond);

void AddEventsRandom(benchmark::State& state) {
  const auto count = static_cast<uint32_t>(state.range(0));
  for (auto _ : state) {
    std::mt19937 random(1);
    C_ActionEventMgr events;
    for (uint32_t i = 0; i < count; ++i) {
      events.AddEventAtSample(100, static_cast<uint32_t>(random()), "", 1);
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * count);
}
BENCHMARK(AddEventsRandom)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora
