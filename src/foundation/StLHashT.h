// A hash table whose order is part of what it promises.
//
// The table counts as an array of BucketCount chains. A record belongs to the
// chain at hash AND (BucketCount - 1), behind the records that came before it;
// walking gives the chains in order of their index and each from its head. When
// the table doubles, each chain splits into two that keep the order of its
// records. So within a chain records always stand in the order of their
// insertion, and the whole order follows from the hashes, the bucket count and
// the order of insertion:
//
//   sort by (hash AND (BucketCount - 1), number of the insertion).
//
// The table makes use of that. It never lays out its BucketCount chains. It
// keeps the records in order of insertion, finds them through a small index
// that grows with them, and sorts when somebody asks for the order. A table of
// three records costs a few hundred bytes, whatever its bucket count.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace velora {

/// What came of an insertion.
enum class HashAddOutcome { kFailed, kPresent, kAdded };

/// Owns its records, which stay at their addresses until the table dies. The
/// first two virtual operations say which records are the same; two records
/// that compare equal are seen as such only when they meet in one chain.
template <typename Record>
class C_StLHashT {
 public:
  static constexpr uint32_t kMaxBuckets = 1u << 30;
  static constexpr uint32_t kMaxGrowingBuckets = 0x1000000;  ///< a larger table grows no more
  static constexpr uint32_t kGrowLimitPin = 0x1000000;       ///< a limit that reaches this ...
  static constexpr uint32_t kPinnedGrowLimit = 0x10000000;   ///< ... becomes this

  virtual uint32_t Hash(const Record& record) const = 0;
  virtual bool IsEqual(const Record& a, const Record& b) const = 0;
  virtual ~C_StLHashT() = default;

  C_StLHashT(const C_StLHashT&) = delete;
  C_StLHashT& operator=(const C_StLHashT&) = delete;

  struct AddResult {
    HashAddOutcome outcome;
    Record* record;  ///< the one in the table; null after a failure
  };

  /// Inserts the record unless an equal one stands in its chain; then, and when
  /// memory runs out, the record given is dropped. A table that holds more than
  /// GrowLimit records doubles first, also when the record turns out to be
  /// present.
  AddResult Add(std::unique_ptr<Record> record) {
    if (count_ > growLimit_ && bucketCount_ <= kMaxGrowingBuckets) Grow();
    const uint32_t hash = Hash(*record);
    if (Record* const present = FindHashed(*record, hash)) {
      return {HashAddOutcome::kPresent, present};
    }
    try {
      nodes_.reserve(GrownCapacity());
      if (count_ >= index_.size()) RebuildIndex();
    } catch (const std::bad_alloc&) {
      return {HashAddOutcome::kFailed, nullptr};
    }
    nodes_.push_back({std::move(record), hash, kNoNode});
    LinkIntoIndex(count_++);
    return {HashAddOutcome::kAdded, nodes_.back().record.get()};
  }

  /// The record equal to `key` in the chain of `key`, or null.
  Record* Find(const Record& key) const { return FindHashed(key, Hash(key)); }

  /// Walk over all records in the table's order; null at the end. A record that
  /// is added on the way is met if it stands behind the one given last.
  Record* First() {
    position_ = 0;
    return Next();
  }
  Record* Next() {
    const std::vector<uint32_t>& order = Order();
    const auto next = std::lower_bound(
        order.begin(), order.end(), position_,
        [this](uint32_t node, uint64_t position) { return PositionOf(node) < position; });
    if (next == order.end()) return nullptr;
    position_ = PositionOf(*next) + 1;
    return nodes_[*next].record.get();
  }

  /// The record at a place of the table's order, or null.
  Record* At(uint32_t place) const {
    return place < count_ ? nodes_[Order()[place]].record.get() : nullptr;
  }

  uint32_t Count() const { return count_; }
  uint32_t BucketCount() const { return bucketCount_; }
  uint32_t GrowLimit() const { return growLimit_; }

 protected:
  /// `size` is rounded up to a power of two from 2 to 2^30; the limit is that
  /// times `loadFactor`.
  C_StLHashT(uint32_t size, uint16_t loadFactor)
      : bucketCount_(std::bit_ceil(std::clamp(size, 2u, kMaxBuckets))),
        growLimit_(bucketCount_ * loadFactor) {}

 private:
  static constexpr uint32_t kNoNode = UINT32_MAX;

  struct Node {
    std::unique_ptr<Record> record;
    uint32_t hash;
    uint32_t next;  ///< in the chain of the index
  };

  void Grow() {
    bucketCount_ *= 2;
    growLimit_ *= 2;
    if (growLimit_ >= kGrowLimitPin) growLimit_ = kPinnedGrowLimit;
    order_.clear();
  }

  uint32_t BucketOf(uint32_t hash) const { return hash & (bucketCount_ - 1); }

  /// Sort key of a record: its bucket, then its insertion.
  uint64_t PositionOf(uint32_t node) const {
    return uint64_t{BucketOf(nodes_[node].hash)} << 32 | node;
  }

  Record* FindHashed(const Record& key, uint32_t hash) const {
    if (index_.empty()) return nullptr;
    // The index has at most BucketCount chains, so a chain of it holds whole
    // chains of the table.
    for (uint32_t at = index_[hash & (index_.size() - 1)]; at != kNoNode; at = nodes_[at].next) {
      const Node& node = nodes_[at];
      if (BucketOf(node.hash) == BucketOf(hash) && IsEqual(*node.record, key)) {
        return node.record.get();
      }
    }
    return nullptr;
  }

  size_t GrownCapacity() const {
    return nodes_.size() < nodes_.capacity() ? nodes_.capacity() : nodes_.capacity() * 2 + 2;
  }

  /// Gives the index room for one record more.
  void RebuildIndex() {
    const uint32_t size = std::min(std::bit_ceil(std::max(count_ + 1, 2u)), bucketCount_);
    if (size == index_.size()) return;
    index_.assign(size, kNoNode);
    for (uint32_t node = 0; node < count_; ++node) LinkIntoIndex(node);
  }

  void LinkIntoIndex(uint32_t node) {
    uint32_t& head = index_[nodes_[node].hash & (index_.size() - 1)];
    nodes_[node].next = std::exchange(head, node);
  }

  /// The nodes in the table's order.
  const std::vector<uint32_t>& Order() const {
    if (order_.size() != nodes_.size()) {
      order_.resize(nodes_.size());
      for (uint32_t node = 0; node < count_; ++node) order_[node] = node;
      std::sort(order_.begin(), order_.end(),
                [this](uint32_t a, uint32_t b) { return PositionOf(a) < PositionOf(b); });
    }
    return order_;
  }

  uint32_t bucketCount_;
  uint32_t growLimit_;
  uint32_t count_ = 0;
  std::vector<Node> nodes_;              ///< in order of insertion
  std::vector<uint32_t> index_;          ///< heads of the chains that lookups walk
  mutable std::vector<uint32_t> order_;  ///< valid when as long as nodes_
  uint64_t position_ = 0;                ///< where Next goes on
};

}  // namespace velora
