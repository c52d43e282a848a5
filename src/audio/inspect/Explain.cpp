#include "audio/inspect/Explain.h"

#include "audio/inspect/FieldText.h"
#include "audio/inspect/FileKind.h"
#include "audio/inspect/FileWindow.h"
#include "audio/inspect/Layouts.h"
#include "audio/inspect/LogWriter.h"

namespace velora {

namespace {

constexpr size_t kUnknownShown = 16;

void ExplainUnknown(FileWindow& window, LogWriter& log) {
  const std::string reason = UnknownReason(window);
  const std::span<const std::byte> bytes = window.Get(0, kUnknownShown + 1);
  log.Add({0, std::min(bytes.size(), kUnknownShown), 0, "first bytes", BytesText(bytes), reason});
  if (window.FileSize() > kUnknownShown) {
    log.Add({kUnknownShown, window.FileSize() - kUnknownShown, 0, "unknown bytes", {}, {}});
  }
}

}  // namespace

void ExplainSource(FileWindow& window, LogWriter& log) {
  log.AddRecord(window, layout::kSourceLayout, 0, 0, "header");
  const auto header = window.Record<layout::SourceHeader>(0);
  if (!header) return;
  const uint64_t size = window.FileSize() - sizeof(layout::SourceHeader);
  const uint64_t wanted = 2 * uint64_t{header->count};
  LogEntry samples{sizeof(layout::SourceHeader), std::min(size, wanted), 0, "samples", {}, {}};
  samples.value = std::to_string(samples.size / 2) + " words";
  if (header->flag == layout::kEncipheredFlag) samples.note = "enciphered byte by byte";
  if (size < wanted) samples.note = "cut off: expected " + std::to_string(wanted / 2) + " words";
  const uint64_t end = samples.offset + samples.size;
  log.Add(std::move(samples));
  if (size > wanted) {
    log.Add({end, size - wanted, 0, "trailing bytes", {}, "belong to nothing"});
  }
}

Result<ParseLog> ExplainFile(const Path& path, const ExplainOptions& options) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return file.GetStatus();
  return ExplainOpenFile(file.Value(), options);
}

Result<ParseLog> ExplainOpenFile(const InputFile& file, const ExplainOptions& options) {
  FileWindow window(file);
  ParseLog log;
  log.format = KindName(window);
  log.fileSize = file.Size();
  LogWriter writer(log, options);
  Status status;
  switch (DetectKind(window)) {
    case FileKind::kWave:
      ExplainWave(window, writer);
      break;
    case FileKind::kSource:
      ExplainSource(window, writer);
      break;
    case FileKind::kChip:
      status = ExplainChip(file, window, writer);
      break;
    case FileKind::kUnknown:
      ExplainUnknown(window, writer);
      break;
  }
  if (!status) return status;
  if (!window.GetStatus()) return window.GetStatus();
  writer.Finish();
  return log;
}

}  // namespace velora
