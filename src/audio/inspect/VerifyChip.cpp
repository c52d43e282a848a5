// The checks of the headers and blocks of a compressed chip file.
#include <algorithm>
#include <string>

#include "audio/inspect/Checker.h"
#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/FieldText.h"
#include "audio/inspect/Verifiers.h"

namespace velora {

namespace {

using layout::EventBlockRecord;
using layout::EventRecord;
using layout::MpmHeader;
using layout::SilenceBlockRecord;
using layout::SilenceRecord;
using layout::StreamBlockRecord;

constexpr uint16_t kVersion = 0x0110;

void CheckConstants(const ChipFrame& chip, RecordCheck& check) {
  const ChipFormat& format = *chip.format;
  check.Tag("tag", format.tag);
  check.Equal("version", kVersion);
  check.Equal("header size", sizeof(MpmHeader));
  check.Equal("channels", format.channels);
  check.Equal("format code", format.formatCode);
  check.Require(chip.header.rate != 0, "sample rate", "above 0");
  check.Equal("band limit", layout::BandLimit(chip.header.rate));
  check.Equal("stream bits", format.bits);
  check.Equal("sample bits", format.bits);
  check.Require(chip.header.method == format.framesMethod || chip.header.method == format.rawMethod,
                "compression method",
                std::to_string(format.framesMethod) + " or " + std::to_string(format.rawMethod));
}

/// The blocks stand one behind the other, with nothing between them.
void CheckPlaces(const InputFile& file, const ChipFrame& chip, RecordCheck& check) {
  const MpmHeader& header = chip.header;
  check.Equal("file size", file.Size());
  check.Equal("stream block offset", sizeof(MpmHeader));
  check.Equal("stream block size",
              sizeof(StreamBlockRecord) + uint64_t{chip.streamBlock.streamSize});
  check.Equal("decoded offset", sizeof(MpmHeader) + uint64_t{header.streamBlockSize});
  check.Equal("samples offset", uint64_t{header.decodedOffset} + 2 * uint64_t{header.decodedCount});
  check.Equal("event block offset",
              uint64_t{header.sourceOffset} + 2 * uint64_t{header.sourceCount});
  if (chip.eventBlock) {
    check.Equal("event block size",
                sizeof(EventBlockRecord) + sizeof(EventRecord) * uint64_t{chip.eventBlock->count});
  }
}

void CheckStreamBlock(const ChipFrame& chip, Checker& checker) {
  const uint64_t offset = chip.header.streamBlockOffset;
  RecordCheck check(checker, "stream block", layout::kStreamBlockLayout, BytesOf(chip.streamBlock),
                    offset);
  check.Tag("tag", "MFRM");
  check.Equal("block size", sizeof(StreamBlockRecord));
  check.Equal("stream offset", sizeof(MpmHeader) + sizeof(StreamBlockRecord));
  const uint64_t end = uint64_t{chip.streamBlock.streamOffset} + chip.streamBlock.streamSize;
  check.Require(end == chip.header.decodedOffset, "stream size",
                "up to the decoded block at " + std::to_string(chip.header.decodedOffset));
}

void CheckEventBlock(const InputFile& file, const ChipFrame& chip, Checker& checker) {
  const uint64_t offset = chip.header.eventOffset;
  if (!chip.eventBlock) {
    checker.Fault(offset, "event block", "14 bytes in the file",
                  "the file ends at " + std::to_string(file.Size()));
    return;
  }
  const EventBlockRecord& block = *chip.eventBlock;
  RecordCheck check(checker, "event block", layout::kEventBlockLayout, BytesOf(block), offset);
  check.Tag("tag", "MCMD");
  check.Equal("block size", sizeof(EventBlockRecord));
  check.Equal("records offset", offset + sizeof(EventBlockRecord));
  check.Require(chip.silenceOffset <= file.Size(), "count", "records inside the file");
}

void CheckSilenceBlock(const InputFile& file, const ChipFrame& chip, Checker& checker) {
  if (!chip.eventBlock || chip.silenceOffset > file.Size()) return;
  if (!chip.silenceBlock) {
    const uint64_t left = file.Size() - chip.silenceOffset;
    if (left == 0) {
      checker.Warn(chip.silenceOffset, "silence block", "behind the event records", "none");
    } else {
      checker.Fault(chip.silenceOffset, "silence block", "16 bytes",
                    std::to_string(left) + " bytes");
    }
    return;
  }
  const SilenceBlockRecord& block = *chip.silenceBlock;
  const uint64_t first = chip.silenceOffset + sizeof(SilenceBlockRecord);
  RecordCheck check(checker, "silence block", layout::kSilenceBlockLayout, BytesOf(block),
                    chip.silenceOffset);
  check.Tag("tag", "KSIL");
  check.Equal("block size", sizeof(SilenceBlockRecord));
  check.Equal("record size", sizeof(SilenceRecord));
  check.Equal("records offset", first);
  const uint64_t left = file.Size() - first;
  check.Require(sizeof(SilenceRecord) * uint64_t{block.count} == left, "count",
                std::to_string(left) + " bytes of records up to the end of the file");
}

void CheckSourceRange(const InputFile& file, const ChipFrame& chip, Checker& checker) {
  constexpr uint64_t kBlock = 8192;
  const uint64_t start = std::min<uint64_t>(chip.header.sourceOffset, file.Size());
  const uint64_t count = std::min<uint64_t>(chip.header.sourceCount, (file.Size() - start) / 2);
  const unsigned top = (1u << chip.format->bits) - 1;
  FileWindow window(file);
  uint64_t done = 0;
  while (done < count) {
    const auto bytes = window.Get(start + 2 * done, 2 * std::min(kBlock, count - done));
    const size_t words = bytes.size() / 2;
    if (words == 0) break;
    for (size_t i = 0; i < words; ++i) {
      const unsigned word = std::to_integer<unsigned>(bytes[2 * i]) |
                            std::to_integer<unsigned>(bytes[2 * i + 1]) << 8;
      if (word > top) {
        checker.Fault(start + 2 * (done + i), "source sample " + std::to_string(done + i),
                      "0 to " + std::to_string(top), std::to_string(word));
      }
    }
    done += words;
  }
  checker.CountChecks(done);
}

}  // namespace

Status VerifyChip(const InputFile& file, Checker& checker) {
  if (file.Size() < sizeof(MpmHeader)) {
    checker.Fault(0, "header", "62 bytes", std::to_string(file.Size()) + " bytes");
    return {};
  }
  const Result<ChipFrame> read = ReadChipFile(file);
  if (!read) return read.GetStatus();
  const ChipFrame& chip = read.Value();
  RecordCheck header(checker, "header", layout::kMpmHeaderLayout, BytesOf(chip.header), 0);
  CheckConstants(chip, header);
  CheckPlaces(file, chip, header);
  CheckStreamBlock(chip, checker);
  CheckEventBlock(file, chip, checker);
  CheckSilenceBlock(file, chip, checker);
  CheckSourceRange(file, chip, checker);
  return VerifyStream(file, chip, checker);
}

}  // namespace velora
