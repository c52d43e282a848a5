// The command stream of a chip file, one command at a time.
//
// Nothing is held but a window of the file, however long the stream and however
// much silence it tells. To dump a file:
//
//   Result<CommandStream> stream = CommandStream::Open(path);
//   StreamWalker walker = stream->Walk();
//   StreamCommand command;
//   while (walker.Next(command)) std::puts(DescribeCommand(command).c_str());
//   if (!walker.GetStatus().Ok()) ...  // what broke it, at walker.Offset()
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "audio/inspect/FileWindow.h"
#include "audio/inspect/StreamGrammar.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// What may follow an event word in a stream.
enum class EventForm : uint8_t {
  kWord,    ///< nothing
  kPlanes,  ///< behind action 204 a length byte and the bit planes of the changed port groups
};

/// The action whose word may have planes behind it, and the one that ends them.
inline constexpr uint8_t kPlaneAction = 204;
inline constexpr uint8_t kLastPlaneAction = 205;

/// The event that a command carries.
struct CommandEvent {
  bool present = false;
  uint64_t offset = 0;  ///< of the event word in the file
  uint16_t word = 0;    ///< as stored: action high, parameter rotated left by two bits low
  uint8_t action = 0;
  uint8_t parameter = 0;    ///< rotated back
  uint32_t planesSize = 0;  ///< bytes of bit planes behind the word, the length byte included
};

struct StreamCommand {
  uint64_t fileOffset = 0;    ///< of the first byte in the file
  uint64_t streamOffset = 0;  ///< the same from the stream's first byte
  uint32_t size = 0;          ///< bytes, event and planes included
  CommandKind kind = CommandKind::kEnd;
  uint8_t number = 0;       ///< 0 to 8, the command's place in StreamGrammar::commands
  uint8_t firstByte = 0;    ///< as stored
  uint64_t position = 0;    ///< sample position of its first sample in the stream's own count
  uint32_t length = 0;      ///< samples that it gives
  uint8_t rowField = 0;     ///< frames: as stored
  uint8_t row = 0;          ///< frames: the row of the step table
  uint8_t startHigh = 0;    ///< frames: high bits of the value before; raw: the first sample
  uint64_t bodyOffset = 0;  ///< in the file: a frame's code groups, a raw command's further samples
  CommandEvent event;
};

/// One line about a command, without its offset: "long frame, row 3, start 127,
/// 64 samples, event 12 (5)".
std::string DescribeCommand(const StreamCommand& command);

/// The name alone: "silence", "raw", "short frame", "long frame", "end".
const char* CommandKindName(CommandKind kind);

/// Where a stream lies, and how to read it.
struct StreamPlace {
  const StreamGrammar* grammar = nullptr;
  uint64_t offset = 0;  ///< in the file
  uint64_t size = 0;    ///< bytes; may reach past the end of the file
  EventForm form = EventForm::kWord;
};

/// Walks a stream from its first command to its end mark. Borrows the file.
class StreamWalker {
 public:
  StreamWalker(const InputFile& file, const StreamPlace& place);

  /// The next command. The end mark is given as a command too. False behind the
  /// end mark, and at a command that is unknown or reaches past the stream or
  /// the file: then GetStatus says why.
  bool Next(StreamCommand& command);

  const Status& GetStatus() const { return status_; }

  /// In the file, where the next command starts: behind the end mark when the
  /// walk is done, at the broken command when it failed.
  uint64_t Offset() const { return place_.offset + streamOffset_; }
  uint64_t StreamOffset() const { return streamOffset_; }

  /// Samples told so far.
  uint64_t Position() const { return position_; }

  /// True when the end mark was met.
  bool Ended() const { return ended_; }

 private:
  bool ReadHead(StreamCommand& command);
  bool ReadFrame(StreamCommand& command);
  bool ReadRaw(StreamCommand& command);
  bool ReadSilence(StreamCommand& command);
  bool ReadEvent(StreamCommand& command, EventPlace here);
  uint32_t PlanesSize(uint64_t at);
  bool Take(uint64_t at, uint32_t count, uint32_t& value);
  bool Fail(std::string message);

  StreamPlace place_;
  FileWindow window_;
  uint64_t streamOffset_ = 0;
  uint64_t position_ = 0;
  bool ended_ = false;
  Status status_;
};

/// The stream of a chip file, found by the file's own header.
class CommandStream {
 public:
  /// An error when the file cannot be read, is of no format whose streams are
  /// known here, or its header points outside the file.
  static Result<CommandStream> Open(const Path& path);

  const StreamPlace& Place() const { return place_; }
  const InputFile& File() const { return *file_; }  ///< for a StreamDecoder beside the walk
  uint32_t SampleRate() const { return sampleRate_; }
  StreamWalker Walk() const { return StreamWalker(*file_, place_); }

 private:
  CommandStream(std::unique_ptr<InputFile> file, const StreamPlace& place, uint32_t sampleRate)
      : file_(std::move(file)), place_(place), sampleRate_(sampleRate) {}

  std::unique_ptr<InputFile> file_;
  StreamPlace place_;
  uint32_t sampleRate_ = 0;
};

}  // namespace velora
