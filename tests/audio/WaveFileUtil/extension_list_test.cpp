// Which files a chip takes: the old families by their own lists, the others by the
// catalogue.
#include "audio/WaveFileUtil/ExtensionList.h"

#include <gtest/gtest.h>

#include <memory>

#include "audio/WaveFileUtil/FormatTable.h"
#include "catalogue/ChipInfoLoader.h"
#include "foundation/StringList.h"
#include "support/ModuleCheck.h"
#include "support/ModuleFile.h"

namespace velora::test {
namespace {

std::string ListOf(std::string_view chipName, uint32_t filter, I_ChipInfo* chip = nullptr,
                   int32_t index = -1) {
  C_CUStringList list;
  const bool some = GetExtensionList(chipName, filter, list, chip, index);
  EXPECT_EQ(some, list.Count() > 0);
  std::string text;
  for (const std::string& extension : list) text += extension;
  return text;
}

TEST(ExtensionList, OldFamiliesHaveListsOfTheirOwn) {
  const struct {
    const char* chip;
    uint32_t filter;
    const char* expected;
  } cases[] = {
      {"K611A010", 0, ".KAM.SRC.WAV"},
      {"k618x", kKindAudio, ".KAM.SRC.WAV"},
      {"K611", kKindMusic, ""},
      {"K611", 3, ".KAM"},
      {"K611", 4, ""},
      {"K611", kGroupSource, ".SRC.WAV"},
      {"K611", kGroupAdpcm, ".KAM"},
      {"K611", kGroupMdpcm, ""},
      {"K613A010", 0, ".KMD.SRC.WAV"},
      {"K663A060", 0, ".KMD.SRC.WAV"},
      {"K663", 4, ".KMD"},
      {"K663", 3, ""},
      {"K663", kGroupMdpcm, ".KMD"},
      {"K646A010", 0, ".APM.MPM.PC8.p10.MID.WAV.SRC"},
      {"K646", kKindAudio, ".APM.MPM.PC8.p10.WAV.SRC"},
      {"K646", kKindMusic, ".MID"},
      {"K646", 9, ".MID"},
      {"K646", 12, ".P10"},
      {"K646", 3, ""},
      {"K646", kGroupSource, ".PC8.WAV.SRC"},
      {"K646", kGroupPcm10, ".P10.WAV.SRC"},
      {"K646", kGroupAdpcm | kGroupMdpcm, ".APM.WAV.SRC.MPM"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ListOf(c.chip, c.filter), c.expected) << c.chip << " " << std::hex << c.filter;
  }
}

TEST(ExtensionList, OtherChipsAreAskedThroughTheCatalogue) {
  const ModuleFile module(ModulePath("VeloraUtil.so"));
  const struct {
    const char* chip;
    uint32_t filter;
    int32_t index;
    const char* expected;
  } cases[] = {
      {"K663C060", 0, -1, ".MPM.MDM.MD6.WAV.SRC.KIO.KAX.MID"},
      {"k663c060", kKindAudio, -1, ".MPM.MDM.MD6.WAV.SRC.KIO.KAX"},
      {"K663C060", kKindMusic, -1, ".MID"},
      {"K663C060", kKindImage, -1, ""},
      {"L668H080", kKindImage, -1, ".BMP"},
      {"K663C060", uint32_t{kKindAudio} | kGroupMdpcm, -1, ".MPM.MDM.MD6"},
      {"K663C060", kGroupSource, -1, ".WAV.SRC.KIO.KAX"},
      {"K663C060", kKindMusic | 17, -1, ".MID.MD6"},
      {"K663C060", 17, -1, ".MD6"},
      {"K663C060", 0, 0, ".MPM.WAV.KIO.KAX"},
      {"K663C060", kKindMusic, 1, ".MID.IMF"},
      {"K663C060", 0, 2, ".SRC.BMP"},
      {"K663C060", 0, 3, ""},
      {"K663C999", 0, -1, ""},
      {"Z940A010", 0, -1, ""},  // a chip without resources
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ListOf(c.chip, c.filter, nullptr, c.index), c.expected)
        << c.chip << " " << std::hex << c.filter << " " << c.index;
  }
  EXPECT_EQ(GetChipCatalog(), nullptr) << "nothing keeps the catalogue loaded";
}

TEST(ExtensionList, AChipAtHandIsAskedItself) {
  const ModuleFile module(ModulePath("VeloraUtil.so"));
  const C_ChipInfoLoader guard;
  ASSERT_TRUE(LoadChipCatalog(nullptr));
  const std::unique_ptr<I_ChipInfo, ChipRelease> chip(GetChipCatalog()->GetChip("L668H080"));
  ASSERT_TRUE(chip);
  EXPECT_EQ(ListOf("some name", kKindImage, chip.get()), ".BMP");
  EXPECT_EQ(ListOf("K611", kKindImage, chip.get()), "") << "the old families come first";
}

TEST(ExtensionList, AddsToWhatIsThere) {
  C_CUStringList list;
  list.Add(".wav");
  EXPECT_TRUE(GetExtensionList("K611", kKindMusic, list, nullptr, -1)) << "not empty";
  EXPECT_TRUE(GetExtensionList("K611", 0, list, nullptr, -1));
  EXPECT_EQ(list.Count(), 3) << "an extension stands there once";
}

/// The catalogue's files name no extension that the format table lacks.
TEST(ExtensionList, TheCatalogueNamesKnownExtensions) {
  const ModuleFile module(ModulePath("VeloraUtil.so"));
  for (const char* const part :
       {"K611A010", "K629P116", "K646A010", "K647C060", "K663C060", "K664A100", "L664A100",
        "K668D121", "L646A040", "L668A010", "VM0A032"}) {
    const C_ChipInfoLoader guard;
    ASSERT_TRUE(LoadChipCatalog(nullptr));
    const std::unique_ptr<I_ChipInfo, ChipRelease> chip(GetChipCatalog()->GetChip(part));
    C_CUStringList list;
    GetExtensionList("any", 0, list, chip.get(), -1);
    for (const std::string& extension : list) {
      EXPECT_NE(GetFormatIdByExtension(extension), 0u) << part << " " << extension;
    }
  }
}

}  // namespace
}  // namespace velora::test
