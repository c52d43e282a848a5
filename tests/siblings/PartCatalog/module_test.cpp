// The module as a host sees it: one symbol, tables of operations by place.
#include <gtest/gtest.h>

#include <velora/I_ChipCatalog.h>
#include <velora/I_ChipInfo.h>
#include <velora/I_ChipPorts.h>
#include <velora/I_ChipPwmInfo.h>
#include <velora/I_ChipResources.h>

#include <optional>
#include <utility>

#include "platform/Module.h"
#include "support/ModuleCheck.h"
#include "support/RawTable.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

/// One part whose every figure is another, so that no operation passes for another.
constexpr char kFile[] =
    "[T100]\nPart = 1\nChipCode = 0x12345678\nInterfaces = {3, 4, 7}\n"
    "Ports = {PA.0-7, PB.2-5}\nPinCounts = {7, 4, 1}\nGroupSize = 5\nOutputGroupSize = 6\n"
    "RamSize = 1001\nSystemRam = 102\nOtherRam = 103\n"
    "StackBase = 20\nPortScanBase = 21\nScanRamA = 22\nScanRamB = 23\nMatrixBase = 24\n"
    "MatrixPerLine = 25\nEventRam = 26\n"
    "ReservedRanges = {PA.0}\nMatrixRangesA = {PA.1}\nMatrixRangesB = {PA.2}\n"
    "FixedRanges = {PA.3}\nInputRanges = {PA.4, PB.5-3*}\nOutputRanges = {PA.5}\n"
    "OptionRanges = {PA.6}\nSharedRanges = {PA.7}\nSpecialRanges = {PB.2}\nPwmRanges = {PB.3}\n"
    "Timers = {TA, TB}\nFeatures = {[F]}\nFeatureBlocks = {[B]}\n"
    "AudioFiles = {.A}\nMusicFiles = {.M}\nImageFiles = {.I}\nResourceSets = {[S]}\n"
    "[F]\nName = Feature\nMask = 0x90000000\nRam = 31\nKind = 3\n"
    "[B]\nKey = 9\nRam = 32\n[S]\nAudioFiles = {.A0}\n"
    "[T200]\nISA = [T100]\nPart = 1\nInterfaces = {4}\nSystemRam =\nOtherRam =\n"
    "OptionRanges =\nSharedRanges =\nSpecialRanges =\nPwmRanges =\nInputRanges =\n"
    "[T300]\nISA = [T100]\nPart = 1\nRamSize = lots\n";

class PartCatalogModule : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteText(dir_ / "ChipInfo.cfg", kFile);
    Result<LoadedModule> module = LoadedModule::Load(Path::Native(ModulePath("PartCatalog.dll")));
    ASSERT_TRUE(module.Ok()) << module.Message();
    module_.emplace(std::move(module.Value()));
    factory_ = reinterpret_cast<ChipCatalogFactory>(module_->Find("CreateServiceInstance"));
    ASSERT_NE(factory_, nullptr);
    void* object = nullptr;
    ASSERT_EQ(factory_(kChipCatalogService, &object), 1);
    catalog_ = static_cast<I_ChipCatalog*>(object);
  }

  void TearDown() override {
    if (catalog_) RawTable(catalog_).Call<void>(1);
  }

  bool Load() { return catalog_->Load((dir_ / "ChipInfo.cfg").c_str()) != 0; }

  static void* InterfaceOf(I_ChipInfo* chip, int32_t id) {
    void* interface = nullptr;
    EXPECT_EQ(RawTable(chip).Call<int32_t>(1, id, &interface), 1) << id;
    return interface;
  }

  TempDir dir_;
  std::optional<LoadedModule> module_;
  ChipCatalogFactory factory_ = nullptr;
  I_ChipCatalog* catalog_ = nullptr;
};

TEST_F(PartCatalogModule, ExportsItsOneSymbolAndUnmaps) {
  const std::string path = ModulePath("PartCatalog.so");
  EXPECT_EQ(ExportsOf(path), (std::set<std::string>{"CreateServiceInstance"}));
  // Used first: what was called may leave things behind that keep a module mapped.
  ASSERT_TRUE(Load());
  catalog_->GetChip("T100")->Release();
  catalog_->Destroy();
  catalog_ = nullptr;
  EXPECT_TRUE(IsMapped(path));
  module_.reset();
  EXPECT_FALSE(IsMapped(path));
}

TEST_F(PartCatalogModule, HandsOutCataloguesAlone) {
  void* object = &object;
  for (const int32_t id : {0, 2, -1}) EXPECT_EQ(factory_(id, &object), 0);
  EXPECT_EQ(object, &object) << "untouched";
}

