// `velora chips`: what the system knows of chips.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "ChipsReport.h"
#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "ModuleDirectory.h"
#include "SoundFile.h"
#include "catalogue/chipfile/ItemSchema.h"
#include "catalogue/chipfile/ItemSource.h"
#include "catalogue/chipfile/Spelling.h"
#include "foundation/AsciiText.h"
#include "foundation/ItemFile.h"

namespace velora::cli {
namespace {

constexpr const char* kRegisterMaps[] = {"IOMap.ini", "L647H001_IOMap.ini"};

/// The files with their lines, for checks and explanations.
struct ChipsSources {
  ItemSource catalogue;
  ItemSource records;
};

Result<ItemSource> OpenSource(const Path& directory, const char* name, Console& console) {
  Result<ItemSource> source = ItemSource::Open(FileIn(directory, name));
  if (!source) console.Error(FileIn(directory, name).Text(), source.Message());
  return source;
}

Result<ChipsSources> OpenSources(const Path& directory, Console& console) {
  Result<ItemSource> catalogue = OpenSource(directory, ChipInfoSchema().file, console);
  if (!catalogue) return catalogue.GetStatus();
  Result<ItemSource> records = OpenSource(directory, ChipPropertySchema().file, console);
  if (!records) return records.GetStatus();
  return ChipsSources{std::move(catalogue.Value()), std::move(records.Value())};
}

// --- --check -----------------------------------------------------------------

ExitStatus RunCheck(const ChipsData& data, bool json, Console& console) {
  const Result<ChipsSources> sources = OpenSources(data.directory, console);
  if (!sources) return ExitStatus::kInput;
  std::vector<ItemFinding> findings = CheckChipInfo(sources->catalogue, data.catalogue);
  std::ranges::copy(CheckChipProperty(sources->records, data.catalogue),
                    std::back_inserter(findings));
  for (const char* const name : kRegisterMaps) {
    const Result<ItemSource> map = OpenSource(data.directory, name, console);
    if (!map) return ExitStatus::kInput;
    std::ranges::copy(CheckRegisterMap(map.Value(), name), std::back_inserter(findings));
  }
  console.Print(json ? ChipsCheckJson(findings) : ChipsCheckText(data.directory, findings));
  console.Summary(Counted(data.catalogue.Parts().size(), "part") + ", " +
                  Counted(findings.size(), "finding"));
  return findings.empty() ? ExitStatus::kDone : ExitStatus::kNo;
}

// --- --why -------------------------------------------------------------------

ExplainedFile Explain(const ItemSource& source, const ItemSchema& schema, const std::string& part) {
  ExplainedFile explained = {schema.file, {}, {}};
  const ItemSection* const section = source.Find(part);
  if (!section) return explained;
  for (const ItemSection* const each : source.Lineage(*section)) {
    explained.lineage.push_back(each->name);
  }
  explained.keys = ExplainItem(source, *section, schema);
  return explained;
}

ExitStatus RunWhy(const ChipsData& data, const std::string& part, bool json, Console& console) {
  const Result<ChipsSources> sources = OpenSources(data.directory, console);
  if (!sources) return ExitStatus::kInput;
  const ExplainedFile files[] = {Explain(sources->catalogue, ChipInfoSchema(), part),
                                 Explain(sources->records, ChipPropertySchema(), part)};
  console.Print(json ? ChipWhyJson(part, files) : ChipWhyText(part, files));
  return ExitStatus::kDone;
}

// --- Parts -------------------------------------------------------------------

bool ContainsNoCase(std::string_view text, std::string_view wanted) {
  return ToUpper(text).find(ToUpper(wanted)) != std::string::npos;
}

/// Parts whose number or title contains the words.
std::vector<std::string> SearchParts(const ChipsData& data, std::string_view words) {
  std::vector<std::string> found;
  for (const std::string& part : data.catalogue.Parts()) {
    const Result<ChipFacts> facts = data.catalogue.Read(part);
    if (ContainsNoCase(part, words) || (facts && ContainsNoCase(facts->title, words))) {
      found.push_back(part);
    }
  }
  return found;
}

ExitStatus SayUnknown(const ChipsData& data, const std::string& part, Console& console) {
  const auto meant = NearestName(part, data.catalogue.Parts());
  console.Error(part, "no part has this number, or this in its number or title" +
                          (meant ? "; did you mean " + *meant + "?" : ""));
  return ExitStatus::kNo;
}

ExitStatus ShowPart(const ChipsData& data, const std::string& part, bool json, Console& console) {
  const Result<ChipFacts> facts = data.catalogue.Read(part);
  if (!facts) {
    console.Error(FileIn(data.directory, ChipInfoSchema().file).Text(), facts.Message());
    return ExitStatus::kInput;
  }
  console.Print(json ? ChipJson(data, facts.Value()) : ChipText(data, facts.Value()));
  return ExitStatus::kDone;
}

ExitStatus ShowParts(const ChipsData& data, const std::vector<std::string>& parts, bool json,
                     Console& console) {
  console.Print(json ? ChipsListJson(data, parts) : ChipsListText(data, parts));
  return ExitStatus::kDone;
}

// --- The command -------------------------------------------------------------

Result<ChipsData> OpenData(const Arguments& arguments, Console& console) {
  const Path directory =
      arguments.Has("data") ? Path::Native(arguments.Text("data")) : FindModuleDirectory();
  const Path file = FileIn(directory, ChipInfoSchema().file);
  Result<ChipFile> catalogue = ChipFile::Open(file);
  if (!catalogue) {
    console.Error(file.Text(), catalogue.Message());
    return catalogue.GetStatus();
  }
  ChipsData data = {directory, std::move(catalogue.Value()), nullptr};
  const Path recordFile = FileIn(directory, ChipPropertySchema().file);
  if (Result<std::shared_ptr<C_CUIniFile>> records = OpenItemFile(recordFile)) {
    data.records = std::move(records.Value());
  } else {
    console.Warning(recordFile.Text(), records.Message());
  }
  return data;
}

ExitStatus RunChips(const Arguments& arguments, Console& console) {
  const bool json = arguments.Has("json");
  const std::string part = arguments.Operands().empty() ? "" : arguments.Operands().front();
  if (arguments.Has("check") && (arguments.Has("why") || !part.empty())) {
    console.Error("--check", "checks all files, and takes neither PART nor --why");
    return ExitStatus::kUsage;
  }
  if (arguments.Has("why") && part.empty()) {
    console.Error("--why", "needs a PART");
    return ExitStatus::kUsage;
  }
  const Result<ChipsData> data = OpenData(arguments, console);
  if (!data) return ExitStatus::kInput;

  if (arguments.Has("check")) return RunCheck(data.Value(), json, console);
  if (part.empty()) return ShowParts(data.Value(), data->catalogue.Parts(), json, console);
  const std::string* const known = data->catalogue.FindPart(part);
  if (arguments.Has("why")) {
    return known ? RunWhy(data.Value(), *known, json, console)
                 : SayUnknown(data.Value(), part, console);
  }
  if (known) return ShowPart(data.Value(), *known, json, console);
  const std::vector<std::string> found = SearchParts(data.Value(), part);
  if (found.empty()) return SayUnknown(data.Value(), part, console);
  return ShowParts(data.Value(), found, json, console);
}

constexpr Operand kOperands[] = {
    {.name = "PART",
     .kind = ValueKind::kText,
     .help = "A part number, or what part numbers or titles contain; without regard to case",
     .required = false},
};

constexpr Option kOptions[] = {
    kJsonOption,
    {.name = "check", .help = "Look for faults in the data files"},
    {.name = "why", .help = "Print every key of the part with the record that set it"},
    {.name = "data",
     .value = "DIR",
     .kind = ValueKind::kPath,
     .help = "Read the data files of DIR instead of those of the module"},
};

constexpr Example kExamples[] = {
    {"velora chips", "all parts, one a line"},
    {"velora chips k668", "the parts with this in their number or title"},
    {"velora chips K668C036", "one part in full"},
    {"velora chips K668C036 --why", "where each of its facts comes from"},
    {"velora chips --check --data .", "faults in the data files of this directory"},
};

}  // namespace

bool IsRecordFact(const KeyRule& rule) {
  return rule.name != kIsaKey && rule.name != kPartKey && rule.name != kUncheckedKey;
}

extern const Command kChipsCommand;
constinit const Command kChipsCommand = {
    .name = "chips",
    .summary = "list, search and explain the chips of the catalogue",
    .operands = kOperands,
    .description =
        "Shows what the data files of the module say of chips: ChipInfo.cfg (memory, ports, "
        "ranges of pins, PWM, timers, features) and ChipProperty.cfg (families, clock sources, "
        "IO expanders). Without PART it lists all parts; with the number of one it tells "
        "everything of that part, with a drawing of its ports; with anything else it searches.\n\n"
        "With --check it reads the two files and the register maps as a person wrote them and "
        "reports unknown keys with the likely spelling, values that are no numbers or no pins of "
        "the chip, references that lead nowhere, loops of parents, sections that no part uses, "
        "and keys that repeat what a parent says. The status is 1 when there is a finding. With "
        "--why it prints every key of a part with the section and line that set it, and what "
        "that overrides. Both read plain files alone, no enciphered ones.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunChips,
};

}  // namespace velora::cli
