// The catalogue from the user's side: loaded once, tried again after a failure, gone
// with its last user.
#include "catalogue/ChipInfoLoader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "support/ModuleCheck.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

namespace fs = std::filesystem;

class BoxRecorder final : public I_WindowHost {
 public:
  int32_t ShowBox(const char* text, const char* caption, uint32_t) override {
    boxes.push_back(std::string(caption).append(": ").append(text));
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::vector<std::string> boxes;
};

using ChipHolder = std::unique_ptr<I_ChipInfo, ChipRelease>;

/// A directory that stands for the module's.
class ChipInfoLoader : public ::testing::Test {
 protected:
  void CopyModule() const { fs::copy_file(ModulePath("PartCatalog.so"), dir_ / "PartCatalog.so"); }
  void CopyData() const { fs::copy_file(ModulePath("ChipInfo.cfg"), dir_ / "ChipInfo.cfg"); }

  TempDir dir_;
  ModuleFile module_{dir_ / "VeloraUtil.so"};
};

TEST_F(ChipInfoLoader, LoadsOnceAndGoesWithTheLastUser) {
  CopyModule();
  CopyData();
  std::optional<C_ChipInfoLoader> first(std::in_place);
  std::optional<C_ChipInfoLoader> second(*first);
  ASSERT_TRUE(LoadChipCatalog(nullptr));
  I_ChipCatalog* const catalog = GetChipCatalog();
  ASSERT_NE(catalog, nullptr);
  // Nothing is read again, so that nothing can fail.
  fs::remove(dir_ / "ChipInfo.cfg");
  EXPECT_TRUE(LoadChipCatalog(nullptr));
  EXPECT_EQ(GetChipCatalog(), catalog);

  first.reset();
  EXPECT_EQ(GetChipCatalog(), catalog);
  const bool found = ChipHolder(catalog->GetChip("k668c036")) != nullptr;
  EXPECT_TRUE(found);
  EXPECT_TRUE(IsMapped(dir_ / "PartCatalog.so"));
  second.reset();
  EXPECT_EQ(GetChipCatalog(), nullptr);
  EXPECT_FALSE(IsMapped(dir_ / "PartCatalog.so"));
}

TEST_F(ChipInfoLoader, TellsOfAMissingModuleAndTriesAgain) {
  const C_ChipInfoLoader guard;
  BoxRecorder boxes;
  EXPECT_FALSE(LoadChipCatalog(&boxes));
  ASSERT_EQ(boxes.boxes.size(), 1u);
  EXPECT_EQ(boxes.boxes[0].rfind("ChipInfo Loader: Load '", 0), 0u) << boxes.boxes[0];
  CopyModule();
  CopyData();
  EXPECT_TRUE(LoadChipCatalog(&boxes));
  EXPECT_EQ(boxes.boxes.size(), 1u);
}

TEST_F(ChipInfoLoader, AFileThatDoesNotLoadLeavesNoCatalogue) {
  const C_ChipInfoLoader guard;
  CopyModule();
  BoxRecorder boxes;
  EXPECT_FALSE(LoadChipCatalog(&boxes));
  EXPECT_EQ(GetChipCatalog(), nullptr);
  WriteText(dir_ / "ChipInfo.cfg", "no catalogue");
  EXPECT_FALSE(LoadChipCatalog(&boxes));
  EXPECT_TRUE(boxes.boxes.empty());
  fs::remove(dir_ / "ChipInfo.cfg");
  CopyData();
  EXPECT_TRUE(LoadChipCatalog(&boxes));
}

TEST_F(ChipInfoLoader, AModuleOfAnotherKindIsRefused) {
  const C_ChipInfoLoader guard;
  WriteText(dir_ / "PartCatalog.so", "not a module");
  BoxRecorder boxes;
  EXPECT_FALSE(LoadChipCatalog(&boxes));
  EXPECT_EQ(boxes.boxes.size(), 1u);
}

}  // namespace
}  // namespace velora::test
