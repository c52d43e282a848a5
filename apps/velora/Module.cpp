// `velora module`: examines modules of the system from outside.
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "Json.h"
#include "ModuleCheck.h"
#include "SoundFile.h"
#include "catalogue/chipfile/ChipFile.h"
#include "platform/Directory.h"
#include "platform/File.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int64_t kDefaultSeconds = 20;
constexpr char kDefaultPart[] = "K668D121";
constexpr const char* kActions[] = {"check"};
constexpr const char* kKindNames[] = {"wizard", "catalogue", "generator", "ram-plan", "fan-out"};

/// The part to ask for: --part, else the first one of the catalogue beside the module.
std::string ChoosePart(const Arguments& arguments, const std::string& directory) {
  if (arguments.Has("part")) return arguments.Text("part");
  const Result<ChipFile> catalogue = ChipFile::Open(Path::Native(directory + "ChipInfo.cfg"));
  return catalogue ? catalogue->Parts().front() : kDefaultPart;
}

std::string VerdictText(const std::vector<ModuleVerdict>& verdicts) {
  constexpr size_t kNameWidth = 12;
  std::string text;
  for (const ModuleVerdict& verdict : verdicts) {
    const bool kept = verdict.finding.empty();
    text += PadRight(verdict.name, kNameWidth) + (kept ? "ok      " : "FAILED  ") +
            (kept ? verdict.what : verdict.finding) + "\n";
  }
  return text;
}

std::string VerdictJson(const std::string& path, const ModuleKind& kind, bool passed,
                        const std::vector<ModuleVerdict>& verdicts) {
  Json checks = Json::array();
  for (const ModuleVerdict& verdict : verdicts) {
    Json check;
    check["name"] = verdict.name;
    check["what"] = verdict.what;
    check["passed"] = verdict.finding.empty();
    check["finding"] = verdict.finding;
    checks.push_back(std::move(check));
  }
  Json object;
  object["path"] = path;
  object["kind"] = kind.name;
  object["passed"] = passed;
  object["checks"] = std::move(checks);
  return JsonText(object) + "\n";
}

ExitStatus RunModule(const Arguments& arguments, Console& console) {
  const std::string& path = arguments.Operands()[1];
  if (!FileExists(Path::Native(path))) {
    console.Error(path, "there is no such file");
    return ExitStatus::kInput;
  }
  ModuleFacts facts;
  facts.file = ResolveLinks(Path::Native(path));
  facts.directory = facts.file.substr(0, facts.file.rfind('/') + 1);
  facts.part = ChoosePart(arguments, facts.directory);
  const ModuleKind* const kind =
      arguments.Has("kind") ? FindModuleKind(arguments.Text("kind")) : GuessModuleKind(facts);
  if (!kind) {
    console.Error(path, "neither name nor exports tell what kind of module it is; --kind does");
    return ExitStatus::kInput;
  }
  const auto seconds = static_cast<double>(arguments.Number("timeout", kDefaultSeconds));
  const std::vector<ModuleVerdict> verdicts = CheckModule(facts, *kind, seconds);
  bool passed = true;
  for (const ModuleVerdict& verdict : verdicts) passed = passed && verdict.finding.empty();
  console.Print(arguments.Has("json") ? VerdictJson(path, *kind, passed, verdicts)
                                      : VerdictText(verdicts));
  return passed ? ExitStatus::kDone : ExitStatus::kNo;
}

constexpr Operand kOperands[] = {
    {.name = "ACTION", .kind = ValueKind::kChoice, .help = "What to do", .choices = kActions},
    {.name = "FILE", .kind = ValueKind::kPath, .help = "The module"},
};

constexpr Option kOptions[] = {
    {.name = "kind",
     .value = "KIND",
     .kind = ValueKind::kChoice,
     .help = "What the module is; without it, what its name or its exports say",
     .choices = kKindNames},
    {.name = "part",
     .letter = 'p',
     .value = "NUMBER",
     .kind = ValueKind::kText,
     .help = "A part that it should know; without it the first of the ChipInfo.cfg beside it"},
    {.name = "timeout",
     .value = "SECONDS",
     .kind = ValueKind::kNumber,
     .help = "The time that one check may take; without it 20",
     .least = 1,
     .most = 3600},
    kJsonOption,
};

constexpr Example kExamples[] = {
    {"velora module check lib/velora/VeloraUtil.so", "the module of this program"},
    {"velora module check --part X1 ./PartCatalog.so", "a catalogue of one's own"},
};

}  // namespace

extern const Command kModuleCommand;
constinit const Command kModuleCommand = {
    .name = "module",
    .summary = "examine a module from outside",
    .operands = kOperands,
    .description =
        "Loads a module as a host does and finds out whether it keeps the promises of its kind: "
        "what it exports, where its operations stand, what it answers to missing and wrong "
        "arguments, that no exception leaves it and that it gives back its memory. Operations are "
        "called by their place in the table alone.\n\n"
        "Each check runs in a process of its own with a time limit, so that a module may crash or "
        "hang. The objects of the wizard and of the chip catalogue are examined; of the other "
        "kinds the exports, loading and unloading are.\n\n"
        "The status is 1 when a check failed.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunModule,
};

}  // namespace velora::cli
