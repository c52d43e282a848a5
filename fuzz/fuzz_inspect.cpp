// The checks that judge files from their bytes: parse log, verification, dump.
//
// All three run over the same bytes and must end, whatever these say; no memory
// beyond what the file's size allows is taken (-rss_limit_mb tells).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/Explain.h"
#include "audio/inspect/StreamDecoder.h"
#include "audio/inspect/StreamWalker.h"
#include "audio/inspect/Verify.h"

namespace {

using namespace velora;

/// Decodes the first samples of each command, as a dump of the stream would.
void Dump(const InputFile& file) {
  const Result<ChipFrame> chip = ReadChipFile(file);
  if (!chip) return;
  const Result<StreamPlace> place = FindStream(file, chip.Value());
  if (!place) return;
  StreamWalker walker(file, place.Value());
  StreamDecoder decoder(file, *place->grammar);
  std::vector<uint16_t> samples(256);
  StreamCommand command;
  uint64_t position = 0;
  while (walker.Next(command)) {
    if (DescribeCommand(command).empty()) std::abort();
    if (command.position != position) std::abort();
    position += command.length;
    decoder.Begin(command);
    for (const uint16_t sample : std::span(samples).first(decoder.Read(samples))) {
      if (sample > place->grammar->maxValue) std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  const InputFile file = InputFile::FromBytes({bytes.begin(), bytes.end()});
  const Result<ParseLog> log = ExplainOpenFile(file);
  if (!log) std::abort();  // only a file that cannot be read has no log
  for (const LogEntry& entry : log->entries) {
    if (entry.offset > UINT32_MAX * uint64_t{4}) std::abort();
  }
  const Result<VerifyReport> report = VerifyOpenFile(file);
  if (report.Ok() && report->faultCount < report->faults.size()) std::abort();
  Dump(file);
  return 0;
}
