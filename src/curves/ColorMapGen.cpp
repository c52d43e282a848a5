#include "curves/ColorMapGen.h"

#include "curves/LevelMath.h"
#include "foundation/Logger.h"

namespace velora {
namespace {

/// Reports a fault of the input under the line that readers of logs know it by.
bool Refuse(const char* text, int32_t line) {
  GetZuLog()->LogAt("%s", kLogError, "ColorMapGen", line, text);
  return false;
}

/// Level at a position between two keys.
uint8_t LevelBetween(const VLRColorKey& from, const VLRColorKey& to, int32_t channel,
                     uint32_t position) {
  const int32_t first = ChannelOf(from, channel);
  const int32_t last = ChannelOf(to, channel);
  if (!from.Gradient || from.Sample == to.Sample) return static_cast<uint8_t>(first);
  // Positions are unsigned, and so are their differences.
  const double share = static_cast<double>(position - from.Sample) / (to.Sample - from.Sample);
  return static_cast<uint8_t>(CutToLowBits(share * (last - first) + first));
}

}  // namespace

C_ColorMapGen::C_ColorMapGen(const VLRColorKey* keys, int32_t count) : hasKeys_(keys != nullptr) {
  if (keys && count > 0) keys_.assign(keys, keys + count);
}

bool C_ColorMapGen::Generate(uint8_t channel, uint32_t, uint8_t* out, int32_t levels) const {
  if (!hasKeys_) return Refuse("Control points were not set.", 33);
  if (keys_.size() < 2) return Refuse("Number of Color Control Point should be at least 2", 39);
  if (levels < 1) return Refuse("Level of generated color map should be large than 0", 46);

  uint32_t position = keys_.front().Sample;
  const uint32_t step = (keys_.back().Sample - position + 1) / static_cast<uint32_t>(levels);
  size_t segment = 0;
  for (int32_t n = 0; n < levels; ++n) {
    while (segment + 2 < keys_.size() && position >= keys_[segment + 1].Sample) ++segment;
    out[n] = LevelBetween(keys_[segment], keys_[segment + 1], channel, position);
    position += step;
  }
  return true;
}

}  // namespace velora
