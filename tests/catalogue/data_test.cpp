// The data files that lie beside the module: sound, and with a chip for every rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "catalogue/chipfile/ChipFile.h"
#include "catalogue/chipfile/ItemCheck.h"
#include "foundation/ItemProperty.h"
#include "foundation/MsgHandler.h"
#include "foundation/StringHelpers.h"
#include "foundation/StringList.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

std::string DataPath(const char* name) {
  return std::string(VELORA_SOURCE_DIR).append("/data/").append(name);
}

class DataFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    Result<ChipFile> file = ChipFile::Open(Path::Native(DataPath("ChipInfo.cfg")));
    ASSERT_TRUE(file.Ok()) << file.Message();
    catalogue_ = std::make_unique<ChipFile>(std::move(file.Value()));
    ASSERT_TRUE(records_->Load(Path::Native(DataPath("ChipProperty.cfg"))));
  }

  ChipFacts Facts(const std::string& part) const {
    Result<ChipFacts> facts = catalogue_->Read(std::string_view(part));
    EXPECT_TRUE(facts.Ok()) << part << ": " << facts.Message();
    return facts ? facts.Value() : ChipFacts();
  }

  std::unique_ptr<ChipFile> catalogue_;
  std::shared_ptr<C_CUIniFile> records_ = std::make_shared<C_CUIniFile>();
};

void ExpectNone(const std::vector<ItemFinding>& findings) {
  for (const ItemFinding& f : findings) {
    ADD_FAILURE() << f.file << ":" << f.line << " [" << f.section << "] " << f.key << ": "
                  << f.message;
  }
}

TEST_F(DataFiles, AreWithoutFindings) {
  const auto source = [](const char* name) {
    return ItemSource::Open(Path::Native(DataPath(name))).Value();
  };
  ExpectNone(CheckChipInfo(source("ChipInfo.cfg"), *catalogue_));
  ExpectNone(CheckChipProperty(source("ChipProperty.cfg"), *catalogue_));
  ExpectNone(CheckRegisterMap(source("IOMap.ini"), "IOMap.ini"));
  ExpectNone(CheckRegisterMap(source("L647H001_IOMap.ini"), "L647H001_IOMap.ini"));
}

TEST_F(DataFiles, TellEveryKeyInTheirHeads) {
  for (const ItemSchema* const schema : {&ChipInfoSchema(), &ChipPropertySchema()}) {
    const std::string text = ReadText(DataPath(schema->file));
    const std::string head = text.substr(0, text.find("\n["));
    for (const ItemClass& itemClass : schema->classes) {
      if (itemClass.rootItem) {
        EXPECT_NE(head.find(itemClass.rootItem), std::string::npos);
      }
      for (const KeyRule& rule : itemClass.keys) {
        EXPECT_NE(head.find(rule.name), std::string::npos)
            << schema->file << " says nothing of " << rule.name;
      }
    }
  }
}

/// A part for every beginning that a rule looks for.
TEST_F(DataFiles, HaveAPartOfEveryFamily) {
  const struct {
    const char* part;
    uint32_t family;
  } cases[] = {
      {"K668D121", 0x6680000}, {"K668C036", 0x6680000}, {"K668C030", 0x6680000},
      {"K668L081", 0x6685000}, {"K663C060", 0x6630000}, {"K663A060", 0x6630000},
      {"K647D060", 0x6470000}, {"K647C060", 0x6470000}, {"K647J060", 0x6470000},
      {"K646A010", 0x6460000}, {"K611A010", 0x6110000}, {"K618A010", 0x6180000},
      {"K613A010", 0x6130000}, {"K629P116", 0x6290000}, {"K629P080", 0x6290000},
      {"K629A040", 0x6290000}, {"L646A040", 0x6461000}, {"L647H001", 0x6476000},
      {"L647H021", 0x6476000}, {"L647A040", 0x6475000}, {"L668L040", 0x6685000},
      {"L668H080", 0x6681000}, {"L668H040", 0x6681000}, {"L668J060", 0x6682000},
      {"L668M040", 0x6683000}, {"L668K020", 0x6683000}, {"L668A010", 0x6684000},
      {"K664A100", 0x6640000}, {"L664A100", 0x6642000},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.part);
    EXPECT_EQ(Facts(c.part).chipCode & 0x0FFFF000, c.family);
    EXPECT_EQ(C_ItemProperty(records_, c.part).IsLoaded(), 1);
  }
  EXPECT_NE(Facts("L647H021").chipCode >> 28, 0u) << "bits that do not name the family";
  for (const char* const part : {"X664N010", "VM0A032", "VM0B032", "Z900A010"}) Facts(part);
  for (const char* const seconds :
       {"036", "041", "046", "051", "056", "061", "071", "081", "101", "121"}) {
    EXPECT_NE(catalogue_->FindPart(std::string("K668C").append(seconds)), nullptr) << seconds;
  }
}

