// `velora project`: makes, shows, compares and changes project files.
#include "host/Project.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "Json.h"
#include "ModuleDirectory.h"
#include "ProjectEdit.h"
#include "ProjectText.h"
#include "catalogue/chipfile/ChipFile.h"
#include "host/ProjectDiff.h"
#include "platform/File.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kActions[] = {"new", "show", "diff", "set"};
constexpr int64_t kDefaultClock = 8192000;

/// Reads a project and says what is wrong with it; null when it cannot be used.
std::unique_ptr<Project> Open(const std::string& path, Console& console) {
  ProjectReport report;
  auto project = Project::Load(Path::Native(path), report);
  for (const std::string& fault : report.faults) console.Error(path, fault);
  for (const std::string& warning : report.warnings) console.Warning(path, warning);
  return project;
}

std::string JsonOf(const std::string& path, Project& project) {
  Json object;
  object["path"] = path;
  object.update(ProjectJson(project));
  return JsonText(object) + "\n";
}

/// The ports of the project's chip, as far as the catalogue knows it.
PortNames PortsOf(const Project& project, Console& console) {
  const Path file = FileIn(FindModuleDirectory(), "ChipInfo.cfg");
  const Result<ChipFile> catalogue = ChipFile::Open(file);
  if (!catalogue) {
    console.Note(file.Text() + ": " + catalogue.Message() + "; ports go by position alone");
    return {};
  }
  const std::string& part = project.Data().partNumber;
  if (!catalogue->FindPart(part)) {
    console.Warning("", "the chip catalogue has no part '" + part + "'");
    return {};
  }
  const Result<ChipFacts> chip = catalogue->Read(std::string_view(part));
  PortNames ports;
  if (!chip) return ports;
  for (const PinRange& range : chip->ports) ports.push_back(range.port);
  return ports;
}

/// The words behind the file, each a change. Nothing is written when one is wrong.
Status ApplyAll(const std::vector<std::string>& words, size_t first, Project& project,
                Console& console) {
  const PortNames ports = PortsOf(project, console);
  for (size_t i = first; i < words.size(); ++i) {
    if (Status applied = ApplyAssignment(words[i], ports, project); !applied) return applied;
  }
  return {};
}

/// Writes the project, or with --dry-run says where it would go.
ExitStatus Write(const Arguments& arguments, const std::string& target, bool replace,
                 Project& project, Console& console) {
  const Result<std::string> text = project.SaveText();
  if (!text) {
    console.Error(target, text.Message());
    return ExitStatus::kOutput;
  }
  if (arguments.Has("dry-run")) {
    console.Print(target + "\n");
    return ExitStatus::kDone;
  }
  if (target == "-") {
    console.Print(text.Value());
    return ExitStatus::kDone;
  }
  const SaveOptions options = {!arguments.Has("no-flush"), replace, nullptr};
  if (Status saved = project.Save(Path::Native(target), options); !saved) {
    console.Error(target, saved.Message());
    return ExitStatus::kOutput;
  }
  if (arguments.Has("json")) console.Print(JsonOf(target, project));
  return ExitStatus::kDone;
}

ExitStatus RunNew(const Arguments& arguments, Console& console) {
  const auto& operands = arguments.Operands();
  const std::string& path = operands[1];
  if (!arguments.Has("part")) {
    console.Error("project", "a new project needs --part");
    return ExitStatus::kUsage;
  }
  ProjectReport report;
  const auto project =
      Project::New(arguments.Text("part"),
                   static_cast<int32_t>(arguments.Number("clock", kDefaultClock)), report);
  if (!project) {
    console.Error("--part", report.faults.front());
    return ExitStatus::kUsage;
  }
  if (Status applied = ApplyAll(operands, 2, *project, console); !applied) {
    console.Error("project", applied.Message());
    return ExitStatus::kUsage;
  }
  return Write(arguments, path, arguments.Has("force"), *project, console);
}

ExitStatus RunShow(const Arguments& arguments, Console& console) {
  const auto& operands = arguments.Operands();
  const std::string& path = operands[1];
  if (operands.size() > 2) {
    console.Error("project", "show takes one file");
    return ExitStatus::kUsage;
  }
  const auto project = Open(path, console);
  if (!project) return ExitStatus::kInput;
  console.Print(arguments.Has("json") ? JsonOf(path, *project) : ProjectText(*project));
  return ExitStatus::kDone;
}

std::string DifferencesText(const std::vector<ProjectDifference>& differences,
                            const std::string& first, const std::string& second) {
  std::string text;
  for (const ProjectDifference& difference : differences) {
    text += difference.what + ": " + difference.first + " in " + first + ", " + difference.second +
            " in " + second + "\n";
  }
  return text;
}

