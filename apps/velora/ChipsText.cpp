// The text form of what `velora chips` says.
#include <algorithm>
#include <cstdio>

#include "ChipsReport.h"
#include "ModuleDirectory.h"
#include "SoundFile.h"
#include "catalogue/chipfile/ItemSchema.h"
#include "foundation/ItemProperty.h"

namespace velora::cli {
namespace {

constexpr size_t kLabelWidth = 12;

std::string Number(int64_t value) { return std::to_string(value); }

std::string Hex(uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", value);
  return text;
}

template <typename Values, typename ToText>
std::string Joined(const Values& values, const ToText& toText, const char* separator = ", ") {
  std::string text;
  for (const auto& value : values) {
    if (!text.empty()) text += separator;
    text += toText(value);
  }
  return text.empty() ? "-" : text;
}

std::string Joined(const std::vector<std::string>& texts) {
  return Joined(texts, [](const std::string& text) { return text; });
}

std::string RangesText(const RangeList& list) {
  return list.there ? Joined(list.ranges, PinRangeText) : "-";
}

/// "Label       value" with the label in its column.
std::string Row(const char* label, const std::string& value) {
  return PadRight(label, kLabelWidth) + value + "\n";
}

std::string RowBelow(const char* label, const std::string& value) {
  return "  " + Row(label, value);
}

int PwmPinCount(const ChipFacts& facts) {
  int count = 0;
  for (const PinRange& range : facts.pwmRanges.ranges) count += range.PinCount();
  return count;
}

// --- The drawing of the pins -------------------------------------------------

bool Holds(const RangeList& list, const std::string& port, int pin) {
  return std::ranges::any_of(list.ranges,
                             [&](const PinRange& range) { return range.Holds(port, pin); });
}

/// Three characters: what is special about a pin.
std::string PinCell(const ChipFacts& facts, const std::string& port, int pin) {
  std::string cell = "   ";
  if (Holds(facts.pwmRanges, port, pin)) cell[0] = 'P';
  if (Holds(facts.reservedRanges, port, pin) || Holds(facts.optionRanges, port, pin)) {
    cell[1] = 'o';
  }
  if (Holds(facts.sharedRanges, port, pin)) cell[2] = 's';
  return cell;
}

std::string PinDrawing(const ChipFacts& facts) {
  int width = 0;
  size_t nameWidth = 4;
  for (const PinRange& port : facts.ports) {
    width = std::max(width, port.lastPin + 1);
    nameWidth = std::max(nameWidth, port.port.size());
  }
  const std::string margin(nameWidth + 4, ' ');
  std::string head = margin + " ";
  for (int pin = 0; pin < width; ++pin) head += " " + PadRight(Number(pin), 3);
  std::string text = head.substr(0, head.find_last_not_of(' ') + 1) + "\n";

  int drawn = 0;  // pins under the last line, which the next port stands on
  for (const PinRange& port : facts.ports) {
    std::string edge = margin + "+";
    for (int pin = 0; pin < std::max(port.lastPin + 1, drawn); ++pin) edge += "---+";
    text += edge + "\n  " + PadRight(port.port, nameWidth + 2) + "|";
    for (int pin = 0; pin <= port.lastPin; ++pin) {
      text += (pin < port.firstPin ? "   " : PinCell(facts, port.port, pin)) + "|";
    }
    text += "  " + Number(port.firstIndex) + "-" + Number(port.lastIndex) + "\n";
    drawn = port.lastPin + 1;
  }
  text += margin + "+";
  for (int pin = 0; pin < drawn; ++pin) text += "---+";
  return text + "\n  P hardware PWM   o an option can take it   s spare\n";
}

// --- The sections of one part ------------------------------------------------

std::string MemoryText(const ChipFacts& facts) {
  std::string text = Number(facts.ramSize) + " bytes";
  if (!facts.hasMemoryModel) return text + "; no memory model";
  const int64_t left = int64_t{facts.ramSize} - facts.systemRam - facts.otherRam;
  return text + ": " + Number(facts.systemRam) + " system, " + Number(facts.otherRam) + " other, " +
         Number(left) + " left for firmware and outputs";
}

std::string FunctionRamText(const ChipFacts& facts) {
  return "stack " + Number(facts.stackBase) + ", port scan " + Number(facts.portScanBase) +
         ", scan A " + Number(facts.scanRamA) + ", scan B " + Number(facts.scanRamB) + ", matrix " +
         Number(facts.matrixBase) + " + " + Number(facts.matrixPerLine) + " a line, event " +
         Number(facts.eventRam);
}

std::string PinsText(const ChipFacts& facts) {
  return Number(facts.PinCount()) + ": " + Number(facts.pinCounts[0]) + " both ways, " +
         Number(facts.pinCounts[1]) + " inputs, " + Number(facts.pinCounts[2]) +
         " outputs; in groups of " + Number(facts.groupSize) + ", outputs of " +
         Number(facts.outputGroupSize);
}

std::string RangesSection(const ChipFacts& facts) {
  return "Ranges (* filled first)\n" + RowBelow("inputs", RangesText(facts.inputRanges)) +
         RowBelow("outputs", RangesText(facts.outputRanges)) +
         RowBelow("matrix A", RangesText(facts.matrixRangesA)) +
         RowBelow("matrix B", RangesText(facts.matrixRangesB)) +
         RowBelow("fixed", RangesText(facts.fixedRanges)) +
         RowBelow("options", RangesText(facts.optionRanges)) +
         RowBelow("reserved", RangesText(facts.reservedRanges)) +
         RowBelow("spare", RangesText(facts.sharedRanges)) +
         RowBelow("special", RangesText(facts.specialRanges));
}

std::string FeaturesSection(const ChipFacts& facts) {
  std::string text = "Features      flags       RAM  kind\n";
  for (const FeatureFacts& feature : facts.features) {
    text += "              " + Hex(feature.mask) + PadLeft(Number(feature.ram), 5) +
            PadLeft(Number(feature.kind), 6) + "  " + feature.name + "\n";
  }
  for (const FeatureBlockFacts& block : facts.featureBlocks) {
    text += "              " + PadRight("key " + Number(block.key), 10) +
            PadLeft(Number(block.ram), 5) + "        block\n";
  }
  return text;
}

std::string FilesText(const ResourceLists& lists) {
  return "sounds " + Joined(lists.audio) + "; music " + Joined(lists.music) + "; pictures " +
         Joined(lists.image);
}

std::string FilesSection(const ChipFacts& facts) {
  std::string text = Row("Files", FilesText(facts.resources));
  for (size_t i = 0; i < facts.resourceSets.size(); ++i) {
    const std::string label = "set " + Number(static_cast<int64_t>(i));
    text += RowBelow(label.c_str(), FilesText(facts.resourceSets[i]));
  }
  return text;
}

std::string RecordSection(const ChipsData& data, const ChipFacts& facts) {
  C_ItemProperty record(data.records, facts.part.c_str());
  if (!record.IsLoaded()) return Row("Record", "none in ChipProperty.cfg");
  std::vector<std::string> families;
  for (const char* const family : kChipFamilies) {
    if (record.IsA(family)) families.emplace_back(family);
  }
  std::string text = Row("Record", "family " + Joined(families));
  for (const KeyRule& rule : ChipPropertySchema().Parts().keys) {
    const char* const value = IsRecordFact(rule) ? record.GetString(rule.name) : nullptr;
    if (value) text += "  " + PadRight(rule.name, 28) + value + "\n";
  }
  return text;
}

}  // namespace

std::string ChipsListText(const ChipsData& data, std::span<const std::string> parts) {
  std::string text = "part           RAM  pins  PWM  title\n";
  for (const std::string& part : parts) {
    const Result<ChipFacts> facts = data.catalogue.Read(part);
    if (!facts) {
      text += PadRight(part, 12) + "faulty: " + facts.Message() + "\n";
      continue;
    }
    text += PadRight(part, 12) + PadLeft(Number(facts->ramSize), 6) +
            PadLeft(Number(facts->PinCount()), 6) + PadLeft(Number(PwmPinCount(facts.Value())), 5) +
            "  " + facts->title + "\n";
  }
  return text;
}

std::string ChipText(const ChipsData& data, const ChipFacts& facts) {
  const auto number = [](int32_t id) { return Number(id); };
  return facts.part + "  " + facts.title + "\n\n" + Row("Code", Hex(facts.chipCode)) +
         Row("Interfaces", Joined(facts.interfaces, number)) + Row("RAM", MemoryText(facts)) +
         RowBelow("functions", FunctionRamText(facts)) + Row("Pins", PinsText(facts)) + "\n" +
         PinDrawing(facts) + "\n" + Row("PWM", RangesText(facts.pwmRanges)) +
         Row("Timers", Joined(facts.timers)) + RangesSection(facts) + FeaturesSection(facts) +
         FilesSection(facts) + RecordSection(data, facts);
}

std::string ChipWhyText(const std::string& part, std::span<const ExplainedFile> files) {
  std::string text = part + "\n";
  for (const ExplainedFile& file : files) {
    text +=
        "\n" + std::string(file.file) + ": " +
        (file.lineage.empty()
             ? "no such section"
             : Joined(
                   file.lineage, [](const std::string& name) { return "[" + name + "]"; }, " > ")) +
        "\n";
    for (const KeyOrigin& key : file.keys) {
      text += "  " + key.key + " = " + key.setBy.value + "\n      set by [" + key.setBy.section +
              "] in line " + Number(static_cast<int64_t>(key.setBy.line)) + "\n";
      for (const KeyOrigin::Place& place : key.overrode) {
        text += "      overrides " + place.value + " of [" + place.section + "] in line " +
                Number(static_cast<int64_t>(place.line)) + "\n";
      }
    }
  }
  return text;
}

std::string ChipsCheckText(const Path& directory, std::span<const ItemFinding> findings) {
  std::string text;
  for (const ItemFinding& finding : findings) {
    text += FileIn(directory, finding.file.c_str()).Text() + ":" +
            Number(static_cast<int64_t>(finding.line)) + ": ";
    if (!finding.section.empty()) text += "[" + finding.section + "] ";
    if (!finding.key.empty()) text += finding.key + ": ";
    text += finding.message + "\n";
  }
  return text;
}

}  // namespace velora::cli