TEST_F(DataFiles, RecordsBelongToTheFamiliesThatRulesAskFor) {
  const std::map<std::string, std::set<std::string>> families = {
      {"K664A100", {"664", "K664"}},
      {"k664a100", {"664", "K664"}},
      {"L664A100", {"664", "L664"}},
      {"X664N010", {"664"}},
      {"VM0A032", {"M0Series"}},
      {"VM0B032", {"M0Series"}},
      {"L668H080", {"SDS_L668H"}},
      {"L668H040", {}},
      {"K668C036", {}},
  };
  for (const auto& [part, expected] : families) {
    C_ItemProperty record(records_, part.c_str());
    std::set<std::string> found;
    for (const char* const family : {"664", "K664", "L664", "M0Series", "SDS_L668H"}) {
      if (record.IsA(family)) found.insert(family);
    }
    EXPECT_EQ(found, expected) << part;
  }
  EXPECT_EQ(C_ItemProperty(records_, "Z910A010").IsLoaded(), 0);
  EXPECT_NE(catalogue_->FindPart("Z910A010"), nullptr);
  EXPECT_EQ(C_ItemProperty(records_, "Z920A010").IsLoaded(), 1);
  EXPECT_EQ(catalogue_->FindPart("Z920A010"), nullptr);
}

int IndexCount(const RangeList& list) {
  int count = 0;
  for (const PinRange& range : list.ranges) count += range.PinCount();
  return count;
}

TEST_F(DataFiles, HaveThePinsThatRulesAreAbout) {
  const ChipFacts k629p = Facts("K629P116");
  EXPECT_EQ(k629p.PinCount(), 24);
  EXPECT_GE(k629p.optionRanges.ranges.size(), 5u);
  EXPECT_GT(IndexCount(k629p.sharedRanges), 0);

  std::set<int> residues;
  for (const PinRange& range : Facts("L647H001").sharedRanges.ranges) {
    EXPECT_GE(range.firstIndex, 24);
    for (int i = range.firstIndex; i <= range.lastIndex; ++i) residues.insert(i % 4);
  }
  EXPECT_EQ(residues.size(), 4u);

  const ChipFacts l668h = Facts("L668H080");
  bool inside = false, leaves = false;
  for (const RangeList* const list : {&l668h.inputRanges, &l668h.outputRanges}) {
    for (const PinRange& range : list->ranges) {
      inside |= range.firstIndex == 16 && range.lastIndex == 23;
      leaves |= range.firstIndex == 16 && range.lastIndex == 24;
    }
  }
  EXPECT_TRUE(inside && leaves);

  EXPECT_TRUE(Facts("K664A100").specialRanges.there);
  EXPECT_TRUE(Facts("L664A100").specialRanges.there);
  EXPECT_FALSE(Facts("K668C036").specialRanges.there);
  for (const PinRange& port : Facts("K664A100").ports) EXPECT_EQ(port.PinCount(), 4);
  EXPECT_FALSE(Facts("Z900A010").optionRanges.there);
  EXPECT_EQ(Facts("K629A040").optionRanges.ranges.size(), 2u);
  EXPECT_FALSE(Facts("K611A010").sharedRanges.there);
  EXPECT_TRUE(Facts("K646A010").pwmRanges.ranges.empty());
  EXPECT_GE(Facts("K668C036").reservedRanges.ranges.size(), 6u);
  const auto& matrixB = Facts("K668C036").matrixRangesB.ranges;
  EXPECT_TRUE(std::ranges::any_of(
      matrixB, [](const PinRange& range) { return range.lastIndex < range.firstIndex; }));
}

