// Stretches of silence and lists of them.
#pragma once

#include <cstdint>

#include <velora/I_SilenceSegment.h>
#include "foundation/Lists.h"

namespace velora {

/// Both ends inclusive.
class C_SilenceSegment final : public I_SilenceSegment, public C_CUItem {
 public:
  C_SilenceSegment(uint32_t start, uint32_t end) : start_(start), end_(end) {}

  uint32_t GetStart() const override { return start_; }
  uint32_t GetEnd() const override { return end_; }
  uint32_t GetLength() const override { return end_ - start_ + 1; }
  void Set(uint32_t start, uint32_t end) override {
    start_ = start;
    end_ = end;
  }

 private:
  uint32_t start_;
  uint32_t end_;
};

/// A list that owns its segments.
class C_SilenceSegmentList final : public C_CUList<C_SilenceSegment, I_SilenceSegment> {
 public:
  /// Appends a segment; one for which there is no memory is dropped.
  void Append(uint32_t start, uint32_t end);

  /// Appends copies of all segments of another list, which may be this one.
  void AppendCopies(I_CUList<I_SilenceSegment>& segments);
};

}  // namespace velora
