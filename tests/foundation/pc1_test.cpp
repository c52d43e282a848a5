// The cipher alone.
#include "foundation/PC1Cipher.h"

#include <gtest/gtest.h>

#include <random>

#include "PublishedPC1.h"
#include "foundation/EncryptKeys.h"
#include "foundation/EncryptPC1.h"

namespace velora {
namespace {

using test::PublishedPC1;

std::string RandomText(std::mt19937& random, size_t size) {
  std::string text(size, 0);
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

PC1Cipher::Key RandomKey(std::mt19937& random) {
  PC1Cipher::Key key;
  for (uint8_t& byte : key) byte = static_cast<uint8_t>(random());
  return key;
}

std::string Apply(PC1Cipher& cipher, bool encipher, std::string_view text) {
  std::string out(text.size(), 0);
  const auto in = std::as_bytes(std::span(text));
  auto* const to = reinterpret_cast<std::byte*>(out.data());
  encipher ? cipher.Encipher(in, to) : cipher.Decipher(in, to);
  return out;
}

TEST(PC1, IsThePublishedCipherForAnyKeyAndText) {
  std::mt19937 random(1991);
  for (int round = 0; round < 300; ++round) {
    const PC1Cipher::Key key = RandomKey(random);
    const std::string text = RandomText(random, random() % 700);
    PC1Cipher encipher(key), decipher(key);
    EXPECT_EQ(Apply(encipher, true, text), PublishedPC1(key).Encipher(text));
    EXPECT_EQ(Apply(decipher, false, text), PublishedPC1(key).Decipher(text));
  }
}

// What the decoder of a widely used e-book library makes of this.
TEST(PC1, DeciphersAsOtherProgramsDo) {
  PC1Cipher::Key key;
  for (size_t i = 0; i < key.size(); ++i) key[i] = static_cast<uint8_t>(0x11 * i);
  PC1Cipher cipher(key);
  EXPECT_EQ(Apply(cipher, false, std::string(16, 0)),
            "\xA5\x99\xEB\xFF\xC2\xD3\xF5\xFB\x81\x30\xFF\x29\xC6\xE7\x21\x91");
}

TEST(PC1, TakesAStreamInAnyPieces) {
  std::mt19937 random(2);
  const PC1Cipher::Key key = RandomKey(random);
  const std::string plain = RandomText(random, 5000);
  PC1Cipher whole(key), pieces(key);
  const std::string coded = Apply(whole, true, plain);
  std::string back;
  for (size_t at = 0; at < coded.size();) {
    const size_t size = random() % 100;
    back += Apply(pieces, false, std::string_view(coded).substr(at, size));
    at += size;
  }
  EXPECT_EQ(back, plain);
}

TEST(PC1, WorksInPlace) {
  std::mt19937 random(3);
  const PC1Cipher::Key key = RandomKey(random);
  const std::string plain = RandomText(random, 100);
  std::string text = plain;
  PC1Cipher(key).Encipher(std::as_bytes(std::span(text)),
                          reinterpret_cast<std::byte*>(text.data()));
  EXPECT_EQ(text, PublishedPC1(key).Encipher(plain));
  PC1Cipher(key).Decipher(std::as_bytes(std::span(text)),
                          reinterpret_cast<std::byte*>(text.data()));
  EXPECT_EQ(text, plain);
}

TEST(PC1, OnlyTheExclusiveOrOfAKeyTextCounts) {
  EXPECT_EQ(PrepareKey(""), kKeyMask);
  EXPECT_EQ(PrepareKey("ab"), PrepareKey("ba"));
  EXPECT_EQ(PrepareKey("aXbX"), PrepareKey("ab"));
  EXPECT_NE(PrepareKey("a"), PrepareKey("b"));
  EXPECT_EQ(PrepareKey("TaLkInGrIvErS"), test::KeyFromText("TaLkInGrIvErS"));
}

TEST(PC1, BuffersTakeTheDefaultKeyAfreshEachTime) {
  C_EncryptPC1 object;
  const std::string plain = "twelve bytes";
  std::string first(12, 0), second(12, 0);
  object.EncipherBuffer(plain.data(), first.data(), 12);
  object.EncipherBuffer(plain.data(), second.data(), 12);
  EXPECT_EQ(first, test::Enciphered(plain));
  EXPECT_EQ(second, first);
  object.DecipherBuffer(second.data(), second.data(), 12);
  EXPECT_EQ(second, plain);
}

}  // namespace
}  // namespace velora
