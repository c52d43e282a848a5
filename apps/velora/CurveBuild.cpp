#include "CurveBuild.h"

#include <algorithm>
#include <array>

#include "curves/VLRAmplitudeModulationCurve.h"
#include "curves/VLRColorEnvelopCtrlCurve.h"
#include "curves/VLREnergyCtrlCurve.h"
#include "curves/VLREnvelopCtrlCurve.h"
#include "curves/VLRFlashCtrlCurve.h"
#include "curves/VLRImageCtrlCurve.h"
#include "curves/VLRLevelCtrlCurve.h"
#include "curves/VLRNewImageCtrlCurve.h"
#include "curves/VLRPolylineCtrlCurve.h"
#include "curves/VLRRampCtrlCurve.h"
#include "curves/VLRSineCtrlCurve.h"
#include "curves/VLRTriangleCtrlCurve.h"

namespace velora::cli {
namespace {

using Points = std::vector<tagVLRCurveCtrlPoint>;
using Colours = std::vector<VLRColorKey>;
using Bytes = std::vector<uint8_t>;

template <typename Curve, typename... Values>
Status Put(CurveBuild& build, Values... values) {
  auto curve = std::make_unique<Curve>(build.start, build.end, values...);
  curve->SetInverted(build.Inverted());
  build.curves.push_back(std::move(curve));
  return {};
}

std::string HertzText(const CurveBuild& build, const char* key) {
  return build.request.fields.Written(key) + " Hz";
}

/// Frequencies that every cycle can have, with one number of digits for both.
Result<SweepFrequencies> ReadFrequencies(const CurveBuild& build) {
  const CurveFields& fields = build.request.fields;
  const auto first = *fields.Find<DecimalFrequency>("freq");
  const auto* given = fields.Find<DecimalFrequency>("endFreq");
  const DecimalFrequency last = given ? *given : DecimalFrequency();
  if (!(first.Value() > 0)) return Status::Error("freq: a frequency of 0 gives no levels");
  const std::string rate = std::to_string(build.setting.rate) + " samples a second";
  for (const auto& [key, value] : {std::pair{"freq", first}, std::pair{"endFreq", last}}) {
    if (value.Value() > build.setting.rate) {
      return Status::Error(std::string(key) + ": a cycle of " + HertzText(build, key) +
                           " is shorter than a sample at " + rate);
    }
  }
  SweepFrequencies frequencies;
  frequencies.digits = std::max(first.digits, last.digits);
  frequencies.whole = first.whole;
  frequencies.fraction = first.FractionAt(frequencies.digits);
  frequencies.endWhole = last.whole;
  frequencies.endFraction = last.FractionAt(frequencies.digits);
  return frequencies;
}

uint32_t PhaseOf(const CurveBuild& build) { return static_cast<uint32_t>(build.Integer("phase")); }

/// Where the rise of the whole curve ends: the middle unless something else is said.
uint32_t PeakOf(const CurveBuild& build) {
  const int64_t middle = (int64_t{build.start} + build.end) / 2;
  return static_cast<uint32_t>(build.request.fields.Integer("peak", middle));
}

/// The rising and the falling part of every cycle need a sample.
Status CheckParts(const CurveBuild& build, uint32_t peak) {
  const double count = static_cast<double>(build.end - build.start) + 1;
  const double rising = peak < build.start ? 0 : static_cast<double>(peak - build.start) + 1;
  for (const char* key : {"freq", "endFreq"}) {
    const auto* frequency = build.request.fields.Find<DecimalFrequency>(key);
    if (!frequency || !(frequency->Value() > 0)) continue;
    const auto cycle = static_cast<int64_t>(build.setting.rate / frequency->Value());
    const auto rise = static_cast<int64_t>(static_cast<double>(cycle) * (rising / count));
    if (rise >= 1 && cycle - rise >= 1) continue;
    return Status::Error("a cycle of " + std::to_string(cycle) + " samples would rise for " +
                         std::to_string(rise) + " and fall for " + std::to_string(cycle - rise) +
                         "; each needs one (the peak is " + std::to_string(peak) + ", the curve " +
                         std::to_string(build.start) + " to " + std::to_string(build.end) + ")");
  }
  return {};
}

constexpr std::array<uint8_t, kColorChannels> kChannelPins = {0, 1, 2};

/// One curve for each of the three channels of a new group. Inside the run the pins
/// are the channels' own numbers; the outputs are the lane's matter.
template <typename Curve, typename Group, typename... More>
Status PutChannels(CurveBuild& build, uint16_t window, More... more) {
  const auto& colours = *build.request.fields.Find<Colours>("colours");
  auto group = std::make_unique<Group>(kColorChannels, kChannelPins.data(), build.start, build.end,
                                       colours.data(), static_cast<int32_t>(colours.size()));
  group->SetInverted(build.Inverted());
  if constexpr (std::is_same_v<Group, C_VLRGroupColorEnvelopCtrlCurve>) {
    group->SetWindowSamples(window);
  }
  const int32_t index = build.groups.Count();
  build.groups.Add(std::move(group));
  for (const uint8_t pin : kChannelPins) {
    build.curves.push_back(
        std::make_unique<Curve>(build.start, build.end, 0, pin, index, &build.groups, more...));
  }
  return {};
}

uint16_t WindowOf(const CurveBuild& build) {
  return static_cast<uint16_t>(build.Integer("window"));
}

}  // namespace

int64_t CurveBuild::Integer(std::string_view key) const {
  const auto row = std::ranges::find_if(request.kind->keys,
                                        [key](const KindKey& taken) { return taken.key == key; });
  return request.fields.Integer(key, row->otherwise);
}

bool CurveBuild::Inverted() const {
  const auto* inverted = request.fields.Find<bool>("inverted");
  return inverted && *inverted;
}

Status MakeLevelCurve(CurveBuild& build) {
  return Put<C_VLRLevelCtrlCurve>(build, build.Level("level"));
}

Status MakeRampCurve(CurveBuild& build) {
  return Put<C_VLRRampCtrlCurve>(build, 0, build.Level("from"), build.Level("to"));
}

Status MakeFlashCurve(CurveBuild& build) {
  constexpr uint16_t kLargestWhole = 255;
  const auto f = ReadFrequencies(build);
  if (!f) return f.GetStatus();
  if (f->whole > kLargestWhole || f->endWhole > kLargestWhole) {
    return Status::Error(std::string(f->whole > kLargestWhole ? "freq" : "endFreq") +
                         ": a flash has frequencies below 256 Hz");
  }
  return Put<C_VLRFlashCtrlCurve>(build, PhaseOf(build), build.setting.rate, f->whole,
                                  build.Level("duty"), build.Level("high"), build.Level("low"),
                                  f->fraction, f->digits, f->endWhole, f->endFraction);
}

Status MakeSineCurve(CurveBuild& build) {
  const auto f = ReadFrequencies(build);
  if (!f) return f.GetStatus();
  if (build.Level("low") > build.Level("high")) {
    return Status::Error("low: the low level " + std::to_string(build.Level("low")) +
                         " is above the high level " + std::to_string(build.Level("high")));
  }
  return Put<C_VLRSineCtrlCurve>(build, PhaseOf(build), build.setting.rate, build.Level("high"),
                                 build.Level("low"), f->whole, f->fraction, f->digits, f->endWhole,
                                 f->endFraction);
}

Status MakeTriangleCurve(CurveBuild& build) {
  const auto f = ReadFrequencies(build);
  if (!f) return f.GetStatus();
  const uint32_t peak = PeakOf(build);
  if (Status parts = CheckParts(build, peak); !parts) return parts;
  return Put<C_VLRTriangleCtrlCurve>(build, PhaseOf(build), peak, build.setting.rate,
                                     build.Level("high"), build.Level("low"), f->whole, f->fraction,
                                     f->digits, f->endWhole, f->endFraction);
}

Status MakeSplineCurve(CurveBuild& build) {
  const auto& points = *build.request.fields.Find<Points>("points");
  return Put<C_VLRSplineCtrlCurve>(build, 0, points.data(), static_cast<uint16_t>(points.size()));
}

Status MakePolylineCurve(CurveBuild& build) {
  const auto& points = *build.request.fields.Find<Points>("points");
  return Put<C_VLRPolylineCtrlCurve>(build, 0, points.data(), static_cast<uint16_t>(points.size()));
}

Status MakeStepsCurve(CurveBuild& build) {
  auto curve = std::make_unique<C_VLRNewImageCtrlCurve>(build.start, build.end);
  for (const tagVLRCurveCtrlPoint& point : *build.request.fields.Find<Points>("points")) {
    curve->AddPoint(point.Sample, point.Level);
  }
  curve->SetInverted(build.Inverted());
  build.curves.push_back(std::move(curve));
  return {};
}

Status MakeImageCurve(CurveBuild& build) {
  const auto& levels = *build.request.fields.Find<Bytes>("levels");
  const uint64_t count = uint64_t{build.end} - build.start + 1;
  if (levels.size() != count) {
    return Status::Error("levels: there are " + std::to_string(levels.size()) + " for the " +
                         std::to_string(count) + " samples from " + std::to_string(build.start) +
                         " to " + std::to_string(build.end));
  }
  return Put<C_VLRImageCtrlCurve>(build, levels.data());
}

Status MakeEnvelopeCurve(CurveBuild& build) {
  const auto* map = build.request.fields.Find<Points>("map");
  return Put<C_VLREnvelopCtrlCurve>(build, 0, WindowOf(build), build.setting.sound.data(),
                                    static_cast<uint16_t>(map ? map->size() : 0),
                                    map ? map->data() : nullptr);
}

Status MakeEnergyCurve(CurveBuild& build) {
  return Put<C_VLREnergyCtrlCurve>(build, WindowOf(build), build.Level("low"), build.Level("high"),
                                   static_cast<uint16_t>(build.Integer("threshold")),
                                   build.setting.sound.data());
}

Status MakeColourCurves(CurveBuild& build) {
  return PutChannels<C_VLRColorFlyerCtrlCurve, C_VLRGroupColorFlyerCtrlCurve>(build, 0);
}

Status MakeColourEnvelopeCurves(CurveBuild& build) {
  // Loudness goes through the run in 255 equal steps of whole positions.
  constexpr uint32_t kLeastSpan = 254;
  const auto& colours = *build.request.fields.Find<Colours>("colours");
  const uint32_t span = colours.back().Sample - colours.front().Sample;
  if (span < kLeastSpan) {
    return Status::Error(
        "colours: the positions of a colour envelope stand for loudness and must "
        "span " +
        std::to_string(kLeastSpan) + " at least, 0 to 255 for example, not " +
        std::to_string(span));
  }
  return PutChannels<C_VLRColorEnvelopCtrlCurve, C_VLRGroupColorEnvelopCtrlCurve>(
      build, WindowOf(build), build.setting.sound.data());
}

Status MakeProductCurve(CurveBuild& build) {
  auto product = std::make_unique<C_VLRAmplitudeModulationCurve>(build.start, build.end);
  for (auto& part : build.parts) product->AddCurve(std::move(part));
  build.curves.push_back(std::move(product));
  return {};
}

}  // namespace velora::cli
