// Curves as a picture: lanes under the waveform of their sound.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "CurveKinds.h"
#include "Svg.h"

namespace velora {
class C_WavData;
}

namespace velora::cli {

struct CurvePlotOptions {
  std::string title;
  std::string soundName;   ///< of the waveform, if there is one
  double width = 1200;     ///< pixels, at least 300
  double laneHeight = 96;  ///< of each curve, in pixels
  uint32_t rate = 0;       ///< samples a second; with 0 the axis counts samples
  SvgTheme theme = SvgTheme::kAuto;
};

/// The whole picture. There is at least one lane. The time runs over the sound and
/// all curves; the sound may be null.
///
/// Each lane shows the level from 0 to 255: where a pixel has many samples, all
/// levels that they have. Over a curve with a pin stands what its events tell the
/// output; under a colour a strip of the colour itself.
std::string PlotCurves(std::span<const CurveLane> lanes, const C_WavData* sound,
                       const CurvePlotOptions& options);

}  // namespace velora::cli
