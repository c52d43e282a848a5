// A plain reader of the root compressed format for tests, written from the format's
// description and sharing no code with the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace velora::test {

struct MpmCommand {
  int code = 0;         ///< 1 to 8
  size_t offset = 0;    ///< of the first byte, in the stream
  size_t position = 0;  ///< of its first sample, in the decoded stream
  size_t length = 0;    ///< samples
  int before = -1;      ///< second byte of a frame
  bool hasEvent = false;
  int action = 0;
  int parameter = 0;
};

struct MpmContent {
  std::map<int, uint32_t> header;  ///< by offset; the 16- and 32-bit fields
  std::vector<uint8_t> stream;
  std::vector<uint16_t> decoded;
  std::vector<uint16_t> samples;
  struct Event {
    uint32_t position;
    int action;
    int parameter;
  };
  std::vector<Event> events;
  std::vector<std::pair<uint32_t, uint32_t>> silence;
  std::vector<MpmCommand> commands;
  /// What the commands decode to; of raw samples the high 8 bits are told.
  std::vector<uint16_t> played;
  std::vector<bool> playedRaw;
};

/// Reads a whole file; throws std::runtime_error with the fault.
MpmContent ReadMpm(const std::string& path);

}  // namespace velora::test