TEST_F(PartCatalogModule, LoadsAndFindsParts) {
  EXPECT_EQ(catalog_->GetChip("T100"), nullptr) << "nothing loaded yet";
  EXPECT_EQ(catalog_->Load(nullptr), 0);
  EXPECT_EQ(catalog_->Load((dir_ / "missing.cfg").c_str()), 0);
  const RawTable table(catalog_);
  ASSERT_EQ(table.Call<int32_t>(2, (dir_ / "ChipInfo.cfg").c_str()), 1);
  EXPECT_EQ(catalog_->Load((dir_ / "missing.cfg").c_str()), 0);

  auto* const chip = table.Call<I_ChipInfo*>(3, static_cast<const char*>("t100"));
  ASSERT_NE(chip, nullptr) << "what was loaded stays, and case does not matter";
  EXPECT_EQ(RawTable(chip).Call<uint32_t>(2), 0x12345678u);
  EXPECT_EQ(table.Call<int32_t>(0), VELORA_COUNT_OBJECTS ? 1 : 0);
  RawTable(chip).Call<void>(0);
  EXPECT_EQ(table.Call<int32_t>(0), 0);
  for (const char* const part : {"", "T1", "F", "T300"}) {
    EXPECT_EQ(catalog_->GetChip(part), nullptr) << part;
  }
  EXPECT_EQ(catalog_->GetChip(nullptr), nullptr);
}

TEST_F(PartCatalogModule, AChipOutlivesAnotherLoad) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T100");
  WriteText(dir_ / "ChipInfo.cfg", "[Other]\nPart = 1\n");
  ASSERT_TRUE(Load());
  EXPECT_EQ(catalog_->GetChip("T100"), nullptr);
  auto* const ports = static_cast<I_ChipPorts*>(InterfaceOf(chip, kChipPorts));
  EXPECT_EQ(ports->GetGroupSize(), 5);
  chip->Release();
}

TEST_F(PartCatalogModule, PortsByPlace) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T100");
  const RawTable table(static_cast<I_ChipPorts*>(InterfaceOf(chip, 3)));
  const int32_t expected[] = {7, 4, 1, 5, 6};
  for (size_t slot = 0; slot < std::size(expected); ++slot) {
    EXPECT_EQ(table.Call<int32_t>(slot), expected[slot]) << slot;
  }
  chip->Release();
}

TEST_F(PartCatalogModule, RangesAndTheirListsByPlace) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T100");
  const RawTable resources(static_cast<I_ChipResources*>(InterfaceOf(chip, 4)));
  // The first pin of the first range of each list, by the slot of the list.
  const std::pair<size_t, uint32_t> lists[] = {{2, 0}, {3, 0}, {5, 1},  {6, 2},  {7, 3},
                                               {8, 4}, {9, 5}, {10, 6}, {11, 7}, {12, 8}};
  for (const auto& [slot, index] : lists) {
    SCOPED_TRACE(slot);
    auto* const list = resources.Call<I_ChipResources::RangeList*>(slot);
    ASSERT_NE(list, nullptr);
    auto* const range = RawTable(list).Call<I_ChipPinRange*>(5, int32_t{0});
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->GetFirstIndex(), index);
    EXPECT_EQ(resources.Call<I_ChipResources::RangeList*>(slot), list) << "one list a chip";
  }
  auto* const inputs = resources.Call<I_ChipResources::RangeList*>(8);
  EXPECT_EQ(RawTable(inputs).Call<int32_t>(0), 2);
  const RawTable range(inputs->GetAt(1));
  EXPECT_STREQ(range.Call<const char*>(0), "PB");
  const uint32_t numbers[] = {5, 3, 11, 9};  // pins, then indexes
  for (size_t slot = 1; slot <= 4; ++slot) {
    EXPECT_EQ(range.Call<uint32_t>(slot), numbers[slot - 1]) << slot;
  }
  EXPECT_EQ(range.Call<int32_t>(5), 1);
  EXPECT_EQ(inputs->GetAt(0)->IsPreferred(), 0);
  EXPECT_EQ(inputs->GetAt(2), nullptr);
  chip->Release();
}

