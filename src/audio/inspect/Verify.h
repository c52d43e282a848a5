// Checks a sound file against itself: every field that another part of the file
// determines, and for chip files the stored decoded block against the stream,
// decoded here once more by arithmetic of its own.
//
// What a file may hold although a save of this system would not write it so is
// a warning; what contradicts another part of the file, or what no reader of
// this system accepts, is a fault. docs/formats lists for each field which part
// of the file it is checked against.
//
// Files are read in windows: memory does not grow with what the file claims,
// and time is bounded by its size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// One contradiction. All texts are printable ASCII without a full stop.
struct Fault {
  uint64_t offset = 0;   ///< of the field or record in the file
  std::string what;      ///< the thing: "header: file size", "decoded word 812"
  std::string expected;  ///< what the rest of the file asks for
  std::string found;     ///< what stands there
};

struct VerifyOptions {
  size_t listLimit = 100;  ///< faults, and warnings, that are listed; all are counted
};

struct VerifyReport {
  std::string format;  ///< "WAV", "SRC", "MPM"

  std::vector<Fault> faults;  ///< in the order found, at most `listLimit`
  uint64_t faultCount = 0;
  std::vector<Fault> warnings;
  uint64_t warningCount = 0;

  uint64_t checks = 0;    ///< comparisons made
  uint64_t samples = 0;   ///< decoded words compared; frames of a wave, words of a source file
  uint64_t commands = 0;  ///< commands of the stream, the end mark included
  uint64_t events = 0;    ///< event records; pairs in the labels of a wave
  uint64_t silenceRegions = 0;  ///< silence records; SILENCE labels of a wave

  bool Good() const { return faultCount == 0; }
};

/// An error when the file cannot be read or is of no format that is checked
/// here; a fault never is an error.
Result<VerifyReport> VerifyFile(const Path& path, const VerifyOptions& options = {});

/// The same for a file that is already open.
Result<VerifyReport> VerifyOpenFile(const InputFile& file, const VerifyOptions& options = {});

}  // namespace velora
