// Gamma curves of up to three output channels, as their owner hands them out.
#pragma once

#include <cstddef>
#include <cstdint>

#include <velora/VeloraTypes.h>

namespace velora {

#pragma pack(push, 1)
/// The gamma curve of one channel.
struct VLRGammaChannel {
  uint8_t Enabled;                     ///< 0: the channel has no table
  uint8_t Unused1[3];                  ///< not read
  uint8_t Steps;                       ///< steps of the output above 0
  uint8_t TopLevel;                    ///< level of the highest step
  uint16_t PointCount;                 ///< number of points
  uint8_t Unused2[2];                  ///< not read
  const tagVLRCurveCtrlPoint* Points;  ///< input level (Sample, 0 to 255) to output level
};
#pragma pack(pop)

static_assert(sizeof(VLRGammaChannel) == 10 + sizeof(void*));
static_assert(offsetof(VLRGammaChannel, Steps) == 4);
static_assert(offsetof(VLRGammaChannel, TopLevel) == 5);
static_assert(offsetof(VLRGammaChannel, PointCount) == 6);
static_assert(offsetof(VLRGammaChannel, Points) == 10);

/// Number of records that GetChannels hands out.
inline constexpr int32_t kGammaChannels = 3;

/// The owner of gamma curves. The records and their points stay the owner's.
///
/// One raw slot, and no destructor.
class I_VLRGammaChannels {
 public:
  /// Slot 0. Three records in a row; null when there are none.
  virtual const VLRGammaChannel* GetChannels() = 0;

 protected:
  ~I_VLRGammaChannels() = default;
};

}  // namespace velora
