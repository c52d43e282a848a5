// Speed of the chip files: 2,000 parts and 40,000 labels.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "catalogue/chipfile/ChipFile.h"
#include "catalogue/chipfile/ItemCheck.h"
#include "chip/ChipPropertyLoader.h"
#include "platform/File.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora {
namespace {

constexpr int kParts = 2000;
constexpr int kSeries = 20;

std::string PartName(int part) { return std::string("K").append(std::to_string(part)); }

std::string WithNumber(const char* start, int number, const char* end) {
  return std::string(start).append(std::to_string(number)).append(end);
}

/// Records of chips of twenty series of one family, twenty labels each.
std::string RecordText() {
  std::string text = "[664]\nPinPerPort = 4\n";
  for (int series = 0; series < kSeries; ++series) {
    text += WithNumber("[S", series, "]\nISA = [664]\nMaxIOExpanderNum = 2\n");
  }
  for (int part = 0; part < kParts; ++part) {
    text += WithNumber("[K", part, "]\nPart = 1\n") + WithNumber("ISA = [S", part % kSeries, "]\n");
    for (int label = 2; label < 20; ++label) {
      text += WithNumber("Label", label, " = {TMG0, TM1, ") + WithNumber("T", part, "}\n");
    }
  }
  return text;
}

/// A catalogue of as many parts with what they differ in.
std::string CatalogueText() {
  std::string text =
      "[Chip]\nInterfaces = {3, 4, 7}\nGroupSize = 8\nOutputGroupSize = 8\n"
      "Ports = {BP0.0-7, BP1.0-7, BP2.0-7, IP0.0-7}\nPinCounts = {24, 8, 0}\n"
      "InputRanges = {BP0.0-7*, IP0.0-7}\nOutputRanges = {BP1.0-7, BP2.0-7}\n"
      "PwmRanges = {BP1.0-3, BP1.4-7}\nTimers = {TM0, TM1}\n";
  for (int series = 0; series < kSeries; ++series) {
    text += WithNumber("[S", series, "]\nISA = [Chip]\nSystemRam = 48\n");
  }
  for (int part = 0; part < kParts; ++part) {
    text += WithNumber("[K", part, "]\nPart = 1\n") + WithNumber("ISA = [S", part % kSeries, "]\n");
    text += WithNumber("ChipCode = ", part, "\n") + WithNumber("RamSize = ", 256 + part, "\n");
  }
  return text;
}

/// The module's directory with one data file, for the length of a benchmark.
struct DataDirectory {
  DataDirectory(const char* name, const std::string& text) { test::WriteText(dir / name, text); }
  test::TempDir dir;
  test::ModuleFile module{dir / "VeloraUtil.so"};
};

/// A loader that is asked for its first part: reads the whole file.
void LoadRecords(benchmark::State& state) {
  const DataDirectory data("ChipProperty.cfg", RecordText());
  for (auto _ : state) {
    C_ChipPropLoader loader;
    benchmark::DoNotOptimize(loader.GetChipProperty("K7")->GetNumber(kPinPerPort));
  }
}
BENCHMARK(LoadRecords)->Unit(benchmark::kMillisecond);

/// The next parts of a loader: a record and its first question, two levels up. Looks
/// at the file's time for each part.
void OpenRecord(benchmark::State& state) {
  const DataDirectory data("ChipProperty.cfg", RecordText());
  auto loader = std::make_unique<C_ChipPropLoader>();
  loader->GetChipProperty("K0");
  int part = 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(loader->GetChipProperty(PartName(part))->GetNumber(kPinPerPort));
    if (++part < kParts) continue;
    state.PauseTiming();
    loader = std::make_unique<C_ChipPropLoader>();
    loader->GetChipProperty("K0");
    part = 1;
    state.ResumeTiming();
  }
}
BENCHMARK(OpenRecord)->Unit(benchmark::kMicrosecond);

void AskKeptRecord(benchmark::State& state) {
  const DataDirectory data("ChipProperty.cfg", RecordText());
  C_ChipPropLoader loader;
  for (auto _ : state) {
    benchmark::DoNotOptimize(loader.GetChipProperty("K7")->GetNumber(kPinPerPort));
  }
}
BENCHMARK(AskKeptRecord)->Unit(benchmark::kMicrosecond);

void LoadCatalogue(benchmark::State& state) {
  const std::string text = CatalogueText();
  for (auto _ : state) benchmark::DoNotOptimize(ChipFile::FromText(text).Ok());
}
BENCHMARK(LoadCatalogue)->Unit(benchmark::kMillisecond);

void ReadPart(benchmark::State& state) {
  const Result<ChipFile> file = ChipFile::FromText(CatalogueText());
  int part = 0;
  for (auto _ : state) {
    const std::string name = PartName(part++ % kParts);
    benchmark::DoNotOptimize(file->Read(std::string_view(name)).Ok());
  }
}
BENCHMARK(ReadPart)->Unit(benchmark::kMicrosecond);

void CheckCatalogue(benchmark::State& state) {
  const std::string text = CatalogueText();
  const Result<ChipFile> file = ChipFile::FromText(text);
  for (auto _ : state) {
    benchmark::DoNotOptimize(CheckChipInfo(ItemSource::Parse(text), file.Value()).size());
  }
}
BENCHMARK(CheckCatalogue)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velora
