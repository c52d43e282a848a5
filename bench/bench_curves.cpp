// Speed of the control curves, in samples a second over a million samples.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "curves/VLRAmplitudeModulationCurve.h"
#include "curves/VLRColorEnvelopCtrlCurve.h"
#include "curves/VLRColorFlyerCtrlCurve.h"
#include "curves/VLREnergyCtrlCurve.h"
#include "curves/VLREnvelopCtrlCurve.h"
#include "curves/VLRFlashCtrlCurve.h"
#include "curves/VLRImageCtrlCurve.h"
#include "curves/VLRLevelCtrlCurve.h"
#include "curves/VLRNewImageCtrlCurve.h"
#include "curves/VLRPolylineCtrlCurve.h"
#include "curves/VLRRampCtrlCurve.h"
#include "curves/VLRSineCtrlCurve.h"
#include "curves/VLRTriangleCtrlCurve.h"

namespace velora {
namespace {

constexpr uint32_t kSamples = 1'000'000;
constexpr uint32_t kLast = kSamples - 1;
constexpr uint32_t kRate = 8000;

void Generate(benchmark::State& state, C_VLRUnitCtrlCurve& curve) {
  std::vector<uint16_t> levels(curve.GetSampleCount());
  for (auto _ : state) {
    curve.GenerateSamples(levels.data());
    benchmark::DoNotOptimize(levels.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(levels.size()));
}

/// Bursts of a falling tone with pauses, so that loudness varies as in speech.
std::vector<int16_t> MakeSound() {
  std::vector<int16_t> sound(kSamples);
  uint32_t noise = 1;
  for (uint32_t i = 0; i < kSamples; ++i) {
    noise = noise * 1664525 + 1013904223;
    const double decay = std::exp(-static_cast<double>(i % 4000) / 900.0);
    const double tone = std::sin(i * 0.3) * 24000 + static_cast<double>(noise >> 20) - 2048;
    sound[i] = static_cast<int16_t>(tone * decay);
  }
  return sound;
}

std::vector<tagVLRCurveCtrlPoint> MakePoints(uint32_t count) {
  std::vector<tagVLRCurveCtrlPoint> points;
  for (uint32_t i = 0; i < count; ++i) {
    const auto sample = static_cast<uint32_t>(uint64_t{kLast} * i / (count - 1));
    points.push_back({sample, static_cast<uint8_t>(i * 97 % 256)});
  }
  return points;
}

void Level(benchmark::State& state) {
  C_VLRLevelCtrlCurve curve(0, kLast, 77);
  Generate(state, curve);
}
BENCHMARK(Level);

void Ramp(benchmark::State& state) {
  C_VLRRampCtrlCurve curve(0, kLast, 0, 3, 250);
  Generate(state, curve);
}
BENCHMARK(Ramp);

void Flash(benchmark::State& state) {
  C_VLRFlashCtrlCurve curve(0, kLast, 5, kRate, static_cast<uint16_t>(state.range(0)), 30, 255, 0,
                            0, 0, 0, 0);
  Generate(state, curve);
}
BENCHMARK(Flash)->ArgName("hertz")->Arg(1)->Arg(20)->Arg(250);

void FlashSweep(benchmark::State& state) {
  C_VLRFlashCtrlCurve curve(0, kLast, 5, kRate, 1, 30, 255, 0, 0, 0, 200, 0);
  Generate(state, curve);
}
BENCHMARK(FlashSweep);

void Sine(benchmark::State& state) {
  C_VLRSineCtrlCurve curve(0, kLast, 5, kRate, 255, 0, 0, static_cast<uint16_t>(state.range(0)), 3,
                           0, 0);
  Generate(state, curve);
}
BENCHMARK(Sine)->ArgName("millihertz")->Arg(81)->Arg(1000)->Arg(20000);

void SineSweep(benchmark::State& state) {
  C_VLRSineCtrlCurve curve(0, kLast, 5, kRate, 255, 0, 1, 0, 0, 200, 0);
  Generate(state, curve);
}
BENCHMARK(SineSweep);

/// One library call a sample: what a sweep is measured against.
void PlainSine(benchmark::State& state) {
  std::vector<uint16_t> levels(kSamples);
  for (auto _ : state) {
    for (uint32_t i = 0; i < kSamples; ++i) {
      levels[i] = static_cast<uint16_t>(
          std::sin(static_cast<double>(i % 8000) / 8000 * 6.283185307179586) * 127.5 + 127.5);
    }
    benchmark::DoNotOptimize(levels.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * int64_t{kSamples});
}
BENCHMARK(PlainSine);

void Triangle(benchmark::State& state) {
  C_VLRTriangleCtrlCurve curve(0, kLast, 5, kSamples / 3, kRate, 255, 0, 0,
                               static_cast<uint16_t>(state.range(0)), 3, 0, 0);
  Generate(state, curve);
}
BENCHMARK(Triangle)->ArgName("millihertz")->Arg(8)->Arg(1000)->Arg(20000);

void TriangleSweep(benchmark::State& state) {
  C_VLRTriangleCtrlCurve curve(0, kLast, 5, kSamples / 3, kRate, 255, 0, 1, 0, 0, 200, 0);
  Generate(state, curve);
}
BENCHMARK(TriangleSweep);

template <typename Curve>
void ThroughPoints(benchmark::State& state) {
  const auto points = MakePoints(static_cast<uint32_t>(state.range(0)));
  Curve curve(0, kLast, 0, points.data(), static_cast<uint16_t>(points.size()));
  Generate(state, curve);
}
BENCHMARK(ThroughPoints<C_VLRSplineCtrlCurve>)->ArgName("points")->Arg(2)->Arg(10)->Arg(100);
BENCHMARK(ThroughPoints<C_VLRPolylineCtrlCurve>)->ArgName("points")->Arg(2)->Arg(10)->Arg(1000);

void Envelop(benchmark::State& state) {
  const std::vector<int16_t> sound = MakeSound();
  C_VLREnvelopCtrlCurve curve(0, kLast, 0, static_cast<uint16_t>(state.range(0)), sound.data(), 0,
                              nullptr);
  Generate(state, curve);
}
BENCHMARK(Envelop)
    ->ArgName("window")
    ->Arg(40)
    ->Arg(80)
    ->Arg(160)
    ->Arg(240)
    ->Arg(400)
    ->Arg(800)
    ->Arg(3000);

void Energy(benchmark::State& state) {
  const std::vector<int16_t> sound = MakeSound();
  C_VLREnergyCtrlCurve curve(0, kLast, static_cast<uint16_t>(state.range(0)), 10, 240, 3000,
                             sound.data());
  Generate(state, curve);
}
BENCHMARK(Energy)->ArgName("window")->Arg(9)->Arg(800);

constexpr uint8_t kPins[] = {4, 5, 6};

std::vector<VLRColorKey> MakeKeys() {
  std::vector<VLRColorKey> keys;
  for (const tagVLRCurveCtrlPoint& point : MakePoints(100)) {
    keys.push_back({point.Sample, point.Level * 0x010101u, 1});
  }
  return keys;
}

void ColorFlyer(benchmark::State& state) {
  const auto keys = MakeKeys();
  GroupList groups;
  groups.Add(std::make_unique<C_VLRGroupColorFlyerCtrlCurve>(3, kPins, 0, kLast, keys.data(), 100));
  C_VLRColorFlyerCtrlCurve curve(0, kLast, 0, kPins[1], 0, &groups);
  Generate(state, curve);
}
BENCHMARK(ColorFlyer);

void ColorEnvelop(benchmark::State& state) {
  const std::vector<int16_t> sound = MakeSound();
  const auto keys = MakeKeys();
  auto group =
      std::make_unique<C_VLRGroupColorEnvelopCtrlCurve>(3, kPins, 0, kLast, keys.data(), 100);
  group->SetWindowSamples(static_cast<uint16_t>(state.range(0)));
  GroupList groups;
  groups.Add(std::move(group));
  C_VLRColorEnvelopCtrlCurve curve(0, kLast, 0, kPins[1], 0, &groups, sound.data());
  Generate(state, curve);
}
BENCHMARK(ColorEnvelop)->ArgName("window")->Arg(80)->Arg(800);

void Image(benchmark::State& state) {
  C_VLRImageCtrlCurve curve(0, kLast);
  curve.SetInverted(1);
  Generate(state, curve);
}
BENCHMARK(Image);

void NewImage(benchmark::State& state) {
  C_VLRNewImageCtrlCurve curve(0, kLast);
  for (const tagVLRCurveCtrlPoint& point : MakePoints(1000)) {
    curve.AddPoint(point.Sample, point.Level);
  }
  Generate(state, curve);
}
BENCHMARK(NewImage);

void AmplitudeModulation(benchmark::State& state) {
  C_VLRAmplitudeModulationCurve curve(0, kLast);
  curve.AddCurve(std::make_unique<C_VLRRampCtrlCurve>(0, kLast, 0, 0, 255));
  curve.AddCurve(std::make_unique<C_VLRSineCtrlCurve>(0, kLast, 0, kRate, 255, 0, 10, 0, 0, 0, 0));
  Generate(state, curve);
}
BENCHMARK(AmplitudeModulation);

}  // namespace
}  // namespace velora
