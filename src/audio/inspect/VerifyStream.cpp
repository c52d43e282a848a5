// The checks of a command stream: decoded once more, word by word.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <utility>

#include "audio/inspect/Checker.h"
#include "audio/inspect/StreamDecoder.h"
#include "audio/inspect/StreamRecords.h"
#include "audio/inspect/Verifiers.h"

namespace velora {

namespace {

using layout::EventRecord;
using layout::SilenceRecord;

/// 16-bit words of a file, by index.
class WordBlock {
 public:
  WordBlock(const InputFile& file, uint64_t offset, uint64_t count)
      : window_(file), offset_(offset) {
    const uint64_t left = file.Size() - std::min(offset, file.Size());
    count_ = std::min(count, left / 2);
  }

  uint64_t Count() const { return count_; }  ///< words that the file holds
  uint64_t OffsetOf(uint64_t index) const { return offset_ + 2 * index; }

  /// Words from `first` on into `out`, which the block must hold.
  void Read(uint64_t first, std::span<uint16_t> out) {
    const std::span<const std::byte> bytes = window_.Get(OffsetOf(first), out.size_bytes());
    std::fill(out.begin(), out.end(), uint16_t{0});
    for (size_t i = 0; i < bytes.size() / 2; ++i) {
      out[i] = static_cast<uint16_t>(std::to_integer<unsigned>(bytes[2 * i]) |
                                     std::to_integer<unsigned>(bytes[2 * i + 1]) << 8);
    }
  }

 private:
  FileWindow window_;
  uint64_t offset_;
  uint64_t count_ = 0;
};

bool IsFrame(const StreamCommand& command) {
  return command.kind == CommandKind::kShortFrame || command.kind == CommandKind::kLongFrame;
}

/// Words of a command that are not what they should be: how many, and the first.
struct Mismatch {
  uint64_t count = 0;
  uint64_t index = 0;
  uint16_t expected = 0;
  uint16_t found = 0;

  void Add(uint64_t at, uint16_t wanted, uint16_t there) {
    if (count++ == 0) {
      index = at;
      expected = wanted;
      found = there;
    }
  }
};

class StreamVerifier {
 public:
  StreamVerifier(const InputFile& file, const ChipFrame& chip, const StreamPlace& place,
                 SilencePlan silence, EventMatcher events, bool followSilence, Checker& checker)
      : chip_(chip),
        grammar_(*place.grammar),
        checker_(checker),
        walker_(file, place),
        decoder_(file, grammar_),
        window_(file),
        decoded_(file, chip.header.decodedOffset, chip.header.decodedCount),
        source_(file, chip.header.sourceOffset, chip.header.sourceCount),
        silence_(std::move(silence)),
        events_(std::move(events)),
        followSilence_(followSilence) {}

  void Run() {
    StreamCommand command;
    while (walker_.Next(command)) {
      ++checker_.Report().commands;
      if (command.kind == CommandKind::kEnd) break;
      if (IsPlaneEnd(command)) {
        events_.OnPlaneEnd();
        continue;
      }
      if (command.position + command.length > chip_.header.decodedCount) {
        checker_.Fault(command.fileOffset, "stream",
                       std::to_string(chip_.header.decodedCount) + " samples, the decoded count",
                       std::to_string(command.position + command.length) + " samples or more");
        return;
      }
      CheckCommand(command);
      told_ = walker_.Position();
    }
    CheckEnd();
  }

 private:
  /// A silence of two samples behind the decoded block, with the last action of
  /// plane data.
  bool IsPlaneEnd(const StreamCommand& command) const {
    constexpr uint16_t kPlaneEndWord = kLastPlaneAction << 8;
    return command.kind == CommandKind::kSilence && command.length == 2 &&
           command.event.word == kPlaneEndWord && command.position == chip_.header.decodedCount;
  }

  void CheckCommand(const StreamCommand& command) {
    CheckHead(command);
    CompareDecoded(command);
    if (followSilence_) CheckSilence(command);
    frames_ = frames_ || IsFrame(command);
    if (command.kind == CommandKind::kRaw && command.length >= grammar_.shortFrame) {
      longRaw_ = true;
    }
    if (command.event.present) CheckEvent(command);
  }

  void CheckSilence(const StreamCommand& command) {
    if (command.kind == CommandKind::kSilence) {
      silence_.OnSilence(command, checker_);
    } else {
      silence_.OnSound(command, checker_);
    }
  }

  void CheckHead(const StreamCommand& command) {
    const std::string name = CommandKindName(command.kind) + std::string(" command");
    if (!IsFrame(command)) {
      checker_.Equal(command.fileOffset, name + ": command byte", grammar_.commands[command.number],
                     command.firstByte);
      return;
    }
    checker_.Equal(command.fileOffset + grammar_.startHigh.byte, name + ": start value",
                   decoder_.Value() >> grammar_.rawShift, command.startHigh);
    checker_.Prefer(grammar_.zeroRowField == 0 || command.rowField != 0, command.fileOffset,
                    name + ": row", std::to_string(grammar_.zeroRowField) + ", which stands for 0",
                    "0");
    checker_.Require(chip_.header.method != chip_.format->rawMethod, command.fileOffset, name,
                     "none with this compression method", DescribeCommand(command));
  }

