// A sound as a picture: waveform, silence, events, scales.
#pragma once

#include <cstdint>
#include <string>

#include "Svg.h"

namespace velora {
class C_WavData;
}

namespace velora::cli {

/// Where something with a time axis is drawn, in pixels, and the frames that its
/// width shows, the last one exclusive.
struct PlotArea {
  double left;
  double top;
  double width;
  double height;
  uint64_t firstFrame;
  uint64_t lastFrame;
  uint32_t rate;

  double XOf(double frame) const {
    return left + width * (frame - static_cast<double>(firstFrame)) /
                      static_cast<double>(lastFrame - firstFrame);
  }
};

/// Draws one channel between the area's top (full scale) and bottom (negative full
/// scale): the extremes of each pixel column, and within them plus and minus the
/// root of its mean square. Fewer frames than pixels become a line.
void DrawWaveform(SvgPicture& picture, const C_WavData& sound, uint16_t channel,
                  const PlotArea& area);

/// Draws times under the area and their lines through it; sample positions where the
/// rate is 0.
void DrawTimeAxis(SvgPicture& picture, const PlotArea& area);

/// Shades the sound's silence: the event manager's regions, or where it has none
/// the silence segments.
void DrawSilence(SvgPicture& picture, const C_WavData& sound, const PlotArea& area);

/// Draws each event as a line through the area, and as many labels above it, in up
/// to `rows` rows of kEventRow pixels, as fit without covering each other.
inline constexpr double kEventRow = 18;
void DrawEvents(SvgPicture& picture, const C_WavData& sound, const PlotArea& area, unsigned rows);

/// Share of the frames that DrawSilence shades, 0 to 1.
double SilenceShare(const C_WavData& sound);

/// What `velora plot` draws of a sound and how.
struct SoundPlotOptions {
  std::string title;
  std::string formatName;
  double width = 1200;  ///< pixels, at least 300
  double height = 220;  ///< of each channel, in pixels
  double fromSeconds = 0;
  double toSeconds = 0;  ///< 0: to the end
  SvgTheme theme = SvgTheme::kAuto;
};

/// The whole picture; the sound has at least one frame.
std::string PlotSound(const C_WavData& sound, const SoundPlotOptions& options);

}  // namespace velora::cli
