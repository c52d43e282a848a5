// Groups of output pins that play one run of colours.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "curves/ColorKey.h"
#include "foundation/CUItem.h"

namespace velora {

/// What GetGroupType gives.
enum GroupType : uint32_t {
  kGroupUnknown = 0,
  kGroupColorFlyer = 1,
  kGroupColorEnvelop = 2,
};

/// Up to sixteen pins, the first three of which are the colour channels, over a
/// range of samples. The curves of the single pins find their group by its index
/// in a list.
///
/// The order of the virtual operations is a contract: 8 operations, raw slots 0
/// to 8, the destructor taking two. The colour groups add two.
class C_VLRGroupUnitCtrlCurve : public C_CUItem {
 public:
  static constexpr uint8_t kMaxPins = 16;

  /// Slots 0 and 1.
  virtual ~C_VLRGroupUnitCtrlCurve() = default;

  /// Slot 2. The GroupType.
  virtual uint32_t GetGroupType() const = 0;

  /// Slot 3. A new group, the caller's to delete; null for a colour group of
  /// fewer than two keys and when memory is short.
  virtual C_VLRGroupUnitCtrlCurve* Clone() const = 0;

  /// Slots 4 and 5.
  virtual void SetStart(uint32_t start) { start_ = start; }
  virtual void SetEnd(uint32_t end) { end_ = end; }

  /// Slot 6. Multiplies all positions and cuts them to whole samples.
  virtual void ScaleTime(double ratio);

  /// Slots 7 and 8. The same as SetStart and SetEnd.
  virtual void MoveStart(uint32_t start) { start_ = start; }
  virtual void MoveEnd(uint32_t end) { end_ = end; }

  C_VLRGroupUnitCtrlCurve(const C_VLRGroupUnitCtrlCurve&) = delete;
  C_VLRGroupUnitCtrlCurve& operator=(const C_VLRGroupUnitCtrlCurve&) = delete;

  uint32_t GetStart() const { return start_; }
  uint32_t GetEnd() const { return end_; }

  /// GetPins gives kMaxPins numbers, of which GetPinCount are in use and the
  /// others 0. SetPins takes at most kMaxPins; null counts as none.
  uint8_t GetPinCount() const { return pinCount_; }
  const uint8_t* GetPins() const { return pins_.data(); }
  void SetPins(uint8_t count, const uint8_t* pins);

  /// Nonzero: the levels of all pins are delivered as 255 - level.
  uint8_t GetInverted() const { return inverted_; }
  void SetInverted(uint8_t inverted) { inverted_ = inverted; }

  /// The colour channel that a pin plays; -1 when it plays none. The first of
  /// equal numbers counts.
  int32_t FindChannel(uint8_t pin) const;

 protected:
  C_VLRGroupUnitCtrlCurve(uint8_t pinCount, const uint8_t* pins, uint32_t start, uint32_t end);

 private:
  uint8_t pinCount_ = 0;
  std::array<uint8_t, kMaxPins> pins_{};
  uint32_t start_;
  uint32_t end_;
  uint8_t inverted_ = 0;
};

/// A group of a kind that is not played here. Of its clone only the bounds count:
/// it has one pin of no meaning.
class C_VLRGroupUnknownCtrlCurve : public C_VLRGroupUnitCtrlCurve {
 public:
  C_VLRGroupUnknownCtrlCurve(uint8_t pinCount, const uint8_t* pins, uint32_t start, uint32_t end)
      : C_VLRGroupUnitCtrlCurve(pinCount, pins, start, end) {}

  uint32_t GetGroupType() const override { return kGroupUnknown; }
  C_VLRGroupUnitCtrlCurve* Clone() const override;
};

/// A run of colours over time.
class C_VLRGroupColorFlyerCtrlCurve : public C_VLRGroupUnitCtrlCurve {
 public:
  C_VLRGroupColorFlyerCtrlCurve(uint8_t pinCount, const uint8_t* pins, uint32_t start, uint32_t end,
                                const VLRColorKey* keys, int32_t keyCount);

  /// Slot 9. Fits the keys of one range into another, bounds included: the first
  /// and last key take its ends, those between their place in proportion, but
  /// never the first position. 0, and nothing is done, when a range has not two
  /// positions.
  virtual int32_t RemapKeys(uint32_t sourceFirst, uint32_t sourceLast, uint32_t targetFirst,
                            uint32_t targetLast);

  /// Slot 10. Moves the group to a new start with its length kept, at most to
  /// `limit`, which End may take. Where it hits the limit a flyer is cut: the first
  /// key behind it, from the second on, goes back to the limit with the colour
  /// that the run has there, and the later ones are dropped. 0, and nothing is
  /// done, unless the new start is below the limit.
  virtual int32_t Rebase(uint32_t newStart, uint32_t limit);

  uint32_t GetGroupType() const override { return kGroupColorFlyer; }
  C_VLRGroupUnitCtrlCurve* Clone() const override;
  void ScaleTime(double ratio) override;

  /// The keys, borrowed; null when there are none.
  const VLRColorKey* GetKeys() const { return keys_.empty() ? nullptr : keys_.data(); }
  int32_t GetKeyCount() const { return static_cast<int32_t>(keys_.size()); }
  std::span<const VLRColorKey> Keys() const { return keys_; }

  /// Copies the keys; null and a count below 1 give none.
  void SetKeys(int32_t count, const VLRColorKey* keys);

 protected:
  std::span<VLRColorKey> MutableKeys() { return keys_; }
  void MoveKeys(int64_t delta);

 private:
  void MoveKeysUpTo(int64_t delta, uint32_t limit);

  std::vector<VLRColorKey> keys_;
};

/// A run of colours over the loudness of the sound.
class C_VLRGroupColorEnvelopCtrlCurve : public C_VLRGroupColorFlyerCtrlCurve {
 public:
  using C_VLRGroupColorFlyerCtrlCurve::C_VLRGroupColorFlyerCtrlCurve;

  uint32_t GetGroupType() const override { return kGroupColorEnvelop; }
  C_VLRGroupUnitCtrlCurve* Clone() const override;

  /// Where an envelope group hits the limit, its keys are squeezed together.
  int32_t Rebase(uint32_t newStart, uint32_t limit) override;

  /// Samples of which one loudness is taken; 0 counts as 1.
  uint16_t GetWindowSamples() const { return windowSamples_; }
  void SetWindowSamples(uint16_t count) { windowSamples_ = count; }

 private:
  uint16_t windowSamples_ = 0;
};

}  // namespace velora
