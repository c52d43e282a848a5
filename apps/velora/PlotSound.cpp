#include "PlotSound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

constexpr double kLeftMargin = 64;
constexpr double kRightMargin = 24;
constexpr double kTitleHeight = 58;
constexpr double kAxisHeight = 34;
constexpr double kChannelGap = 14;
constexpr double kCharacterWidth = 6.2;  // of a label, on average
constexpr unsigned kEventRows = 4;
using Anchor = SvgPicture::Anchor;

struct Column {
  double low = 0;
  double high = 0;
  double level = 0;  // root of the mean square
};

/// Values of a channel, full scale being 1, read a block at a time.
class ChannelReader {
 public:
  ChannelReader(const C_WavData& sound, uint16_t channel)
      : bytes_(sound.Bytes()),
        format_(sound.Info()),
        frameBytes_(size_t{format_.bytes} * sound.Info().GetChannels()),
        offset_(size_t{format_.bytes} * channel) {}

  double FullScale() const { return format_.signBit; }

  void Read(uint64_t first, size_t count, std::vector<int32_t>& values) const {
    values.resize(count);
    DecodeBlock({bytes_.data() + first * frameBytes_ + offset_, frameBytes_, count}, format_,
                values.data());
  }

 private:
  std::span<const std::byte> bytes_;
  SampleFormat format_;
  size_t frameBytes_;
  size_t offset_;
};

Column MeasureColumn(const ChannelReader& reader, uint64_t first, uint64_t last,
                     std::vector<int32_t>& scratch) {
  constexpr uint64_t kBlock = 65536;
  double low = INFINITY;
  double high = -INFINITY;
  double squares = 0;
  for (uint64_t at = first; at < last; at += kBlock) {
    reader.Read(at, static_cast<size_t>(std::min(kBlock, last - at)), scratch);
    for (const int32_t value : scratch) {
      low = std::min<double>(low, value);
      high = std::max<double>(high, value);
      squares += static_cast<double>(value) * value;
    }
  }
  const double scale = reader.FullScale();
  return {low / scale, high / scale,
          std::sqrt(squares / static_cast<double>(last - first)) / scale};
}

std::string Point(char command, double x, double y) {
  return command + SvgNumber(x) + " " + SvgNumber(y);
}

/// A closed field between an upper and a lower edge given column by column.
template <typename Upper, typename Lower>
std::string Field(double left, size_t columns, Upper upper, Lower lower) {
  std::string path;
  for (size_t i = 0; i < columns; ++i) {
    path += Point(i == 0 ? 'M' : 'L', left + static_cast<double>(i) + 0.5, upper(i));
  }
  for (size_t i = columns; i-- > 0;) {
    path += Point('L', left + static_cast<double>(i) + 0.5, lower(i));
  }
  return path + "Z";
}

/// The least of 1, 2 and 5 times a power of ten that keeps ticks apart.
double TickStep(double span, double width) {
  constexpr double kLeastDistance = 90;
  const double least = span * kLeastDistance / width;
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (power * factor >= least) return power * factor;
  }
  return power * 10;
}

std::string Fixed(double value, int decimals) {
  std::array<char, 64> buffer;
  const int size = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
  return {buffer.data(), static_cast<size_t>(size)};
}

std::string TimeText(double seconds, double step) {
  const int decimals = step >= 1 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9));
  if (step < 0.001) return Fixed(seconds * 1000, std::max(0, decimals - 3)) + " ms";
  if (seconds >= 60 && step >= 1) {
    const auto whole = static_cast<long>(std::lround(seconds));
    const long rest = whole % 60;
    return std::to_string(whole / 60) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
  }
  return Fixed(seconds, decimals) + " s";
}

struct Span {
  uint64_t start;
  uint64_t end;  // exclusive
};

std::vector<Span> SilenceOf(const C_WavData& sound) {
  std::vector<Span> spans;
  const uint64_t frames = sound.FrameCount();
  const auto add = [&](uint64_t start, uint64_t end) {
    if (start < std::min(end, frames)) spans.push_back({start, std::min(end, frames)});
  };
  for (const C_ActionSilenceRegion* region : sound.EventMgr().Regions()) {
    add(region->GetStart(), region->GetStart() + std::max<uint64_t>(region->GetLength(), 1));
  }
  if (!spans.empty()) return spans;
  for (const C_SilenceSegment* segment : sound.SilenceSegments()) {
    add(segment->GetStart(), uint64_t{segment->GetEnd()} + 1);
  }
  return spans;
}

