#include "PlotCurves.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "CurveEvents.h"
#include "PlotSound.h"
#include "SoundFile.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

constexpr double kLeftMargin = 64;
constexpr double kRightMargin = 24;
constexpr double kTitleHeight = 62;
constexpr double kSoundHeight = 130;
constexpr double kHeaderHeight = 30;  // above each lane, with its name
constexpr double kStripGap = 6;       // between the channels of a colour and the strip
constexpr double kStripHeight = 16;
constexpr double kStripColumn = 2;  // width of a piece of the strip
constexpr double kAxisHeight = 42;
constexpr double kBoldCharacter = 8.1;  // widths of characters, on average
constexpr double kCharacter = 6.6;
constexpr double kTopLevelValue = 255;
constexpr size_t kLaneStyles = 6;
constexpr int kFlatColumn = 2;  // levels that may lie on one another in a column
constexpr double kDotRadius = 3;
using Anchor = SvgPicture::Anchor;

constexpr const char* kChannelStyles[] = {"laneRed", "laneGreen", "laneBlue"};
constexpr const char* kChannelInks[] = {"inkRed", "inkGreen", "inkBlue"};

double YOf(const PlotArea& area, double level) {
  return area.top + area.height * (1 - level / kTopLevelValue);
}

/// A path that is drawn without lifting the pen. Level runs become one line.
class Pen {
 public:
  void To(double x, double y) {
    const Place place{SvgNumber(x), SvgNumber(y)};
    if (!places_.empty() && place == places_.back()) return;
    const size_t count = places_.size();
    const bool level =
        count >= 2 && places_[count - 1].y == place.y && places_[count - 2].y == place.y;
    if (level) places_.pop_back();
    places_.push_back(place);
  }
  bool IsEmpty() const { return places_.empty(); }

  std::string Path() const {
    std::string path;
    for (const Place& place : places_) {
      path += (path.empty() ? 'M' : 'L') + place.x + " " + place.y;
    }
    return path;
  }

 private:
  struct Place {
    std::string x;
    std::string y;
    bool operator==(const Place&) const = default;
  };
  std::vector<Place> places_;
};

/// Walks the levels from left to right: every level as a step where there is room,
/// otherwise for each pixel column its first, lowest, highest and last level.
template <typename Visit>
void TraceLevels(std::span<const uint8_t> levels, uint32_t start, const PlotArea& area,
                 Visit visit) {
  const double left = area.XOf(start);
  const double right = area.XOf(static_cast<double>(start) + static_cast<double>(levels.size()));
  const auto columns = static_cast<size_t>(std::max(1.0, right - left));
  if (levels.size() <= columns) {
    for (size_t i = 0; i < levels.size(); ++i) {
      visit(area.XOf(static_cast<double>(start) + static_cast<double>(i)), levels[i]);
      visit(area.XOf(static_cast<double>(start) + static_cast<double>(i) + 1), levels[i]);
    }
    return;
  }
  const double width = (right - left) / static_cast<double>(columns);
  for (size_t i = 0; i < columns; ++i) {
    const auto of = levels.subspan(levels.size() * i / columns,
                                   levels.size() * (i + 1) / columns - levels.size() * i / columns);
    const auto [low, high] = std::ranges::minmax(of);
    const double x = left + (static_cast<double>(i) + 0.5) * width;
    if (high - low <= kFlatColumn) {
      visit(x, of.front());
      continue;
    }
    for (const uint8_t level : {of.front(), low, high, of.back()}) visit(x, level);
  }
}

std::string OutlineOf(std::span<const uint8_t> levels, uint32_t start, const PlotArea& area) {
  Pen pen;
  TraceLevels(levels, start, area, [&](double x, uint8_t level) { pen.To(x, YOf(area, level)); });
  return pen.Path();
}

std::string FieldOf(std::span<const uint8_t> levels, uint32_t start, const PlotArea& area) {
  Pen pen;
  double left = 0;
  double right = 0;
  TraceLevels(levels, start, area, [&](double x, uint8_t level) {
    if (pen.IsEmpty()) pen.To(left = x, YOf(area, 0));
    pen.To(right = x, YOf(area, level));
  });
  pen.To(right, YOf(area, 0));
  return pen.Path() + "Z";
}

/// What the output shows that follows the events: each parameter until the next.
std::string StepsOf(const CurveLane& lane, std::span<const EventRow> events, const PlotArea& area) {
  Pen pen;
  const auto yOf = [&](const EventRow& event) {
    return YOf(area, event.param * kTopLevelValue / lane.resolution);
  };
  for (size_t i = 0; i < events.size(); ++i) {
    const double end = i + 1 < events.size() ? events[i + 1].sample : double{1} + lane.end;
    pen.To(area.XOf(events[i].sample), yOf(events[i]));
    pen.To(area.XOf(end), yOf(events[i]));
  }
  return pen.Path();
}