  // ---- samples ----

  void CompareDecoded(const StreamCommand& command) {
    const uint16_t before = decoder_.Value();
    decoder_.Begin(command);
    if (command.position + command.length > decoded_.Count()) {
      missing_ = true;
      return;
    }
    Mismatch decoded;
    Mismatch source;
    uint16_t last = before;
    std::array<uint16_t, kBlock> wanted;
    std::array<uint16_t, kBlock> stored;
    uint64_t at = command.position;
    while (const size_t count = decoder_.Read(wanted)) {
      const auto words = std::span(stored).first(count);
      decoded_.Read(at, words);
      CompareBlock(command, at, std::span(wanted).first(count), words, decoded);
      if (command.kind == CommandKind::kRaw) CompareSource(command, at, words, source);
      last = words.back();
      at += count;
    }
    checker_.CountChecks(command.length);
    checker_.Report().samples += command.length;
    Report(command, decoded, "the stream");
    Report(command, source, "the source sample");
    CheckCodes(command, before);
    // Each command is judged by itself: it goes on from what is stored.
    decoder_.SetValue(std::min(last, grammar_.maxValue));
  }

  void CompareBlock(const StreamCommand& command, uint64_t at, std::span<const uint16_t> wanted,
                    std::span<const uint16_t> stored, Mismatch& mismatch) const {
    const int shift = command.kind == CommandKind::kRaw ? grammar_.rawShift : 0;
    for (size_t i = 0; i < wanted.size(); ++i) {
      if (wanted[i] >> shift != stored[i] >> shift) mismatch.Add(at + i, wanted[i], stored[i]);
    }
  }

  /// Raw samples are stored whole: the low bits that the stream leaves out are
  /// those of the source. Where a run was too short, pad values stand behind it.
  void CompareSource(const StreamCommand& command, uint64_t at, std::span<const uint16_t> stored,
                     Mismatch& mismatch) {
    std::array<uint16_t, kBlock> block;
    const uint64_t first = silence_.ToSound(at);
    const uint64_t left = source_.Count() - std::min(first, source_.Count());
    const auto source =
        std::span(block).first(static_cast<size_t>(std::min<uint64_t>(stored.size(), left)));
    source_.Read(first, source);
    for (size_t i = 0; i < source.size(); ++i) {
      if (stored[i] == source[i]) continue;
      if (command.length == 2 && IsPad(stored[i], i > 0 ? stored[i - 1] : stored[i])) continue;
      mismatch.Add(at + i, source[i], stored[i]);
    }
  }

  bool IsPad(uint16_t word, uint16_t before) const {
    const uint16_t pad = chip_.format->padValue;
    return word == pad || word == (before + pad) / 2;
  }

  void Report(const StreamCommand& command, const Mismatch& mismatch, const char* judge) {
    if (mismatch.count == 0) return;
    const std::string others =
        mismatch.count > 1 ? "; " + std::to_string(mismatch.count) + " words of this command differ"
                           : "";
    checker_.Fault(decoded_.OffsetOf(mismatch.index),
                   "decoded word " + std::to_string(mismatch.index) + " (" +
                       CommandKindName(command.kind) + " at " + std::to_string(command.fileOffset) +
                       ")",
                   std::to_string(mismatch.expected) + " by " + judge,
                   std::to_string(mismatch.found) + others);
  }

  void CheckCodes(const StreamCommand& command, uint16_t before) {
    if (!IsFrame(command)) return;
    checker_.Require(decoder_.HeldCodes() == 0, command.bodyOffset,
                     std::string(CommandKindName(command.kind)) + ": codes",
                     "values in 0 to " + std::to_string(grammar_.maxValue),
                     std::to_string(decoder_.HeldCodes()) + " codes beyond");
    if (decoder_.MovingCodes() == 0) CheckFlatRow(command, before);
  }

  /// A frame without a move decodes alike with every row; then the source tells
  /// the row that a save takes: the first whose reach covers the largest step.
  void CheckFlatRow(const StreamCommand& command, uint16_t before) {
    std::array<uint16_t, kBlock> block;
    const uint64_t first = silence_.ToSound(command.position);
    if (first + command.length > source_.Count()) return;
    const auto samples = std::span(block).first(command.length);
    source_.Read(first, samples);
    int largest = 0;
    int last = before;
    for (const uint16_t sample : samples) {
      largest = std::max(largest, std::abs(sample - last));
      last = sample;
    }
    size_t row = 0;
    while (row + 1 < grammar_.steps.size() && grammar_.steps[row] * 31 / 2 - 1 < largest) ++row;
    if (row == grammar_.zeroRowField) ++row;
    checker_.Prefer(command.row == row, command.fileOffset,
                    std::string(CommandKindName(command.kind)) + ": row of a flat frame",
                    std::to_string(row) + " by the source samples", std::to_string(command.row));
  }

