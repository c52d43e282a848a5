// A hash table that grows one bucket at a time (linear hashing).
//
// The buckets stand in pages of 256 that are taken when the first bucket of a
// page comes into use; there are at most 256 pages. With `TableSize` a power of
// two and `Split` the buckets that have been split already, the buckets in use
// are 0 to TableSize + Split - 1. A key belongs to bucket hash AND
// (TableSize - 1) or, when that one has been split, hash AND (2 TableSize - 1).
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/StLHashT.h"

namespace velora {

/// Owns its records, which stay at their addresses until the table dies.
template <typename Record>
class C_DyLHashT {
 public:
  static constexpr uint32_t kPageSize = 256;
  static constexpr uint32_t kMaxPages = 256;

  virtual uint32_t Hash(const Record& record) const = 0;
  virtual bool IsEqual(const Record& a, const Record& b) const = 0;
  virtual ~C_DyLHashT() {
    // Chains are taken apart link by link: a long one would exhaust the stack.
    for (const auto& page : pages_) {
      for (Link& head : *page) {
        while (head) head = std::move(head->next);
      }
    }
  }

  C_DyLHashT(const C_DyLHashT&) = delete;
  C_DyLHashT& operator=(const C_DyLHashT&) = delete;

  using AddResult = typename C_StLHashT<Record>::AddResult;

  /// Inserts the record at the end of its chain unless an equal one stands in
  /// it; then the record given is dropped. With more records than the limit one
  /// bucket is split afterwards.
  AddResult Add(std::unique_ptr<Record> record) {
    const uint32_t hash = Hash(*record);
    Link* link = &BucketAt(BucketOf(hash));
    for (; *link; link = &(*link)->next) {
      if (IsEqual(*(*link)->record, *record)) {
        return {HashAddOutcome::kPresent, (*link)->record.get()};
      }
    }
    *link = std::make_unique<Node>(Node{std::move(record), hash, nullptr});
    Record* const added = (*link)->record.get();
    if (++count_ > uint64_t{BucketsInUse()} * loadFactor_) SplitOne();
    return {HashAddOutcome::kAdded, added};
  }

  /// The record equal to `key`, or null.
  Record* Find(const Record& key) {
    for (Node* node = BucketAt(BucketOf(Hash(key))).get(); node; node = node->next.get()) {
      if (IsEqual(*node->record, key)) return node->record.get();
    }
    return nullptr;
  }

  /// Walk over the buckets in order and each chain from its head; null at the
  /// end. Not across an Add.
  Record* First() {
    iterBucket_ = 0;
    iterNode_ = BucketAt(0).get();
    return Next();
  }
  Record* Next() {
    while (!iterNode_) {
      if (++iterBucket_ >= BucketsInUse()) return nullptr;
      iterNode_ = BucketAt(iterBucket_).get();
    }
    return std::exchange(iterNode_, iterNode_->next.get())->record.get();
  }

  uint32_t Count() const { return count_; }
  uint32_t BucketsInUse() const { return tableSize_ + split_; }

 protected:
  /// `size` is rounded up to a power of two from 2 to 65,536; the limit of
  /// records is `loadFactor` times the buckets in use.
  C_DyLHashT(uint32_t size, uint16_t loadFactor)
      : tableSize_(std::bit_ceil(std::clamp(size, 2u, kPageSize * kMaxPages))),
        loadFactor_(loadFactor) {
    for (uint32_t bucket = 0; bucket < tableSize_; bucket += kPageSize) AddPage();
  }

 private:
  struct Node;
  using Link = std::unique_ptr<Node>;
  using Page = std::array<Link, kPageSize>;
  struct Node {
    std::unique_ptr<Record> record;
    uint32_t hash;
    Link next;
  };

  void AddPage() { pages_.push_back(std::make_unique<Page>()); }

  Link& BucketAt(uint32_t bucket) { return (*pages_[bucket / kPageSize])[bucket % kPageSize]; }

  uint32_t BucketOf(uint32_t hash) const {
    const uint32_t lower = hash & (tableSize_ - 1);
    return lower < split_ ? hash & (2 * tableSize_ - 1) : lower;
  }

  /// Shares the chain at the split pointer with its partner; both keep its order.
  void SplitOne() {
    const uint32_t partner = tableSize_ + split_;
    if (partner >= kPageSize * kMaxPages) return;
    if (partner / kPageSize >= pages_.size()) AddPage();
    Link* staying = &BucketAt(split_);
    Link* moving = &BucketAt(partner);
    for (Link node = std::move(*staying); node;) {
      Link next = std::move(node->next);
      Link*& end = (node->hash & tableSize_) != 0 ? moving : staying;
      *end = std::move(node);
      end = &(*end)->next;
      node = std::move(next);
    }
    if (++split_ == tableSize_) {
      tableSize_ *= 2;
      split_ = 0;
    }
  }

  std::vector<std::unique_ptr<Page>> pages_;
  uint32_t tableSize_;
  uint16_t loadFactor_;
  uint32_t split_ = 0;
  uint32_t count_ = 0;
  uint32_t iterBucket_ = 0;
  Node* iterNode_ = nullptr;
};

}  // namespace velora
