#include "audio/inspect/StreamWalker.h"

#include <algorithm>
#include <bit>
#include <span>
#include <utility>

#include "audio/inspect/ChipFrame.h"

namespace velora {

namespace {

constexpr uint32_t kEventSize = 2;
constexpr uint32_t kPlaneGroupSize = 9;  // the used bits and eight planes
constexpr uint8_t kPlaneGroups = 0x0F;   // groups that a mask may name

/// The place of a command byte in the grammar's list; 0 when it is none of 1 to 8.
uint8_t FindCommand(const StreamGrammar& grammar, uint8_t firstByte) {
  const uint8_t value = firstByte & grammar.commandMask;
  for (uint8_t number = 1; number < grammar.commands.size(); ++number) {
    if (grammar.commands[number] == value) return number;
  }
  return 0;
}

CommandKind KindOf(uint8_t number) {
  constexpr CommandKind kKinds[] = {CommandKind::kSilence, CommandKind::kRaw,
                                    CommandKind::kShortFrame, CommandKind::kLongFrame};
  return kKinds[(number - 1) / 2];
}

uint8_t GetField(std::span<const std::byte> head, const HeadField& field) {
  const auto byte = std::to_integer<uint8_t>(head[field.byte]);
  return static_cast<uint8_t>(byte >> field.shift & ((1u << field.width) - 1));
}

uint8_t RowOf(const StreamGrammar& grammar, uint8_t field) {
  return field == grammar.zeroRowField ? uint8_t{0} : field;
}

}  // namespace

const char* CommandKindName(CommandKind kind) {
  switch (kind) {
    case CommandKind::kEnd:
      return "end";
    case CommandKind::kSilence:
      return "silence";
    case CommandKind::kRaw:
      return "raw";
    case CommandKind::kShortFrame:
      return "short frame";
    case CommandKind::kLongFrame:
      return "long frame";
  }
  return "";
}

std::string DescribeCommand(const StreamCommand& command) {
  std::string text = CommandKindName(command.kind);
  if (command.kind == CommandKind::kEnd) return text;
  const bool frame =
      command.kind == CommandKind::kShortFrame || command.kind == CommandKind::kLongFrame;
  if (frame) text += ", row " + std::to_string(command.row);
  if (command.kind != CommandKind::kSilence) text += ", start " + std::to_string(command.startHigh);
  text += ", " + std::to_string(command.length) + (command.length == 1 ? " sample" : " samples");
  if (command.event.present) {
    text += ", event " + std::to_string(command.event.action) + " (" +
            std::to_string(command.event.parameter) + ")";
  }
  if (command.event.planesSize) {
    text += ", " + std::to_string(command.event.planesSize) + " bytes of planes";
  }
  return text;
}

StreamWalker::StreamWalker(const InputFile& file, const StreamPlace& place)
    : place_(place), window_(file) {
  const uint64_t left = file.Size() - std::min(place.offset, file.Size());
  place_.size = std::min(place.size, left);
}

bool StreamWalker::Fail(std::string message) {
  status_ = window_.GetStatus() ? Status::Error(std::move(message)) : window_.GetStatus();
  return false;
}

/// A little-endian number of `count` bytes at an offset from the stream's start.
bool StreamWalker::Take(uint64_t at, uint32_t count, uint32_t& value) {
  if (count > place_.size || at > place_.size - count) return false;
  const std::span<const std::byte> bytes = window_.Get(place_.offset + at, count);
  if (bytes.size() < count) return false;
  value = 0;
  for (uint32_t i = 0; i < count; ++i) value |= std::to_integer<uint32_t>(bytes[i]) << 8 * i;
  return true;
}

bool StreamWalker::Next(StreamCommand& command) {
  if (ended_ || !status_) return false;
  command = {};
  command.fileOffset = Offset();
  command.streamOffset = streamOffset_;
  command.position = position_;
  if (!ReadHead(command)) return false;
  streamOffset_ += command.size;
  position_ += command.length;
  return true;
}

bool StreamWalker::ReadHead(StreamCommand& command) {
  const StreamGrammar& grammar = *place_.grammar;
  uint32_t first = 0;
  if (!Take(streamOffset_, 1, first)) return Fail("the stream ends without its end mark");
  command.firstByte = static_cast<uint8_t>(first);
  if (command.firstByte == grammar.commands[0]) {
    command.size = grammar.endSize;
    if (grammar.endSize > place_.size - streamOffset_) return Fail("the end mark is cut");
    ended_ = true;
    return true;
  }
  command.number = FindCommand(grammar, command.firstByte);
  if (command.number == 0) {
    return Fail("unknown command byte " + std::to_string(command.firstByte));
  }
  command.kind = KindOf(command.number);
  command.event.present = command.number % 2 == 0;

  bool whole = false;
  switch (command.kind) {
    case CommandKind::kSilence:
      whole = ReadSilence(command);
      break;
    case CommandKind::kRaw:
      whole = ReadRaw(command);
      break;
    default:
      whole = ReadFrame(command);
      break;
  }
  if (whole && command.size <= place_.size - streamOffset_) return true;
  return Fail(std::string(CommandKindName(command.kind)) +
              " command reaches past the end of the stream");
}

bool StreamWalker::ReadSilence(StreamCommand& command) {
  constexpr uint32_t kLengthSize = 2;
  command.size = 1;
  if (!ReadEvent(command, EventPlace::kBehindHead)) return false;
  uint32_t length = 0;
  if (!Take(streamOffset_ + command.size, kLengthSize, length)) return false;
  command.length = length;
  command.size += kLengthSize;
  return ReadEvent(command, EventPlace::kAtEnd);
}

bool StreamWalker::ReadRaw(StreamCommand& command) {
  const uint8_t countSize = place_.grammar->rawCountSize;
  uint32_t value = 0;
  if (!Take(streamOffset_ + 1, 1, value)) return false;
  command.startHigh = static_cast<uint8_t>(value);
  command.size = 2;
  if (!ReadEvent(command, EventPlace::kBehindHead)) return false;
  if (!Take(streamOffset_ + command.size, countSize, value)) return false;
  command.size += countSize;
  command.bodyOffset = command.fileOffset + command.size;
  command.length = value + 1;
  command.size += value;
  return ReadEvent(command, EventPlace::kAtEnd);
}

bool StreamWalker::ReadFrame(StreamCommand& command) {
  const StreamGrammar& grammar = *place_.grammar;
  if (grammar.frameHeadSize > place_.size - streamOffset_) return false;
  const std::span<const std::byte> head = window_.Get(Offset(), grammar.frameHeadSize);
  if (head.size() < grammar.frameHeadSize) return false;
  command.rowField = GetField(head, grammar.row);
  command.row = RowOf(grammar, command.rowField);
  if (command.row >= grammar.steps.size()) return false;
  command.startHigh = GetField(head, grammar.startHigh);
  command.size = grammar.frameHeadSize;
  if (!ReadEvent(command, EventPlace::kBehindHead)) return false;
  command.bodyOffset = command.fileOffset + command.size;
  command.length = command.kind == CommandKind::kLongFrame ? grammar.longFrame : grammar.shortFrame;
  command.size += grammar.FrameBodySize(command.length);
  return ReadEvent(command, EventPlace::kAtEnd);
}

/// Reads the event of a command at the place the command has grown to, when this
/// is where the grammar has it.
bool StreamWalker::ReadEvent(StreamCommand& command, EventPlace here) {
  if (!command.event.present || place_.grammar->eventPlace != here) return true;
  uint32_t word = 0;
  if (!Take(streamOffset_ + command.size, kEventSize, word)) return false;
  CommandEvent& event = command.event;
  event.offset = command.fileOffset + command.size;
  event.word = static_cast<uint16_t>(word);
  event.action = static_cast<uint8_t>(word >> 8);
  event.parameter = std::rotr(static_cast<uint8_t>(word), 2);
  command.size += kEventSize;
  if (place_.form == EventForm::kPlanes && event.action == kPlaneAction) {
    event.planesSize = PlanesSize(streamOffset_ + command.size);
    command.size += event.planesSize;
  }
  return true;
}

/// Bytes of the plane block at a place of the stream; 0 when what stands there has
/// not its shape: the first record of a file goes out without planes.
uint32_t StreamWalker::PlanesSize(uint64_t at) {
  uint32_t head = 0;
  if (!Take(at, 2, head)) return 0;
  const uint32_t length = head & 0xFF;
  const uint32_t mask = head >> 8;
  const auto groups = static_cast<uint32_t>(std::popcount(mask));
  if (groups == 0 || mask > kPlaneGroups || length != 1 + kPlaneGroupSize * groups) return 0;
  return 1 + length;
}

Result<CommandStream> CommandStream::Open(const Path& path) {
  Result<InputFile> opened = InputFile::Open(path);
  if (!opened) return opened.GetStatus();
  auto file = std::make_unique<InputFile>(std::move(opened.Value()));
  const Result<ChipFrame> chip = ReadChipFile(*file);
  if (!chip) return chip.GetStatus();
  const Result<StreamPlace> place = FindStream(*file, chip.Value());
  if (!place) return place.GetStatus();
  return CommandStream(std::move(file), place.Value(), chip->header.rate);
}

}  // namespace velora
