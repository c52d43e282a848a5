// The level of one pin of a colour group.
#pragma once

#include "curves/GroupCtrlCurves.h"
#include "curves/VLRUnitCtrlCurve.h"
#include "foundation/Lists.h"

namespace velora {

/// The groups that curves refer to by index.
using GroupList = C_CUList<C_VLRGroupUnitCtrlCurve>;

/// Plays the channel of a pin out of the run of colours of its group. The curve's
/// own inverted flag has no effect: the group's has.
class C_VLRColorFlyerCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// `channel` is the pin's number. `groups` is borrowed and may be null.
  C_VLRColorFlyerCtrlCurve(uint32_t start, uint32_t end, uint32_t ignored, uint8_t channel,
                           int32_t groupIndex, const GroupList* groups);

  uint32_t GetType() const override { return kCurveColorFlyer; }

  /// Nothing without a colour group. A pin that is none of the group's three
  /// gets level 0.
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// There must be a group, too.
  bool IsValid() const override;

  uint8_t GetChannel() const { return channel_; }
  void SetChannel(uint8_t channel) { channel_ = channel; }
  int32_t GetGroupIndex() const { return groupIndex_; }
  void SetGroupIndex(int32_t index) { groupIndex_ = index; }
  const GroupList* GetGroups() const { return groups_; }
  void SetGroups(const GroupList* groups) { groups_ = groups; }

 protected:
  /// The group, or null.
  const C_VLRGroupUnitCtrlCurve* FindGroup() const;

 private:
  uint8_t channel_;
  int32_t groupIndex_;
  const GroupList* groups_;
};

}  // namespace velora
