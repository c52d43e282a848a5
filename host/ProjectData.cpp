#include "host/ProjectData.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "foundation/AsciiText.h"
#include "host/ProjectStore.h"

namespace velora {
namespace {

constexpr int64_t kMostPort = 255;
constexpr int64_t kMostPin = 255;

/// Reads entries of one section and says what is wrong with them.
class EntryReader {
 public:
  EntryReader(ProjectStore& store, const char* section, ProjectReport& report)
      : store_(store), section_(section), report_(report) {}

  bool Exists() { return store_.GetLabelCount(section_) >= 0; }

  std::optional<std::string> Text(const std::string& key) {
    const char* const text = store_.GetString(section_, key.c_str(), kIniText, kMsgNone);
    return text ? std::optional<std::string>(text) : std::nullopt;
  }

  void Fault(const std::string& key, const std::string& what) {
    const IniLine* const line = store_.Document().Find(section_, key);
    const std::string where = line ? "line " + std::to_string(line->number) + ": " : "";
    report_.faults.push_back(where + key + ": " + what);
  }

  std::optional<PinPlace> Place(const std::string& key) {
    const auto text = Text(key);
    if (!text) return std::nullopt;
    const auto place = ParsePinPlace(*text);
    if (!place) Fault(key, "'" + *text + "' is no PORT.PIN such as 0.3");
    return place ? place : PinPlace{};
  }

