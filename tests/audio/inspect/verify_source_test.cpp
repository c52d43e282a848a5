#include <gtest/gtest.h>

#include "audio/inspect/Verify.h"
#include "audio/inspect/mpm_bytes.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::U16;
using test::U32;

std::string Source(bool enciphered) {
  std::string words;
  for (uint32_t i = 0; i < 300; ++i) words += U16(i * 13 % 4096);
  if (enciphered) {
    for (char& c : words) c = static_cast<char>(static_cast<unsigned char>(c) * 7 + 3);
  }
  return "KPCM" + U16(1) + U16(22) + U16(1) + U16(12) + static_cast<char>(enciphered ? 132 : 4) +
         '\0' + U16(11025) + U16(4685) + U32(300) + words;
}

Result<VerifyReport> Verify(const std::string& bytes) {
  const InputFile file = test::FileOf(bytes);
  return VerifyOpenFile(file);
}

TEST(VerifySource, PassesPlainAndEnciphered) {
  for (const bool enciphered : {false, true}) {
    const Result<VerifyReport> report = Verify(Source(enciphered));
    ASSERT_TRUE(report.Ok());
    EXPECT_EQ(report->faultCount, 0u);
    EXPECT_EQ(report->samples, 300u);
    EXPECT_EQ(report->format, "SRC");
  }
}

TEST(VerifySource, FindsEveryFlippedBitOfTheHeader) {
  for (const bool enciphered : {false, true}) {
    const std::string good = Source(enciphered);
    for (size_t bit = 0; bit < 22 * 8; ++bit) {
      // The band limit halves the rate; one channel and two look alike.
      if (bit == 14 * 8 || (bit >= 8 * 8 && bit < 9 * 8)) continue;
      std::string bytes = good;
      bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
      const Result<VerifyReport> report = Verify(bytes);
      EXPECT_TRUE(!report.Ok() || !report->Good()) << "byte " << bit / 8 << " bit " << bit % 8;
    }
  }
}

TEST(VerifySource, FindsSizesAndSamplesThatCannotBe) {
  const std::string good = Source(false);
  std::string loud = good;
  loud[23] = 0x10;
  std::string odd = good;
  test::Put(odd, 8, U16(2));
  test::Put(odd, 18, U32(299));
  for (const std::string& bytes :
       {good.substr(0, 10), good.substr(0, 621), good + 'x', loud, odd.substr(0, 620)}) {
    const Result<VerifyReport> report = Verify(bytes);
    ASSERT_TRUE(report.Ok());
    EXPECT_EQ(report->faultCount, 1u);
  }
}

TEST(VerifyFile, SaysWhatItCannotCheck) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "too short"},
      {"abcdefgh", "begins with \"abcd\""},
      {"KMD4" + std::string(60, '\0'), "format MD4"},
      {"RIFF" + U32(4) + "AVI ", "form \"AVI \""},
  };
  for (const auto& [bytes, message] : cases) {
    const Result<VerifyReport> report = Verify(bytes);
    ASSERT_FALSE(report.Ok());
    EXPECT_NE(report.Message().find(message), std::string::npos) << report.Message();
  }
  EXPECT_FALSE(VerifyFile(Path::Native("/no/such/file")).Ok());
}

TEST(VerifyFile, ReadsFromADisk) {
  const test::TempDir dir;
  test::WriteBytes(dir / "a.src", test::ToBytes(Source(false)));
  const Result<VerifyReport> report = VerifyFile(Path::Native(dir / "a.src"));
  ASSERT_TRUE(report.Ok());
  EXPECT_TRUE(report->Good());
}

}  // namespace
}  // namespace velora
