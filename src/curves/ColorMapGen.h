// Tables of one channel of a run of colours.
#pragma once

#include <cstdint>
#include <vector>

#include "curves/ColorKey.h"

namespace velora {

class C_ColorMapGen {
 public:
  /// Copies the keys; null stands for no keys set.
  C_ColorMapGen(const VLRColorKey* keys, int32_t count);

  /// Writes `levels` bytes: the channel's level at as many equal steps, of whole
  /// positions, from the first key on. Because of the whole steps the last key is
  /// not quite reached. A number above 2 is no channel and gives 0. `ignored` has
  /// no effect.
  ///
  /// False, with a line in the log, without keys or with fewer than two, and for
  /// fewer than one level.
  bool Generate(uint8_t channel, uint32_t ignored, uint8_t* out, int32_t levels) const;

 private:
  bool hasKeys_;
  std::vector<VLRColorKey> keys_;
};

}  // namespace velora
