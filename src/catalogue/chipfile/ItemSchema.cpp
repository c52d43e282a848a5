#include "catalogue/chipfile/ItemSchema.h"

#include <algorithm>
#include <optional>
#include <string>

#include "catalogue/chipfile/ItemSource.h"
#include "foundation/AsciiText.h"

namespace velora {
namespace {

using enum KeyKind;

constexpr uint64_t kWord = 0xFFFFFFFF;

// --- ChipInfo.cfg ------------------------------------------------------------

constexpr KeyRule kChipKeys[] = {
    {"ISA", kParents, "parents; what a section does not say, they say"},
    {"Part", kFlag, "1: the section is a part that the catalogue knows", 0, 1},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"Title", kText, "one line for people"},
    {"ChipCode", kNumber, "code of the chip; bits 12 to 27 name the family", 0, kWord, nullptr,
     true},
    {"Interfaces", kNumberList, "which of the interfaces 3, 4 and 7 the chip answers", 3, 7,
     nullptr, true},
    {"Ports", kPortList, "all ports in their order, which numbers ports and pins", 0, 0, nullptr,
     true},
    {"PinCounts", kNumberList, "pins that go both ways, inputs only, outputs only", 0, 4096,
     nullptr, true},
    {"GroupSize", kNumber, "pins that share one direction of use", 1, 256, nullptr, true},
    {"OutputGroupSize", kNumber, "the same for outputs of the firmware", 1, 256, nullptr, true},
    {"RamSize", kNumber, "all RAM, in bytes as every RAM figure", 0, kWord >> 1, nullptr, true},
    {"SystemRam", kNumber, "RAM of the firmware's kernel"},
    {"OtherRam", kNumber, "RAM of whatever else is always there"},
    {"ReservedRanges", kRangeList, "pins that options take from the outputs, by place"},
    {"MatrixRangesA", kRangeList, "where the first lines of a key matrix may lie"},
    {"MatrixRangesB", kRangeList, "where its second lines may lie"},
    {"FixedRanges", kRangeList, "where fixed functions lie"},
    {"InputRanges", kRangeList, "where inputs may lie"},
    {"OutputRanges", kRangeList, "where outputs of the firmware may lie"},
    {"OptionRanges", kRangeList, "pins that options take from the firmware, by place"},
    {"SharedRanges", kRangeList, "spare pins"},
    {"SpecialRanges", kRangeList, "pins of a second level"},
    {"StackBase", kNumber, "RAM of the stack where no rule counts it"},
    {"PortScanBase", kNumber, "RAM of scanning ports where no rule counts it"},
    {"ScanRamA", kNumber, "RAM of inputs among the first matrix lines"},
    {"ScanRamB", kNumber, "RAM of inputs among the second matrix lines"},
    {"MatrixBase", kNumber, "RAM of a key matrix"},
    {"MatrixPerLine", kNumber, "RAM of each of its second lines"},
    {"EventRam", kNumber, "RAM of an event"},
    {"Features", kItems, "features of the firmware", 0, 0, "feature"},
    {"FeatureBlocks", kItems, "blocks of RAM by feature key", 0, 0, "feature block"},
    {"AudioFiles", kExtensions, "extensions of the sounds that the chip takes"},
    {"MusicFiles", kExtensions, "extensions of the music that it takes"},
    {"ImageFiles", kExtensions, "extensions of the pictures that it takes"},
    {"ResourceSets", kItems, "numbered sets of such extensions, from 0", 0, 0, "resource set"},
    {"PwmRanges", kRangeList, "pins with a hardware PWM, a range a clock source"},
    {"Timers", kTextList, "timers that firmware PWM can use"},
};

constexpr KeyRule kFeatureKeys[] = {
    {"ISA", kParents, "parents"},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"Name", kText, "name; some have a rule of their own", 0, 0, nullptr, true},
    {"Mask", kNumber, "bits of the project's feature flags that switch it on", 0, kWord, nullptr,
     true},
    {"Ram", kNumber, "RAM that it takes", 0, 0x7FFFFFFF, nullptr, true},
    {"Kind", kNumber, "1 counted with the framework, 2 with the modules, else not", 0, 255, nullptr,
     true},
};

