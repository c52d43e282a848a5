// Lookup tables of gamma curves.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <velora/I_VLRGammaChannels.h>

namespace velora {

/// Builds a table of 256 bytes for each of up to three channels. A level is bent
/// by the channel's curve and then snapped to its steps.
class C_VLRUtil {
 public:
  static constexpr int32_t kMapSize = 256;

  virtual ~C_VLRUtil() = default;

  /// Builds the tables of all channels up to the last enabled one and gives their
  /// size in bytes, 0 when none is enabled. The table of a channel that is not
  /// enabled is all 0. A null source has no channels.
  void BuildMaps(I_VLRGammaChannels* source, uint32_t* outSize);

  /// The tables of the last call, channel after channel.
  std::span<const uint8_t> GetMaps() const { return maps_; }

 private:
  std::vector<uint8_t> maps_;
};

}  // namespace velora
