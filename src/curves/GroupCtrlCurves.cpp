#include "curves/GroupCtrlCurves.h"

#include <algorithm>
#include <memory>
#include <new>

#include "curves/LevelMath.h"

namespace velora {
namespace {

/// Bits of a colour that its three channels take.
constexpr uint32_t kChannelBits = 0x00FFFFFF;

/// `to` with the channels that the run from `from` has at a share of the way.
uint32_t MixColor(const VLRColorKey& from, const VLRColorKey& to, double share) {
  uint32_t color = to.Color & ~kChannelBits;
  for (int32_t channel = 0; channel < kColorChannels; ++channel) {
    const int32_t own = ChannelOf(to, channel);
    const int32_t previous = ChannelOf(from, channel);
    color |= (CutToLowBits((own - previous) * share + previous) & 0xFF) << (8 * channel);
  }
  return color;
}

/// The frame of every clone: what no constructor takes is copied here.
template <typename Make>
C_VLRGroupUnitCtrlCurve* CloneBy(Make make) {
  try {
    return make().release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

template <typename Group>
std::unique_ptr<Group> CopyOfColorGroup(const Group& group) {
  if (group.GetKeyCount() < 2) return nullptr;
  auto clone = std::make_unique<Group>(group.GetPinCount(), group.GetPins(), group.GetStart(),
                                       group.GetEnd(), group.GetKeys(), group.GetKeyCount());
  clone->SetInverted(group.GetInverted());
  return clone;
}

}  // namespace

C_VLRGroupUnitCtrlCurve::C_VLRGroupUnitCtrlCurve(uint8_t pinCount, const uint8_t* pins,
                                                 uint32_t start, uint32_t end)
    : start_(start), end_(end) {
  SetPins(pinCount, pins);
}

void C_VLRGroupUnitCtrlCurve::ScaleTime(double ratio) {
  start_ = CutToPosition(start_ * ratio);
  end_ = CutToPosition(end_ * ratio);
}

void C_VLRGroupUnitCtrlCurve::SetPins(uint8_t count, const uint8_t* pins) {
  pinCount_ = pins ? std::min(count, kMaxPins) : uint8_t{0};
  pins_.fill(0);
  std::copy_n(pins, pinCount_, pins_.begin());
}

int32_t C_VLRGroupUnitCtrlCurve::FindChannel(uint8_t pin) const {
  const int32_t channels = std::min<int32_t>(pinCount_, kColorChannels);
  const auto end = pins_.begin() + channels;
  const auto found = std::find(pins_.begin(), end, pin);
  return found == end ? -1 : static_cast<int32_t>(found - pins_.begin());
}

C_VLRGroupUnitCtrlCurve* C_VLRGroupUnknownCtrlCurve::Clone() const {
  return CloneBy([this] {
    const uint8_t pin = 0;
    return std::make_unique<C_VLRGroupUnknownCtrlCurve>(uint8_t{1}, &pin, GetStart(), GetEnd());
  });
}

C_VLRGroupColorFlyerCtrlCurve::C_VLRGroupColorFlyerCtrlCurve(uint8_t pinCount, const uint8_t* pins,
                                                             uint32_t start, uint32_t end,
                                                             const VLRColorKey* keys,
                                                             int32_t keyCount)
    : C_VLRGroupUnitCtrlCurve(pinCount, pins, start, end) {
  SetKeys(keyCount, keys);
}

C_VLRGroupUnitCtrlCurve* C_VLRGroupColorFlyerCtrlCurve::Clone() const {
  return CloneBy([this] { return CopyOfColorGroup(*this); });
}

void C_VLRGroupColorFlyerCtrlCurve::ScaleTime(double ratio) {
  C_VLRGroupUnitCtrlCurve::ScaleTime(ratio);
  for (VLRColorKey& key : keys_) key.Sample = CutToPosition(key.Sample * ratio);
}

int32_t C_VLRGroupColorFlyerCtrlCurve::RemapKeys(uint32_t sourceFirst, uint32_t sourceLast,
                                                 uint32_t targetFirst, uint32_t targetLast) {
  const RangeMap map{sourceFirst, sourceLast, targetFirst, targetLast};
  if (!map.IsValid()) return 0;
  if (keys_.empty()) return 1;
  for (VLRColorKey& key : keys_) key.Sample = map.Map(key.Sample);
  keys_.front().Sample = targetFirst;
  keys_.back().Sample = targetLast;
  return 1;
}

int32_t C_VLRGroupColorFlyerCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return 0;
  const int64_t delta = int64_t{newStart} - GetStart();
  const int64_t end = GetEnd() + delta;
  SetStart(newStart);
  SetEnd(static_cast<uint32_t>(std::min<int64_t>(end, limit)));
  if (end <= limit) {
    MoveKeys(delta);
  } else {
    MoveKeysUpTo(delta, limit);
  }
  return 1;
}

void C_VLRGroupColorFlyerCtrlCurve::SetKeys(int32_t count, const VLRColorKey* keys) {
  std::vector<VLRColorKey> copy;
  if (keys && count > 0) copy.assign(keys, keys + count);
  keys_ = std::move(copy);
}

void C_VLRGroupColorFlyerCtrlCurve::MoveKeys(int64_t delta) {
  for (VLRColorKey& key : keys_) key.Sample = static_cast<uint32_t>(key.Sample + delta);
}

void C_VLRGroupColorFlyerCtrlCurve::MoveKeysUpTo(int64_t delta, uint32_t limit) {
  int64_t previous = 0;
  for (size_t i = 0; i < keys_.size(); ++i) {
    const int64_t moved = keys_[i].Sample + delta;
    if (i > 0 && moved > limit) {
      const double way = static_cast<double>(moved - previous);
      const double share = way != 0 ? static_cast<double>(limit - previous) / way : 0;
      keys_[i].Color = MixColor(keys_[i - 1], keys_[i], share);
      keys_[i].Sample = limit;
      keys_.resize(i + 1);
      return;
    }
    keys_[i].Sample = static_cast<uint32_t>(moved);
    previous = moved;
  }
}

C_VLRGroupUnitCtrlCurve* C_VLRGroupColorEnvelopCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = CopyOfColorGroup(*this);
    if (clone) clone->SetWindowSamples(GetWindowSamples());
    return clone;
  });
}

int32_t C_VLRGroupColorEnvelopCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return 0;
  const int64_t delta = int64_t{newStart} - GetStart();
  const int64_t count = int64_t{GetEnd()} - GetStart() + 1;
  const int64_t end = std::min<int64_t>(int64_t{newStart} - 1 + count, limit);
  const int64_t newCount = end - newStart + 1;
  SetStart(newStart);
  SetEnd(static_cast<uint32_t>(end));
  if (newCount == count) {
    MoveKeys(delta);
    return 1;
  }
  const uint32_t origin = GetKeyCount() > 0 ? Keys().front().Sample : 0;
  for (VLRColorKey& key : MutableKeys()) {
    const double distance = static_cast<double>(int64_t{key.Sample} - origin);
    key.Sample =
        CutToLowBits(distance * static_cast<double>(newCount) / static_cast<double>(count) +
                     origin + static_cast<double>(delta));
  }
  return 1;
}

}  // namespace velora
