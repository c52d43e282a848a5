// Ports and ranges as people write them.
#include "catalogue/chipfile/PinRange.h"

#include <gtest/gtest.h>

namespace velora::test {
namespace {

std::vector<PinRange> Ports(std::initializer_list<std::string_view> entries) {
  const std::vector<std::string_view> list(entries);
  Result<std::vector<PinRange>> ports = ReadPorts(list);
  EXPECT_TRUE(ports.Ok()) << ports.Message();
  return ports ? ports.Value() : std::vector<PinRange>();
}

TEST(PinRange, PortsNumberTheirPinsInOrder) {
  const std::vector<PinRange> ports = Ports({"BP0.0-7", "IP0.4-6", "X.9"});
  ASSERT_EQ(ports.size(), 3u);
  EXPECT_EQ(std::pair(ports[0].firstIndex, ports[0].lastIndex), std::pair(0, 7));
  EXPECT_EQ(std::pair(ports[1].firstIndex, ports[1].lastIndex), std::pair(8, 10));
  EXPECT_EQ(std::pair(ports[2].firstIndex, ports[2].lastIndex), std::pair(11, 11));
}

TEST(PinRange, RangesTakeTheIndexesOfTheirPort) {
  const std::vector<PinRange> ports = Ports({"BP0.0-7", "IP0.4-6"});
  struct Case {
    const char* text;
    int firstPin, lastPin, firstIndex, lastIndex;
    bool preferred;
    const char* written;
  };
  const Case cases[] = {
      {"BP0.0-7", 0, 7, 0, 7, false, "BP0.0-7"},   {"BP0.7-0", 7, 0, 7, 0, false, "BP0.7-0"},
      {"IP0.5", 5, 5, 9, 9, false, "IP0.5"},       {"IP0", 4, 6, 8, 10, false, "IP0.4-6"},
      {"IP0.6-4*", 6, 4, 10, 8, true, "IP0.6-4*"}, {"BP0*", 0, 7, 0, 7, true, "BP0.0-7*"},
      {"BP0.3-3", 3, 3, 3, 3, false, "BP0.3"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const Result<PinRange> range = ReadPinRange(c.text, ports);
    ASSERT_TRUE(range.Ok()) << range.Message();
    EXPECT_EQ(range->firstPin, c.firstPin);
    EXPECT_EQ(range->lastPin, c.lastPin);
    EXPECT_EQ(range->firstIndex, c.firstIndex);
    EXPECT_EQ(range->lastIndex, c.lastIndex);
    EXPECT_EQ(range->preferred, c.preferred);
    EXPECT_EQ(PinRangeText(range.Value()), c.written);
  }
  EXPECT_EQ(ReadPinRange("BP0.7-2", ports)->PinCount(), 6);
  EXPECT_TRUE(ReadPinRange("BP0.7-2", ports)->Holds("BP0", 2));
  EXPECT_FALSE(ReadPinRange("BP0.7-2", ports)->Holds("BP0", 1));
}

TEST(PinRange, WhatIsNoRangeIsRefused) {
  const std::vector<PinRange> ports = Ports({"BP0.0-7"});
  for (const char* const text :
       {"", "*", ".0", "BP0.", "BP0.x", "BP0.-1", "BP0.1-", "BP0.1-2-3", "BP0.0x1", "BP0.8",
        "BP0.0-8", "BP1.0", "bp0.0", "BP0.99999999999"}) {
    EXPECT_FALSE(ReadPinRange(text, ports).Ok()) << text;
  }
}

TEST(PinRange, WhatIsNoPortIsRefused) {
  for (const char* const text : {"BP0", "BP0.7-0", "BP0.0-7*", "BP0.0-256"}) {
    const std::string_view entry = text;
    EXPECT_FALSE(ReadPorts({&entry, 1}).Ok()) << text;
  }
  const std::string_view twice[] = {"BP0.0-7", "BP0.0-7"};
  EXPECT_FALSE(ReadPorts(twice).Ok());

  std::vector<std::string> names;
  for (int i = 0; i < 17; ++i)
    names.push_back(std::string(1, static_cast<char>('A' + i)).append(".0-255"));
  const std::vector<std::string_view> many(names.begin(), names.end());
  EXPECT_TRUE(ReadPorts(std::span(many).first(16)).Ok());
  EXPECT_FALSE(ReadPorts(many).Ok()) << "an index must fit 16 bits";
}

}  // namespace
}  // namespace velora::test
