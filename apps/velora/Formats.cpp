// `velora formats`: what the program knows of sound files.
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "FormatArgument.h"
#include "Json.h"
#include "SoundFile.h"
#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/WaveFileUtil/WavFileFormat.h"

namespace velora::cli {
namespace {

struct FormatRow {
  uint32_t id = 0;
  std::string name;
  std::vector<std::string> extensions;
  std::string tag;
  const char* kind = "";
  const char* group = "";
};

const char* KindText(uint32_t kind) {
  switch (kind) {
    case kKindAudio:
      return "audio";
    case kKindMusic:
      return "music";
    case kKindInstrument:
      return "instrument";
    case kKindImage:
      return "image";
    case kKindBinary:
      return "binary";
    default:
      return "";
  }
}

const char* GroupText(uint32_t group) {
  switch (group) {
    case kGroupSource:
      return "source";
    case kGroupAdpcm:
      return "adpcm";
    case kGroupMdpcm:
      return "mdpcm";
    case kGroupPcm10:
      return "p10";
    default:
      return "";
  }
}

/// The three tables joined, by id in the order of the extension table.
std::vector<FormatRow> ListFormats() {
  std::vector<FormatRow> rows;
  for (const ExtensionRecord& record : GetExtensionTable()) {
    if (rows.empty() || rows.back().id != record.id) {
      FormatRow row;
      row.id = record.id;
      row.name = FormatName(record.id);
      row.kind = KindText(record.kind);
      row.group = GroupText(record.group);
      for (const TagRecord& tag : GetTagTable()) {
        if (tag.id == record.id) row.tag = tag.tag;
      }
      rows.push_back(std::move(row));
    }
    rows.back().extensions.emplace_back(record.ext);
  }
  return rows;
}

std::string TextTable(const std::vector<FormatRow>& rows) {
  std::string text = "  id  name  tag   kind        group   use         extensions\n";
  for (const FormatRow& row : rows) {
    const std::string id = std::to_string(row.id);
    const bool reads = CanRead(row.id);
    const bool writes = CanWrite(row.id);
    const char* use = reads && writes ? "read, write" : reads ? "read" : writes ? "write" : "-";
    text += std::string(4 - id.size(), ' ') + id + "  " + PadRight(row.name, 6) +
            PadRight(row.tag.empty() ? "-" : row.tag, 6) + PadRight(row.kind, 12) +
            PadRight(*row.group ? row.group : "-", 8) + PadRight(use, 11);
    for (const std::string& extension : row.extensions) text += " " + extension;
    text += "\n";
  }
  return text;
}

std::string JsonTable(const std::vector<FormatRow>& rows) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const FormatRow& row : rows) {
    nlohmann::ordered_json object;
    object["id"] = row.id;
    object["name"] = row.name;
    object["extensions"] = row.extensions;
    object["tag"] = row.tag;
    object["kind"] = row.kind;
    object["group"] = row.group;
    object["readable"] = CanRead(row.id);
    object["writable"] = CanWrite(row.id);
    list.push_back(std::move(object));
  }
  nlohmann::ordered_json whole;
  whole["formats"] = std::move(list);
  return JsonText(whole) + "\n";
}

ExitStatus RunFormats(const Arguments& arguments, Console& console) {
  const std::vector<FormatRow> rows = ListFormats();
  console.Print(arguments.Has("json") ? JsonTable(rows) : TextTable(rows));
  return ExitStatus::kDone;
}

constexpr Option kOptions[] = {kJsonOption};
constexpr Example kExamples[] = {{"velora formats", "all formats, one a line"}};

}  // namespace

extern const Command kFormatsCommand;
constinit const Command kFormatsCommand = {
    .name = "formats",
    .summary = "list the kinds of sound files",
    .description =
        "Lists every format id with its short name, the tag its files begin with, what it is "
        "for, and its extensions. Formats that can neither be read nor written are known by name "
        "and extension alone.\n\n"
        "Wherever a command takes a FORMAT, an extension without its dot names it; else a short "
        "name that one writable format alone has; else id:N.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunFormats,
};

}  // namespace velora::cli
