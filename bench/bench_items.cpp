// Speed of item files, of opening and asking their records, and of the cipher.
#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "foundation/EncryptNewPC1.h"
#include "foundation/ItemFile.h"
#include "foundation/ItemProperty.h"
#include "foundation/PC1Cipher.h"

namespace velora {
namespace {

constexpr int kParts = 2000;
constexpr int kLabelsPerPart = 20;

/// Chips that inherit from one of twenty series, and these from one family.
std::string ChipText() {
  std::string text = "[664]\nPinPerPort = 4\nDeep = 1\n";
  for (int series = 0; series < 20; ++series) {
    text.append("[S")
        .append(std::to_string(series))
        .append("]\nISA = [664]\nMaxIOExpanderNum = 2\n");
  }
  for (int part = 0; part < kParts; ++part) {
    text.append("[K").append(std::to_string(part)).append("]\nISA = [S");
    text.append(std::to_string(part % 20)).append("]\nBAMTimers = {TMG0, TM1, TM2}\n");
    for (int label = 2; label < kLabelsPerPart; ++label) {
      text.append("Label").append(std::to_string(label)).append(" = value ");
      text.append(std::to_string(part * label)).append("\n");
    }
  }
  return text;
}

/// A file of that text, for as long as the process runs.
const Path& ChipFile() {
  static const TemporaryFile file = [] {
    Result<TemporaryFile> made = TemporaryFile::Create("bench");
    const std::string text = ChipText();
    std::ofstream(made->GetPath().Text(), std::ios::binary) << text;
    return std::move(made.Value());
  }();
  return file.GetPath();
}

void LoadItemFile(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(OpenItemFile(ChipFile()).Ok());
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kParts * kLabelsPerPart);
}
BENCHMARK(LoadItemFile)->Unit(benchmark::kMillisecond);

/// A record made on a loaded file, and its first questions: loaded, an inherited
/// number two levels up, a family test.
void OpenRecord(benchmark::State& state) {
  const auto file = OpenItemFile(ChipFile());
  int part = 0;
  for (auto _ : state) {
    const std::string name = "K" + std::to_string(part++ % kParts);
    C_ItemProperty item(file.Value(), name.c_str());
    benchmark::DoNotOptimize(item.IsLoaded() + item.GetNumber("PinPerPort") + item.IsA("664"));
  }
}
BENCHMARK(OpenRecord)->Unit(benchmark::kMicrosecond);

void AskCachedList(benchmark::State& state) {
  const auto file = OpenItemFile(ChipFile());
  C_ItemProperty item(file.Value(), "K7");
  int32_t count = 0;
  for (auto _ : state) benchmark::DoNotOptimize(item.GetStringList("BAMTimers", &count));
}
BENCHMARK(AskCachedList);

/// Four ways up from each of 1,000 records: a walk that took them all would not end.
void WalkALattice(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 1000; ++i) {
    text.append("[").append(std::to_string(i)).append("]\nISA =");
    for (const int next : {1, 2, 1, 2})
      text.append(" [").append(std::to_string(i + next)).append("]");
    text.append("\n");
  }
  auto file = std::make_shared<C_CUIniFile>();
  file->LoadText(text);
  C_ItemProperty item(file, "0");
  for (auto _ : state) benchmark::DoNotOptimize(item.IsA("none"));
}
BENCHMARK(WalkALattice)->Unit(benchmark::kMicrosecond);

template <bool kEncipher>
void Cipher(benchmark::State& state) {
  std::vector<std::byte> data(1 << 20, std::byte{0x5A});
  const PC1Cipher::Key key = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  for (auto _ : state) {
    PC1Cipher cipher(key);
    if constexpr (kEncipher) {
      cipher.Encipher(data, data.data());
    } else {
      cipher.Decipher(data, data.data());
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * data.size()));
}
BENCHMARK(Cipher<true>)->Name("Encipher")->Unit(benchmark::kMillisecond);
BENCHMARK(Cipher<false>)->Name("Decipher")->Unit(benchmark::kMillisecond);

/// Asked of each sound that is opened: is it enciphered?
void AskForPasswords(benchmark::State& state) {
  C_EncryptNewPC1 object;
  std::vector<std::string> passwords;
  for (auto _ : state) benchmark::DoNotOptimize(object.ReadPasswordInfo(ChipFile(), passwords));
}
BENCHMARK(AskForPasswords)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velora
