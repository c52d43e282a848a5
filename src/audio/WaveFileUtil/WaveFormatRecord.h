// The "fmt " chunk of a wave file as it stands there.
#pragma once

#include "foundation/LittleEndian.h"

namespace velora {

/// Format tags that are known.
inline constexpr uint16_t kTagPcm = 1;
inline constexpr uint16_t kTagMsAdpcm = 2;
inline constexpr uint16_t kTagImaAdpcm = 17;

/// The part that all formats share.
struct PcmFormat {
  le16 formatTag;
  le16 channels;
  le32 rate;  // frames per second
  le32 bytesPerSecond;
  le16 blockAlign;  // bytes of a frame, or of a block of coded samples
  le16 bits;        // of a sample
};
static_assert(sizeof(PcmFormat) == 16);

}  // namespace velora
