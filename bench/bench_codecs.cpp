// The framed delta coder in samples a second, over ten minutes of something like speech.
#include <benchmark/benchmark.h>

#include "audio/codecs/MdpcmEncDec.h"
#include "support/Speech.h"

namespace velora {
namespace {

constexpr unsigned kLong = 64;
constexpr unsigned kShort = 16;
constexpr size_t kSamples = 4'800'000;

const std::vector<uint16_t>& Speech() {
  static const std::vector<uint16_t> sound = test::MakeSpeech12(kSamples, 5);
  return sound;
}

void BM_MdpcmEncode(benchmark::State& state) {
  C_MDPCMEncDec codec(true, 16);
  std::vector<uint8_t> out(codec.GetRequiredSize(kLong, kShort, Speech().size()));
  for (auto _ : state) {
    benchmark::DoNotOptimize(codec.Encode(kLong, kShort, Speech(), out, MdpcmPadding::kHold, 2047));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSamples));
}
BENCHMARK(BM_MdpcmEncode)->Unit(benchmark::kMillisecond);

void BM_MdpcmDecode(benchmark::State& state) {
  C_MDPCMEncDec codec(true, 16);
  std::vector<uint8_t> stream(codec.GetRequiredSize(kLong, kShort, Speech().size()));
  stream.resize(codec.Encode(kLong, kShort, Speech(), stream, MdpcmPadding::kHold, 2047));
  std::vector<uint16_t> out(kSamples + kShort);
  for (auto _ : state) {
    if (!codec.Decode(kLong, kShort, stream, out, 2047)) state.SkipWithError("no decode");
    benchmark::DoNotOptimize(out.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kSamples));
}
BENCHMARK(BM_MdpcmDecode)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora
