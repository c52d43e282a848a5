// `velora convert`: from any format that can be read to any that can be written.
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "ConvertPlan.h"
#include "Inputs.h"
#include "Jobs.h"
#include "Json.h"
#include "SaveSound.h"
#include "SoundFile.h"
#include "audio/wavedata/WavData.h"
#include "platform/System.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr uint32_t kRawCodecParam = 1;

/// What the options say, the same for all files.
struct Settings {
  bool json = false;
  bool dryRun = false;
  bool force = false;
  bool flush = true;
  bool source = false;
  bool mono = false;
  bool raw = false;
  bool silence = false;
  uint32_t silenceLength = 0;
  uint32_t silenceThreshold = 0;
  int64_t bits = 0;  // 0: the format decides
};

// The silence that a chip file is searched for when only one of the two is said.
constexpr int64_t kDefaultSilenceLength = 64;
constexpr int64_t kDefaultSilenceThreshold = 1;

Settings ReadSettings(const Arguments& arguments) {
  Settings settings;
  settings.json = arguments.Has("json");
  settings.dryRun = arguments.Has("dry-run");
  settings.force = arguments.Has("force");
  settings.flush = !arguments.Has("no-flush");
  settings.source = arguments.Has("source");
  settings.mono = arguments.Has("mono");
  settings.raw = arguments.Has("raw");
  settings.bits = arguments.Text("bits") == "8" ? 8 : arguments.Has("bits") ? 16 : 0;
  settings.silence = arguments.Has("silence-length") || arguments.Has("silence-threshold");
  settings.silenceLength =
      static_cast<uint32_t>(arguments.Number("silence-length", kDefaultSilenceLength));
  settings.silenceThreshold =
      static_cast<uint32_t>(arguments.Number("silence-threshold", kDefaultSilenceThreshold));
  return settings;
}

void ApplySettings(const Settings& settings, C_WavData& sound) {
  if (settings.mono && sound.Info().GetChannels() > 1) sound.MixToMono();
  C_WriteWavParam& param = *sound.GetWriteParam();
  if (settings.raw) param.SetCodecParam(kRawCodecParam);
  if (settings.silence) {
    param.SetSilenceParams(settings.silenceLength, settings.silenceThreshold);
  }
  if (settings.bits == 8) param.SetTargetFormat(8, 8, 0);
  if (settings.bits == 16) param.SetTargetFormat(16, 16, 1);
}

/// A target that is there already and may not be replaced. Devices and pipes are
/// written to, not replaced.
Status CheckTarget(const std::string& target, bool force) {
  if (target == "-") return {};
  const Path path = Path::Native(target);
  if (DirectoryExists(path)) return Status::Error("is a directory");
  const auto facts = GetFileFacts(path);
  if (!facts || force || !facts->regular) return {};
  return Status::Error("exists already; --force overwrites it");
}

Status MakeParent(const std::string& target) {
  const size_t slash = target.rfind('/');
  if (target == "-" || slash == std::string::npos || slash == 0) return {};
  return CreateDirectories(Path::Native(target.substr(0, slash)));
}

std::string ConvertJson(const std::string& path, const Conversion& conversion,
                        const C_WavFile& file, const FileReport& report) {
  Json object;
  object["path"] = path;
  object["output"] = conversion.target;
  object["format"] = FormatJson(conversion.formatId);
  object["frames"] = file.Sound()->Info().GetFrameCount();
  object["dropped"] = report.warnings;
  return JsonText(object);
}

FileReport Plan(const Input& input, const Conversion& conversion, const Settings& settings) {
  FileReport report;
  if (Status target = CheckTarget(conversion.target, settings.force); !target) {
    report.Fail(ExitStatus::kOutput, target.Message(), conversion.target);
  } else if (settings.json) {
    Json object;
    object["path"] = input.path;
    object["output"] = conversion.target;
    object["format"] = FormatJson(conversion.formatId);
    object["frames"] = nullptr;
    object["dropped"] = Json::array();
    report.json = JsonText(object);
  } else {
    report.text = input.path + " -> " + conversion.target + "\n";
  }
  return report;
}

/// Reads, treats and writes one file. `flushSeconds` gets the time of flushing.
FileReport Convert(const Input& input, const Conversion& conversion, const Settings& settings,
                   double* flushSeconds) {
  FileReport report;
  if (Status target = CheckTarget(conversion.target, settings.force); !target) {
    report.Fail(ExitStatus::kOutput, target.Message(), conversion.target);
    return report;
  }
  const auto opened = OpenedInput::Open(input);
  if (!opened) {
    report.Fail(ExitStatus::kInput, opened.Message());
    return report;
  }
  const bool source = settings.source || IsChipFormat(conversion.formatId);
  const auto file = OpenInputSound(opened->GetPath(), LoadScope::kAll,
                                   source ? SampleView::kSource : SampleView::kDecoded);
  if (!file) {
    report.Fail(ExitStatus::kInput, file.Message());
    return report;
  }
  C_WavData& sound = *file.Value()->Sound();
  if (IsChipFormat(conversion.formatId)) KeepWriteSettings(*file.Value());
  ApplySettings(settings, sound);
  report.warnings = ListDropped(*file.Value(), opened->GetPath(), conversion.formatId);

  Status saved = MakeParent(conversion.target);
  // What is there and was not refused is a device or may be replaced.
  const bool replace = settings.force || GetFileFacts(Path::Native(conversion.target)).Ok();
  const SaveOptions options = {settings.flush, replace, flushSeconds};
  if (saved) saved = SaveSound(sound, conversion.formatId, conversion.target, options);
  if (!saved) {
    report.Fail(ExitStatus::kOutput, saved.Message(),
                conversion.target == "-" ? "standard output" : conversion.target);
    return report;
  }
  report.notes.push_back(input.path + " -> " + conversion.target);
  if (settings.json) report.json = ConvertJson(input.path, conversion, *file.Value(), report);
  return report;
}