TEST_F(DataFiles, HaveFiguresThatCannotBeMixedUp) {
  for (const std::string& part : catalogue_->Parts()) {
    const ChipFacts facts = Facts(part);
    const std::set<int32_t> figures = {facts.stackBase, facts.portScanBase, facts.scanRamA,
                                       facts.scanRamB,  facts.matrixBase,   facts.matrixPerLine,
                                       facts.eventRam};
    EXPECT_EQ(figures.size(), 7u) << part;
  }
  const ChipFacts small = Facts("K613A010");
  EXPECT_LT(small.ramSize, small.systemRam + small.otherRam);
  EXPECT_FALSE(Facts("Z900A010").hasMemoryModel);
  EXPECT_EQ(Facts("Z930A010").interfaces, (std::vector<int32_t>{4, 7}));
  EXPECT_EQ(Facts("Z940A010").interfaces, (std::vector<int32_t>{3, 7}));
  EXPECT_EQ(Facts("Z950A010").interfaces, (std::vector<int32_t>{3, 4}));

  size_t differ = 0;
  for (const std::string& part : catalogue_->Parts()) {
    differ += Facts(part).groupSize != Facts(part).outputGroupSize;
  }
  EXPECT_GE(differ, 2u);

  std::set<int32_t> kinds;
  bool twoBits = false;
  for (const FeatureFacts& feature : Facts("L668H080").features) {
    kinds.insert(feature.kind);
    twoBits |= __builtin_popcount(feature.mask) == 2;
  }
  EXPECT_EQ(kinds, (std::set<int32_t>{1, 2, 3}));
  EXPECT_TRUE(twoBits);
}

/// Register addresses by port, in the order of the list, by the plain rule.
std::vector<std::pair<std::string, uint32_t>> RegisterMap(const char* name) {
  C_CUIniFile file;
  EXPECT_TRUE(file.Load(Path::Native(DataPath(name))));
  std::vector<std::pair<std::string, uint32_t>> map;
  C_CUStringList ports;
  SplitList(file.GetString("Register Mapping", "IOPort", kIniText, kMsgNone), ports);
  for (const std::string& port : ports) {
    uint32_t address = 0;
    EXPECT_TRUE(ParseNumber(file.GetString("Register Mapping", port.c_str(), kIniText, kMsgNone),
                            &address));
    map.emplace_back(port, address);
  }
  return map;
}

TEST_F(DataFiles, RegisterMapsDifferAndBeginAtTheLowestAddress) {
  const auto general = RegisterMap("IOMap.ini");
  const auto anew = RegisterMap("L647H001_IOMap.ini");
  ASSERT_EQ(general.size(), 8u);
  EXPECT_EQ(general[0], (std::pair<std::string, uint32_t>("BP0", 16)));
  EXPECT_EQ(general[2].second, 24u);
  EXPECT_EQ(general[3].second, 28u);
  ASSERT_EQ(anew.size(), 5u);
  EXPECT_EQ(anew[0], (std::pair<std::string, uint32_t>("BP1", 64)));
  EXPECT_EQ(anew[2], (std::pair<std::string, uint32_t>("IP0", 72)));

  // A port at place 8 and beyond would be taken for one of an IO expander.
  for (const std::string& part : catalogue_->Parts()) EXPECT_LE(Facts(part).ports.size(), 8u);
}

}  // namespace
}  // namespace velora::test
