#include "curves/VLRUtil.h"

#include <algorithm>
#include <array>

#include "curves/VLRSplineCtrlCurve.h"

namespace velora {
namespace {

using Table = std::array<uint16_t, C_VLRUtil::kMapSize>;

/// The curve of a channel: a level for each of the 256 input levels.
Table BendingOf(const VLRGammaChannel& channel) {
  Table table{};
  C_VLRSplineCtrlCurve spline(0, C_VLRUtil::kMapSize - 1, 0, channel.Points, channel.PointCount);
  spline.GenerateSamples(table.data());
  return table;
}

/// Snaps a level to one of steps + 1 levels up to `topLevel`, the inputs being
/// centred on the steps. All 0 for no steps.
Table QuantiserOf(uint8_t steps, uint8_t topLevel) {
  Table table{};
  if (steps == 0) return table;
  const double width = 255.0 / steps;
  double centre = 0;
  int32_t next = 0;
  for (int32_t j = 0; j <= steps; ++j) {
    const int32_t last = std::min(static_cast<int32_t>(width * 0.5 + centre), 255);
    const int32_t level = static_cast<int32_t>(centre + 0.5);
    const auto snapped = static_cast<uint16_t>(level * (topLevel / 255.0) + 0.5);
    while (next <= last) table[static_cast<size_t>(next++)] = snapped;
    centre += width;
  }
  return table;
}

}  // namespace

void C_VLRUtil::BuildMaps(I_VLRGammaChannels* source, uint32_t* outSize) {
  maps_.clear();
  if (outSize) *outSize = 0;
  const VLRGammaChannel* const channels = source ? source->GetChannels() : nullptr;
  if (!channels) return;
  int32_t count = kGammaChannels;
  while (count > 0 && !channels[count - 1].Enabled) --count;

  maps_.resize(static_cast<size_t>(count * kMapSize));
  for (int32_t i = 0; i < count; ++i) {
    if (!channels[i].Enabled) continue;
    const Table bending = BendingOf(channels[i]);
    const Table quantiser = QuantiserOf(channels[i].Steps, channels[i].TopLevel);
    std::ranges::transform(bending, maps_.begin() + i * kMapSize,
                           [&](uint16_t level) { return static_cast<uint8_t>(quantiser[level]); });
  }
  if (outSize) *outSize = static_cast<uint32_t>(maps_.size());
}

}  // namespace velora
