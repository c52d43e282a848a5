// A 16-bit mono wave file of 100 MB: loading against a plain read into fresh memory,
// saving against a plain write (neither flushed to the disk), and libsndfile doing the
// same. All files lie in memory where the system offers that, so that the disk's mood
// does not count.
#include <benchmark/benchmark.h>
#include <sndfile.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <numeric>
#include <vector>

#include "audio/WaveFileUtil/WavFile.h"
#include "audio/wavedata/WavData.h"
#include "platform/File.h"

namespace velora {
namespace {

constexpr uint32_t kFrames = 50'000'000;
constexpr uint32_t kRate = 8000;
constexpr int64_t kBytes = int64_t{kFrames} * 2;

std::string FileName(const char* name) {
  const std::filesystem::path memory = "/dev/shm";
  const std::filesystem::path folder =
      std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
  return (folder / name).string();
}

/// The file to read; removed at the end of the program.
class Source {
 public:
  Source() {
    C_WavFile file;
    C_WavData& sound = file.EnsureSound();
    sound.SetFormat(kRate, kFrames * 2, 1, 16, 16, 1);
    sound.AllocData(kFrames * 2);
    const std::span<uint16_t> words = sound.Words();
    std::iota(words.begin(), words.end(), uint16_t{0});
    if (!file.SaveFile(Path::Native(name_))) std::abort();
  }
  ~Source() { std::filesystem::remove(name_); }

  static const std::string& Name() {
    static const Source source;
    return source.name_;
  }

 private:
  std::string name_ = FileName("velora-bench-in.wav");
};

C_WavData& Sound() {
  static C_WavFile file;
  if (!file.Sound() && !file.LoadFile(Path::Native(Source::Name()))) std::abort();
  return *file.Sound();
}

void BM_PlainRead(benchmark::State& state) {
  const std::string name = Source::Name();
  for (auto _ : state) {
    const Result<InputFile> file = InputFile::Open(Path::Native(name));
    const size_t size = static_cast<size_t>(file.Value().Size());
    const std::unique_ptr<std::byte[]> bytes(new std::byte[size]);
    if (!file.Value().ReadExactly(0, {bytes.get(), size})) state.SkipWithError("read");
    benchmark::DoNotOptimize(bytes.get());
  }
  state.SetBytesProcessed(state.iterations() * kBytes);
}

void BM_LoadWave(benchmark::State& state) {
  const Path path = Path::Native(Source::Name());
  for (auto _ : state) {
    C_WavFile file;
    if (!file.LoadFile(path)) state.SkipWithError("load");
    benchmark::DoNotOptimize(file.Sound());
  }
  state.SetBytesProcessed(state.iterations() * kBytes);
}

void BM_LoadSndfile(benchmark::State& state) {
  const std::string name = Source::Name();
  for (auto _ : state) {
    SF_INFO info{};
    SNDFILE* file = sf_open(name.c_str(), SFM_READ, &info);
    const std::unique_ptr<int16_t[]> samples(new int16_t[static_cast<size_t>(info.frames)]);
    if (sf_readf_short(file, samples.get(), info.frames) != info.frames)
      state.SkipWithError("read");
    sf_close(file);
    benchmark::DoNotOptimize(samples.get());
  }
  state.SetBytesProcessed(state.iterations() * kBytes);
}

/// Each save makes a new file; removing the old one is not counted.
template <typename Save>
void MeasureSave(benchmark::State& state, const Save& save) {
  const std::string name = FileName("velora-bench-out.wav");
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(name);
    state.ResumeTiming();
    if (!save(name)) state.SkipWithError("save");
  }
  std::filesystem::remove(name);
  state.SetBytesProcessed(state.iterations() * kBytes);
}

void BM_PlainWrite(benchmark::State& state) {
  const std::span<const std::byte> bytes = Sound().Bytes();
  MeasureSave(state, [&](const std::string& name) {
    Result<OutputFile> file = OutputFile::Create(Path::Native(name));
    return file && file->Write(bytes) && file->Close();
  });
}

void BM_SaveWave(benchmark::State& state) {
  C_WavFile file;
  file.AttachWavData(&Sound());
  MeasureSave(state,
              [&](const std::string& name) { return file.SaveFile(Path::Native(name)).Ok(); });
}

void BM_SaveSndfile(benchmark::State& state) {
  const auto* samples = reinterpret_cast<const int16_t*>(Sound().Words().data());
  MeasureSave(state, [&](const std::string& name) {
    SF_INFO info{};
    info.samplerate = kRate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(name.c_str(), SFM_WRITE, &info);
    const bool whole = file && sf_writef_short(file, samples, kFrames) == kFrames;
    return whole && sf_close(file) == 0;
  });
}

BENCHMARK(BM_PlainRead)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadWave)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadSndfile)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlainWrite)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveWave)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_SaveSndfile)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace velora
