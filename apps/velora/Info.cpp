// `velora info`: what a sound file holds.
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "FormatArgument.h"
#include "Inputs.h"
#include "Jobs.h"
#include "Json.h"
#include "SampleCrc.h"
#include "SoundFile.h"
#include "audio/inspect/Explain.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr uint16_t kTagMicrosoftAdpcm = 2;
constexpr uint16_t kTagImaAdpcm = 17;

// ---- JSON -------------------------------------------------------------------

Json SilenceJson(const C_WavData& sound) {
  auto list = Json::array();
  for (const C_SilenceSegment* segment : sound.SilenceSegments()) {
    Json object;
    object["start"] = segment->GetStart();
    object["end"] = segment->GetEnd();
    list.push_back(std::move(object));
  }
  return list;
}

Json CuesJson(C_WavData& sound) {
  auto list = Json::array();
  for (const auto* point : sound.CueInfo().Points()) {
    Json object;
    object["id"] = point->GetId();
    object["position"] = point->GetPosition();
    list.push_back(std::move(object));
  }
  return list;
}

Json LabelsJson(C_WavData& sound) {
  auto list = Json::array();
  for (const auto& label : sound.ListInfo().Labels()) {
    Json object;
    object["id"] = label.cueId;
    object["text"] = label.Text();
    list.push_back(std::move(object));
  }
  return list;
}

Json LoopsJson(C_WavData& sound) {
  auto list = Json::array();
  for (const auto* loop : sound.SamplerInfo().Loops()) {
    Json object;
    object["id"] = loop->GetCueId();
    object["type"] = loop->GetLoopType();
    object["start"] = loop->GetLoopStart();
    object["end"] = loop->GetLoopEnd();
    object["fraction"] = loop->GetFraction();
    object["playCount"] = loop->GetPlayCount();
    list.push_back(std::move(object));
  }
  return list;
}

Json ChunksJson(C_WavData& sound) {
  auto list = Json::array();
  for (const C_WavDataExtraChunk* chunk : sound.ExtraChunks().Items()) {
    Json object;
    object["tag"] = chunk->Tag();
    object["size"] = chunk->Bytes().size();
    list.push_back(std::move(object));
  }
  return list;
}

std::string InfoJson(const std::string& path, const C_WavFile& file, bool samples) {
  C_WavData& sound = *file.Sound();
  const C_WavInfo& info = sound.Info();
  Json object;
  object["path"] = path;
  object["format"] = FormatJson(file.GetSourceKind());
  object["sourceKind"] = file.GetSourceKind();
  object["targetKind"] = file.GetTargetKind();
  object["rate"] = info.GetSampleRate();
  object["channels"] = info.GetChannels();
  object["frames"] = info.GetFrameCount();
  object["resolution"] = info.GetResolutionBits();
  object["container"] = info.GetContainerBits();
  object["signed"] = info.IsSigned() != 0;
  object["durationMs"] = info.GetDurationMs();
  object["samplesCrc32"] = nullptr;
  if (samples) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", SamplesCrc32(sound));
    object["samplesCrc32"] = digits;
  }
  object["events"] = EventsJson(sound);
  object["regions"] = RegionsJson(sound);
  object["silence"] = SilenceJson(sound);
  object["cues"] = CuesJson(sound);
  object["labels"] = LabelsJson(sound);
  object["loops"] = LoopsJson(sound);
  object["chunks"] = ChunksJson(sound);
  return JsonText(object);
}

// ---- text -------------------------------------------------------------------

/// Text out of a file, with what would steer a terminal or break the line shown
/// as '?'.
std::string Shown(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return out;
}

std::string Line(const char* what, const std::string& value) {
  return "  " + PadRight(what, 10) + value + "\n";
}

std::string Duration(uint32_t milliseconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%u.%03u s", milliseconds / 1000, milliseconds % 1000);
  return text;
}

std::string FormatText(const C_WavFile& file) {
  const uint32_t id = file.GetSourceKind();
  std::string text = FormatName(id) + " (id " + std::to_string(id) + ")";
  if (file.FormatTag() == kTagMicrosoftAdpcm) text += ", Microsoft ADPCM";
  if (file.FormatTag() == kTagImaAdpcm) text += ", IMA ADPCM";
  return text;
}

