// Speed of the waveform view: a redraw of a thousand columns of an hour of sound
// at 8 kHz, and what it costs to take in such a sound.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "audio/wavedata/WavData.h"
#include "curves/WaveformPresentationData.h"
#include "curves/WaveformPyramid.h"

namespace velora {
namespace {

constexpr uint32_t kHour = 3600 * 8000;
constexpr int32_t kView = 1000;

/// Noise whose loudness changes every second.
C_WavData& HourOfSound() {
  static const WavDataPtr sound = [] {
    WavDataPtr made = C_WavData::Create();
    made->AllocData(2 * kHour);
    made->SetFormat(8000, 2 * kHour, 1, 16, 16, 1);
    uint32_t noise = 1;
    uint32_t position = 0;
    for (uint16_t& word : made->Words()) {
      noise = noise * 1664525 + 1013904223;
      const int32_t loudness = static_cast<int32_t>(position++ / 8000 * 37 % 256);
      word = static_cast<uint16_t>(((static_cast<int32_t>(noise >> 16) - 32768) * loudness) >> 8);
    }
    return made;
  }();
  return *sound;
}

/// Argument: samples per column. Each redraw is at another scroll position.
void Redraw(benchmark::State& state) {
  C_VLRWaveformPresentationData view;
  view.Attach(&HourOfSound());
  view.SetViewWidth(kView);
  view.SetZoom(static_cast<int32_t>(kHour / static_cast<uint32_t>(state.range(0))));
  int32_t first = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.GetColumns(first));
    benchmark::ClobberMemory();
    first = (first + 7919) % std::max(1, view.GetZoomWidth() - kView + 1);
  }
}
BENCHMARK(Redraw)
    ->ArgName("samplesPerColumn")
    ->Arg(1)
    ->Arg(7)
    ->Arg(63)
    ->Arg(130)
    ->Arg(1000)
    ->Arg(28800)
    ->Unit(benchmark::kMicrosecond);

/// Argument: columns per sample.
void RedrawBetweenSamples(benchmark::State& state) {
  C_VLRWaveformPresentationData view;
  view.Attach(&HourOfSound());
  view.SetViewWidth(kView);
  view.SetZoom(static_cast<int32_t>(kHour * static_cast<uint32_t>(state.range(0))));
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.GetColumns(12345678));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(RedrawBetweenSamples)->Arg(3)->Arg(64)->Unit(benchmark::kMicrosecond);

/// A new zoom with precomputed columns, at its first redraw and at later ones.
void PrecomputedZoom(benchmark::State& state) {
  C_VLRWaveformPresentationData view;
  view.Attach(&HourOfSound());
  view.SetViewWidth(kView);
  view.SetPrecomputed(1);
  for (auto _ : state) {
    view.SetZoom(static_cast<int32_t>(kHour / 130));
    benchmark::DoNotOptimize(view.GetColumns(100'000));
  }
}
BENCHMARK(PrecomputedZoom)->Unit(benchmark::kMicrosecond);

void PrecomputedScroll(benchmark::State& state) {
  C_VLRWaveformPresentationData view;
  view.Attach(&HourOfSound());
  view.SetViewWidth(kView);
  view.SetPrecomputed(1);
  view.SetZoom(static_cast<int32_t>(kHour / 130));
  for (int32_t first = 0; first < view.GetZoomWidth(); first += kView) view.GetColumns(first);
  int32_t first = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(view.GetColumns(first));
    first = (first + 7919) % 200'000;
  }
}
BENCHMARK(PrecomputedScroll)->Unit(benchmark::kMicrosecond);

/// What a redraw would cost without the summary: one walk over the sound.
void PlainWalk(benchmark::State& state) {
  const auto samples = HourOfSound().Words();
  for (auto _ : state) {
    int16_t low = 0;
    int16_t high = 0;
    for (const uint16_t word : samples) {
      low = std::min(low, static_cast<int16_t>(word));
      high = std::max(high, static_cast<int16_t>(word));
    }
    benchmark::DoNotOptimize(low);
    benchmark::DoNotOptimize(high);
  }
}
BENCHMARK(PlainWalk)->Unit(benchmark::kMicrosecond);

void BuildPyramid(benchmark::State& state) {
  const auto words = HourOfSound().Words();
  const std::span<const int16_t> samples(reinterpret_cast<const int16_t*>(words.data()),
                                         words.size());
  WaveformPyramid pyramid;
  for (auto _ : state) {
    pyramid.Build(samples);
    benchmark::DoNotOptimize(pyramid.RangeOf(0, samples.size() - 1));
  }
}
BENCHMARK(BuildPyramid)->Unit(benchmark::kMillisecond);

void Attach(benchmark::State& state) {
  for (auto _ : state) {
    C_VLRWaveformPresentationData view;
    benchmark::DoNotOptimize(view.Attach(&HourOfSound()));
  }
}
BENCHMARK(Attach)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora
