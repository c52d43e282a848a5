#include "audio/WaveFileUtil/FormatTable.h"

#include <cstring>
#include <set>

#include "support/TempDir.h"

namespace velora {
namespace {

TEST(FormatTableTest, FirstRowOfAnExtensionWins) {
  const std::pair<const char*, uint32_t> cases[] = {
      {".SRC", 1}, {".wav", 2},  {".kio", 2},   {".KAX", 2},   {".mId", 9},
      {".kar", 9}, {".MD4", 47}, {".l64p", 57}, {".64EV", 59}, {".bin", 161},
      {"WAV", 0},  {".", 0},     {"", 0},       {".WAVE", 0},  {".64E", 0},
  };
  for (const auto& [extension, id] : cases) {
    EXPECT_EQ(GetFormatIdByExtension(extension), id) << extension;
  }
}

TEST(FormatTableTest, GivesWhatIsKnownOfAnId) {
  struct Facts {
    uint32_t id;
    const char* extension;
    const char* name;
    uint32_t kind;
    uint32_t group;
  };
  const Facts cases[] = {
      {2, ".WAV", "WAV", kKindAudio, kGroupSource},
      {12, ".P10", "P10", kKindAudio, kGroupPcm10},
      {13, ".SRC", "SRC", kKindAudio, kGroupSource},
      {14, ".AP6", "AP6", kKindAudio, kGroupAdpcm},
      {26, ".WAV", "WAV", kKindInstrument, kGroupNone},
      {51, ".M4S", "MD4S", kKindAudio, kGroupMdpcm},
      {56, ".64N", "LM4", kKindAudio, kGroupMdpcm},
      {130, ".BMP", "BMP", kKindImage, kGroupNone},
      {161, ".BIN", "BIN", kKindBinary, kGroupNone},
  };
  for (const Facts& facts : cases) {
    std::string extension;
    std::string name;
    EXPECT_TRUE(GetExtensionById(facts.id, extension));
    EXPECT_TRUE(GetFormatName(facts.id, name));
    EXPECT_EQ(extension, facts.extension);
    EXPECT_EQ(name, facts.name);
    EXPECT_EQ(GetKindById(facts.id), facts.kind);
    EXPECT_EQ(GetGroupById(facts.id), facts.group);
  }
  for (const uint32_t id : {0u, 11u, 54u, 60u, 0xFFFFFFFFu}) {
    std::string text = "as it was";
    EXPECT_FALSE(GetExtensionById(id, text));
    EXPECT_FALSE(GetFormatName(id, text));
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(GetKindById(id), 0u);
    EXPECT_EQ(GetGroupById(id), 0u);
  }
}

TEST(FormatTableTest, TellsTheKinds) {
  EXPECT_TRUE(IsAudioExtension(".mpm") && IsAudioId(6) && !IsMusicId(6));
  EXPECT_TRUE(IsMusicExtension(".MID") && IsMusicId(36) && !IsAudioExtension(".mid"));
  EXPECT_TRUE(IsInstrumentExtension(".ins") && IsInstrumentId(25));
  EXPECT_FALSE(IsInstrumentExtension(".wav"));
  EXPECT_TRUE(IsImageExtension(".lfm") && IsImageId(130));
  EXPECT_TRUE(IsBinaryExtension(".bin") && IsBinaryId(161));
  EXPECT_TRUE(IsSourceExtension(".kio") && IsSourceId(45) && !IsSourceId(3));
  EXPECT_FALSE(IsAudioExtension(".txt"));
}

TEST(FormatTableTest, TablesArePackedAndWhole) {
  EXPECT_EQ(GetExtensionTable().size(), 62u);
  EXPECT_EQ(GetTagTable().size(), 38u);
  EXPECT_EQ(GetNameTable().size(), 59u);
  std::set<std::string> tags;
  for (const TagRecord& row : GetTagTable()) {
    EXPECT_EQ(std::strlen(row.tag), 4u);
    EXPECT_TRUE(tags.insert(row.tag).second) << row.tag;
  }
  for (const ExtensionRecord& row : GetExtensionTable()) EXPECT_EQ(row.ext[0], '.');
}

TEST(FormatTableTest, DetectsTags) {
  const test::TempDir dir;
  const std::pair<const char*, uint32_t> cases[] = {
      {"KMPM and more", 6}, {"kmdm", 15}, {"KADM", 5}, {"64EV", 59},
      {"RIFF", 0},          {"KMP", 0},   {"", 0},
  };
  for (const auto& [text, id] : cases) {
    test::WriteText(dir / "file", text);
    EXPECT_EQ(DetectTag(Path::Native(dir / "file")), id) << text;
  }
  EXPECT_EQ(DetectTag(Path::Native(dir / "missing")), 0u);
}

}  // namespace
}  // namespace velora
