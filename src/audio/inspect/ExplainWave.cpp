// The parse log of a wave file.
#include <string>

#include "audio/inspect/FieldText.h"
#include "audio/inspect/LabelGrammar.h"
#include "audio/inspect/LogWriter.h"
#include "audio/inspect/RiffWalk.h"

namespace velora {

namespace {

using layout::FmtRecord;

/// What is known of the file when a chunk is told.
struct WaveContext {
  FileWindow& window;
  LogWriter& log;
  bool haveFmt = false;
  FmtRecord fmt;
};

std::string CutNote(const RiffItem& chunk) {
  if (chunk.available == chunk.declared) return {};
  return "cut off: expected " + std::to_string(chunk.declared) + " bytes, found " +
         std::to_string(chunk.available);
}

void AddLeftover(WaveContext& context, uint64_t from, uint64_t to,
                 const char* name = "bytes left over") {
  if (from < to) context.log.Add({from, to - from, 1, name, {}, {}});
}

std::string FormatNote(uint16_t tag) {
  switch (tag) {
    case 1:
      return "PCM";
    case 2:
      return "Microsoft ADPCM";
    case 17:
      return "IMA ADPCM";
    default:
      return "not read by this system";
  }
}

void ExplainFmt(WaveContext& context, const RiffItem& chunk) {
  context.log.AddFields(context.window, layout::kFmtLayout, chunk.dataOffset, 1);
  const auto fmt = context.window.Record<FmtRecord>(chunk.dataOffset);
  if (fmt && chunk.available >= sizeof(FmtRecord)) {
    context.fmt = *fmt;
    context.haveFmt = true;
  }
  uint64_t end = chunk.dataOffset + std::min<uint64_t>(sizeof(FmtRecord), chunk.available);
  constexpr uint64_t kExtension = 4;  // its size, and the samples of a block
  if (context.haveFmt && (fmt->formatTag == 2 || fmt->formatTag == 17) &&
      chunk.available >= sizeof(FmtRecord) + kExtension) {
    const auto words = context.window.Record<std::array<le16, 2>>(end);
    if (words) {
      context.log.Add({end, 2, 1, "extension size", std::to_string((*words)[0]), {}});
      context.log.Add({end + 2, 2, 1, "samples of a block", std::to_string((*words)[1]), {}});
      end += kExtension;
    }
  }
  AddLeftover(context, end, chunk.DataEnd(), "further format bytes");
}

void ExplainCue(WaveContext& context, const RiffItem& chunk) {
  context.log.AddFields(context.window, layout::kCueHeadLayout, chunk.dataOffset, 1);
  const auto head = context.window.Record<layout::CueHeadRecord>(chunk.dataOffset);
  if (!head || chunk.available < sizeof(*head)) return;
  const uint64_t first = chunk.dataOffset + sizeof(*head);
  const uint64_t size = sizeof(layout::CuePointRecord);
  const uint64_t count = std::min<uint64_t>(head->count, (chunk.DataEnd() - first) / size);
  for (uint64_t i = 0; i < context.log.Shown(count); ++i) {
    context.log.AddRecord(context.window, layout::kCuePointLayout, first + i * size, 1,
                          "cue point " + std::to_string(i));
  }
  context.log.AddSummary(first, size, count, 1, "cue points");
  AddLeftover(context, first + count * size, chunk.DataEnd());
}

void ExplainSampler(WaveContext& context, const RiffItem& chunk) {
  context.log.AddFields(context.window, layout::kSamplerHeadLayout, chunk.dataOffset, 1);
  const auto head = context.window.Record<layout::SamplerHeadRecord>(chunk.dataOffset);
  if (!head || chunk.available < sizeof(*head)) return;
  const uint64_t first = chunk.dataOffset + sizeof(*head);
  const uint64_t size = sizeof(layout::LoopRecord);
  const uint64_t count = std::min<uint64_t>(head->loopCount, (chunk.DataEnd() - first) / size);
  for (uint64_t i = 0; i < context.log.Shown(count); ++i) {
    context.log.AddRecord(context.window, layout::kLoopLayout, first + i * size, 1,
                          "loop " + std::to_string(i));
  }
  context.log.AddSummary(first, size, count, 1, "loops");
  AddLeftover(context, first + count * size, chunk.DataEnd());
}

std::string LabelNote(const std::string& text) {
  const LabelMeaning meaning = ReadLabelMeaning(text);
  switch (meaning.kind) {
    case LabelKind::kEvent:
      return "event " + std::to_string(meaning.type) + ", parameter " +
             std::to_string(meaning.parameter);
    case LabelKind::kSilence:
      return "silence region";
    case LabelKind::kBroken:
      return "opens like an event and is none";
    case LabelKind::kPlain:
      break;
  }
  return "plain text, makes no event";
}

void ExplainListRecord(WaveContext& context, const ListRecord& record) {
  const uint64_t data = record.offset + sizeof(layout::ChunkHeadRecord);
  std::string note;
  if (record.available < record.declared) {
    note = "cut off: expected " + std::to_string(record.declared) + " bytes";
  }
  context.log.Add({record.offset, record.size, 1, '"' + Printable(record.tag) + '"',
                   std::to_string(record.declared) + " bytes", note});
  if (record.Is("labl") && record.available >= 4) {
    context.log.AddFields(context.window, layout::kLabelLayout, data, 2);
    context.log.Add({data + 4, record.available - 4, 2, "text", '"' + Printable(record.text) + '"',
                     LabelNote(record.text)});
  } else if (record.Is("ltxt") && record.available >= sizeof(layout::TextRecord)) {
    context.log.AddFields(context.window, layout::kTextLayout, data, 2);
  }
}

void ExplainList(WaveContext& context, const RiffItem& chunk) {
  const auto form = context.window.Record<layout::FileTag>(chunk.dataOffset);
  if (chunk.available < 4 || !form) return;
  const bool adtl = ListWalker::IsAdtl(context.window, chunk);
  context.log.Add(
      {chunk.dataOffset, 4, 1, "form", '"' + Printable(*form) + '"', adtl ? "" : "passed over"});
  if (!adtl) return;
  ListWalker walker(context.window, chunk);
  ListRecord record;
  uint64_t count = 0;
  uint64_t limitOffset = 0;
  while (walker.Next(record)) {
    if (count == context.log.Shown(count + 1)) {
      limitOffset = record.offset;
      break;
    }
    ++count;
    ExplainListRecord(context, record);
  }
  if (limitOffset) {
    context.log.Add(
        {limitOffset, chunk.DataEnd() - limitOffset, 1, "more records", {}, "not told one by one"});
    return;
  }
  AddLeftover(context, walker.Offset(), chunk.DataEnd());
}

std::string DataValue(const WaveContext& context, const RiffItem& chunk) {
  if (!context.haveFmt || context.fmt.blockAlign == 0) return {};
  const std::string unit = context.fmt.formatTag == 1 ? " frames" : " blocks";
  return std::to_string(chunk.available / context.fmt.blockAlign) + unit;
}

bool IsPrivate(const RiffItem& chunk) {
  return chunk.Is("KIOD") || chunk.Is("VLRW") || chunk.Is("MIOW") || chunk.Is("VLRI");
}

void ExplainChunk(WaveContext& context, const RiffItem& chunk) {
  const bool data = chunk.Is("data");
  std::string note = CutNote(chunk);
  if (note.empty() && chunk.Is("fmt ")) {
    note = FormatNote(context.window.Record<le16>(chunk.dataOffset).value_or(le16{}));
  }
  const bool known =
      data || chunk.Is("fmt ") || chunk.Is("cue ") || chunk.Is("smpl") || chunk.Is("LIST");
  if (note.empty() && IsPrivate(chunk)) note = "private, kept as it stands";
  if (note.empty() && !known && !IsPrivate(chunk)) note = "not read, not kept by a save";
  context.log.Add({chunk.offset, chunk.size, 0, '"' + Printable(chunk.tag) + '"',
                   std::to_string(chunk.declared) + " bytes", std::move(note)});
  if (chunk.Is("fmt ")) ExplainFmt(context, chunk);
  if (chunk.Is("cue ")) ExplainCue(context, chunk);
  if (chunk.Is("smpl")) ExplainSampler(context, chunk);
  if (chunk.Is("LIST")) ExplainList(context, chunk);
  if (data) {
    context.log.Add(
        {chunk.dataOffset, chunk.available, 1, "samples", DataValue(context, chunk), {}});
  }
}

void ExplainGap(LogWriter& log, const RiffItem& item) {
  switch (item.kind) {
    case RiffItem::Kind::kPadding:
      log.Add(
          {item.offset, item.size, 0, "padding", std::to_string(item.size) + " zero bytes", {}});
      break;
    case RiffItem::Kind::kScrap:
      log.Add({item.offset, item.size, 0, "scrap", {}, "too short for a chunk"});
      break;
    default:
      log.Add({item.offset, item.size, 0, "trailing bytes", {}, "behind the form"});
      break;
  }
}

}  // namespace

void ExplainWave(FileWindow& window, LogWriter& log) {
  const auto head = window.Record<layout::RiffHeadRecord>(0);
  if (!head) return;
  const uint64_t there = window.FileSize() - sizeof(layout::ChunkHeadRecord);
  std::string note;
  if (head->size > there) {
    note = "the form is cut off: expected " + std::to_string(head->size) +
           " bytes behind its size, found " + std::to_string(there);
  }
  log.AddRecord(window, layout::kRiffHeadLayout, 0, 0, "RIFF", std::move(note));
  WaveContext context{window, log, false, {}};
  RiffWalker walker(window, head->size);
  RiffItem item;
  while (walker.Next(item)) {
    if (item.kind == RiffItem::Kind::kChunk) {
      ExplainChunk(context, item);
    } else {
      ExplainGap(log, item);
    }
  }
}

}  // namespace velora
