// What the commands of a stream sound like.
//
// The arithmetic stands here on its own, apart from the coders, so that it can
// judge what they wrote.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "audio/inspect/FileWindow.h"
#include "audio/inspect/StreamGrammar.h"
#include "audio/inspect/StreamWalker.h"
#include "platform/File.h"

namespace velora {

/// Decodes command by command, in blocks of the caller's size. Borrows the file.
///
/// One value is carried from command to command: silence repeats it, a frame's
/// first code adds to it. A raw command tells only the high bits of its samples
/// while the coder that wrote the stream went on from the whole last sample; who
/// knows that sample (a chip file stores it) says so with SetValue before the
/// next command.
class StreamDecoder {
 public:
  StreamDecoder(const InputFile& file, const StreamGrammar& grammar);

  /// Turns to the first sample of a command. What was not read of the command
  /// before is left out of the carried value.
  void Begin(const StreamCommand& command);

  /// The next samples of the command, as many as it still has and `out` takes;
  /// 0 behind its last one. Samples of a raw command have their low bits 0.
  size_t Read(std::span<uint16_t> out);

  uint16_t Value() const { return static_cast<uint16_t>(value_); }
  void SetValue(uint16_t value) { value_ = value; }

  /// For the frame begun last: codes read so far that would have left the range
  /// of samples and were held to it. An encoder writes none.
  uint32_t HeldCodes() const { return heldCodes_; }

  /// For the frame begun last: codes read so far that are not 0.
  uint32_t MovingCodes() const { return movingCodes_; }

 private:
  static constexpr size_t kMaxFrame = 128;

  void LoadCodes();
  void ReadFrame(std::span<uint16_t> out);
  size_t ReadRaw(std::span<uint16_t> out);

  const StreamGrammar* grammar_;
  FileWindow window_;
  StreamCommand command_;
  uint32_t done_ = 0;  ///< samples of the command read so far
  int32_t value_ = 0;
  uint32_t heldCodes_ = 0;
  uint32_t movingCodes_ = 0;
  int8_t codes_[kMaxFrame] = {};
};

}  // namespace velora
