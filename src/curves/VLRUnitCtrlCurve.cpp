#include "curves/VLRUnitCtrlCurve.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "curves/LevelMath.h"

namespace velora {
namespace {

/// Elements between two bounds, both inside.
int64_t ElementCount(int32_t a, int32_t b) { return std::llabs(int64_t{b} - a) + 1; }

}  // namespace

C_VLRUnitCtrlCurve::C_VLRUnitCtrlCurve(uint32_t start, uint32_t end, uint32_t phase)
    : pointBlockStart_(start), pointBlockEnd_(end), start_(start), end_(end), phase_(phase) {}

C_VLRUnitCtrlCurve::~C_VLRUnitCtrlCurve() = default;

void C_VLRUnitCtrlCurve::ScaleTime(double ratio) {
  start_ = CutToPosition(start_ * ratio);
  end_ = CutToPosition(end_ * ratio);
}

void C_VLRUnitCtrlCurve::AttachWave(uint32_t, const int16_t*) { soundLength_ = kUnknownLength; }

void C_VLRUnitCtrlCurve::AttachSound(uint32_t sampleRate, std::span<const int16_t> samples) {
  AttachWave(sampleRate, samples.data());
  soundLength_ = samples.size();
}

uint32_t C_VLRUnitCtrlCurve::OffsetStartToStart(const C_VLRUnitCtrlCurve* other) const {
  return other->GetStart() - start_;
}

uint32_t C_VLRUnitCtrlCurve::OffsetStartToEnd(const C_VLRUnitCtrlCurve* other) const {
  return other->GetEnd() - start_;
}

uint32_t C_VLRUnitCtrlCurve::OffsetEndToStart(const C_VLRUnitCtrlCurve* other) const {
  return other->GetStart() - end_;
}

uint32_t C_VLRUnitCtrlCurve::OffsetEndToEnd(const C_VLRUnitCtrlCurve* other) const {
  return other->GetEnd() - end_;
}

void C_VLRUnitCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return;
  // The subtraction wraps for the range whose count is 0, which gives its length.
  const uint32_t length = GetSampleCount() - 1;
  start_ = newStart;
  end_ = static_cast<uint32_t>(std::min<uint64_t>(uint64_t{newStart} + length, limit));
}

int32_t C_VLRUnitCtrlCurve::SetPointBlock(const std::byte* bytes, int32_t a, int32_t b) {
  const int64_t count = ElementCount(a, b);
  if (!bytes || count > INT32_MAX) return kPointBlockRefused;
  const size_t size = static_cast<size_t>(count) * kPointBlockElement;
  const bool fits = pointBlock_ && ElementCount(static_cast<int32_t>(pointBlockStart_),
                                                static_cast<int32_t>(pointBlockEnd_)) == count;
  if (fits) {
    std::memmove(pointBlock_.get(), bytes, size);
  } else {
    // The bytes may lie in the old block, which therefore goes last.
    std::unique_ptr<std::byte[]> block(new (std::nothrow) std::byte[size]);
    if (block) std::memcpy(block.get(), bytes, size);
    pointBlock_ = std::move(block);
    if (!pointBlock_) return kPointBlockNoMemory;
  }
  pointBlockStart_ = static_cast<uint32_t>(std::min(a, b));
  pointBlockEnd_ = static_cast<uint32_t>(std::max(a, b));
  return kPointBlockStored;
}

std::span<const int16_t> C_VLRUnitCtrlCurve::SoundInRange(const int16_t* samples,
                                                          std::vector<int16_t>& silenced) const {
  const size_t start = GetStart();
  const size_t count = GetSampleCount();
  if (soundLength_ >= start + count) return {samples + start, count};
  silenced.assign(count, 0);
  if (start < soundLength_) std::copy(samples + start, samples + soundLength_, silenced.begin());
  return silenced;
}

}  // namespace velora
