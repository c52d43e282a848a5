// Little-endian fields, the bounded cursor and checked sizes.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

#include "foundation/ByteCursor.h"
#include "foundation/CheckedMath.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
  std::vector<std::byte> bytes;
  for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
  return bytes;
}

struct Record {
  le16 tag;
  lei32 delta;
  le64 size;
};
static_assert(sizeof(Record) == 14 && alignof(Record) == 1);

TEST(LittleEndianTest, RecordsReadAndWriteLowestByteFirst) {
  const auto bytes = Bytes({0x34, 0x12, 0xFE, 0xFF, 0xFF, 0xFF, 8, 7, 6, 5, 4, 3, 2, 1});
  ByteCursor cursor(bytes);
  const auto record = cursor.ReadRecord<Record>();
  ASSERT_TRUE(record);
  EXPECT_EQ(record->tag, 0x1234);
  EXPECT_EQ(record->delta, -2);
  EXPECT_EQ(record->size, 0x0102030405060708u);

  const Record written{0x1234, -2, 0x0102030405060708u};
  EXPECT_EQ(std::memcmp(&written, bytes.data(), bytes.size()), 0);
}

TEST(ByteCursorTest, FailsWholeAndStaysInPlace) {
  const auto bytes = Bytes({1, 2, 3, 4, 5});
  ByteCursor cursor(bytes);
  ASSERT_TRUE(cursor.Skip(2));
  le32 value = 77;
  EXPECT_FALSE(cursor.Read(value));
  EXPECT_EQ(value, 77u);
  EXPECT_FALSE(cursor.Skip(4));
  EXPECT_FALSE(cursor.ReadBytes(std::numeric_limits<uint64_t>::max()));
  EXPECT_FALSE(cursor.Sub(4));
  EXPECT_FALSE(cursor.Seek(6));
  EXPECT_EQ(cursor.Offset(), 2u);
  EXPECT_EQ(cursor.Remaining(), 3u);
  ASSERT_TRUE(cursor.Seek(5));
  EXPECT_TRUE(cursor.AtEnd());
  EXPECT_FALSE(cursor.ReadRecord<uint8_t>());
}

TEST(ByteCursorTest, ASubCursorCannotLeaveItsBytes) {
  const auto bytes = Bytes({1, 2, 3, 4, 5, 6});
  ByteCursor cursor(bytes, 100);
  ASSERT_TRUE(cursor.Skip(1));
  auto sub = cursor.Sub(3);
  ASSERT_TRUE(sub);
  EXPECT_EQ(cursor.FileOffset(), 104u);
  EXPECT_EQ(sub->FileOffset(), 101u);
  EXPECT_FALSE(sub->ReadRecord<le32>());
  EXPECT_EQ(*sub->ReadRecord<le16>(), 0x0302);
  EXPECT_FALSE(sub->ReadRecord<le16>());
  EXPECT_EQ(cursor.SubUpTo(1000).Size(), 2u);
  EXPECT_TRUE(cursor.AtEnd());
}

TEST(CheckedMathTest, OverflowGivesNothing) {
  constexpr uint64_t kMax = std::numeric_limits<uint64_t>::max();
  EXPECT_EQ(CheckedMultiply(1u << 31, 1u << 31), uint64_t{1} << 62);
  EXPECT_FALSE(CheckedMultiply(uint64_t{1} << 32, uint64_t{1} << 32));
  EXPECT_EQ(CheckedAdd(kMax - 1, 1), kMax);
  EXPECT_FALSE(CheckedAdd(kMax, 1));
  EXPECT_TRUE(FitsInto(3, 24, 72));
  EXPECT_FALSE(FitsInto(3, 24, 71));
  EXPECT_FALSE(FitsInto(uint64_t{1} << 61, 8, kMax));
}

}  // namespace
}  // namespace velora