 private:
  ProjectStore& store_;
  const char* section_;
  ProjectReport& report_;
};

std::string Numbered(const char* key, size_t number) { return key + std::to_string(number); }

void ReadFacts(ProjectStore& store, ProjectReport& report, FactValues& facts) {
  for (const FactRow& row : AllFacts()) {
    EntryReader reader(store, row.section, report);
    const auto text = reader.Text(row.key);
    if (!text) continue;
    const auto value = ParseWhole(*text, row.least, row.most);
    if (value) {
      facts.Set(row.fact, value.Value());
    } else {
      reader.Fault(row.key, value.Message());
    }
  }
}

void ReadOuts(EntryReader reader, std::vector<OutPin>& outs) {
  while (const auto place = reader.Place(Numbered("Out", outs.size() + 1))) {
    const std::string name = Numbered("Out", outs.size() + 1) + "Name";
    outs.push_back({*place, reader.Text(name).value_or("")});
  }
}

void ReadPlaces(EntryReader reader, const char* key, std::vector<PinPlace>& places) {
  while (const auto place = reader.Place(Numbered(key, places.size()))) places.push_back(*place);
}

/// "KEY A B": the key number and the places of both lines.
std::optional<MatrixCell> ParseCell(std::string_view text) {
  const size_t first = text.find(' ');
  const size_t second = text.find_last_of(' ');
  if (first == std::string_view::npos || second == first) return std::nullopt;
  const auto key = ParseWhole(text.substr(0, first), 0, 0xFFFF);
  const auto lineA = ParsePinPlace(Trim(text.substr(first, second - first)));
  const auto lineB = ParsePinPlace(text.substr(second + 1));
  if (!key || !lineA || !lineB) return std::nullopt;
  return MatrixCell{static_cast<uint32_t>(key.Value()), *lineA, *lineB};
}

void ReadCells(EntryReader reader, std::vector<MatrixCell>& cells) {
  while (true) {
    const std::string key = Numbered("UserCell", cells.size());
    const auto text = reader.Text(key);
    if (!text) return;
    const auto cell = ParseCell(*text);
    if (!cell) reader.Fault(key, "'" + *text + "' is no KEY PORT.PIN PORT.PIN such as 1 0.3 2.0");
    cells.push_back(cell.value_or(MatrixCell{}));
  }
}

/// The entries of a section by label, in the order of the text; of several lines of one
/// label the last.
std::vector<const IniLine*> EntriesOf(const ProjectStore& store, std::string_view section) {
  std::vector<const IniLine*> entries;
  std::string current;
  for (const IniLine& line : store.Document().Lines()) {
    if (line.erased) continue;
    if (line.kind == IniLine::kSection) current = line.name;
    if (line.kind == IniLine::kEntry && EqualsNoCase(current, section) &&
        store.Document().Find(section, line.name) == &line) {
      entries.push_back(&line);
    }
  }
  return entries;
}

void ReadSounds(ProjectStore& store, ProjectReport& report, std::vector<ProjectSound>& sounds) {
  EntryReader reader(store, kSoundsSection, report);
  for (const IniLine* const line : EntriesOf(store, kSoundsSection)) {
    if (line->bare) continue;
    sounds.push_back({line->name, reader.Text(line->name).value_or("")});
    if (sounds.back().path.empty()) reader.Fault(line->name, "names no sound file");
  }
}

std::optional<ProjectSetting> ParseSettingKey(std::string_view key) {
  const size_t dot = key.find('.');
  if (dot == std::string_view::npos) return std::nullopt;
  const auto group = ParseWhole(key.substr(0, dot), 0, 0xFFFFFFFF);
  const auto number = ParseWhole(key.substr(dot + 1), 0, INT32_MAX);
  if (!group || !number) return std::nullopt;
  ProjectSetting setting;
  setting.group = static_cast<uint32_t>(group.Value());
  setting.number = static_cast<int32_t>(number.Value());
  setting.key = key;
  return setting;
}

void ReadSettings(ProjectStore& store, ProjectReport& report,
                  std::vector<ProjectSetting>& settings) {
  EntryReader reader(store, kSettingsSection, report);
  for (const IniLine* const line : EntriesOf(store, kSettingsSection)) {
    if (line->bare) continue;
    const std::string text = reader.Text(line->name).value_or("");
    auto setting = ParseSettingKey(line->name);
    if (!setting) {
      reader.Fault(line->name, "is no GROUP.NUMBER such as 0x101.2");
      continue;
    }
    const auto value = ParseWhole(text, INT32_MIN, INT32_MAX);
    if (!value) {
      reader.Fault(line->name, value.Message());
      continue;
    }
    setting->value = static_cast<int32_t>(value.Value());
    settings.push_back(*setting);
  }
}

}  // namespace

std::optional<PinPlace> ParsePinPlace(std::string_view text) {
  const size_t dot = text.find('.');
  if (dot == std::string_view::npos) return std::nullopt;
  const auto port = ParseWhole(text.substr(0, dot), 0, kMostPort);
  const auto pin = ParseWhole(text.substr(dot + 1), 0, kMostPin);
  if (!port || !pin) return std::nullopt;
  return PinPlace{static_cast<uint32_t>(port.Value()), static_cast<uint32_t>(pin.Value())};
}

std::string PinPlaceText(const PinPlace& place) {
  return std::to_string(place.port) + "." + std::to_string(place.pin);
}

std::string SettingKey(uint32_t group, int32_t number) {
  char buffer[16];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, group, 16);
  return "0x" + ToUpper(std::string_view(buffer, static_cast<size_t>(end.ptr - buffer))) + "." +
         std::to_string(number);
}

ProjectData ReadProjectData(ProjectStore& store, ProjectReport& report) {
  ProjectData data;
  EntryReader project(store, kProjectSection, report);
  EntryReader script(store, kScriptSection, report);
  EntryReader outputs(store, kOutputsSection, report);
  data.hasScript = script.Exists();
  data.hasOutputs = outputs.Exists();
  data.hasResources = EntryReader(store, kResourcesSection, report).Exists();
  data.hasSettings = EntryReader(store, kSettingsSection, report).Exists();

  if (!project.Exists()) report.faults.push_back("has no section [Project]");
  data.partNumber = project.Text(kPartNumberKey).value_or("");
  if (project.Exists() && data.partNumber.empty()) {
    report.faults.push_back("[Project] names no Part");
  }
  ReadFacts(store, report, data.facts);
  ReadSounds(store, report, data.sounds);
  ReadOuts(outputs, data.outs);
  ReadCells(script, data.cells);
  ReadPlaces(script, "UserInput", data.inputs);
  ReadPlaces(script, "UserSingle", data.singles);
  ReadPlaces(script, "UserOutput", data.outputs);
  ReadPlaces(script, "UserFixed", data.fixed);
  ReadSettings(store, report, data.settings);
  return data;
}

}  // namespace velora
