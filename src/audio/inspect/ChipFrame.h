// The outer frame of the compressed chip formats: where header and blocks say
// that everything lies.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "audio/inspect/Layouts.h"
#include "audio/inspect/StreamGrammar.h"
#include "audio/inspect/StreamWalker.h"
#include "platform/File.h"
#include "platform/Status.h"

namespace velora {

/// What the headers of one format hold. A family that shares the frame joins by
/// its row.
struct ChipFormat {
  std::string_view tag;  ///< first four bytes of the file
  const StreamGrammar* grammar = nullptr;
  uint16_t channels = 1;
  uint16_t formatCode = 0;
  uint16_t bits = 0;          ///< of stream and samples
  uint16_t framesMethod = 0;  ///< compression method of a stream with frames
  uint16_t rawMethod = 0;     ///< of one without
  uint16_t padValue = 0;      ///< stands behind the last sample of a run that is too short
};

/// The format with this tag; null when there is none whose stream is known.
const ChipFormat* FindChipFormat(std::string_view tag);

/// The records of the outer frame as they stand in the file.
struct ChipFrame {
  const ChipFormat* format = nullptr;
  layout::MpmHeader header;
  layout::StreamBlockRecord streamBlock;                   ///< zero where the file ends before it
  std::optional<layout::EventBlockRecord> eventBlock;      ///< where the header says
  std::optional<layout::SilenceBlockRecord> silenceBlock;  ///< behind the event records
  uint64_t silenceOffset = 0;                              ///< where that block stands, or should
};

/// Reads the records. An error when the file is of no format known here, is
/// shorter than its header, or cannot be read; blocks that lie outside the file
/// are empty.
Result<ChipFrame> ReadChipFile(const InputFile& file);

/// Where the stream of the file lies. An error when that is outside the file.
Result<StreamPlace> FindStream(const InputFile& file, const ChipFrame& chip);

/// Records of `T` from an offset on, `count` or as many as the file holds whole.
template <typename T>
Result<std::vector<T>> ReadRecords(const InputFile& file, uint64_t offset, uint64_t count) {
  const uint64_t left = offset < file.Size() ? file.Size() - offset : 0;
  std::vector<T> records(static_cast<size_t>(std::min<uint64_t>(count, left / sizeof(T))));
  if (records.empty()) return records;
  const Status read = file.ReadExactly(offset, std::as_writable_bytes(std::span(records)));
  if (!read) return read;
  return records;
}

/// The event word that stands for a record in a stream: the action above the
/// parameter rotated left by two bits.
uint16_t EventWordOf(const layout::EventRecord& record);

}  // namespace velora