void DrawLevelScale(SvgPicture& picture, const PlotArea& area) {
  for (const double level : {1.0, 0.5, 0.0, -0.5, -1.0}) {
    const double y = area.top + area.height * (1 - level) / 2;
    picture.Line(level == 0 ? "axis" : "grid", area.left, y, area.left + area.width, y);
    picture.Text("faint", area.left - 8, y + 4, Fixed(level, 1), Anchor::kEnd);
  }
}

std::string Decibels(double level) {
  return level > 0 ? Fixed(20 * std::log10(level), 1) + " dBFS" : std::string("silent");
}

std::string Plural(size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Subtitle(const C_WavData& sound, const SoundPlotOptions& options) {
  std::vector<int32_t> scratch;
  const Column whole = MeasureColumn(ChannelReader(sound, 0), 0, sound.FrameCount(), scratch);
  const C_WavInfo& info = sound.Info();
  const double seconds =
      info.GetSampleRate() ? static_cast<double>(sound.FrameCount()) / info.GetSampleRate() : 0;
  return options.formatName + " · " + std::to_string(info.GetSampleRate()) + " Hz · " +
         std::to_string(info.GetResolutionBits()) + " bits · " + Fixed(seconds, 3) + " s · " +
         Plural(sound.EventMgr().Events().size(), "event") + " · " +
         Fixed(100 * SilenceShare(sound), 1) + "% silence · peak " +
         Decibels(std::max(std::abs(whole.low), std::abs(whole.high))) + " · mean level " +
         Decibels(whole.level);
}

}  // namespace

void DrawWaveform(SvgPicture& picture, const C_WavData& sound, uint16_t channel,
                  const PlotArea& area) {
  const ChannelReader reader(sound, channel);
  const auto yOf = [&area](double level) { return area.top + area.height * (1 - level) / 2; };
  const uint64_t frames = area.lastFrame - area.firstFrame;
  const auto columns = static_cast<size_t>(area.width);
  std::vector<int32_t> scratch;
  if (frames <= columns) {
    reader.Read(area.firstFrame, static_cast<size_t>(frames), scratch);
    std::string path;
    for (size_t i = 0; i < scratch.size(); ++i) {
      const double frame = static_cast<double>(area.firstFrame + i) + 0.5;
      path += Point(i == 0 ? 'M' : 'L', area.XOf(frame), yOf(scratch[i] / reader.FullScale()));
    }
    picture.PathOf("lane0", path);
    return;
  }

  std::vector<Column> measured(columns);
  for (size_t i = 0; i < columns; ++i) {
    const uint64_t first = area.firstFrame + frames * i / columns;
    const uint64_t last = area.firstFrame + frames * (i + 1) / columns;
    measured[i] = MeasureColumn(reader, first, last, scratch);
  }
  // A column of a single level still shows as a line.
  const double least = 0.6;
  picture.PathOf("wave",
                 Field(
                     area.left, columns, [&](size_t i) { return yOf(measured[i].high) - least; },
                     [&](size_t i) { return yOf(measured[i].low) + least; }));
  picture.PathOf(
      "core",
      Field(
          area.left, columns,
          [&](size_t i) { return yOf(std::min(measured[i].level, measured[i].high)) - least; },
          [&](size_t i) { return yOf(std::max(-measured[i].level, measured[i].low)) + least; }));
}

void DrawTimeAxis(SvgPicture& picture, const PlotArea& area) {
  // Without a rate there are no times; the axis then counts samples.
  const double rate = area.rate ? area.rate : 1;
  const double first = static_cast<double>(area.firstFrame) / rate;
  const double last = static_cast<double>(area.lastFrame) / rate;
  const double step = TickStep(last - first, area.width);
  const double bottom = area.top + area.height;
  const double firstTick = std::max(0.0, std::ceil(first / step - 1e-9));
  for (double tick = firstTick; tick * step <= last + step * 1e-9; ++tick) {
    const double x = area.XOf(tick * step * rate);
    picture.Line("grid", x, area.top, x, bottom);
    picture.Line("axis", x, bottom, x, bottom + 5);
    picture.Text("text", x, bottom + 20,
                 area.rate ? TimeText(tick * step, step) : Fixed(tick * step, 0), Anchor::kMiddle);
  }
}

void DrawSilence(SvgPicture& picture, const C_WavData& sound, const PlotArea& area) {
  constexpr double kLabelledWidth = 48;
  for (const Span& span : SilenceOf(sound)) {
    const uint64_t start = std::max(span.start, area.firstFrame);
    const uint64_t end = std::min(span.end, area.lastFrame);
    if (start >= end) continue;
    const double x = area.XOf(static_cast<double>(start));
    const double width = std::max(1.0, area.XOf(static_cast<double>(end)) - x);
    picture.Rectangle("band", x, area.top, width, area.height);
    if (width >= kLabelledWidth) {
      picture.Text("faint", x + width / 2, area.top + area.height - 8, "silence", Anchor::kMiddle);
    }
  }
}

