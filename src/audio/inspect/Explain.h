// The parse log: what every byte of a sound file is, told in file order.
//
// The log is made from the bytes alone, without the classes that read and write
// the formats, and it goes on where those give up: a damaged file is explained
// as far as it can be followed, and the notes say where it stops making sense.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// One thing found in a file: a block, a record, a field, or bytes that belong
/// to nothing.
struct LogEntry {
  uint64_t offset = 0;  ///< of the first byte in the file
  uint64_t size = 0;    ///< in bytes; 0 for a thing that is missing
  int depth = 0;        ///< 0 for blocks of the file, one more for what lies inside
  std::string name;     ///< "fmt ", "sample rate", "event 3"; printable ASCII
  std::string value;    ///< as text, empty for a block; printable ASCII
  std::string note;     ///< what it means or what is odd about it; often empty
};

struct ExplainOptions {
  /// Records of one list (events, silence regions, cue points, labels, loops)
  /// told one by one; one entry sums up the others.
  size_t recordLimit = 1000;
  /// Entries of the whole log; when it is full, one last entry says how many
  /// were left out.
  size_t entryLimit = 20000;
};

struct ParseLog {
  std::string format;  ///< "WAV", "SRC", "MPM"; empty when the file is none of these
  uint64_t fileSize = 0;
  std::vector<LogEntry> entries;
  uint64_t omitted = 0;  ///< entries that the limits left out
};

/// Explains a file. A file of no known format gives a log of its first bytes and
/// the reason; an error only when the file cannot be read.
Result<ParseLog> ExplainFile(const Path& path, const ExplainOptions& options = {});

/// The same for a file that is already open.
Result<ParseLog> ExplainOpenFile(const InputFile& file, const ExplainOptions& options = {});

}  // namespace velora
