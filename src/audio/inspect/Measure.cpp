#include "audio/inspect/Measure.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/FileWindow.h"

namespace velora {
namespace {

using layout::SilenceRecord;

/// Positions of the single samples that the plan of a save passes over: those with
/// silence, or the sound's start, on both sides.
std::vector<uint32_t> PassedOver(const std::vector<SilenceRecord>& silence) {
  std::vector<uint32_t> positions;
  uint64_t reached = 0;
  for (const SilenceRecord& record : silence) {
    if (record.start == reached + 1) positions.push_back(static_cast<uint32_t>(reached));
    reached = uint64_t{record.end} + 1;
  }
  return positions;
}

/// Reads 16-bit words in ascending order.
class WordReader {
 public:
  WordReader(const InputFile& file, uint64_t offset, uint64_t count)
      : window_(file), offset_(offset), left_(count) {}

  /// False at the end of the words or of the file.
  bool Next(int& word) {
    if (left_ == 0) return false;
    const std::optional<le16> read = window_.Record<le16>(offset_);
    if (!read) return false;
    word = *read;
    offset_ += 2;
    --left_;
    return true;
  }

 private:
  FileWindow window_;
  uint64_t offset_;
  uint64_t left_;
};

double SignalToNoise(const InputFile& file, const ChipFrame& chip,
                     const std::vector<uint32_t>& passedOver) {
  const int silence = 1 << (chip.header.sourceBits - 1);
  WordReader source(file, chip.header.sourceOffset, chip.header.sourceCount);
  WordReader decoded(file, chip.header.decodedOffset, chip.header.decodedCount);
  double signal = 0;
  double noise = 0;
  auto skip = passedOver.begin();
  int wanted = 0;
  int got = 0;
  for (uint32_t position = 0; source.Next(wanted); ++position) {
    if (skip != passedOver.end() && *skip == position) {
      ++skip;
      continue;
    }
    if (!decoded.Next(got)) break;
    signal += static_cast<double>(wanted - silence) * (wanted - silence);
    noise += static_cast<double>(wanted - got) * (wanted - got);
  }
  return noise == 0 ? INFINITY : 10 * std::log10(signal / noise);
}

}  // namespace

Result<SoundFigures> MeasureChipFile(const Path& path) {
  const Result<InputFile> opened = InputFile::Open(path);
  if (!opened) return opened.GetStatus();
  const InputFile& file = opened.Value();
  const Result<ChipFrame> read = ReadChipFile(file);
  if (!read) return read.GetStatus();
  const ChipFrame& chip = read.Value();
  if (chip.header.sourceBits < 1 || chip.header.sourceBits > 16) {
    return Status::Error("header: " + std::to_string(chip.header.sourceBits) +
                         " bits a source sample");
  }

  std::vector<SilenceRecord> silence;
  if (chip.silenceBlock) {
    Result<std::vector<SilenceRecord>> records =
        ReadRecords<SilenceRecord>(file, chip.silenceBlock->firstOffset, chip.silenceBlock->count);
    if (!records) return records.GetStatus();
    silence = std::move(records.Value());
  }

  SoundFigures figures;
  figures.samples = chip.header.sourceCount;
  const auto samples = static_cast<double>(std::max<uint64_t>(figures.samples, 1));
  if (chip.header.rate > 0)
    figures.seconds = static_cast<double>(figures.samples) / chip.header.rate;
  constexpr uint64_t kWaveHeader = 44;
  figures.waveBytes = kWaveHeader + 2 * figures.samples;
  figures.streamBytes = chip.streamBlock.streamSize;
  figures.bitsPerSample = 8 * static_cast<double>(figures.streamBytes) / samples;
  figures.snrDb = SignalToNoise(file, chip, PassedOver(silence));
  figures.events = chip.eventBlock ? uint32_t{chip.eventBlock->count} : 0;
  uint64_t silent = 0;
  for (const SilenceRecord& record : silence) {
    if (record.end >= record.start) silent += uint64_t{record.end} - record.start + 1;
  }
  figures.silenceShare = std::min(1.0, static_cast<double>(silent) / samples);
  return figures;
}

}  // namespace velora