/// A heading with the number of the items, and a line for each; beyond the first few
/// only with `all`.
template <typename Items, typename LineOf>
std::string ListText(const char* what, const Items& items, bool all, LineOf lineOf) {
  constexpr size_t kFew = 12;
  if (items.empty()) return {};
  std::string text = Line(what, std::to_string(items.size()));
  // A list that is hardly longer is not worth cutting.
  const size_t shown = all || items.size() <= kFew + 3 ? items.size() : kFew;
  for (size_t i = 0; i < shown; ++i) text += "    " + lineOf(*(items.begin() + i)) + "\n";
  if (shown < items.size()) {
    text += "    and " + std::to_string(items.size() - shown) + " more (-v shows all)\n";
  }
  return text;
}

std::string EventLine(const C_ActionEvent* event) {
  return "sample " + PadLeft(std::to_string(event->GetSample()), 9) + "  " +
         PadLeft(Duration(event->GetTimeMs()), 10) + "  type " + std::to_string(event->GetType()) +
         "  param " + std::to_string(event->GetParam());
}

std::string RegionLine(const C_ActionSilenceRegion* region) {
  return "start " + PadLeft(std::to_string(region->GetStart()), 10) + "  length " +
         std::to_string(region->GetLength());
}

std::string SegmentLine(const C_SilenceSegment* segment) {
  return "start " + PadLeft(std::to_string(segment->GetStart()), 10) + "  end " +
         std::to_string(segment->GetEnd());
}

std::string CueLine(const C_WavDataCueInfo::C_CuePoint* point) {
  return "id " + std::to_string(point->GetId()) + "  position " +
         std::to_string(point->GetPosition());
}

std::string LabelLine(const C_WavDataListInfo::Label& label) {
  return "id " + std::to_string(label.cueId) + "  \"" + Shown(label.Text()) + "\"";
}

std::string LoopLine(const C_WavDataSamplerInfo::C_SampleLoop* loop) {
  return "id " + std::to_string(loop->GetCueId()) + "  type " +
         std::to_string(loop->GetLoopType()) + "  " + std::to_string(loop->GetLoopStart()) +
         " to " + std::to_string(loop->GetLoopEnd()) + "  plays " +
         (loop->GetPlayCount() ? std::to_string(loop->GetPlayCount()) : "forever");
}

std::string ChunkLine(const C_WavDataExtraChunk* chunk) {
  return "\"" + Shown(chunk->Tag()) + "\"  " + Counted(chunk->Bytes().size(), "byte");
}

std::string InfoText(const std::string& path, const C_WavFile& file, bool all) {
  C_WavData& sound = *file.Sound();
  const C_WavInfo& info = sound.Info();
  std::string text = Shown(path) + "\n" + Line("format", FormatText(file));
  text += Line("rate", std::to_string(info.GetSampleRate()) + " Hz");
  text += Line("channels", std::to_string(info.GetChannels()));
  text += Line("frames",
               std::to_string(info.GetFrameCount()) + " (" + Duration(info.GetDurationMs()) + ")");
  text += Line("samples", std::to_string(info.GetResolutionBits()) + " bits in " +
                              std::to_string(info.GetContainerBits()) +
                              (info.IsSigned() ? ", signed" : ", offset binary"));
  text += ListText("events", sound.EventMgr().Events(), all, EventLine);
  text += ListText("regions", sound.EventMgr().Regions(), all, RegionLine);
  text += ListText("silence", sound.SilenceSegments(), all, SegmentLine);
  text += ListText("cues", sound.CueInfo().Points(), all, CueLine);
  text += ListText("labels", sound.ListInfo().Labels(), all, LabelLine);
  text += ListText("loops", sound.SamplerInfo().Loops(), all, LoopLine);
  return text + ListText("chunks", sound.ExtraChunks().Items(), all, ChunkLine);
}

// ---- the parse log ----------------------------------------------------------

std::string ExplainText(const std::string& path, const ParseLog& log) {
  std::string text = Shown(path) + ": " + (log.format.empty() ? "unknown format" : log.format) +
                     ", " + Counted(log.fileSize, "byte") + "\n    offset      size\n";
  for (const LogEntry& entry : log.entries) {
    std::string line = PadLeft(std::to_string(entry.offset), 10) +
                       PadLeft(std::to_string(entry.size), 10) + "  " +
                       std::string(2 * static_cast<size_t>(entry.depth), ' ') + entry.name;
    if (!entry.value.empty()) line += ": " + entry.value;
    if (!entry.note.empty()) line += "  (" + entry.note + ")";
    text += line + "\n";
  }
  return text;
}