void DrawScale(SvgPicture& picture, const PlotArea& area) {
  for (const double level : {0.0, 128.0, 255.0}) {
    const double y = YOf(area, level);
    picture.Line(level == 0 ? "axis" : "grid", area.left, y, area.left + area.width, y);
    picture.Text("faint", area.left - 8, y + 4, SvgNumber(level), Anchor::kEnd);
  }
}

/// The text's first characters where there is no room for all of them.
std::string Fitting(const std::string& text, double width) {
  const auto room = static_cast<size_t>(std::max(0.0, width / kCharacter));
  size_t shown = 0;
  size_t end = 0;
  for (; end < text.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (begins && ++shown > room) break;
  }
  return end == text.size() ? text : text.substr(0, end) + "…";
}

std::string EventFacts(const CurveLane& lane, size_t events) {
  return std::to_string(lane.sampleFreq) + " Hz · " + std::to_string(lane.resolution) +
         " steps · " + Counted(events, "event");
}

/// Name and values of the curve at the left; at the right, which it gives the
/// width of, what reaches the outputs.
void DrawHeader(SvgPicture& picture, const CurveLane& lane, const PlotArea& area,
                const std::string& output) {
  const double y = area.top - 9;
  picture.Text("name", area.left, y, lane.name);
  const double used = static_cast<double>(lane.name.size()) * kBoldCharacter + 12;
  std::string facts = lane.kind->name == lane.name ? lane.facts
                      : lane.facts.empty()         ? lane.kind->name
                                                   : lane.kind->name + (" · " + lane.facts);
  const double room = area.width - used - static_cast<double>(output.size()) * kCharacter - 24;
  picture.Text("faint", area.left + used, y, Fitting(facts, room));
  if (!output.empty()) {
    picture.Text("faint", area.left + area.width, y, output, Anchor::kEnd);
  }
}

/// The control points, so that a curve that leaves them is seen to.
void DrawPoints(SvgPicture& picture, const CurveLane& lane, const PlotArea& area) {
  for (const tagVLRCurveCtrlPoint& point : lane.points) {
    if (point.Sample < lane.start || point.Sample > lane.end) continue;
    const int level = lane.inverted ? 255 - point.Level : point.Level;
    picture.Rectangle("name", area.XOf(point.Sample + 0.5) - kDotRadius,
                      YOf(area, level) - kDotRadius, 2 * kDotRadius, 2 * kDotRadius, kDotRadius);
  }
}

void DrawPlainLane(SvgPicture& picture, const CurveLane& lane, size_t index, uint32_t rate,
                   const PlotArea& area) {
  const CurveChannel& channel = lane.channels.front();
  const std::string number = std::to_string(index % kLaneStyles);
  picture.PathOf("fill" + number, FieldOf(channel.levels, lane.start, area));
  picture.PathOf("lane" + number, OutlineOf(channel.levels, lane.start, area));
  DrawPoints(picture, lane, area);
  std::string output;
  if (channel.pin) {
    output = "pin " + std::to_string(*channel.pin);
    if (rate >= lane.sampleFreq) {
      const auto events = MakePinEvents(channel.levels, lane.start, *channel.pin,
                                        {rate, lane.sampleFreq, lane.resolution});
      picture.PathOf("laneStep", StepsOf(lane, events, area));
      output += " · " + EventFacts(lane, events.size());
    }
  }
  DrawHeader(picture, lane, area, output);
}

/// The colour that the three channels make, in small pieces.
void DrawStrip(SvgPicture& picture, const CurveLane& lane, const PlotArea& area) {
  const double left = area.XOf(lane.start);
  const double right = area.XOf(double{1} + lane.end);
  const size_t count = lane.channels.front().levels.size();
  const auto pieces = static_cast<size_t>(std::max(1.0, std::ceil((right - left) / kStripColumn)));
  const double y = area.top + area.height + kStripGap;
  const auto colourOf = [&](size_t piece) {
    const size_t at = std::min(count - 1, count * (2 * piece + 1) / (2 * pieces));
    uint32_t colour = 0;
    for (const CurveChannel& channel : lane.channels) colour = colour << 8 | channel.levels[at];
    return colour;
  };
  const auto xOf = [&](size_t piece) {
    return left + (right - left) * static_cast<double>(piece) / static_cast<double>(pieces);
  };
  for (size_t first = 0; first < pieces;) {
    const uint32_t colour = colourOf(first);
    size_t last = first + 1;
    while (last < pieces && colourOf(last) == colour) ++last;
    picture.Swatch(colour, xOf(first), y, xOf(last) - xOf(first), kStripHeight);
    first = last;
  }
}

