// The parse log of a compressed chip file.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/FieldText.h"
#include "audio/inspect/LogWriter.h"
#include "audio/inspect/StreamWalker.h"

namespace velora {

namespace {

enum class Part : uint8_t { kHeader, kStreamBlock, kStream, kDecoded, kSource, kEvents, kSilence };

/// A part of the file where its header says it is.
struct Block {
  Part part = Part::kHeader;
  uint64_t offset = 0;
  uint64_t size = 0;
  const char* name = "";
};

std::vector<Block> ListBlocks(const ChipFrame& chip) {
  const layout::MpmHeader& header = chip.header;
  std::vector<Block> blocks = {
      {Part::kHeader, 0, sizeof(header), "header"},
      {Part::kStreamBlock, header.streamBlockOffset, sizeof(layout::StreamBlockRecord),
       "stream block"},
      {Part::kStream, chip.streamBlock.streamOffset, chip.streamBlock.streamSize, "stream"},
      {Part::kDecoded, header.decodedOffset, 2 * uint64_t{header.decodedCount}, "decoded block"},
      {Part::kSource, header.sourceOffset, 2 * uint64_t{header.sourceCount}, "source samples"},
      {Part::kEvents, header.eventOffset, sizeof(layout::EventBlockRecord), "event block"},
  };
  if (chip.eventBlock) {
    blocks.back().size += sizeof(layout::EventRecord) * uint64_t{chip.eventBlock->count};
  }
  if (chip.silenceBlock) {
    const uint64_t records = sizeof(layout::SilenceRecord) * uint64_t{chip.silenceBlock->count};
    blocks.push_back({Part::kSilence, chip.silenceOffset,
                      sizeof(layout::SilenceBlockRecord) + records, "silence block"});
  }
  std::stable_sort(blocks.begin(), blocks.end(),
                   [](const Block& a, const Block& b) { return a.offset < b.offset; });
  return blocks;
}

/// Tells the blocks in file order, with what lies between and across them.
class ChipExplainer {
 public:
  ChipExplainer(const InputFile& file, FileWindow& window, LogWriter& log, const ChipFrame& chip)
      : file_(file), window_(window), log_(log), chip_(chip) {}

  void Run() {
    uint64_t reached = 0;
    for (const Block& block : ListBlocks(chip_)) {
      if (block.offset > reached) AddGap(reached, std::min(block.offset, file_.Size()));
      Explain(block, Note(block, reached));
      reached = std::max(reached, block.offset + block.size);
    }
    if (reached < file_.Size()) AddGap(reached, file_.Size());
  }

 private:
  void AddGap(uint64_t from, uint64_t to) {
    if (from < to) log_.Add({from, to - from, 0, "unused bytes", {}, "belong to nothing"});
  }

  std::string Note(const Block& block, uint64_t reached) const {
    std::string note;
    if (block.offset < reached && block.size > 0) {
      note = "overlaps what stands before by " + std::to_string(reached - block.offset) + " bytes";
    }
    if (block.offset + block.size > file_.Size()) {
      if (!note.empty()) note += "; ";
      note += "reaches past the end of the file";
    }
    return note;
  }

  uint64_t There(const Block& block) const {
    return std::min(block.size, file_.Size() - std::min(block.offset, file_.Size()));
  }

  void Explain(const Block& block, std::string note) {
    switch (block.part) {
      case Part::kHeader:
        log_.AddRecord(window_, layout::kMpmHeaderLayout, 0, 0, block.name, std::move(note));
        break;
      case Part::kStreamBlock:
        log_.AddRecord(window_, layout::kStreamBlockLayout, block.offset, 0, block.name,
                       std::move(note));
        break;
      case Part::kStream:
        log_.Add({block.offset, There(block), 0, block.name, {}, std::move(note)});
        ExplainStream(block);
        break;
      case Part::kDecoded:
      case Part::kSource:
        log_.Add({block.offset, There(block), 0, block.name,
                  std::to_string(block.size / 2) + " words", std::move(note)});
        break;
      case Part::kEvents:
        log_.Add({block.offset, There(block), 0, block.name, {}, std::move(note)});
        log_.AddFields(window_, layout::kEventBlockLayout, block.offset, 1);
        ExplainEvents(block);
        break;
      case Part::kSilence:
        log_.Add({block.offset, There(block), 0, block.name, {}, std::move(note)});
        log_.AddFields(window_, layout::kSilenceBlockLayout, block.offset, 1);
        ExplainSilence(block);
        break;
    }
  }

