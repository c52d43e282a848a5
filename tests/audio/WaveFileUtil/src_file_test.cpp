#include "audio/WaveFileUtil/SrcFile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "audio/wavedata/WavData.h"
#include "support/Speech.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::TempDir;

WavDataPtr MakeWide(const std::vector<int16_t>& samples, uint16_t channels = 1) {
  WavDataPtr sound = C_WavData::Create();
  const auto bytes = static_cast<uint32_t>(samples.size() * 2);
  sound->SetFormat(8000, bytes, channels, 16, 16, 1);
  sound->SetData(samples.data(), bytes);
  return sound;
}

template <typename File>
Status Save(C_WavData& sound, const std::string& path) {
  File file;
  file.AttachWavData(&sound);
  const Status status = file.SaveFile(Path::Native(path));
  file.DetachWavData();
  return status;
}

TEST(SrcFile, PlainAndEncipheredHoldTheSameSamples) {
  TempDir dir;
  const std::vector<int16_t> samples = test::MakeSpeech(5000, 1);
  const WavDataPtr sound = MakeWide(samples);
  ASSERT_TRUE(Save<C_SrcFile>(*sound, dir / "plain.SRC").Ok());
  ASSERT_TRUE(Save<C_EnSrcFile>(*sound, dir / "secret.SRC").Ok());

  const std::vector<std::byte> plain = test::ReadBytes(dir / "plain.SRC");
  const std::vector<std::byte> secret = test::ReadBytes(dir / "secret.SRC");
  ASSERT_EQ(plain.size(), 22u + 2 * samples.size());
  ASSERT_EQ(secret.size(), plain.size());
  for (size_t i = 22; i < plain.size(); ++i) {
    ASSERT_EQ(std::to_integer<unsigned>(secret[i]),
              (std::to_integer<unsigned>(plain[i]) * 7 + 3) % 256);
  }

  std::vector<uint16_t> expected;
  for (const int16_t s : samples) {
    const int magnitude = std::abs(int{s}) >> 4;
    expected.push_back(static_cast<uint16_t>((s < 0 ? -magnitude : magnitude) + 2048));
  }
  for (const char* name : {"plain.SRC", "secret.SRC"}) {
    C_SrcFile file;
    uint32_t enciphered = 7;
    const Status status = file.LoadFile(Path::Native(dir / name), &enciphered);
    ASSERT_TRUE(status.Ok()) << status.Message();
    EXPECT_EQ(enciphered, name[0] == 's' ? 1u : 0u);
    EXPECT_EQ(file.GetSourceKind(), name[0] == 's' ? 13u : 1u);
    EXPECT_TRUE(std::ranges::equal(file.Sound()->Words(), expected)) << name;
  }
}

TEST(SrcFile, AHeaderMustFitTheFile) {
  TempDir dir;
  ASSERT_TRUE(Save<C_SrcFile>(*MakeWide({1, 2, 3}), dir / "x.SRC").Ok());
  const std::vector<std::byte> good = test::ReadBytes(dir / "x.SRC");
  struct Case {
    size_t offset;
    int value;
    const char* reason;
  };
  const Case cases[] = {
      {0, 'X', "header: the tag is not \"KPCM\""},
      {6, 23, "header: the size at offset 6 is 23, not 22"},
      {18, 4, "header: the count at offset 18 makes 30 bytes, but the file has 28"},
      {21, 0xFF, "header: the count at offset 18 makes 8556380188 bytes, but the file has 28"},
  };
  for (const Case& c : cases) {
    std::vector<std::byte> bad = good;
    bad[c.offset] = static_cast<std::byte>(c.value);
    test::WriteBytes(dir / "bad.SRC", bad);
    C_SrcFile file;
    EXPECT_EQ(file.LoadFile(Path::Native(dir / "bad.SRC")).Message(), c.reason);
  }
  test::WriteBytes(dir / "bad.SRC", std::span(good).first(21));
  C_SrcFile file;
  EXPECT_EQ(file.LoadFile(Path::Native(dir / "bad.SRC")).Message(),
            "header: ends at byte 21, but 22 bytes are wanted at offset 0");
}

TEST(SrcFile, SaysThatEventsAndSilenceStayBehind) {
  const WavDataPtr sound = MakeWide({1, 2, 3});
  EXPECT_TRUE(C_SrcFile().ListLosses(*sound).empty());
  sound->GetEventMgr()->AddEventAtSample(1, 1, "", 1);
  sound->GetEventMgr()->AddSilenceRegion(0, 2);
  EXPECT_EQ(C_SrcFile().ListLosses(*sound),
            (std::vector<std::string>{"1 events: the format holds none",
                                      "1 silence regions: the format holds none"}));
}

}  // namespace
}  // namespace velora