constexpr KeyRule kFeatureBlockKeys[] = {
    {"ISA", kParents, "parents"},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"Key", kNumber, "the project's feature key", 0, 0x7FFFFFFF, nullptr, true},
    {"Ram", kNumber, "RAM that it takes", 0, 0x7FFFFFFF, nullptr, true},
};

constexpr KeyRule kResourceSetKeys[] = {
    {"ISA", kParents, "parents"},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"AudioFiles", kExtensions, "extensions of sounds"},
    {"MusicFiles", kExtensions, "extensions of music"},
    {"ImageFiles", kExtensions, "extensions of pictures"},
};

constexpr ItemClass kChipInfoClasses[] = {
    {"chip", kChipKeys},
    {"feature", kFeatureKeys},
    {"feature block", kFeatureBlockKeys},
    {"resource set", kResourceSetKeys},
};

constexpr ItemSchema kChipInfo = {"ChipInfo.cfg", kChipInfoClasses};

// --- ChipProperty.cfg --------------------------------------------------------

constexpr KeyRule kPropertyKeys[] = {
    {"ISA", kParents, "parents; some of their names are families that the rules ask for"},
    {"Part", kFlag, "1: the section is the record of a part", 0, 1},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"PinPerPort", kNumber, "pins of a port of an M0Series chip", 0, 64},
    {"PortName", kTextList, "ports of an M0Series chip in their order"},
    {"DisabledOutPinMask", kHexMask, "bit (port x PinPerPort + pin): no output there"},
    {"BAMTimers", kTextList, "timers that BAM output can use"},
    {"VlrOutPortOrder", kTextList, "order of the ports in masks of several pins"},
    {"HW_Pwm_Clock_Sources", kClockList, "clock sources of the hardware PWM"},
    {"IoExp_HW_Pwm_Clock_Sources", kTextList, "clock sources of the PWM of IO expanders"},
    {"MaxIOExpanderNum", kNumber, "IO expanders that the chip can drive", 0, 16},
    {"AvailableIOExpanders", kItems, "models of IO expanders", 0, 0, "expander"},
};

constexpr KeyRule kExpanderKeys[] = {
    {"ISA", kParents, "parents"},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"Ports", kItems, "ports of the model", 0, 0, "expander port"},
};

constexpr KeyRule kExpanderPortKeys[] = {
    {"ISA", kParents, "parents"},
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"Name", kText, "name; the number of the expander follows it", 0, 0, nullptr, true},
    {"RangeStart", kNumberList, "first pins of its PWM ranges", 0, 7, nullptr, true},
    {"RangeEnd", kNumberList, "last pins of the same ranges, inclusive", 0, 7, nullptr, true},
};

constexpr KeyRule kEmulatorKeys[] = {
    {"Unchecked", kKeyList, "keys of this section that the check leaves alone"},
    {"AvailableChips", kTextList, "part numbers that an emulator can stand for"},
};

constexpr ItemClass kPropertyClasses[] = {
    {"record", kPropertyKeys},
    {"expander", kExpanderKeys},
    {"expander port", kExpanderPortKeys},
    {"emulator", kEmulatorKeys, "EmulatorInfo"},
};

constexpr ItemSchema kChipProperty = {"ChipProperty.cfg", kPropertyClasses};

// --- Values ------------------------------------------------------------------

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::optional<uint64_t> ReadDigits(std::string_view digits, unsigned base) {
  if (digits.empty()) return {};
  uint64_t value = 0;
  for (const char c : digits) {
    const char upper = ToUpper(c);
    const unsigned digit = c >= '0' && c <= '9'           ? static_cast<unsigned>(c - '0')
                           : upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A' + 10)
                                                          : base;
    if (digit >= base) return {};
    if (value >> 59) return UINT64_MAX;  // far beyond any limit
    value = value * base + digit;
  }
  return value;
}

