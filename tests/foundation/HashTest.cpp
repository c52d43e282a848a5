// The hash, and the order of the tables built on it, against plain models.
#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <random>

#include "foundation/AsciiText.h"
#include "foundation/DyLHashT.h"
#include "foundation/Lookup2.h"
#include "foundation/SymbolTab.h"

namespace velora {
namespace {

// The hash as its author published it, kept apart from the one under test: a
// switch that falls through, over unsigned bytes.
uint32_t PublishedHash(const std::string& key, uint32_t initial) {
  const auto* k = reinterpret_cast<const unsigned char*>(key.data());
  uint32_t a = 0x9e3779b9, b = 0x9e3779b9, c = initial;
  auto len = static_cast<uint32_t>(key.size());
  const uint32_t length = len;
  const auto mix = [&] {
    a = (a - b - c) ^ (c >> 13);
    b = (b - c - a) ^ (a << 8);
    c = (c - a - b) ^ (b >> 13);
    a = (a - b - c) ^ (c >> 12);
    b = (b - c - a) ^ (a << 16);
    c = (c - a - b) ^ (b >> 5);
    a = (a - b - c) ^ (c >> 3);
    b = (b - c - a) ^ (a << 10);
    c = (c - a - b) ^ (b >> 15);
  };
  while (len >= 12) {
    a += k[0] + (uint32_t{k[1]} << 8) + (uint32_t{k[2]} << 16) + (uint32_t{k[3]} << 24);
    b += k[4] + (uint32_t{k[5]} << 8) + (uint32_t{k[6]} << 16) + (uint32_t{k[7]} << 24);
    c += k[8] + (uint32_t{k[9]} << 8) + (uint32_t{k[10]} << 16) + (uint32_t{k[11]} << 24);
    mix();
    k += 12;
    len -= 12;
  }
  c += length;
  switch (len) {
    case 11:
      c += uint32_t{k[10]} << 24;
      [[fallthrough]];
    case 10:
      c += uint32_t{k[9]} << 16;
      [[fallthrough]];
    case 9:
      c += uint32_t{k[8]} << 8;
      [[fallthrough]];
    case 8:
      b += uint32_t{k[7]} << 24;
      [[fallthrough]];
    case 7:
      b += uint32_t{k[6]} << 16;
      [[fallthrough]];
    case 6:
      b += uint32_t{k[5]} << 8;
      [[fallthrough]];
    case 5:
      b += k[4];
      [[fallthrough]];
    case 4:
      a += uint32_t{k[3]} << 24;
      [[fallthrough]];
    case 3:
      a += uint32_t{k[2]} << 16;
      [[fallthrough]];
    case 2:
      a += uint32_t{k[1]} << 8;
      [[fallthrough]];
    case 1:
      a += k[0];
  }
  mix();
  return c;
}

TEST(Lookup2Test, EqualsThePublishedHashAtEveryLength) {
  std::mt19937 random(1);
  for (size_t length = 0; length < 60; ++length) {
    std::string text(length, '\0');
    for (char& c : text) c = static_cast<char>(random());
    for (const uint32_t initial : {0u, 0x12345678u}) {
      ASSERT_EQ(HashLookup2(text, initial), PublishedHash(text, initial)) << length;
    }
  }
}

/// A table as its description draws it: an array of chains that doubles.
class ChainModel {
 public:
  explicit ChainModel(uint32_t buckets, uint32_t loadFactor)
      : chains_(buckets), limit_(buckets * loadFactor) {}

  bool Add(const std::string& label) {
    if (count_ > limit_) Double();
    auto& chain = chains_[HashOf(label) & (chains_.size() - 1)];
    for (const std::string& present : chain) {
      if (EqualsNoCase(present, label)) return false;
    }
    chain.push_back(label);
    ++count_;
    return true;
  }

  std::vector<std::string> Order() const {
    std::vector<std::string> order;
    for (const auto& chain : chains_) order.insert(order.end(), chain.begin(), chain.end());
    return order;
  }

