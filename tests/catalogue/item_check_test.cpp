// What the check finds, where, and what it leaves alone.
#include "catalogue/chipfile/ItemCheck.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

namespace velora::test {
namespace {

/// A file with one sound part, from line 1 on; cases add to it.
constexpr char kGood[] =
    "[Base]\n"                        // 1
    "ChipCode = 0x06680000\n"         // 2
    "Interfaces = {3, 4, 7}\n"        // 3
    "Ports = {BP0.0-7, IP0.0-3}\n"    // 4
    "PinCounts = {8, 4, 0}\n"         // 5
    "GroupSize = 4\n"                 // 6
    "OutputGroupSize = 4\n"           // 7
    "RamSize = 256\n"                 // 8
    "InputRanges = {BP0, IP0.0-3}\n"  // 9
    "[Part1]\n"                       // 10
    "ISA = [Base]\n"                  // 11
    "Part = 1\n";                     // 12

std::string Told(const ItemFinding& finding) {
  return std::to_string(finding.line) + " [" + finding.section + "] " + finding.key + ": " +
         finding.message;
}

std::string CheckText(const std::string& text) {
  const Result<ChipFile> file = ChipFile::FromText(text);
  if (!file) return file.Message();
  std::string told;
  for (const ItemFinding& finding : CheckChipInfo(ItemSource::Parse(text), file.Value())) {
    EXPECT_EQ(finding.file, "ChipInfo.cfg");
    told += Told(finding) + "\n";
  }
  return told;
}

TEST(ItemCheck, AGoodFileIsGood) { EXPECT_EQ(CheckText(kGood), ""); }

TEST(ItemCheck, FindsWhatIsWrong) {
  struct Case {
    const char* added;  ///< behind line 12
    const char* told;
  };
  const Case cases[] = {
      {"Ramsize = 7\n", "13 [Part1] Ramsize: is no key of a chip; RamSize is meant?\n"},
      {"GropuSize = 7\n", "13 [Part1] GropuSize: is no key of a chip; GroupSize is meant?\n"},
      {"Zebra = 7\n", "13 [Part1] Zebra: is no key of a chip\n"},
      {"RamSize = 25k\n", "13 [Part1] RamSize: \"25k\" is no number\n"},
      {"RamSize = 80000000h\n", "13 [Part1] RamSize: \"80000000h\" is not from 0 to 2147483647\n"},
      {"RamSize = 99999999999999999999\n",
       "13 [Part1] RamSize: \"99999999999999999999\" is not from 0 to 2147483647\n"},
      {"GroupSize = 0\n", "13 [Part1] GroupSize: \"0\" is not from 1 to 256\n"},
      {"Timers = TM0\n", "13 [Part1] Timers: \"TM0\" is no list in braces\n"},
      {"AudioFiles = {WAV}\n", "13 [Part1] AudioFiles: \"WAV\" is no extension with its dot\n"},
      {"RamSize = 0x100\n", ""},
      {"RamSize = 256\n", "13 [Part1] RamSize: says what [Base] says in line 8 already\n"},
      {"RamSize =\n", "13 [Part1] RamSize: has no value, and a part needs one\n"},
      {"SystemRam =\n", ""},
      {"RamSize = 1\nRamSize = 2\n",
       "14 [Part1] RamSize: stands in line 13 already; this one counts\n"},
      {"just words\n", "13 [Part1] : no \"=\" in the line\n"},
      {"Interfaces = {3, 5}\n", "13 [Part1] Interfaces: 5 is none of 3, 4 and 7\n"},
      {"OutputRanges = {BP0.0-8}\n",
       "13 [Part1] OutputRanges: \"BP0.0-8\" leaves the port, which is BP0.0-7\n"},
      {"OutputRanges = {BQ0.0}\n",
       "13 [Part1] OutputRanges: \"BQ0.0\": the chip has no port BQ0\n"},
      // A parent's range that the part's own ports no longer hold is told at the parent.
      {"Ports = {BP0.0-7, IP0.0-1}\nPinCounts = {8, 2, 0}\n",
       "9 [Base] InputRanges: \"IP0.0-3\" leaves the port, which is IP0.0-1\n"},
      {"PinCounts = {8, 3, 0}\n",
       "13 [Part1] PinCounts: add up to 11, and the ports have 12 pins\n"},
      {"PinCounts = {12}\n", "13 [Part1] PinCounts: is no list of three numbers\n"},
      {"Features = {[Base2]}\n",
       "13 [Part1] Features: there is no section [Base2]; [Base] is meant?\n"},
      {"Features = {Ir}\n", "13 [Part1] Features: \"Ir\" is not in brackets\n"},
      {"Features = {[F]}\n[F]\nName = a\nMask = 1\nRam = 1\n",
       "14 [F] Kind: is missing, and a feature needs it\n"},
      {"Features = {[F]}\n[F]\nISA = [G]\nName = a\nMask = 1\nRam = 1\n[G]\nKind = 2\n", ""},
      {"Features = {[F]}\n[F]\nName = a\nMask = 1\nRam = x\nKind = 1\n",
       "17 [F] Ram: \"x\" is no number\n"},
      {"Features = {[Base]}\n", nullptr},  // used as two things; told below
      {"[Lost]\nRamSize = 3\n",
       "13 [Lost] : no part uses it; a part of its own needs \"Part = 1\"\n"},
      {"[Lost1]\nISA = [Lost2]\n[Lost2]\n",
       "13 [Lost1] : no part uses it; a part of its own needs \"Part = 1\"\n"
       "15 [Lost2] : no part uses it; a part of its own needs \"Part = 1\"\n"},
      {"[Part2]\nPart = 1\nISA = [base]\n",
       "15 [Part2] ISA: [base] is written [Base] at its place, and a family test compares "
       "letter for letter\n"},
      {"[Part2]\nPart = 1\nISA = [Bas]\n", nullptr},
      {"[Part2]\nPart = 1\nISA = [Base], Other\n",
       "15 [Part2] ISA: \"Other\" is not in brackets\n"},
      {"[Part2]\nPart = yes\nISA = [Base]\n",
       "13 [Part2] : no part uses it; a part of its own needs \"Part = 1\"\n"},
      {"[Part2]\nPart = 1\nISA = [Part2]\n", nullptr},
      {"[Part2]\nPart = 1\nISA = [L1], [Base]\n[L1]\nISA = [L2]\n[L2]\nISA = [L1]\n",
       "19 [L2] ISA: a loop: [L1] > [L2] > [L1]\n"},
      {"RamSize = 25k\nUnchecked = {RamSize}\n", nullptr},
      {"Unchecked = {RamSize}\n", "13 [Part1] Unchecked: the section has no key RamSize\n"},
  };
  for (const Case& c : cases) {
    if (!c.told) continue;
    EXPECT_EQ(CheckText(std::string(kGood) + c.added), c.told) << c.added;
  }
}

TEST(ItemCheck, TellsOfSectionsUsedAsTwoThings) {
  const std::string told = CheckText(std::string(kGood) + "Features = {[Base]}\n");
  EXPECT_NE(told.find("1 [Base] : is used as a "), std::string::npos) << told;
}

TEST(ItemCheck, FindsALoopOfOneAndAMissingParent) {
  const std::string own = CheckText(std::string(kGood) + "[Part2]\nPart = 1\nISA = [Part2]\n");
  EXPECT_NE(own.find("15 [Part2] ISA: a loop: [Part2] > [Part2]"), std::string::npos) << own;
  EXPECT_NE(own.find("[Part2] RamSize: is missing"), std::string::npos) << own;
  const std::string lost = CheckText(std::string(kGood) + "[Part2]\nPart = 1\nISA = [Bas]\n");
  EXPECT_NE(lost.find("ISA: there is no section [Bas]; [Base] is meant?"), std::string::npos);
}

/// A part with that many sections between it and the good parent.
std::string DeepFile(int depth) {
  std::string text = kGood;
  for (int i = 1; i <= depth; ++i) {
    text.append("[D").append(std::to_string(i)).append("]\nISA = [");
    text.append(i < depth ? std::string("D").append(std::to_string(i + 1)) : "Base").append("]\n");
  }
  return text + "[Deep]\nPart = 1\nISA = [D1]\n";
}

TEST(ItemCheck, DeepFilesEndTheCheckNotTheProgram) {
  EXPECT_EQ(CheckText(DeepFile(254)), "");
  const std::string told = CheckText(DeepFile(20000));
  EXPECT_NE(told.find("[Deep] : has more than 256 sections above it"), std::string::npos);
}

/// Records with a catalogue that has the one good part.
std::string CheckRecords(const std::string& text) {
  const Result<ChipFile> catalogue = ChipFile::FromText(kGood);
  std::string told;
  for (const auto& finding : CheckChipProperty(ItemSource::Parse(text), catalogue.Value())) {
    EXPECT_EQ(finding.file, "ChipProperty.cfg");
    told += Told(finding) + "\n";
  }
  return told;
}

TEST(ItemCheck, ChecksRecords) {
  const std::string part = "[Part1]\nPart = 1\n";
  const struct {
    std::string text, told;
  } cases[] = {
      {part + "VlrOutPortOrder = {IP0, BP0}\nMaxIOExpanderNum = 0\n", ""},
      {part + "VlrOutPortOrder = {IP0, BP1}\n",
       "3 [Part1] VlrOutPortOrder: part Part1 has no port BP1\n"},
      {part + "HW_Pwm_Clock_Sources = {Fosc/1, fosc/4}\n",
       "3 [Part1] HW_Pwm_Clock_Sources: \"fosc/4\" is not of the form Fosc/4\n"},
      {part + "HW_Pwm_Clock_Sources = {Fosc/0}\n",
       "3 [Part1] HW_Pwm_Clock_Sources: \"Fosc/0\" is not of the form Fosc/4\n"},
      {part + "HW_Pwm_Clock_Sources = {Fosc/0}\nUnchecked = {HW_Pwm_Clock_Sources}\n", ""},
      {part + "DisabledOutPinMask = 0x0123456789abcdef\n", ""},
      {part + "DisabledOutPinMask = 0x10123456789abcdef\n",
       "3 [Part1] DisabledOutPinMask: \"10123456789abcdef\" is not a mask of 1 to 16 "
       "hexadecimal digits\n"},
      {part + "AvailableIOExpanders = {[X]}\n[X]\nPorts = {[P]}\n[P]\nName = P\n"
              "RangeStart = {0, 4}\nRangeEnd = {3}\n",
       "9 [P] RangeEnd: has 1 entries, and RangeStart 2\n"},
      {part + "AvailableIOExpanders = {[X]}\n[X]\nPorts = {[P]}\n[P]\nName = P\n"
              "RangeStart = {5}\nRangeEnd = {3}\n",
       "9 [P] RangeEnd: range 5 to 3 is none\n"},
      {part + "[EmulatorInfo]\nAvailableChips = {part1, Part2}\n",
       "4 [EmulatorInfo] AvailableChips: ChipInfo.cfg has no part Part2; Part1 is meant?\n"},
  };
  for (const auto& c : cases) EXPECT_EQ(CheckRecords(c.text), c.told) << c.text;
}

TEST(ItemCheck, ChecksRegisterMaps) {
  const std::string head = "[Register Mapping]\n";
  const struct {
    std::string text, told;
  } cases[] = {
      {head + "IOPort = A, B\nA = 10h\nB = 18\n", ""},
      {head + "IOPort = A, B\nA = 10h\nB = 12\n",
       "4 [Register Mapping] B: lies below the address of the first port, A\n"},
      {head + "IOPort = A, B\nA = 10h\n",
       "1 [Register Mapping] B: port of IOPort without an address\n"},
      {head + "IOPort = A\nA = 1x\n", "3 [Register Mapping] A: \"1x\" is no number\n"},
      {head + "IOPort = A,,B\nA = 1\n",
       "2 [Register Mapping] IOPort: an empty name ends the list behind 1 ports\n"},
      {head + "IOPort = BP0\nBP0 = 1\nbp0 = 2\n",
       "4 [Register Mapping] bp0: is no port of IOPort; BP0 is meant?\n"},
      {head + "A = 1\n", "1 [Register Mapping] IOPort: is missing\n"},
      {"", "1 [Register Mapping] IOPort: is missing\n"},
  };
  for (const auto& c : cases) {
    std::string told;
    for (const auto& finding : CheckRegisterMap(ItemSource::Parse(c.text), "IOMap.ini")) {
      told += Told(finding) + "\n";
    }
    EXPECT_EQ(told, c.told) << c.text;
  }
}

TEST(ItemExplain, TellsWhoSetAKeyAndWhatItOverrode) {
  const ItemSource source = ItemSource::Parse(
      "[P]\nISA = [A]\nPart = 1\nZebra = 1\nRamSize = 3\n"
      "[A]\nISA = [B]\nRamSize = 2\nTitle = t\n"
      "[B]\nRamSize = 1\n");
  const std::vector<KeyOrigin> origins = ExplainItem(source, *source.Find("P"), ChipInfoSchema());
  ASSERT_EQ(origins.size(), 3u);  // in the order of the schema, the unknown one last
  EXPECT_EQ(origins[0].key, "Title");
  EXPECT_EQ(origins[0].setBy.section, "A");
  EXPECT_EQ(origins[1].key, "RamSize");
  EXPECT_EQ(origins[1].setBy.line, 5u);
  ASSERT_EQ(origins[1].overrode.size(), 2u);
  EXPECT_EQ(origins[1].overrode[0].section, "A");
  EXPECT_EQ(origins[1].overrode[1].value, "1");
  EXPECT_EQ(origins[2].key, "Zebra");
}

}  // namespace
}  // namespace velora::test