  void ExplainStream(const Block& block) {
    const Result<StreamPlace> place = FindStream(file_, chip_);
    if (!place) return;
    constexpr size_t kKinds = 5;
    std::array<uint64_t, kKinds> commands{};
    std::array<uint64_t, kKinds> samples{};
    uint64_t events = 0;
    StreamWalker walker(file_, place.Value());
    StreamCommand command;
    while (walker.Next(command)) {
      ++commands[static_cast<size_t>(command.kind)];
      samples[static_cast<size_t>(command.kind)] += command.length;
      events += command.event.present;
    }
    for (size_t kind = 1; kind < kKinds; ++kind) {
      log_.Add({block.offset, 0, 1,
                std::string(CommandKindName(static_cast<CommandKind>(kind))) + " commands",
                std::to_string(commands[kind]), std::to_string(samples[kind]) + " samples"});
    }
    log_.Add({block.offset, 0, 1, "events", std::to_string(events), {}});
    log_.Add({block.offset, 0, 1, "samples", std::to_string(walker.Position()), {}});
    AddStreamEnd(block, walker);
  }

  void AddStreamEnd(const Block& block, const StreamWalker& walker) {
    if (!walker.Ended()) {
      log_.Add({walker.Offset(), 0, 1, "broken command", {}, walker.GetStatus().Message()});
      return;
    }
    const uint64_t end = walker.Offset();
    log_.Add({end - 1, 1, 1, "end mark", {}, {}});
    const uint64_t behind = block.offset + There(block) - end;
    if (behind > 0) log_.Add({end, behind, 1, "unused bytes", {}, "behind the end mark"});
  }

  void ExplainEvents(const Block& block) {
    const uint64_t head = sizeof(layout::EventBlockRecord);
    if (There(block) < head || !chip_.eventBlock) return;
    const uint64_t size = sizeof(layout::EventRecord);
    const uint64_t count = (There(block) - head) / size;
    for (uint64_t i = 0; i < log_.Shown(count); ++i) {
      const uint64_t offset = block.offset + head + i * size;
      const auto record = window_.Record<layout::EventRecord>(offset);
      if (!record) return;
      log_.Add({offset,
                size,
                1,
                "event " + std::to_string(i),
                "sample " + std::to_string(record->position) + ", action " +
                    std::to_string(record->action) + ", parameter " +
                    std::to_string(record->parameter),
                {}});
    }
    log_.AddSummary(block.offset + head, size, count, 1, "events");
  }

  void ExplainSilence(const Block& block) {
    const uint64_t head = sizeof(layout::SilenceBlockRecord);
    if (There(block) < head) return;
    const uint64_t size = sizeof(layout::SilenceRecord);
    const uint64_t count = (There(block) - head) / size;
    for (uint64_t i = 0; i < log_.Shown(count); ++i) {
      const uint64_t offset = block.offset + head + i * size;
      const auto record = window_.Record<layout::SilenceRecord>(offset);
      if (!record) return;
      log_.Add({offset, size, 1, "silence " + std::to_string(i),
                "samples " + std::to_string(record->start) + " to " + std::to_string(record->end),
                record->end < record->start ? "ends before it starts" : ""});
    }
    log_.AddSummary(block.offset + head, size, count, 1, "silence regions");
  }

  const InputFile& file_;
  FileWindow& window_;
  LogWriter& log_;
  const ChipFrame& chip_;
};

}  // namespace

Status ExplainChip(const InputFile& file, FileWindow& window, LogWriter& log) {
  const Result<ChipFrame> chip = ReadChipFile(file);
  if (chip) {
    ChipExplainer(file, window, log, chip.Value()).Run();
  } else {
    log.AddRecord(window, layout::kMpmHeaderLayout, 0, 0, "header", chip.Message());
  }
  return {};
}

}  // namespace velora
