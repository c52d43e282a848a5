#include "curves/VLRColorFlyerCtrlCurve.h"

#include <algorithm>

#include "curves/LevelWriter.h"

namespace velora {
namespace {

/// One channel of a run of colours, written to a window of its row.
class ColorRun {
 public:
  ColorRun(std::span<const VLRColorKey> keys, int32_t channel, LevelWindow& window)
      : keys_(keys), channel_(channel), window_(window) {}

  /// Writes the run from key to key, and where `end` is behind the last key goes
  /// on from there, with a gradient back to the first key.
  void Write(uint32_t end) {
    for (size_t i = 0; i + 1 < keys_.size(); ++i) {
      const VLRColorKey& from = keys_[i];
      const VLRColorKey& to = keys_[i + 1];
      if (from.Sample >= to.Sample) continue;
      const int64_t count = to.Sample - from.Sample;
      window_.Run(LevelOf(from), StepOf(from, to, count), count);
    }
    const VLRColorKey& last = keys_.back();
    if (end > last.Sample) {
      const int64_t count = end - last.Sample;
      window_.SetLast(window_.RunToLevel(LevelOf(last), StepOf(last, keys_.front(), count), count));
    } else {
      window_.SetLast(FinalLevel());
    }
    window_.HoldEnds();
  }

 private:
  uint8_t LevelOf(const VLRColorKey& key) const { return ChannelOf(key, channel_); }

  /// From entry to entry of `count`: towards the other key, or none to hold.
  double StepOf(const VLRColorKey& from, const VLRColorKey& to, int64_t count) const {
    if (!from.Gradient) return 0;
    return (int32_t{LevelOf(to)} - LevelOf(from)) / static_cast<double>(count);
  }

  /// The last level of a run that ends with its last key.
  uint8_t FinalLevel() const {
    const VLRColorKey& last = keys_.back();
    if (keys_.size() == 1) return LevelOf(last);
    const VLRColorKey& before = keys_[keys_.size() - 2];
    return LevelOf(before.Gradient ? last : before);
  }

  std::span<const VLRColorKey> keys_;
  int32_t channel_;
  LevelWindow& window_;
};

}  // namespace

C_VLRColorFlyerCtrlCurve::C_VLRColorFlyerCtrlCurve(uint32_t start, uint32_t end, uint32_t,
                                                   uint8_t channel, int32_t groupIndex,
                                                   const GroupList* groups)
    : C_VLRUnitCtrlCurve(start, end, 0),
      channel_(channel),
      groupIndex_(groupIndex),
      groups_(groups) {}

const C_VLRGroupUnitCtrlCurve* C_VLRColorFlyerCtrlCurve::FindGroup() const {
  return groups_ ? groups_->ItemAt(groupIndex_) : nullptr;
}

bool C_VLRColorFlyerCtrlCurve::IsValid() const {
  return C_VLRUnitCtrlCurve::IsValid() && FindGroup() != nullptr;
}

void C_VLRColorFlyerCtrlCurve::GenerateSamples(uint16_t* out) {
  const auto* group = dynamic_cast<const C_VLRGroupColorFlyerCtrlCurve*>(FindGroup());
  if (!group || group->GetKeyCount() < 1) return;
  const std::span<const VLRColorKey> keys = group->Keys();
  const uint32_t rowStart = keys.front().Sample;
  const uint32_t end = LastPosition();
  const int64_t length = int64_t{std::max(keys.back().Sample, end)} - rowStart + 1;
  if (length < 1) return;

  const std::span<uint16_t> levels = OutputOf(out);
  LevelWindow window(levels, int64_t{GetStart()} - rowStart, length);
  ColorRun(keys, group->FindChannel(channel_), window).Write(end);
  if (group->GetInverted() != 0) InvertLevels(levels);
}

C_VLRUnitCtrlCurve* C_VLRColorFlyerCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRColorFlyerCtrlCurve>(GetStart(), GetEnd(), 0, channel_,
                                                      groupIndex_, groups_);
  });
}

}  // namespace velora