void NoteTimes(Console& console, double startClock, double startCpu, double flushSeconds) {
  char line[160];
  std::snprintf(line, sizeof line,
                "took %.3f s, %.3f s of processor time; all workers waited %.3f s for the disk",
                GetClockSeconds() - startClock, GetCpuSeconds() - startCpu, flushSeconds);
  console.Note(line);
}

ExitStatus RunConvert(const Arguments& arguments, Console& console) {
  const double startClock = GetClockSeconds();
  const double startCpu = GetCpuSeconds();
  const auto inputs = GatherInputs(arguments.Operands(), arguments.Has("recursive"));
  const auto plan = PlanConversions(arguments, inputs);
  if (!plan) {
    console.Error("convert", plan.Message());
    return ExitStatus::kUsage;
  }
  const Settings settings = ReadSettings(arguments);
  const auto& conversions = plan.Value();
  std::vector<double> flushSeconds(inputs.size());
  const ExitStatus status = RunOverFiles(console, inputs, FileRunFrom(arguments), [&](size_t i) {
    return settings.dryRun ? Plan(inputs[i], conversions[i], settings)
                           : Convert(inputs[i], conversions[i], settings, &flushSeconds[i]);
  });
  double flushed = 0;
  for (const double seconds : flushSeconds) flushed += seconds;
  NoteTimes(console, startClock, startCpu, flushed);
  return status;
}

constexpr const char* kBits[] = {"8", "16"};

constexpr Option kOptions[] = {
    kOutputOption,
    {.name = "out-dir",
     .letter = 'd',
     .value = "DIR",
     .kind = ValueKind::kPath,
     .help = "Write below DIR, each file under its own name with the extension of the format; "
             "folders below an argument are kept"},
    {.name = "to",
     .letter = 't',
     .value = "FORMAT",
     .kind = ValueKind::kFormat,
     .help = "The format to write; without it the name of the output tells it"},
    {.name = "source",
     .letter = 's',
     .help = "Of a chip file, take the stored source samples, not what the chip plays; to "
             "another chip file the source is always taken"},
    {.name = "mono", .letter = 'm', .help = "Mix all channels to one"},
    {.name = "bits",
     .value = "N",
     .kind = ValueKind::kChoice,
     .help = "Bits of the samples of a wave file",
     .choices = kBits},
    {.name = "silence-length",
     .value = "N",
     .kind = ValueKind::kNumber,
     .help = "To a chip file: the shortest silence that is coded as such, in samples (64)",
     .least = 0,
     .most = UINT32_MAX},
    {.name = "silence-threshold",
     .value = "N",
     .kind = ValueKind::kNumber,
     .help = "To a chip file: the level up to which a sample is silent, of 2048 (1)",
     .least = 0,
     .most = 2047},
    {.name = "raw", .help = "To a chip file: store raw samples, no frames"},
    kRecursiveOption,
    kForceOption,
    kDryRunOption,
    kStrictOption,
    kNoFlushOption,
    kJobsOption,
    kJsonOption,
};
constexpr Operand kOperands[] = {
    {.name = "IN", .help = "sound files; - is standard input", .repeatable = true}};
constexpr Example kExamples[] = {
    {"velora convert hello.wav -o hello.MPM", "make a chip file"},
    {"velora convert hello.MPM -o heard.wav", "hear what the chip will play"},
    {"velora convert --recursive --out-dir out --to MPM prompts",
     "all prompts of a folder, on all processors"},
};

}  // namespace

extern const Command kConvertCommand;
constinit const Command kConvertCommand = {
    .name = "convert",
    .summary = "convert sounds from any format to any other",
    .operands = kOperands,
    .description =
        "Reads any format that `velora formats` calls readable and writes any that it calls "
        "writable. A file is replaced as a whole or not at all, so an output may be its own "
        "input; nothing that exists is overwritten without --force.\n\n"
        "What the target format cannot hold, events beyond its range, labels or chunks, is "
        "dropped with a warning. A sound whose channels or rate it cannot hold is refused with "
        "status 4. Two inputs that would become one output are refused before anything is "
        "written. One input that fails does not stop the others.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunConvert,
};

}  // namespace velora::cli
