// `velora verify`: checks a file against itself.
#include <array>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "Inputs.h"
#include "Jobs.h"
#include "Json.h"
#include "SoundFile.h"
#include "audio/inspect/Measure.h"
#include "audio/inspect/Verify.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

std::string FaultLine(const std::string& path, const char* kind, const Fault& fault) {
  std::string line = path + ": " + kind + " at " + std::to_string(fault.offset) + ": " + fault.what;
  if (!fault.expected.empty()) line += ": expected " + fault.expected;
  if (!fault.found.empty()) line += ", found " + fault.found;
  return line + "\n";
}

std::string ListText(const std::string& path, const char* kind, const std::vector<Fault>& list,
                     uint64_t count) {
  std::string text;
  for (const Fault& fault : list) text += FaultLine(path, kind, fault);
  if (count > list.size()) {
    text += path + ": " + Counted(count - list.size(), kind) + " more\n";
  }
  return text;
}

std::string VerifyText(const std::string& path, const VerifyReport& found, bool quiet) {
  std::string text = ListText(path, "fault", found.faults, found.faultCount);
  if (!quiet) text += ListText(path, "warning", found.warnings, found.warningCount);
  if (!found.Good() || quiet) return text;
  text += path + ": ok, " + found.format + ", " + Counted(found.samples, "sample");
  if (found.commands) text += ", " + Counted(found.commands, "command");
  return text + ", " + Counted(found.events, "event") + ", " + Counted(found.checks, "check") +
         "\n";
}

Json FaultsJson(const std::vector<Fault>& list) {
  auto array = Json::array();
  for (const Fault& fault : list) {
    Json object;
    object["offset"] = fault.offset;
    object["what"] = fault.what;
    object["expected"] = fault.expected;
    object["found"] = fault.found;
    array.push_back(std::move(object));
  }
  return array;
}

constexpr char kFiguresHeading[] =
    "   seconds  wave bytes  stream bytes  bits/sample   SNR dB  events  silence  file\n";

std::string FiguresText(const std::string& path, const SoundFigures& figures) {
  std::array<char, 160> row;
  std::snprintf(row.data(), row.size(), "%10.3f %11llu %13llu %12.2f %8.1f %7llu %7.1f%%  ",
                figures.seconds, static_cast<unsigned long long>(figures.waveBytes),
                static_cast<unsigned long long>(figures.streamBytes), figures.bitsPerSample,
                figures.snrDb, static_cast<unsigned long long>(figures.events),
                100 * figures.silenceShare);
  return row.data() + path + "\n";
}

Json FiguresJson(const SoundFigures& figures) {
  Json object;
  object["seconds"] = figures.seconds;
  object["samples"] = figures.samples;
  object["waveBytes"] = figures.waveBytes;
  object["streamBytes"] = figures.streamBytes;
  object["bitsPerSample"] = figures.bitsPerSample;
  object["snrDb"] = nullptr;
  if (std::isfinite(figures.snrDb)) object["snrDb"] = figures.snrDb;
  object["events"] = figures.events;
  object["silenceShare"] = figures.silenceShare;
  return object;
}

std::string VerifyJson(const std::string& path, const VerifyReport& found,
                       const SoundFigures* figures) {
  Json object;
  object["path"] = path;
  object["format"] = found.format;
  object["good"] = found.Good();
  object["faults"] = FaultsJson(found.faults);
  object["faultCount"] = found.faultCount;
  object["warnings"] = FaultsJson(found.warnings);
  object["warningCount"] = found.warningCount;
  object["checks"] = found.checks;
  object["samples"] = found.samples;
  object["commands"] = found.commands;
  object["events"] = found.events;
  object["silenceRegions"] = found.silenceRegions;
  if (figures) object["figures"] = FiguresJson(*figures);
  return JsonText(object);
}

struct Settings {
  bool json = false;
  bool quiet = false;
  bool strict = false;
  bool figures = false;
};

FileReport Verify(const Input& input, const Settings& settings) {
  FileReport report;
  const auto opened = OpenedInput::Open(input);
  if (!opened) {
    report.Fail(ExitStatus::kInput, opened.Message());
    return report;
  }
  const auto found = VerifyFile(opened->GetPath());
  if (!found) {
    report.Fail(ExitStatus::kInput, found.Message());
    return report;
  }
  if (!found->Good() || (settings.strict && found->warningCount)) report.status = ExitStatus::kNo;
  const SoundFigures* figures = nullptr;
  const auto measured =
      settings.figures ? MeasureChipFile(opened->GetPath()) : Result<SoundFigures>(SoundFigures{});
  if (settings.figures && !measured) {
    report.Fail(ExitStatus::kInput, "no figures: " + measured.Message());
    return report;
  }
  if (settings.figures) figures = &measured.Value();
  if (settings.json) {
    report.json = VerifyJson(input.path, found.Value(), figures);
  } else {
    report.text = VerifyText(input.path, found.Value(), settings.quiet || figures);
    if (figures) report.text += FiguresText(input.path, *figures);
  }
  return report;
}

ExitStatus RunVerify(const Arguments& arguments, Console& console) {
  const auto inputs = GatherInputs(arguments.Operands(), arguments.Has("recursive"));
  const FileRun run = FileRunFrom(arguments);
  const Settings settings = {run.json, arguments.Has("quiet"), run.strict,
                             arguments.Has("figures")};
  if (settings.figures && !settings.json) console.Print(kFiguresHeading);
  return RunOverFiles(console, inputs, run, [&](size_t i) { return Verify(inputs[i], settings); });
}

constexpr Option kOptions[] = {
    {.name = "figures",
     .help = "Of chip files, tell size and quality: seconds, bytes of a plain wave and of the "
             "stream, bits a sample, signal to noise, events, share of silence"},
    kJsonOption,
    kStrictOption,
    kRecursiveOption,
    kJobsOption};
constexpr Operand kOperands[] = {
    {.name = "FILE", .help = "sound files; - is standard input", .repeatable = true}};
constexpr Example kExamples[] = {
    {"velora verify hello.MPM", "check one chip file"},
    {"velora verify --recursive out && flash out", "go on only when every file is sound"},
};

}  // namespace

extern const Command kVerifyCommand;
constinit const Command kVerifyCommand = {
    .name = "verify",
    .summary = "check sound files against themselves",
    .operands = kOperands,
    .description =
        "Decodes the stream of a chip file once more, by arithmetic of its own, and compares "
        "every header field, offset and size, the stored decoded block and the events with it. "
        "Of a wave file the sizes, block align, byte rate, references of cues and labels and the "
        "form of the labels are checked. A file that ends before its contents do is faulty.\n\n"
        "A fault ends with status 1. A warning is what a file may hold although velora would not "
        "write it so.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunVerify,
};

}  // namespace velora::cli