std::string DifferencesJson(const std::vector<ProjectDifference>& differences,
                            const std::string& first, const std::string& second) {
  Json list = Json::array();
  for (const ProjectDifference& difference : differences) {
    list.push_back(
        {{"what", difference.what}, {"first", difference.first}, {"second", difference.second}});
  }
  Json object;
  object["first"] = first;
  object["second"] = second;
  object["differ"] = !differences.empty();
  object["differences"] = std::move(list);
  return JsonText(object) + "\n";
}

ExitStatus RunDiff(const Arguments& arguments, Console& console) {
  const auto& operands = arguments.Operands();
  if (operands.size() != 3) {
    console.Error("project", "diff takes two files");
    return ExitStatus::kUsage;
  }
  const auto first = Open(operands[1], console);
  const auto second = Open(operands[2], console);
  if (!first || !second) return ExitStatus::kInput;
  const auto differences = CompareProjects(*first, *second);
  console.Print(arguments.Has("json") ? DifferencesJson(differences, operands[1], operands[2])
                                      : DifferencesText(differences, operands[1], operands[2]));
  return differences.empty() ? ExitStatus::kDone : ExitStatus::kNo;
}

ExitStatus RunSet(const Arguments& arguments, Console& console) {
  const auto& operands = arguments.Operands();
  const std::string& path = operands[1];
  if (operands.size() < 3) {
    console.Error("project", "set needs NAME=VALUE");
    return ExitStatus::kUsage;
  }
  const auto project = Open(path, console);
  if (!project) return ExitStatus::kInput;
  if (Status applied = ApplyAll(operands, 2, *project, console); !applied) {
    console.Error(path, applied.Message());
    return ExitStatus::kUsage;
  }
  const bool elsewhere = arguments.Has("output");
  return Write(arguments, elsewhere ? arguments.Text("output") : path,
               !elsewhere || arguments.Has("force"), *project, console);
}

ExitStatus RunProject(const Arguments& arguments, Console& console) {
  const std::string& action = arguments.Operands().front();
  const ExitStatus status = action == "new"    ? RunNew(arguments, console)
                            : action == "show" ? RunShow(arguments, console)
                            : action == "diff" ? RunDiff(arguments, console)
                                               : RunSet(arguments, console);
  if (arguments.Has("strict") && console.Warnings() > 0) return Worse(status, ExitStatus::kNo);
  return status;
}

constexpr Operand kOperands[] = {
    {.name = "ACTION", .kind = ValueKind::kChoice, .help = "What to do", .choices = kActions},
    {.name = "FILE", .kind = ValueKind::kPath, .help = "The project file"},
    {.name = "ARG",
     .kind = ValueKind::kPath,
     .help = "diff: the other file. new, set: NAME=VALUE",
     .required = false,
     .repeatable = true},
};

constexpr Option kOptions[] = {
    {.name = "part",
     .letter = 'p',
     .value = "NUMBER",
     .kind = ValueKind::kText,
     .help = "new: the part number of the chip"},
    {.name = "clock",
     .value = "HZ",
     .kind = ValueKind::kNumber,
     .help = "new: the system clock; without it 8192000",
     .least = 1,
     .most = INT32_MAX},
    kOutputOption,
    kForceOption,
    kDryRunOption,
    kJsonOption,
    kStrictOption,
    kNoFlushOption,
};

constexpr Example kExamples[] = {
    {"velora project new toy.ini --part L668H080 pin0=BP0.3 pin0.type=firmware",
     "a new project with one pin"},
    {"velora project set toy.ini pin1=BP0.4 timer=TMG0 pwm-frequency=50",
     "a second pin and the timer of the firmware PWM"},
    {"velora project set toy.ini Sounds.bark=sounds/bark.wav Resources.OptionA=1",
     "entries of other sections"},
    {"velora project diff toy.ini old.ini", "what they differ in, and status 1 if they do"},
};

}  // namespace

extern const Command kProjectCommand;
constinit const Command kProjectCommand = {
    .name = "project",
    .summary = "make, show, compare and change project files",
    .operands = kOperands,
    .description =
        "A project file is an INI file with the part number, the sounds, what the firmware uses "
        "of the chip, and the pin map. It may be edited by hand: remarks, order and entries that "
        "the program does not know survive. What is wrong with a file is told with its line, and "
        "a file with faults is not touched.\n\n"
        "new makes a file for the part of --part; show prints a project; diff says in words what "
        "two projects differ in and ends with status 1 if they do; set changes entries in "
        "place.\n\n"
        "NAME=VALUE is pinN=PORT.PIN (name or position of the port, and pin; N from 0 to 31) or "
        "pinN=none; pinN.type (none, hardware, firmware, expander), pinN.frequency, pinN.levels, "
        "pinN.stop (0, 1), pinN.keep (no, yes), pinN.action, pinN.multi, pinN.gamma "
        "(0:0,255:255); method (pwm, mips-first, bam), timer, pwm-frequency; or SECTION.KEY of "
        "the sections Project, Sounds, Resources, Outputs, Script and Settings, where an empty "
        "value removes the entry.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunProject,
};

}  // namespace velora::cli
