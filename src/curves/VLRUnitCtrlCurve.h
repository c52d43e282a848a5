// The base of all control curves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include <velora/VeloraTypes.h>
#include "foundation/CUItem.h"

namespace velora {

/// What GetType gives.
enum CurveType : uint32_t {
  kCurveLevel = 1,
  kCurveFlash = 2,
  kCurveRamp = 3,
  kCurveEnvelop = 4,
  kCurveSpline = 5,
  kCurvePolyline = 6,
  kCurveImage = 8,
  kCurveSine = 9,
  kCurveTriangle = 10,
  kCurveNewImage = 11,
  kCurveEnergy = 12,
  kCurveAmplitudeModulation = 13,
  kCurveColorFlyer = 0x81,
  kCurveColorEnvelop = 0x82,
};

/// What SetPointBlock answers.
enum PointBlockStatus : int32_t {
  kPointBlockStored = 0,
  kPointBlockNoMemory = 1,
  kPointBlockRefused = 2,
};

/// The level of one output over a range of sample positions of a sound.
///
///   curve.AttachSound(rate, samples);          // for curves that need a sound
///   std::vector<uint16_t> levels(curve.GetSampleCount());
///   curve.GenerateSamples(levels.data());      // levels[i] is for Start + i
///
/// Start and End are both inside the range. Levels are 0 to 255. A curve whose
/// parameters give no levels writes none and says nothing, so that an array that
/// must then be silent has to be cleared beforehand.
///
/// A curve belongs to one thread at a time. Generating may reduce the phase of a
/// periodic curve, so even that is no read-only use.
///
/// The order of the virtual operations is a contract with callers that know it
/// alone: 29 operations, 30 raw slots, the destructor taking two. Nothing may be
/// inserted.
class C_VLRUnitCtrlCurve : public C_CUItem {
 public:
  /// Slots 0 and 1.
  virtual ~C_VLRUnitCtrlCurve();

  /// Slot 2. The CurveType.
  virtual uint32_t GetType() const = 0;

  /// Slot 3. Writes GetSampleCount() levels, inverted if the curve is, or
  /// nothing at all.
  virtual void GenerateSamples(uint16_t* out) = 0;

  /// Slot 4. A new curve of the same class and values, which is the caller's to
  /// delete. User value and point block are not copied. Null when memory is short.
  virtual C_VLRUnitCtrlCurve* Clone() const = 0;

  /// Slot 5. At least two samples.
  virtual bool IsValid() const { return GetSampleCount() >= 2; }

  /// Slots 6 and 7. Move a bound; a class may adapt its levels to that.
  virtual void MoveStart(uint32_t start) { start_ = start; }
  virtual void MoveEnd(uint32_t end) { end_ = end; }

  /// Slot 8. Multiplies both bounds and cuts them to whole samples; held to
  /// 0 .. 2^32 - 1.
  virtual void ScaleTime(double ratio);

  /// Slot 9. The sound that the curve belongs to: samples per second, and its
  /// mono samples from position 0 on, which stay the caller's and must outlive
  /// the generation. Through this operation the length is unknown: the samples
  /// must reach to End. See AttachSound.
  virtual void AttachWave(uint32_t sampleRate, const int16_t* samples);

  /// Slots 10 to 13. Plain bounds, without the care of MoveStart and MoveEnd.
  virtual void SetStart(uint32_t start) { start_ = start; }
  virtual uint32_t GetStart() const { return start_; }
  virtual void SetEnd(uint32_t end) { end_ = end; }
  virtual uint32_t GetEnd() const { return end_; }

  /// Slots 14 and 15. Position within its period at which a periodic curve
  /// begins, in samples.
  virtual void SetPhase(uint32_t phase) { phase_ = phase; }
  virtual uint32_t GetPhase() const { return phase_; }

  /// Slot 16. End - Start + 1, and 1 when End is not behind Start. The whole of
  /// 32 bits has no count and gives 0.
  virtual uint32_t GetSampleCount() const { return end_ > start_ ? end_ - start_ + 1 : 1; }

  /// Slot 17.
  virtual uint8_t GetInverted() const { return inverted_; }