  // ---- events and end ----

  void CheckEvent(const StreamCommand& command) {
    const bool rawOnly = chip_.header.method == chip_.format->rawMethod;
    checker_.Require(!rawOnly || command.kind == CommandKind::kSilence, command.fileOffset,
                     "event in the stream", "none in raw samples with this compression method",
                     DescribeCommand(command));
    const uint64_t last = command.position + std::max<uint64_t>(command.length, 1) - 1;
    events_.OnEvent(command, silence_.ToSound(last), checker_);
    planes_.OnEvent(window_, command.event, checker_);
  }

  void CheckEnd() {
    const uint64_t streamEnd =
        uint64_t{chip_.streamBlock.streamOffset} + chip_.streamBlock.streamSize;
    if (!walker_.Ended()) {
      checker_.Fault(walker_.Offset(), "stream", "a command", walker_.GetStatus().Message());
      return;
    }
    checker_.Require(walker_.Offset() == streamEnd, walker_.Offset(), "end mark",
                     "the last byte of the stream, at " + std::to_string(streamEnd - 1),
                     walker_.Offset() - 1);
    RecordCheck header(checker_, "header", layout::kMpmHeaderLayout, BytesOf(chip_.header), 0);
    header.Equal("decoded count", told_);
    header.Require(!missing_, "decoded count", "words inside the file");
    CheckMethod(header);
    const uint64_t sound = silence_.ToSound(told_);
    // The end may be padded, and crowded events go on behind it, two samples each.
    constexpr uint64_t kPadding = 2;
    const uint64_t crowded = 2 * checker_.Report().events;
    header.Prefer(chip_.header.sourceCount <= sound + kPadding &&
                      sound <= chip_.header.sourceCount + kPadding + crowded,
                  "sample count", "near the " + std::to_string(sound) + " of the stream");
    events_.Finish(std::min<uint64_t>(sound, chip_.header.sourceCount), checker_);
    if (followSilence_) silence_.Finish(told_, checker_);
  }

  /// With frames a raw run never reaches a short frame's length.
  void CheckMethod(RecordCheck& header) {
    if (chip_.header.method != chip_.format->framesMethod || !longRaw_) return;
    const std::string expected =
        std::to_string(chip_.format->rawMethod) + ": raw runs as long as a frame";
    if (frames_) {
      header.Prefer(false, "compression method", expected);
    } else {
      header.Require(false, "compression method", expected);
    }
  }

  static constexpr size_t kBlock = 1024;

  const ChipFrame& chip_;
  const StreamGrammar& grammar_;
  Checker& checker_;
  StreamWalker walker_;
  StreamDecoder decoder_;
  FileWindow window_;
  WordBlock decoded_;
  WordBlock source_;
  SilencePlan silence_;
  EventMatcher events_;
  PlaneCheck planes_;
  bool followSilence_;
  bool missing_ = false;  // decoded words reach past the end of the file
  bool frames_ = false;
  bool longRaw_ = false;
  uint64_t told_ = 0;  // samples of the commands that belong to the decoded block
};

}  // namespace

Status VerifyStream(const InputFile& file, const ChipFrame& chip, Checker& checker) {
  const Result<StreamPlace> place = FindStream(file, chip);
  if (!place) {
    checker.Fault(0, "stream", "inside the file", place.Message());
    return {};
  }
  const uint64_t firstEvent = uint64_t{chip.header.eventOffset} + sizeof(layout::EventBlockRecord);
  const uint64_t eventCount = chip.eventBlock ? uint64_t{chip.eventBlock->count} : 0;
  auto events = ReadRecords<EventRecord>(file, firstEvent, eventCount);
  if (!events) return events.GetStatus();
  checker.Report().events = events->size();

  const uint64_t firstSilence = chip.silenceOffset + sizeof(layout::SilenceBlockRecord);
  const uint64_t silenceCount = chip.silenceBlock ? uint64_t{chip.silenceBlock->count} : 0;
  auto silence = ReadRecords<SilenceRecord>(file, firstSilence, silenceCount);
  if (!silence) return silence.GetStatus();
  SilencePlan plan(std::move(silence.Value()), firstSilence);
  const bool ordered = plan.CheckOrder(chip.header.sourceCount, checker);

  const bool rawOnly = chip.header.method == chip.format->rawMethod;
  EventMatcher matcher(std::move(events.Value()), firstEvent, place->grammar->shortFrame, rawOnly);
  StreamVerifier(file, chip, place.Value(), std::move(plan), std::move(matcher),
                 ordered && chip.silenceBlock.has_value(), checker)
      .Run();
  return {};
}

}  // namespace velora