void DrawColourLane(SvgPicture& picture, const CurveLane& lane, uint32_t rate,
                    const PlotArea& area) {
  double right = area.left + area.width;
  std::string legend;
  for (size_t i = lane.channels.size(); i-- > 0;) {
    const CurveChannel& channel = lane.channels[i];
    picture.PathOf(kChannelStyles[i], OutlineOf(channel.levels, lane.start, area));
    const std::string label =
        channel.name + (channel.pin ? " pin " + std::to_string(*channel.pin) : "");
    picture.Text(kChannelInks[i], right, area.top - 9, label, Anchor::kEnd);
    right -= static_cast<double>(label.size()) * kCharacter + 14;
  }
  DrawStrip(picture, lane, area);
  PlotArea header = area;
  header.width = right - area.left;
  std::string output;
  if (lane.channels.front().pin && rate >= lane.sampleFreq) {
    size_t events = 0;
    for (const CurveChannel& channel : lane.channels) {
      events += MakePinEvents(channel.levels, lane.start, channel.pin.value_or(0),
                              {rate, lane.sampleFreq, lane.resolution})
                    .size();
    }
    output = EventFacts(lane, events);
  }
  DrawHeader(picture, lane, header, output);
}

double LaneHeight(const CurveLane& lane, const CurvePlotOptions& options) {
  const double strip = lane.channels.size() > 1 ? kStripGap + kStripHeight : 0;
  return kHeaderHeight + options.laneHeight + strip;
}

std::string SecondsText(uint64_t samples, uint32_t rate) {
  return SvgNumber(static_cast<double>(samples) / rate) + " s";
}

/// The whole area that shares the time axis.
PlotArea TimeArea(std::span<const CurveLane> lanes, const C_WavData* sound,
                  const CurvePlotOptions& options) {
  uint64_t first = sound ? 0 : UINT64_MAX;
  uint64_t last = sound ? sound->FrameCount() : 0;
  double height = sound ? kHeaderHeight + kSoundHeight : 0;
  for (const CurveLane& lane : lanes) {
    first = std::min<uint64_t>(first, lane.start);
    last = std::max<uint64_t>(last, uint64_t{lane.end} + 1);
    height += LaneHeight(lane, options);
  }
  height += kStripGap;
  return {kLeftMargin, kTitleHeight, options.width - kLeftMargin - kRightMargin, height, first,
          last,        options.rate};
}

void DrawSound(SvgPicture& picture, const C_WavData& sound, const std::string& name,
               PlotArea area) {
  const double right = area.XOf(static_cast<double>(sound.FrameCount()));
  picture.Text("name", area.left, area.top - 9, name.empty() ? "sound" : name);
  area.width = std::max(1.0, right - area.left);
  area.lastFrame = sound.FrameCount();
  DrawSilence(picture, sound, area);
  const double middle = area.top + area.height / 2;
  picture.Line("axis", area.left, middle, right, middle);
  DrawWaveform(picture, sound, 0, area);
}

std::string Subtitle(std::span<const CurveLane> lanes, const PlotArea& area) {
  const uint64_t samples = area.lastFrame - area.firstFrame;
  std::string text = Counted(lanes.size(), "curve") + " · ";
  text += area.rate ? SecondsText(samples, area.rate) + " · " + std::to_string(area.rate) + " Hz"
                    : Counted(samples, "sample");
  const bool stepped = area.rate && std::ranges::any_of(lanes, [](const CurveLane& lane) {
                         return lane.channels.size() == 1 && lane.channels.front().pin;
                       });
  return stepped ? text + " · thin lines: what the events set" : text;
}

}  // namespace

std::string PlotCurves(std::span<const CurveLane> lanes, const C_WavData* sound,
                       const CurvePlotOptions& options) {
  const PlotArea whole = TimeArea(lanes, sound, options);
  SvgPicture picture(options.width, whole.top + whole.height + kAxisHeight, options.theme);
  picture.Text("title", kLeftMargin, 26, options.title);
  picture.Text("text", kLeftMargin, 46, Subtitle(lanes, whole));
  DrawTimeAxis(picture, whole);

  PlotArea area = whole;
  area.top += kHeaderHeight;
  if (sound) {
    area.height = kSoundHeight;
    DrawSound(picture, *sound, options.soundName, area);
    area.top += kHeaderHeight + kSoundHeight;
  }
  area.height = options.laneHeight;
  for (size_t i = 0; i < lanes.size(); ++i) {
    DrawScale(picture, area);
    if (lanes[i].channels.size() > 1) {
      DrawColourLane(picture, lanes[i], options.rate, area);
    } else {
      DrawPlainLane(picture, lanes[i], i, options.rate, area);
    }
    area.top += LaneHeight(lanes[i], options);
  }
  return std::move(picture).Finish();
}

}  // namespace velora::cli