void DrawEvents(SvgPicture& picture, const C_WavData& sound, const PlotArea& area, unsigned rows) {
  std::vector<double> rowEnds(rows, -INFINITY);
  size_t shown = 0;
  size_t labelled = 0;
  double lastLine = -INFINITY;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    const uint64_t sample = event->GetSample();
    if (sample < area.firstFrame || sample >= area.lastFrame) continue;
    ++shown;
    const double x = area.XOf(static_cast<double>(sample));
    // Thousands of lines on one pixel say no more than one.
    if (x - lastLine >= 0.5) {
      picture.Line("event", x, area.top, x, area.top + area.height);
      lastLine = x;
    }
    const std::string label =
        std::to_string(event->GetType()) + ":" + std::to_string(event->GetParam());
    const double width = static_cast<double>(label.size()) * kCharacterWidth + 8;
    const double left = std::clamp(x - width / 2, area.left, area.left + area.width - width);
    const auto row = std::ranges::find_if(rowEnds, [left](double end) { return end + 2 <= left; });
    if (row == rowEnds.end()) continue;
    *row = left + width;
    ++labelled;
    const double top = area.top - kEventRow * (static_cast<double>(row - rowEnds.begin()) + 1);
    picture.Line("event", x, top + kEventRow - 4, x, area.top);
    picture.Rectangle("tag", left, top, width, kEventRow - 4, 3);
    picture.Text("tagText", left + width / 2, top + 10.5, label, Anchor::kMiddle);
    picture.Hint(left, top, width, kEventRow,
                 "event " + label + " at sample " + std::to_string(sample));
  }
  if (rows > 0 && labelled < shown) {
    picture.Text("faint", area.left + area.width, area.top - kEventRow * rows - 6,
                 std::to_string(labelled) + " of " + std::to_string(shown) + " events labelled",
                 Anchor::kEnd);
  }
}

double SilenceShare(const C_WavData& sound) {
  const uint64_t frames = sound.FrameCount();
  uint64_t silent = 0;
  uint64_t reached = 0;
  std::vector<Span> spans = SilenceOf(sound);
  std::ranges::sort(spans, {}, &Span::start);
  for (const Span& span : spans) {
    const uint64_t start = std::max(span.start, reached);
    if (span.end <= start) continue;
    silent += span.end - start;
    reached = span.end;
  }
  return frames ? static_cast<double>(silent) / static_cast<double>(frames) : 0;
}

std::string PlotSound(const C_WavData& sound, const SoundPlotOptions& options) {
  const C_WavInfo& info = sound.Info();
  const uint16_t channels = info.GetChannels();
  const bool hasEvents = !sound.EventMgr().Events().empty();
  const unsigned rows = hasEvents ? kEventRows : 0;
  const double lanes = rows > 0 ? rows * kEventRow + 16 : 0;
  const double perChannel = options.height + kChannelGap;
  const double height = kTitleHeight + lanes + perChannel * channels + kAxisHeight;

  PlotArea area{kLeftMargin,
                kTitleHeight + lanes,
                options.width - kLeftMargin - kRightMargin,
                options.height,
                0,
                sound.FrameCount(),
                info.GetSampleRate()};
  const auto frameAt = [&](double seconds) {
    const double frame = seconds * info.GetSampleRate();
    return static_cast<uint64_t>(std::clamp(frame, 0.0, static_cast<double>(sound.FrameCount())));
  };
  area.firstFrame = std::min(frameAt(options.fromSeconds), area.lastFrame - 1);
  if (options.toSeconds > 0) {
    area.lastFrame = std::max(frameAt(options.toSeconds), area.firstFrame + 1);
  }

  SvgPicture picture(options.width, height, options.theme);
  picture.Text("title", kLeftMargin, 26, options.title);
  picture.Text("text", kLeftMargin, 46, Subtitle(sound, options));
  for (uint16_t channel = 0; channel < channels; ++channel) {
    PlotArea lane = area;
    lane.top += perChannel * channel;
    DrawSilence(picture, sound, lane);
    DrawLevelScale(picture, lane);
    if (channel + 1 == channels) DrawTimeAxis(picture, lane);
    DrawWaveform(picture, sound, channel, lane);
    DrawEvents(picture, sound, lane, channel == 0 ? rows : 0);
  }
  return std::move(picture).Finish();
}

}  // namespace velora::cli
