// Records of parts: opened once, told about once, never null.
#include "chip/ChipPropertyLoader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/MessageBox.h"
#include "foundation/PathText.h"
#include "support/ModuleFile.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

class BoxRecorder final : public I_WindowHost {
 public:
  BoxRecorder() { SetBoxOwner(this); }
  ~BoxRecorder() { SetBoxOwner(nullptr); }
  int32_t ShowBox(const char* text, const char* caption, uint32_t style) override {
    boxes.push_back(std::to_string(style).append(" ").append(caption).append(": ").append(text));
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::vector<std::string> boxes;
};

class ChipPropertyLoader : public ::testing::Test {
 protected:
  void Write(const std::string& text) const { WriteText(dir_ / "ChipProperty.cfg", text); }
  std::string FilePath() const { return GetModuleDir(true) + "ChipProperty.cfg"; }

  TempDir dir_;
  ModuleFile module_{dir_ / "VeloraUtil.so"};
  BoxRecorder boxes_;
  C_ChipPropLoader loader_;
};

TEST_F(ChipPropertyLoader, SharesTheRecordOfAPart) {
  Write("[664]\nPinPerPort = 4\n[K664]\nISA = [664]\n[K664A100]\nISA = [K664]\nX = 1\n");
  C_ItemProperty* const record = loader_.GetChipProperty("K664A100");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(loader_.GetChipProperty("K664A100"), record);
  EXPECT_TRUE(record->IsA(kFamily664));
  EXPECT_TRUE(record->IsA(kFamilyK664));
  EXPECT_FALSE(record->IsA(kFamilyL664));

  C_ItemProperty* const lower = loader_.GetChipProperty("k664a100");
  EXPECT_NE(lower, record) << "another spelling is another record";
  EXPECT_TRUE(lower->IsA(kFamily664)) << "of the same section";
  EXPECT_TRUE(boxes_.boxes.empty());
}

TEST_F(ChipPropertyLoader, TellsOncePerPartWhatIsMissing) {
  C_ItemProperty* const record = loader_.GetChipProperty("K1");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->GetNumber(kPinPerPort), -1);
  EXPECT_FALSE(record->IsA("K1"));
  EXPECT_EQ(loader_.GetChipProperty("K1"), record);
  const std::string noFile =
      "16 Error: Cannot find file " + FilePath() + " to load chip item info[";
  ASSERT_EQ(boxes_.boxes.size(), 1u);
  EXPECT_EQ(boxes_.boxes[0], noFile + "K1]");

  Write("[K2]\nX = 1\n");
  EXPECT_EQ(loader_.GetChipProperty("K3")->GetString("X"), nullptr);
  EXPECT_EQ(loader_.GetChipProperty("K1"), record) << "stays as it was";
  loader_.GetChipProperty("K3");
  ASSERT_EQ(boxes_.boxes.size(), 2u);
  EXPECT_EQ(boxes_.boxes[1],
            std::string("16 Error: Fail to load chip item [K3] from file ").append(FilePath()));
}

TEST_F(ChipPropertyLoader, ARecordOutlivesItsFileAndANewOneSeesTheNewFile) {
  Write("[K1]\nX = old\n[K2]\nX = old\n");
  C_ItemProperty* const record = loader_.GetChipProperty("K1");
  Write("[K1]\nX = new value\n[K2]\nX = new value\n");
  EXPECT_STREQ(loader_.GetChipProperty("K2")->GetString("X"), "new value");
  std::filesystem::remove(dir_ / "ChipProperty.cfg");
  EXPECT_STREQ(record->GetString("X"), "old");
  EXPECT_STREQ(loader_.GetChipProperty("K1")->GetString("X"), "old");
  EXPECT_EQ(loader_.GetChipProperty("K4")->IsLoaded(), 0);
  EXPECT_EQ(boxes_.boxes.size(), 1u);
}

TEST_F(ChipPropertyLoader, TheEmptyPartIsAnItemLikeAnyOther) {
  Write("X = 1\n[K1]\nX = 2\n");
  EXPECT_STREQ(loader_.GetChipProperty("")->GetString("X"), "1");
  EXPECT_TRUE(boxes_.boxes.empty());
}

TEST_F(ChipPropertyLoader, TheProcessHasOneLoader) {
  Write("[K1]\nX = 1\n");
  EXPECT_EQ(GetChipProperty("K1"), GetChipProperty("K1"));
  EXPECT_STREQ(GetChipProperty("K1")->GetString("X"), "1");
}

TEST_F(ChipPropertyLoader, ReadsNumbersWithADefaultOfTheReader) {
  Write("[K]\nA = 16\nB =\nC = 12x\nD = 0\n");
  I_ItemProperty* const record = loader_.GetChipProperty("K");
  EXPECT_EQ(ReadNumberOr(record, "A", 7), 16);
  EXPECT_EQ(ReadNumberOr(record, "B", 7), 7);
  EXPECT_EQ(ReadNumberOr(record, "C", 7), 12);
  EXPECT_EQ(ReadNumberOr(record, "D", 7), 0);
  EXPECT_EQ(ReadNumberOr(record, "E", -1), -1);
  EXPECT_EQ(ReadNumberOr(nullptr, "A", 5), 5);
}

TEST_F(ChipPropertyLoader, ReadsMasksOf64Bits) {
  Write(
      "[K]\nA = 0x00000000C0010003\nB = 00F00000\nC = 0XfFfFfFfFfFfFfFfF\n"
      "D = 10 20\nE = zz\nF = 12345678123456789\nG = 0x\n");
  I_ItemProperty* const record = loader_.GetChipProperty("K");
  EXPECT_EQ(ReadMask(record, "A"), 0xC0010003u);
  EXPECT_EQ(ReadMask(record, "B"), 0xF00000u);
  EXPECT_EQ(ReadMask(record, "C"), UINT64_MAX);
  EXPECT_EQ(ReadMask(record, "D"), 0x10u);
  EXPECT_EQ(ReadMask(record, "E"), 0u);
  EXPECT_EQ(ReadMask(record, "F"), 0x1234567812345678u) << "sixteen digits and no more";
  EXPECT_EQ(ReadMask(record, "G"), 0u);
  EXPECT_EQ(ReadMask(record, "none"), 0u);
  EXPECT_EQ(ReadMask(nullptr, "A"), 0u);
}

}  // namespace
}  // namespace velora::test
