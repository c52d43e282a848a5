// The pen with which the explainers write a ParseLog.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "audio/inspect/Explain.h"
#include "audio/inspect/FileWindow.h"
#include "audio/inspect/Layouts.h"

namespace velora {

/// Adds entries within the limits. Borrows the log.
class LogWriter {
 public:
  LogWriter(ParseLog& log, const ExplainOptions& options) : log_(&log), options_(options) {}

  /// The entry; what does not fit any more is counted. Null then.
  LogEntry* Add(LogEntry entry);

  /// A block and its fields, one deeper. A record that the file cuts off is told
  /// as far as it goes, with a note.
  LogEntry* AddRecord(FileWindow& window, const layout::Layout& layout, uint64_t offset, int depth,
                      std::string name, std::string note = {});

  /// The fields of a record alone, at `depth`.
  void AddFields(FileWindow& window, const layout::Layout& layout, uint64_t offset, int depth);

  /// How many of `count` records are told one by one.
  uint64_t Shown(uint64_t count) const { return std::min<uint64_t>(count, options_.recordLimit); }

  /// An entry for the records that are not, if any.
  void AddSummary(uint64_t offset, uint64_t recordSize, uint64_t count, int depth,
                  std::string_view plural);

  /// The last entry: what was left out, if anything.
  void Finish();

 private:
  ParseLog* log_;
  ExplainOptions options_;
};

// The explainers: each tells the whole of a file of its kind.
void ExplainWave(FileWindow& window, LogWriter& log);
void ExplainSource(FileWindow& window, LogWriter& log);
Status ExplainChip(const InputFile& file, FileWindow& window, LogWriter& log);

}  // namespace velora
