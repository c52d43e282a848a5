#include "audio/inspect/Verify.h"

#include <algorithm>
#include <string>
#include <vector>

#include "audio/inspect/Checker.h"
#include "audio/inspect/FieldText.h"
#include "audio/inspect/FileKind.h"
#include "audio/inspect/FileWindow.h"
#include "audio/inspect/Layouts.h"
#include "audio/inspect/Verifiers.h"

namespace velora {

namespace {

constexpr uint16_t kLargestSample = 4095;

/// A stored byte b of an enciphered file stands for the x with 7 x + 3 = b modulo
/// 256; 183 is the inverse of 7.
uint8_t Decipher(uint8_t stored) { return static_cast<uint8_t>((stored - 3) * 183); }

uint16_t SourceWord(std::span<const std::byte> bytes, bool enciphered) {
  auto low = std::to_integer<uint8_t>(bytes[0]);
  auto high = std::to_integer<uint8_t>(bytes[1]);
  if (enciphered) {
    low = Decipher(low);
    high = Decipher(high);
  }
  return static_cast<uint16_t>(high << 8 | low);
}

void CheckSourceWords(FileWindow& window, uint64_t count, bool enciphered, Checker& checker) {
  constexpr uint64_t kBlock = 4096;
  uint64_t done = 0;
  while (done < count) {
    const uint64_t offset = sizeof(layout::SourceHeader) + 2 * done;
    const auto bytes = window.Get(offset, 2 * std::min(kBlock, count - done));
    const size_t words = bytes.size() / 2;
    if (words == 0) break;
    for (size_t i = 0; i < words; ++i) {
      const uint16_t word = SourceWord(bytes.subspan(2 * i, 2), enciphered);
      if (word > kLargestSample) {
        checker.Fault(offset + 2 * i, "sample " + std::to_string(done + i), "0 to 4095",
                      std::to_string(word));
      }
    }
    done += words;
  }
  checker.CountChecks(done);
  checker.Report().samples = done;
}

}  // namespace

Status VerifySource(const InputFile& file, Checker& checker) {
  FileWindow window(file);
  const auto header = window.Record<layout::SourceHeader>(0);
  if (!header) {
    checker.Fault(0, "header", "22 bytes", std::to_string(file.Size()) + " bytes");
    return window.GetStatus();
  }
  RecordCheck check(checker, "header", layout::kSourceLayout, BytesOf(*header), 0);
  check.Tag("tag", "KPCM");
  check.Equal("version", 1);
  check.Equal("header size", sizeof(layout::SourceHeader));
  check.Require(header->channels == 1 || header->channels == 2, "channels", "1 or 2");
  check.Equal("bits", 12);
  check.Require(header->flag == layout::kPlainFlag || header->flag == layout::kEncipheredFlag,
                "flag", "4 or 132");
  check.Equal("reserved", 0);
  check.Require(header->rate != 0, "sample rate", "above 0");
  check.Equal("band limit", layout::BandLimit(header->rate));
  const uint64_t bytes = file.Size() - sizeof(layout::SourceHeader);
  if (check.Require(2 * uint64_t{header->count} == bytes, "count",
                    std::to_string(bytes / 2) + " words, from the file size")) {
    check.Require(header->channels == 0 || header->count % header->channels == 0, "count",
                  "a multiple of the channels");
  }
  CheckSourceWords(window, std::min<uint64_t>(header->count, bytes / 2),
                   header->flag == layout::kEncipheredFlag, checker);
  return window.GetStatus();
}

Result<VerifyReport> VerifyFile(const Path& path, const VerifyOptions& options) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return file.GetStatus();
  return VerifyOpenFile(file.Value(), options);
}

Result<VerifyReport> VerifyOpenFile(const InputFile& file, const VerifyOptions& options) {
  FileWindow window(file);
  VerifyReport report;
  report.format = KindName(window);
  Checker checker(report, options);
  Status status;
  switch (DetectKind(window)) {
    case FileKind::kWave:
      status = VerifyWave(file, checker);
      break;
    case FileKind::kSource:
      status = VerifySource(file, checker);
      break;
    case FileKind::kChip:
      status = VerifyChip(file, checker);
      break;
    case FileKind::kUnknown:
      status = window.GetStatus() ? Status::Error(UnknownReason(window)) : window.GetStatus();
      break;
  }
  if (!status) return status;
  return report;
}

}  // namespace velora