 private:
  static uint32_t HashOf(const std::string& label) { return PublishedHash(label, 0x12345678); }

  void Double() {
    const size_t old = chains_.size();
    chains_.resize(old * 2);
    for (size_t i = 0; i < old; ++i) {
      for (auto at = chains_[i].begin(); at != chains_[i].end();) {
        const auto next = std::next(at);
        auto& partner = chains_[i + old];
        if (HashOf(*at) & old) partner.splice(partner.end(), chains_[i], at);
        at = next;
      }
    }
    limit_ *= 2;
  }

  std::vector<std::list<std::string>> chains_;
  size_t limit_;
  size_t count_ = 0;
};

std::unique_ptr<Symbol> NewSymbol(const std::string& label) {
  auto symbol = std::make_unique<Symbol>();
  symbol->Label = label;
  return symbol;
}

std::vector<std::string> WalkOf(C_SymbolTab& table) {
  std::vector<std::string> labels;
  for (const Symbol* symbol = table.First(); symbol; symbol = table.Next()) {
    labels.push_back(symbol->Label);
  }
  return labels;
}

std::string Numbered(std::string stem, int number) { return stem.append(std::to_string(number)); }

TEST(IniSymbolTabTest, KeepsTheOrderOfTheChainsThroughGrowth) {
  ChainModel model(1024, 2);
  C_IniSymbolTab table;
  EXPECT_EQ(table.BucketCount(), 1024u);
  std::mt19937 random(2);
  for (int i = 0; i < 9000; ++i) {
    // Few stems in random case, so that spellings of one label meet in chains.
    std::string label = "Label" + std::to_string(random() % 4000);
    for (char& c : label) {
      if (random() % 8 == 0) c = ToUpper(c);
    }
    const bool added = model.Add(label);
    const auto result = table.Add(NewSymbol(label));
    ASSERT_EQ(result.outcome == HashAddOutcome::kAdded, added) << label;
    ASSERT_TRUE(EqualsNoCase(result.record->Label, label));
    if (i % 500 == 0) {
      ASSERT_EQ(WalkOf(table), model.Order()) << i;
    }
  }
  const auto order = model.Order();
  EXPECT_EQ(WalkOf(table), order);
  EXPECT_GT(table.BucketCount(), 2048u);
  for (uint32_t place = 0; place < order.size(); ++place) {
    ASSERT_EQ(table.At(place)->Label, order[place]);
    ASSERT_EQ(table.FindLabel(order[place]), table.At(place));
  }
  EXPECT_EQ(table.At(table.Count()), nullptr);
  EXPECT_EQ(table.FindLabel("missing"), nullptr);
}

TEST(IniSymbolTabTest, GrowsAtTheInsertionAfterItsLimitIsPassed) {
  C_IniSymbolTab table;
  EXPECT_EQ(table.GrowLimit(), 2048u);
  for (int i = 0; i < 2049; ++i) table.Add(NewSymbol(Numbered("k", i)));
  // Spellings may fold, so go by the count itself.
  for (int i = 0; table.Count() < 2049; ++i) table.Add(NewSymbol(Numbered("more", i)));
  EXPECT_EQ(table.BucketCount(), 1024u);
  // Also an insertion that finds its label present.
  EXPECT_EQ(table.Add(NewSymbol("k0")).outcome, HashAddOutcome::kPresent);
  EXPECT_EQ(table.BucketCount(), 2048u);
  EXPECT_EQ(table.GrowLimit(), 4096u);
  EXPECT_EQ(table.Count(), 2049u);
}

class SizedTab : public C_SymbolTab {
 public:
  SizedTab(uint32_t size, uint16_t loadFactor) : C_SymbolTab(size, loadFactor) {}
  uint32_t Hash(const Symbol& symbol) const override {
    return static_cast<uint32_t>(std::stoul(symbol.Label));
  }
  bool IsEqual(const Symbol& a, const Symbol& b) const override { return a.Label == b.Label; }
};

TEST(StLHashTTest, RoundsItsSizeUp) {
  const std::pair<uint32_t, uint32_t> cases[] = {
      {0, 2}, {1, 2}, {2, 2}, {3, 4}, {1000, 1024}, {1024, 1024}, {UINT32_MAX, 1u << 30}};
  for (const auto& [size, buckets] : cases) {
    EXPECT_EQ(SizedTab(size, 1).BucketCount(), buckets) << size;
  }
}

TEST(StLHashTTest, GrowsNoMoreBeyondItsLargestSize) {
  // A load factor of 0 makes a limit of 0: every insertion but the first doubles.
  SizedTab table(2, 0);
  for (int i = 0; i < 40; ++i) table.Add(NewSymbol(std::to_string(i)));
  EXPECT_EQ(table.BucketCount(), 0x2000000u);
  EXPECT_EQ(table.Count(), 40u);
}

TEST(StLHashTTest, AWalkGoesOnAcrossInsertions) {
  SizedTab table(16, 2);
  for (const char* label : {"3", "9", "19"}) table.Add(NewSymbol(label));
  EXPECT_EQ(table.First()->Label, "3");
  table.Add(NewSymbol("1"));
  table.Add(NewSymbol("5"));
  EXPECT_EQ(table.Next()->Label, "19");
  EXPECT_EQ(table.Next()->Label, "5");
  EXPECT_EQ(table.Next()->Label, "9");
  EXPECT_EQ(table.Next(), nullptr);
  EXPECT_EQ(table.First()->Label, "1");
}

class DyTab : public C_DyLHashT<Symbol> {
 public:
  DyTab(uint32_t size, uint16_t loadFactor) : C_DyLHashT(size, loadFactor) {}
  uint32_t Hash(const Symbol& symbol) const override {
    return static_cast<uint32_t>(std::stoul(symbol.Label));
  }
  bool IsEqual(const Symbol& a, const Symbol& b) const override { return a.Label == b.Label; }

