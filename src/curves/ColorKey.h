// The keys of a run of colours.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velora {

/// Colour channels of a key: 0 red, 1 green, 2 blue.
inline constexpr int32_t kColorChannels = 3;

#pragma pack(push, 1)
/// A colour at a position.
struct VLRColorKey {
  uint32_t Sample;    ///< position; rises from key to key
  uint32_t Color;     ///< 0x00BBGGRR: channel 0 in the lowest byte
  uint32_t Gradient;  ///< nonzero: runs to the next key's colour; 0: holds until it

  bool operator==(const VLRColorKey&) const = default;
};
#pragma pack(pop)

static_assert(sizeof(VLRColorKey) == 12);
static_assert(offsetof(VLRColorKey, Color) == 4);
static_assert(offsetof(VLRColorKey, Gradient) == 8);

/// The level of a channel; 0 for a number that is no channel.
inline uint8_t ChannelOf(const VLRColorKey& key, int32_t channel) {
  if (channel < 0 || channel >= kColorChannels) return 0;
  return static_cast<uint8_t>(key.Color >> (8 * channel));
}

}  // namespace velora
