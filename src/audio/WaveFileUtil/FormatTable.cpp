#include "audio/WaveFileUtil/FormatTable.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "foundation/AsciiText.h"
#include "platform/File.h"

namespace velora {
namespace {

/// All that is known of a format; empty where it has none.
struct FormatRow {
  uint32_t id;
  std::string_view extensions;  ///< one behind the other, each with its dot
  FormatKind kind;
  FormatGroup group;
  std::string_view tag;
  std::string_view name;
};

constexpr FormatRow kFormats[] = {
    {1, ".SRC", kKindAudio, kGroupSource, "", "SRC"},
    {2, ".WAV.KIO.KAX", kKindAudio, kGroupSource, "", "WAV"},
    {3, ".KAM", kKindAudio, kGroupAdpcm, "", "KAM"},
    {4, ".KMD", kKindAudio, kGroupMdpcm, "", "KMD"},
    {5, ".APM", kKindAudio, kGroupAdpcm, "KADM", "APM"},
    {6, ".MPM", kKindAudio, kGroupMdpcm, "KMPM", "MPM"},
    {7, ".KM5", kKindAudio, kGroupMdpcm, "", "KM5"},
    {8, ".PC8", kKindAudio, kGroupNone, "KPC8", "PC8"},
    {9, ".MID.KAR", kKindMusic, kGroupNone, "", "MID"},
    {10, ".INS", kKindInstrument, kGroupNone, "", "INS"},
    {12, ".P10", kKindAudio, kGroupPcm10, "KP10", "P10"},
    {13, ".SRC", kKindAudio, kGroupSource, "", "SRC"},
    {14, ".AP6", kKindAudio, kGroupAdpcm, "KAP6", "AP6"},
    {15, ".MDM", kKindAudio, kGroupMdpcm, "KMdM", "MDM"},
    {16, ".CP3", kKindAudio, kGroupNone, "KCP3", "CP3"},
    {17, ".MD6", kKindAudio, kGroupMdpcm, "KMD6", "MD6"},
    {18, ".EAM", kKindAudio, kGroupAdpcm, "KEAM", "EAM"},
    {19, ".MD5", kKindAudio, kGroupMdpcm, "KEMM", "MD5"},
    {20, ".AD4", kKindAudio, kGroupAdpcm, "KE2A", "AD4"},
    {21, ".LP8", kKindAudio, kGroupNone, "KLP8", "LP8"},
    {22, ".CP1", kKindAudio, kGroupNone, "KCP1", "CP1"},
    {23, ".CP2", kKindAudio, kGroupNone, "KCP2", "CP2"},
    {24, ".PAM", kKindAudio, kGroupAdpcm, "KPAM", "PAM"},
    {25, ".WAV", kKindInstrument, kGroupNone, "", "WAV"},
    {26, ".WAV", kKindInstrument, kGroupNone, "", "WAV"},
    {27, ".MCP", kKindAudio, kGroupNone, "KMCP", "MCP"},
    {28, ".SBD", kKindAudio, kGroupNone, "OSBC", "SBD"},
    {29, ".KLP", kKindAudio, kGroupNone, "KLPC", "KLP"},
    {30, ".P16", kKindAudio, kGroupNone, "KP16", "P16"},
    {31, ".MP3", kKindAudio, kGroupNone, "", "MP3"},
    {32, ".IMF", kKindMusic, kGroupNone, "", "IMF"},
    {33, ".CMF", kKindMusic, kGroupNone, "", "CMF"},
    {34, ".MBN", kKindMusic, kGroupNone, "", "MBN"},
    {35, ".CBN", kKindMusic, kGroupNone, "", "CBN"},
    {36, ".XMF", kKindMusic, kGroupNone, "", "XMF"},
    {37, ".ESB", kKindAudio, kGroupNone, "", "ESB"},
    {38, ".KAX", kKindInstrument, kGroupNone, "", "WAV"},
    {39, ".S08", kKindAudio, kGroupNone, "KS08", "S08"},
    {40, ".S16", kKindAudio, kGroupNone, "KS16", "S16"},
    {41, ".SAM", kKindAudio, kGroupAdpcm, "KSAM", "SAM"},
    {42, ".SMM", kKindAudio, kGroupMdpcm, "KSMM", "SMM"},
    {43, ".64M", kKindAudio, kGroupMdpcm, "K64M", "MPM"},
    {44, ".64P", kKindAudio, kGroupNone, "K64P", "PCM"},
    {45, ".KIO", kKindAudio, kGroupSource, "KEVO", "WAV"},
    {46, ".MVC", kKindAudio, kGroupNone, "KMVP", "MVC"},
    {47, ".MD4", kKindAudio, kGroupMdpcm, "KMD4", "MD4"},
    {48, ".MDR", kKindAudio, kGroupMdpcm, "LMDR", "MDR"},
    {49, ".64R", kKindAudio, kGroupNone, "K64R", "PCR"},
    {50, ".LM4", kKindAudio, kGroupMdpcm, "KLM4", "LM4"},
    {51, ".M4S", kKindAudio, kGroupMdpcm, "MD4S", "MD4S"},
    {52, ".L4S", kKindAudio, kGroupMdpcm, "LM4S", "LM4S"},
    {53, ".64D", kKindAudio, kGroupMdpcm, "K64D", "MPM"},
    {56, ".64N", kKindAudio, kGroupMdpcm, "K64N", "LM4"},
    {57, ".L64P", kKindAudio, kGroupMdpcm, "L64P", "PCM"},
    {58, ".L64R", kKindAudio, kGroupMdpcm, "L64R", "PCR"},
    {59, ".64EV", kKindAudio, kGroupMdpcm, "64EV", "EVO"},
    {129, ".LFM", kKindImage, kGroupNone, "", "LFM"},
    {130, ".BMP", kKindImage, kGroupNone, "", "BMP"},
    {161, ".BIN", kKindBinary, kGroupNone, "", "BIN"},
};

// The three packed tables, drawn from the one above while compiling.

template <size_t N>
constexpr void CopyText(std::string_view text, char (&into)[N]) {
  for (size_t i = 0; i < text.size(); ++i) into[i] = text[i];
}

constexpr size_t CountExtensions() {
  size_t count = 0;
  for (const FormatRow& row : kFormats) {
    count += static_cast<size_t>(std::count(row.extensions.begin(), row.extensions.end(), '.'));
  }
  return count;
}

constexpr size_t CountTags() {
  return static_cast<size_t>(std::count_if(std::begin(kFormats), std::end(kFormats),
                                           [](const FormatRow& row) { return !row.tag.empty(); }));
}

constexpr auto MakeExtensionTable() {
  std::array<ExtensionRecord, CountExtensions()> table{};
  size_t next = 0;
  for (const FormatRow& row : kFormats) {
    std::string_view rest = row.extensions;
    while (!rest.empty()) {
      const size_t end = std::min(rest.find('.', 1), rest.size());
      ExtensionRecord& record = table[next++];
      record.id = row.id;
      record.kind = row.kind;
      record.group = row.group;
      CopyText(rest.substr(0, end), record.ext);
      rest.remove_prefix(end);
    }
  }
  return table;
}

constexpr auto MakeTagTable() {
  std::array<TagRecord, CountTags()> table{};
  size_t next = 0;
  for (const FormatRow& row : kFormats) {
    if (row.tag.empty()) continue;
    TagRecord& record = table[next++];
    record.id = row.id;
    CopyText(row.tag, record.tag);
  }
  return table;
}

constexpr auto MakeNameTable() {
  std::array<NameRecord, std::size(kFormats)> table{};
  size_t next = 0;
  for (const FormatRow& row : kFormats) {
    NameRecord& record = table[next++];
    record.id = row.id;
    CopyText(row.name, record.name);
  }
  return table;
}

constexpr auto kExtensionTable = MakeExtensionTable();
constexpr auto kTagTable = MakeTagTable();
constexpr auto kNameTable = MakeNameTable();

template <size_t N>
std::string_view TextOf(const char (&field)[N]) {
  return {field, static_cast<size_t>(std::find(field, field + N, '\0') - field)};
}

template <typename Table, typename Test>
auto FindRow(const Table& table, const Test& test) -> decltype(table.data()) {
  const auto row = std::find_if(table.begin(), table.end(), test);
  return row == table.end() ? nullptr : &*row;
}

const ExtensionRecord* FindExtension(uint32_t id) {
  return FindRow(kExtensionTable, [id](const ExtensionRecord& row) { return row.id == id; });
}

const ExtensionRecord* FindExtension(std::string_view extension) {
  return FindRow(kExtensionTable, [extension](const ExtensionRecord& row) {
    return EqualsNoCase(TextOf(row.ext), extension);
  });
}

}  // namespace

std::span<const ExtensionRecord> GetExtensionTable() { return kExtensionTable; }
std::span<const TagRecord> GetTagTable() { return kTagTable; }
std::span<const NameRecord> GetNameTable() { return kNameTable; }

bool GetExtensionById(uint32_t id, std::string& extension) {
  const ExtensionRecord* row = FindExtension(id);
  if (row) extension = TextOf(row->ext);
  return row != nullptr;
}

uint32_t GetFormatIdByExtension(std::string_view extension) {
  const ExtensionRecord* row = FindExtension(extension);
  return row ? row->id : 0;
}

bool GetFormatName(uint32_t id, std::string& name) {
  const NameRecord* row =
      FindRow(kNameTable, [id](const NameRecord& record) { return record.id == id; });
  if (row) name = TextOf(row->name);
  return row != nullptr;
}

uint32_t GetKindById(uint32_t id) {
  const ExtensionRecord* row = FindExtension(id);
  return row ? row->kind : 0;
}

uint32_t GetKindByExtension(std::string_view extension) {
  const ExtensionRecord* row = FindExtension(extension);
  return row ? row->kind : 0;
}

uint32_t GetGroupById(uint32_t id) {
  const ExtensionRecord* row = FindExtension(id);
  return row ? row->group : 0;
}

uint32_t GetGroupByExtension(std::string_view extension) {
  const ExtensionRecord* row = FindExtension(extension);
  return row ? row->group : 0;
}

uint32_t GetFormatIdByTag(std::string_view tag) {
  const TagRecord* row = FindRow(
      kTagTable, [tag](const TagRecord& record) { return EqualsNoCase(TextOf(record.tag), tag); });
  return row ? row->id : 0;
}

uint32_t DetectTag(const Path& path) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return 0;
  std::array<char, 4> tag{};
  if (!file.Value().ReadExactly(0, std::as_writable_bytes(std::span(tag)))) return 0;
  return GetFormatIdByTag({tag.data(), tag.size()});
}

}  // namespace velora