  std::vector<std::string> Walk() {
    std::vector<std::string> labels;
    for (const Symbol* symbol = First(); symbol; symbol = Next()) labels.push_back(symbol->Label);
    return labels;
  }
};

TEST(DyLHashTTest, SplitsOneBucketAtATime) {
  DyTab table(2, 1);
  for (const char* label : {"1", "2"}) table.Add(NewSymbol(label));
  EXPECT_EQ(table.BucketsInUse(), 2u);
  EXPECT_EQ(table.Walk(), (std::vector<std::string>{"2", "1"}));
  table.Add(NewSymbol("4"));  // splits bucket 0: 4 stays, 2 goes to bucket 2
  EXPECT_EQ(table.BucketsInUse(), 3u);
  EXPECT_EQ(table.Walk(), (std::vector<std::string>{"4", "1", "2"}));
  EXPECT_EQ(table.Add(NewSymbol("4")).outcome, HashAddOutcome::kPresent);
  EXPECT_EQ(table.Count(), 3u);
  table.Add(NewSymbol("3"));  // splits bucket 1
  table.Add(NewSymbol("8"));  // a new round: bucket 0 again, with three bits
  EXPECT_EQ(table.BucketsInUse(), 5u);
  EXPECT_EQ(table.Walk(), (std::vector<std::string>{"8", "1", "2", "3", "4"}));
}

TEST(DyLHashTTest, FindsEveryRecordAtItsFullSize) {
  DyTab table(256, 1);
  constexpr uint32_t kCount = 70000;  // more than there can be buckets
  for (uint32_t i = 0; i < kCount; ++i) table.Add(NewSymbol(std::to_string(i * 7)));
  EXPECT_EQ(table.BucketsInUse(), 65536u);
  for (uint32_t i = 0; i < kCount; ++i) {
    ASSERT_NE(table.Find(*NewSymbol(std::to_string(i * 7))), nullptr) << i;
  }
  EXPECT_EQ(table.Find(*NewSymbol("3")), nullptr);
  EXPECT_EQ(table.Walk().size(), kCount);
}

}  // namespace
}  // namespace velora
