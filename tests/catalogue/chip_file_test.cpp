// Parts as they are read from the catalogue file.
#include "catalogue/chipfile/ChipFile.h"

#include <gtest/gtest.h>

#include "foundation/EncryptKeys.h"
#include "foundation/EncryptNewPC1.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

constexpr char kFile[] =
    "[Base]\n"
    "Interfaces = {3, 4}\n"
    "Ports = {BP0.0-7, IP0.0-3}\n"
    "PinCounts = {8, 4, 0}\n"
    "GroupSize = 4\nOutputGroupSize = 2\n"
    "RamSize = 0x100\nSystemRam = 20h\n"
    "OptionRanges = {BP0.0, BP0.3-1*}\n"
    "SharedRanges = {}\n"
    "Timers = {TM0, TM1}\n"
    "Features = {[F.One], [F.Two]}\nFeatureBlocks = {[B]}\n"
    "AudioFiles = {.MPM, .WAV}\nResourceSets = {[S]}\n"
    "[F.One]\nName = One, and only\nMask = 80000000h\nRam = 5\nKind = 1\n"
    "[F.Two]\nISA = [F.One]\nKind = 2\nRam = 11b\n"
    "[B]\nKey = 7\nRam = 40\n"
    "[S]\nMusicFiles = {.MID}\n"
    "[K1A010]\nISA = [Base]\nPart = 1\nTitle = First\nChipCode = 0x16476ABC\n"
    "[K1A020]\nISA = [K1A010]\nPart = 1\nSystemRam =\nOptionRanges =\n"
    "[K1A030]\nISA = [K1A010]\n";

TEST(ChipFile, PartsAreTheSectionsThatSaySo) {
  const Result<ChipFile> file = ChipFile::FromText(kFile);
  ASSERT_TRUE(file.Ok()) << file.Message();
  EXPECT_EQ(file->Parts(), (std::vector<std::string>{"K1A010", "K1A020"}))
      << "a child of a part is none by itself";
  ASSERT_NE(file->FindPart("k1a020"), nullptr);
  EXPECT_EQ(*file->FindPart("k1a020"), "K1A020");
  EXPECT_EQ(file->FindPart("Base"), nullptr);
  EXPECT_EQ(file->FindPart(""), nullptr);
  EXPECT_FALSE(file->Read("K1A030").Ok());
}

TEST(ChipFile, ReadsEveryFact) {
  const ChipFacts facts = ChipFile::FromText(kFile)->Read("k1a010").Value();
  EXPECT_EQ(facts.part, "K1A010");
  EXPECT_EQ(facts.title, "First");
  EXPECT_EQ(facts.chipCode, 0x16476ABCu);
  EXPECT_TRUE(facts.HasInterface(3));
  EXPECT_FALSE(facts.HasInterface(7));
  EXPECT_EQ(facts.PinCount(), 12);
  EXPECT_EQ(facts.groupSize, 4);
  EXPECT_EQ(facts.outputGroupSize, 2);
  EXPECT_EQ(facts.ramSize, 256);
  EXPECT_TRUE(facts.hasMemoryModel);
  EXPECT_EQ(facts.systemRam, 32);
  EXPECT_EQ(facts.otherRam, 0);
  ASSERT_EQ(facts.optionRanges.ranges.size(), 2u);
  EXPECT_EQ(facts.optionRanges.ranges[1].firstIndex, 3);
  EXPECT_EQ(facts.optionRanges.ranges[1].lastIndex, 1);
  EXPECT_TRUE(facts.optionRanges.ranges[1].preferred);
  EXPECT_TRUE(facts.sharedRanges.there);
  EXPECT_TRUE(facts.sharedRanges.ranges.empty());
  EXPECT_FALSE(facts.specialRanges.there);
  EXPECT_EQ(facts.timers, (std::vector<std::string>{"TM0", "TM1"}));
  ASSERT_EQ(facts.features.size(), 2u);
  EXPECT_EQ(facts.features[1].name, "One, and only");
  EXPECT_EQ(facts.features[1].mask, 0x80000000u);
  EXPECT_EQ(facts.features[1].ram, 3);
  EXPECT_EQ(facts.features[1].kind, 2);
  ASSERT_EQ(facts.featureBlocks.size(), 1u);
  EXPECT_EQ(facts.featureBlocks[0].key, 7);
  EXPECT_EQ(facts.resources.audio, (std::vector<std::string>{".MPM", ".WAV"}));
  ASSERT_EQ(facts.resourceSets.size(), 1u);
  EXPECT_TRUE(facts.resourceSets[0].audio.empty());
  EXPECT_EQ(facts.resourceSets[0].music, (std::vector<std::string>{".MID"}));
}

TEST(ChipFile, AnEmptyValueTakesAnInheritedOneAway) {
  const ChipFacts facts = ChipFile::FromText(kFile)->Read("K1A020").Value();
  EXPECT_FALSE(facts.hasMemoryModel);
  EXPECT_FALSE(facts.optionRanges.there);
  EXPECT_EQ(facts.ramSize, 256);
}

TEST(ChipFile, AFaultyPartIsRefusedByTheSectionAndKeyAtFault) {
  const Result<ChipFile> file = ChipFile::FromText(
      std::string(kFile).append("[Bad]\nISA = [Base]\nPart = 1\nRamSize = many\n"));
  const Result<ChipFacts> facts = file->Read("Bad");
  ASSERT_FALSE(facts.Ok());
  EXPECT_EQ(facts.Message(), "[Bad] ChipCode: is missing, and a part needs it");
  std::vector<ChipFault> faults;
  file->Read("Bad", faults);
  ASSERT_EQ(faults.size(), 2u);
  EXPECT_EQ(faults[1].key, "RamSize");
}

TEST(ChipFile, WhatNamesNoPartIsNoCatalogue) {
  for (const char* const text :
       {"", "[A]\nPart = 0\n", "Part = 1\n", "\x01\x02\x03", "[A]\nISA = [B]\n[B]\nPart=2"}) {
    EXPECT_FALSE(ChipFile::FromText(text).Ok()) << text;
  }
  const TempDir dir;
  EXPECT_FALSE(ChipFile::Open(Path::Native(dir / "none.cfg")).Ok());
}

TEST(ChipFile, ReadsAnEncipheredFile) {
  const TempDir dir;
  WriteText(dir / "plain.cfg", kFile);
  C_EncryptNewPC1 cipher;
  ASSERT_EQ(cipher.EncipherFile((dir / "plain.cfg").c_str(), (dir / "secret.cfg").c_str(),
                                kDataFilePassKey.data(), nullptr),
            kEncryptDone);
  const Result<ChipFile> file = ChipFile::Open(Path::Native(dir / "secret.cfg"));
  ASSERT_TRUE(file.Ok()) << file.Message();
  EXPECT_EQ(file->Parts().size(), 2u);
}

}  // namespace
}  // namespace velora::test