std::string ExplainJson(const std::string& path, const ParseLog& log) {
  Json object;
  object["path"] = path;
  object["format"] = log.format;
  object["fileSize"] = log.fileSize;
  auto entries = Json::array();
  for (const LogEntry& entry : log.entries) {
    Json row;
    row["offset"] = entry.offset;
    row["size"] = entry.size;
    row["depth"] = entry.depth;
    row["name"] = entry.name;
    row["value"] = entry.value;
    row["note"] = entry.note;
    entries.push_back(std::move(row));
  }
  object["entries"] = std::move(entries);
  object["omitted"] = log.omitted;
  return JsonText(object);
}

FileReport Explain(const Input& input, bool json) {
  FileReport report;
  const auto opened = OpenedInput::Open(input);
  if (!opened) {
    report.Fail(ExitStatus::kInput, opened.Message());
    return report;
  }
  const auto log = ExplainFile(opened->GetPath());
  if (!log) {
    report.Fail(ExitStatus::kInput, log.Message());
  } else if (json) {
    report.json = ExplainJson(input.path, log.Value());
  } else {
    report.text = ExplainText(input.path, log.Value());
  }
  return report;
}

struct DescribeSettings {
  bool json = false;
  bool samples = true;
  bool all = false;  ///< no list is cut
  SampleView view = SampleView::kDecoded;
};

FileReport Describe(const Input& input, const DescribeSettings& settings) {
  FileReport report;
  const auto opened = OpenedInput::Open(input);
  if (!opened) {
    report.Fail(ExitStatus::kInput, opened.Message());
    return report;
  }
  const LoadScope scope =
      settings.json && settings.samples ? LoadScope::kAll : LoadScope::kMetadata;
  const auto file = OpenInputSound(opened->GetPath(), scope, settings.view);
  if (!file) {
    report.Fail(ExitStatus::kInput, file.Message());
  } else if (settings.json) {
    report.json = InfoJson(input.path, *file.Value(), settings.samples);
  } else {
    report.text = InfoText(input.path, *file.Value(), settings.all);
  }
  return report;
}

ExitStatus RunInfo(const Arguments& arguments, Console& console) {
  const auto inputs = GatherInputs(arguments.Operands(), arguments.Has("recursive"));
  FileRun run = FileRunFrom(arguments);
  run.summary = false;
  const DescribeSettings settings = {
      .json = run.json,
      .samples = !arguments.Has("no-samples"),
      .all = console.IsVerbose(),
      .view = arguments.Has("source") ? SampleView::kSource : SampleView::kDecoded};
  if (arguments.Has("explain")) {
    return RunOverFiles(console, inputs, run,
                        [&](size_t i) { return Explain(inputs[i], run.json); });
  }
  return RunOverFiles(console, inputs, run,
                      [&](size_t i) { return Describe(inputs[i], settings); });
}

constexpr Option kOptions[] = {
    kJsonOption,
    {.name = "explain",
     .letter = 'x',
     .help = "Print the parse log instead: every chunk, block and record with its offset"},
    {.name = "source",
     .letter = 's',
     .help = "Of a chip file, take the stored source samples, not what the chip plays"},
    {.name = "no-samples", .help = "With --json, read no samples; samplesCrc32 is null then"},
    kRecursiveOption,
    kJobsOption,
};
constexpr Operand kOperands[] = {
    {.name = "FILE", .help = "sound files; - is standard input", .repeatable = true}};
constexpr Example kExamples[] = {
    {"velora info hello.wav", "format, length, events and silence of a wave file"},
    {"velora info --json -r prompts", "all prompts as one JSON array"},
    {"velora info --explain hello.MPM", "what each byte of a chip file is"},
};

}  // namespace

extern const Command kInfoCommand;
constinit const Command kInfoCommand = {
    .name = "info",
    .summary = "tell what a sound file holds",
    .operands = kOperands,
    .description =
        "Prints format, rate, frames, channels, bits, events, silence, labels, loops and private "
        "chunks of each file. Of a chip file the figures are those of the sound that the chip "
        "plays.\n\n"
        "Regions are the silence that events carry; silence is the list of silent segments that "
        "the file stores, their last frame included.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunInfo,
};

}  // namespace velora::cli
