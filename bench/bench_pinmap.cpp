// A pin map with everything filled, saved into a project's store and loaded from it.
// Saving or loading should stay below 2 ms each, so that a host may do so on every change.
#include <benchmark/benchmark.h>

#include "foundation/IniFile.h"
#include "pinmap/FilledPinMap.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora {
namespace {

constexpr size_t kPointsPerCurve = 16;

void BM_Save(benchmark::State& state) {
  C_VeloraPinMapInfoMgr manager;
  test::FillPinMap(manager, kPointsPerCurve);
  for (auto _ : state) {
    C_CUIniFile store;
    if (manager.Save(&store) != 1) state.SkipWithError("save failed");
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_Save)->Unit(benchmark::kMicrosecond);

/// Into a store that holds an earlier state already, as a host's does.
void BM_SaveAgain(benchmark::State& state) {
  C_VeloraPinMapInfoMgr manager;
  test::FillPinMap(manager, kPointsPerCurve);
  C_CUIniFile store;
  for (auto _ : state) {
    if (manager.Save(&store) != 1) state.SkipWithError("save failed");
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_SaveAgain)->Unit(benchmark::kMicrosecond);

void BM_Load(benchmark::State& state) {
  C_VeloraPinMapInfoMgr manager;
  test::FillPinMap(manager, kPointsPerCurve);
  C_CUIniFile store;
  manager.Save(&store);
  for (auto _ : state) {
    C_VeloraPinMapInfoMgr loaded;
    if (loaded.Load(&store) != 1) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(loaded);
  }
  C_VeloraPinMapInfoMgr loaded;
  loaded.Load(&store);
  if (loaded.IsDifferent(nullptr, &manager, 1)) state.SkipWithError("another pin map came back");
}
BENCHMARK(BM_Load)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velora