TEST_F(PartCatalogModule, MemoryAndFeaturesByPlace) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T100");
  const RawTable resources(static_cast<I_ChipResources*>(InterfaceOf(chip, 4)));
  EXPECT_EQ(resources.Call<int32_t>(0), 1001);
  const RawTable model(resources.Call<I_ChipMemoryModel*>(1, static_cast<I_ProjectHost*>(nullptr)));
  EXPECT_EQ(model.Call<int32_t>(0), 102);
  EXPECT_EQ(model.Call<int32_t>(1), 103);
  for (size_t slot = 13; slot <= 19; ++slot) {
    EXPECT_EQ(resources.Call<int32_t>(slot), static_cast<int32_t>(slot) + 7) << slot;
  }
  EXPECT_EQ(resources.Call<int32_t>(20), 1);
  const RawTable feature(resources.Call<I_ChipFeature*>(21, int32_t{0}));
  EXPECT_STREQ(feature.Call<const char*>(0), "Feature");
  EXPECT_EQ(feature.Call<uint32_t>(1), 0x90000000u);
  EXPECT_EQ(feature.Call<int32_t>(2), 31);
  EXPECT_EQ(feature.Call<int32_t>(3), 3);
  EXPECT_EQ(resources.Call<I_ChipFeature*>(21, int32_t{1}), nullptr);
  EXPECT_EQ(resources.Call<I_ChipFeature*>(21, int32_t{-1}), nullptr);
  EXPECT_EQ(RawTable(resources.Call<I_ChipFeatureBlock*>(22, int32_t{9})).Call<int32_t>(0), 32);
  EXPECT_EQ(resources.Call<I_ChipFeatureBlock*>(22, int32_t{8}), nullptr);
  chip->Release();
}

TEST_F(PartCatalogModule, ResourceListsAndPwmByPlace) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T100");
  const RawTable resources(static_cast<I_ChipResources*>(InterfaceOf(chip, 4)));
  I_CUStringList *audio = nullptr, *music = nullptr, *image = nullptr;
  ASSERT_EQ(resources.Call<int32_t>(4, int32_t{-1}, &audio, &music, &image), 1);
  EXPECT_STREQ(audio->GetAt(0), ".A");
  EXPECT_STREQ(music->GetAt(0), ".M");
  EXPECT_STREQ(image->GetAt(0), ".I");
  ASSERT_EQ(resources.Call<int32_t>(4, int32_t{0}, &audio, &music, &image), 1);
  EXPECT_STREQ(audio->GetAt(0), ".A0");
  EXPECT_EQ(music->GetCount(), 0);
  EXPECT_EQ(resources.Call<int32_t>(4, int32_t{1}, &audio, &music, &image), 0);
  EXPECT_STREQ(audio->GetAt(0), ".A0") << "untouched";

  const RawTable pwm(static_cast<I_ChipPwmInfo*>(InterfaceOf(chip, 7)));
  EXPECT_EQ(pwm.Call<I_CUList<I_ChipPinRange>*>(0)->GetAt(0)->GetFirstPin(), 3u);
  EXPECT_STREQ(pwm.Call<I_CUStringList*>(1)->GetAt(1), "TB");
  chip->Release();
}

TEST_F(PartCatalogModule, WhatAChipLacksIsNullOrEmpty) {
  ASSERT_TRUE(Load());
  I_ChipInfo* const chip = catalog_->GetChip("T200");
  for (const int32_t id : {3, 7, 5, -4}) {
    void* interface = this;
    EXPECT_EQ(chip->GetInterface(id, &interface), 0) << id;
    EXPECT_EQ(interface, nullptr) << id;
  }
  EXPECT_EQ(chip->GetInterface(4, nullptr), 0);
  auto* const resources = static_cast<I_ChipResources*>(InterfaceOf(chip, 4));
  EXPECT_EQ(resources->GetMemoryModel(nullptr), nullptr);
  EXPECT_EQ(resources->GetOptionRanges(), nullptr);
  EXPECT_EQ(resources->GetSharedRanges(), nullptr);
  EXPECT_EQ(resources->GetSpecialRanges(), nullptr);
  ASSERT_NE(resources->GetInputRanges(), nullptr);
  EXPECT_EQ(resources->GetInputRanges()->GetCount(), 0);
  chip->Release();
}

TEST_F(PartCatalogModule, TellsWhatItOutlivesInADebugBuild) {
  ASSERT_TRUE(Load());
  // Neither is released. They stay reachable, so that nothing else calls them leaks.
  static void* lost[2];
  lost[0] = catalog_->GetChip("T100");
  lost[1] = std::exchange(catalog_, nullptr);
  ASSERT_NE(lost[0], nullptr);
  testing::internal::CaptureStderr();
  module_.reset();
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(told, VELORA_COUNT_OBJECTS ? "PartCatalog: unloaded before 1 chip was released\n"
                                         "PartCatalog: unloaded before 1 catalogue was released\n"
                                       : "");
}

}  // namespace
}  // namespace velora::test