/// The number forms of item files, without their wrap at 32 bits.
std::optional<uint64_t> ReadWideNumber(std::string_view text) {
  if (const auto value = ReadDigits(text, 10)) return value;
  if (StartsWithNoCase(text, "0x")) return ReadDigits(text.substr(2), 16);
  if (text.empty()) return {};
  const std::string_view digits = text.substr(0, text.size() - 1);
  if (ToLower(text.back()) == 'h') return ReadDigits(digits, 16);
  if (ToLower(text.back()) == 'b') return ReadDigits(digits, 2);
  return {};
}

Status CheckNumber(const KeyRule& rule, std::string_view text) {
  const std::optional<uint64_t> value = ReadWideNumber(text);
  if (!value) return Status::Error(Quoted(text) + " is no number");
  if (*value < rule.least || *value > rule.most) {
    return Status::Error(Quoted(text) + " is not from " + std::to_string(rule.least) + " to " +
                         std::to_string(rule.most));
  }
  return {};
}

Status CheckHexMask(std::string_view text) {
  if (StartsWithNoCase(text, "0x")) text.remove_prefix(2);
  if (text.size() > 16 || !ReadDigits(text, 16)) {
    return Status::Error(Quoted(text) + " is not a mask of 1 to 16 hexadecimal digits");
  }
  return {};
}

Status CheckEntry(const KeyRule& rule, std::string_view entry) {
  switch (rule.kind) {
    case kNumberList:
      return CheckNumber(rule, entry);
    case kClockList: {
      const bool good = entry.starts_with("Fosc/") && ReadDigits(entry.substr(5), 10).value_or(0);
      return good ? Status() : Status::Error(Quoted(entry) + " is not of the form Fosc/4");
    }
    case kExtensions:
      return entry.size() >= 2 && entry.front() == '.'
                 ? Status()
                 : Status::Error(Quoted(entry) + " is no extension with its dot");
    case kItems:
      return ReferredItem(entry).data() ? Status()
                                        : Status::Error(Quoted(entry) + " is not in brackets");
    default:
      return {};
  }
}

Status CheckEntries(const KeyRule& rule, std::span<const std::string_view> entries) {
  for (const std::string_view entry : entries) {
    if (Status status = CheckEntry(rule, entry); !status) return status;
  }
  return {};
}

}  // namespace

const KeyRule* ItemClass::Find(std::string_view key) const {
  const auto found =
      std::ranges::find_if(keys, [key](const KeyRule& rule) { return key == rule.name; });
  return found == keys.end() ? nullptr : &*found;
}

const ItemClass* ItemSchema::Find(std::string_view name) const {
  const auto found =
      std::ranges::find_if(classes, [name](const ItemClass& each) { return name == each.name; });
  return found == classes.end() ? nullptr : &*found;
}

const ItemSchema& ChipInfoSchema() { return kChipInfo; }
const ItemSchema& ChipPropertySchema() { return kChipProperty; }

Status CheckValue(const KeyRule& rule, std::string_view value) {
  if (value.empty()) {
    return rule.required ? Status::Error("has no value, and a part needs one") : Status();
  }
  switch (rule.kind) {
    case kText:
      return {};
    case kFlag:
      return value == "0" || value == "1" ? Status()
                                          : Status::Error(Quoted(value) + " is neither 0 nor 1");
    case kNumber:
      return CheckNumber(rule, value);
    case kHexMask:
      return CheckHexMask(value);
    case kParents:
      for (const std::string_view entry : SplitEntries(value)) {
        if (!ReferredItem(entry).data()) {
          return Status::Error(Quoted(entry) + " is not in brackets");
        }
      }
      return {};
    default:
      break;
  }
  if (value.size() < 2 || value.front() != '{' || value.back() != '}') {
    return Status::Error(Quoted(value) + " is no list in braces");
  }
  return CheckEntries(rule, ListEntries(value));
}

}  // namespace velora