  /// Slots 18 to 21. Distance from a bound of this curve to one of the other,
  /// modulo 2^32. The other must not be null.
  virtual uint32_t OffsetStartToStart(const C_VLRUnitCtrlCurve* other) const;
  virtual uint32_t OffsetStartToEnd(const C_VLRUnitCtrlCurve* other) const;
  virtual uint32_t OffsetEndToStart(const C_VLRUnitCtrlCurve* other) const;
  virtual uint32_t OffsetEndToEnd(const C_VLRUnitCtrlCurve* other) const;

  /// Slot 22. Moves the curve to a new start with its length kept, and cuts it
  /// at `limit`, the last position that End may take. Does nothing unless the new
  /// start is below the limit.
  virtual void Rebase(uint32_t newStart, uint32_t limit);

  /// Slot 23. Nonzero: every level v is delivered as 255 - v.
  virtual void SetInverted(uint8_t inverted) { inverted_ = inverted; }

  /// Slots 24 and 25. A number of the owner's; the curve never reads it.
  virtual uint32_t GetUserValue() const { return userValue_; }
  virtual void SetUserValue(uint32_t value) { userValue_ = value; }

  /// Slots 26 to 28. A block of the owner's with one element of 5 bytes for each
  /// position from its start to its end; kept here and not interpreted. The curve
  /// owns the bytes, and the owner may write them. Null when there is none.
  virtual uint32_t GetPointBlockStart() const { return pointBlockStart_; }
  virtual uint32_t GetPointBlockEnd() const { return pointBlockEnd_; }
  virtual std::byte* GetPointBlock() const { return pointBlock_.get(); }

  /// Slot 29. Stores a copy of the block for the positions between `a` and `b`,
  /// both inside and in either order. A PointBlockStatus: refused without bytes
  /// and for 2^31 elements or more. Without memory the old block is gone.
  virtual int32_t SetPointBlock(const std::byte* bytes, int32_t a, int32_t b);

  C_VLRUnitCtrlCurve(const C_VLRUnitCtrlCurve&) = delete;
  C_VLRUnitCtrlCurve& operator=(const C_VLRUnitCtrlCurve&) = delete;

  /// AttachWave with a known length: positions behind the last sample are silent.
  void AttachSound(uint32_t sampleRate, std::span<const int16_t> samples);

 protected:
  C_VLRUnitCtrlCurve(uint32_t start, uint32_t end, uint32_t phase);

  /// Last position that is generated: End, or Start where End is before it.
  uint32_t LastPosition() const { return GetStart() + (GetSampleCount() - 1); }

  bool IsInverted() const { return GetInverted() != 0; }

  /// The array of GenerateSamples.
  std::span<uint16_t> OutputOf(uint16_t* out) const { return {out, GetSampleCount()}; }

  /// Stores the phase past any override.
  void StorePhase(uint32_t phase) { phase_ = phase; }

  /// The samples from Start to LastPosition of a sound that was attached. What is
  /// behind its known end is silence, for which `silenced` takes a copy.
  std::span<const int16_t> SoundInRange(const int16_t* samples,
                                        std::vector<int16_t>& silenced) const;

  /// The frame of every Clone: `make` gives a smart pointer to the new curve, whose
  /// constructor has taken its values; what no constructor takes is copied here.
  /// Null when memory is short and when `make` gives null.
  template <typename Make>
  C_VLRUnitCtrlCurve* CloneBy(Make make) const {
    try {
      std::unique_ptr<C_VLRUnitCtrlCurve> clone = make();
      if (!clone) return nullptr;
      clone->SetInverted(GetInverted());
      clone->soundLength_ = soundLength_;
      return clone.release();
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }

  /// Runs a generator that takes memory before it writes. Without memory there are
  /// no levels.
  template <typename Generate>
  static void GenerateIfMemory(Generate generate) {
    try {
      generate();
    } catch (const std::bad_alloc&) {
    }
  }

 private:
  static constexpr uint64_t kUnknownLength = UINT64_MAX;

  uint32_t userValue_ = 0;
  uint32_t pointBlockStart_;
  uint32_t pointBlockEnd_;
  std::unique_ptr<std::byte[]> pointBlock_;
  uint32_t start_;
  uint32_t end_;
  uint32_t phase_;
  uint8_t inverted_ = 0;
  uint64_t soundLength_ = kUnknownLength;
};

/// Size of an element of the point block.
inline constexpr size_t kPointBlockElement = sizeof(tagVLRCurveCtrlPoint);

}  // namespace velora
