#include "CurveKinds.h"

#include <algorithm>

#include "CurveBuild.h"
#include "SoundFile.h"
#include "Spelling.h"

namespace velora::cli {
namespace {

constexpr int32_t kRequired = KindKey::kRequired;

// What every curve has, and what only one with an output of its own has.
constexpr KindKey kRangeKeys[] = {{"start", 0}, {"end"}};
constexpr KindKey kOutputKeys[] = {{"name"}, {"pin"}, {"sampleFreq"}, {"resolution"}};

constexpr KindKey kLevelKeys[] = {{"level", 255}, {"inverted"}};
constexpr KindKey kRampKeys[] = {{"from", 0}, {"to", 255}, {"inverted"}};
constexpr KindKey kFlashKeys[] = {{"freq", kRequired}, {"endFreq"}, {"phase", 0}, {"duty", 50},
                                  {"high", 255},       {"low", 0},  {"inverted"}};
constexpr KindKey kSineKeys[] = {{"freq", kRequired}, {"endFreq"}, {"phase", 0},
                                 {"high", 255},       {"low", 0},  {"inverted"}};
constexpr KindKey kTriangleKeys[] = {{"freq", kRequired}, {"endFreq"}, {"phase", 0}, {"peak"},
                                     {"high", 255},       {"low", 0},  {"inverted"}};
constexpr KindKey kPointKeys[] = {{"points", kRequired}, {"inverted"}};
constexpr KindKey kImageKeys[] = {{"levels", kRequired}, {"inverted"}};
constexpr KindKey kEnvelopeKeys[] = {{"window", 256}, {"map"}, {"inverted"}};
constexpr KindKey kEnergyKeys[] = {
    {"window", 256}, {"threshold", 1024}, {"high", 255}, {"low", 0}, {"inverted"}};
constexpr KindKey kColourKeys[] = {{"colours", kRequired}, {"inverted"}};
constexpr KindKey kColourEnvelopeKeys[] = {{"colours", kRequired}, {"window", 256}, {"inverted"}};
constexpr KindKey kProductKeys[] = {{"curves", kRequired}};

constexpr auto kNothing = CurveKind::kNothing;
constexpr auto kRate = CurveKind::kRate;
constexpr auto kSound = CurveKind::kSound;

constexpr CurveKind kKinds[] = {
    {"level", "one level throughout", kLevelKeys, kNothing, 1, MakeLevelCurve},
    {"ramp", "a straight run from a level to another", kRampKeys, kNothing, 1, MakeRampCurve},
    {"flash", "on for a share of each cycle, then off", kFlashKeys, kRate, 1, MakeFlashCurve},
    {"sine", "a sine wave between two levels", kSineKeys, kRate, 1, MakeSineCurve},
    {"triangle", "up and down in straight lines", kTriangleKeys, kRate, 1, MakeTriangleCurve},
    {"spline", "a smooth curve through points", kPointKeys, kNothing, 1, MakeSplineCurve},
    {"polyline", "straight lines between points", kPointKeys, kNothing, 1, MakePolylineCurve},
    {"steps", "a level from each point to the next", kPointKeys, kNothing, 1, MakeStepsCurve},
    {"image", "a level told for each sample", kImageKeys, kNothing, 1, MakeImageCurve},
    {"envelope", "follows the peaks of the sound", kEnvelopeKeys, kSound, 1, MakeEnvelopeCurve},
    {"energy", "a gate: high where most samples are loud", kEnergyKeys, kSound, 1, MakeEnergyCurve},
    {"colour", "a run of colours over time, on three outputs", kColourKeys, kNothing, 3,
     MakeColourCurves},
    {"colour-envelope", "the loudness of the sound picks the colour", kColourEnvelopeKeys, kSound,
     3, MakeColourEnvelopeCurves},
    {"product", "two curves multiplied, 255 counting as 1", kProductKeys, kNothing, 1,
     MakeProductCurve},
};

constexpr const char* kChannelNames[] = {"red", "green", "blue"};

bool IsSameName(std::string_view a, std::string_view b) { return a == b; }

/// The row of a key that a curve of the kind takes in any role, or null.
const KindKey* FindKindKey(const CurveKind& kind, CurveRole role, std::string_view name) {
  const auto in = [name](std::span<const KindKey> rows) -> const KindKey* {
    const auto found =
        std::ranges::find_if(rows, [name](const KindKey& row) { return row.key == name; });
    return found == rows.end() ? nullptr : &*found;
  };
  if (const KindKey* own = in(kind.keys)) return own;
  if (const KindKey* range = in(kRangeKeys)) return range;
  return role == CurveRole::kLane ? in(kOutputKeys) : nullptr;
}

/// A request with its range settled.
struct PlannedCurve {
  const CurveRequest* request;
  uint32_t start;
  uint32_t end;
  std::vector<PlannedCurve> parts;

  uint64_t Count() const { return uint64_t{end} - start + 1; }
};

Status At(const CurveRequest& request, const std::string& message) {
  const std::string kind = request.kind->name;
  return Status::Error((request.place.empty() ? kind : request.place + " (" + kind + ")") + ": " +
                       message);
}

/// The end that the curve's own values suggest, when it has none.
std::optional<uint64_t> NaturalEnd(const CurveRequest& request, uint32_t start,
                                   const CurveSetting& setting) {
  const CurveFields& fields = request.fields;
  if (const auto* points = fields.Find<std::vector<tagVLRCurveCtrlPoint>>("points")) {
    // A copy: the record is packed, so that no reference to its fields may be taken.
    return uint64_t{points->back().Sample};
  }
  if (const auto* levels = fields.Find<std::vector<uint8_t>>("levels")) {
    return uint64_t{start} + levels->size() - 1;
  }
  // The positions of a colour envelope are no times.
  const auto* colours = fields.Find<std::vector<VLRColorKey>>("colours");
  if (colours && request.kind->needs != kSound) return uint64_t{colours->back().Sample};
  if (setting.hasSound && !setting.sound.empty()) return setting.sound.size() - 1;
  return std::nullopt;
}

Status CheckComplete(const CurveRequest& request, const CurveSetting& setting) {
  const CurveKind& kind = *request.kind;
  for (const KindKey& row : kind.keys) {
    const bool given = FindCurveKey(row.key)->kind == CurveValueKind::kCurves
                           ? !request.parts.empty()
                           : request.fields.Has(row.key);
    if (row.otherwise == kRequired && !given) {
      return At(request, std::string(row.key) + " is missing: " + FindCurveKey(row.key)->help);
    }
  }
  if (kind.needs == kSound && !setting.hasSound) {
    return At(request, "follows a sound, and there is none (--wave names it)");
  }
  if (kind.needs == kRate && setting.rate == 0) {
    return At(request, "needs the rate of the sound (--rate, or --wave for one with a rate)");
  }
  const auto* pins = request.fields.Find<std::vector<uint8_t>>("pin");
  if (pins && pins->size() != kind.channels) {
    return At(request, "pin: there are " + Counted(kind.channels, "output") + ", and " +
                           Counted(pins->size(), "pin"));
  }
  return {};
}

Result<PlannedCurve> PlanCurve(const CurveRequest& request, const CurveSetting& setting,
                               const PlannedCurve* whole) {
  if (Status complete = CheckComplete(request, setting); !complete) return complete;
  if (whole && request.kind->channels != 1) {
    return At(request, "a colour is no factor of a product");
  }
  PlannedCurve plan{&request, whole ? whole->start : 0, whole ? whole->end : 0, {}};
  plan.start = static_cast<uint32_t>(request.fields.Integer("start", plan.start));
  const int64_t end = request.fields.Integer("end", -1);
  if (end >= 0) {
    plan.end = static_cast<uint32_t>(end);
  } else if (const auto natural = NaturalEnd(request, plan.start, setting); natural && !whole) {
    if (*natural > UINT32_MAX) return At(request, "end: passes the last position, 4294967295");
    plan.end = static_cast<uint32_t>(*natural);
  } else if (!whole) {
    return At(request, "end is missing, and there is no sound to tell it (--wave names one)");
  }
  if (plan.end <= plan.start) {
    return At(request, "end: a curve has two samples at least; " + std::to_string(plan.end) +
                           " does not lie behind the start " + std::to_string(plan.start));
  }
  for (const CurveRequest& part : request.parts) {
    auto planned = PlanCurve(part, setting, &plan);
    if (!planned) return planned;
    plan.parts.push_back(std::move(planned.Value()));
  }
  return plan;
}

uint64_t LevelsNeeded(const PlannedCurve& plan) {
  uint64_t needed = plan.Count() * plan.request->kind->channels;
  for (const PlannedCurve& part : plan.parts) needed += LevelsNeeded(part);
  return needed;
}

using Curves = std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>>;

Result<Curves> MakeCurves(const PlannedCurve& plan, const CurveSetting& setting,
                          GroupList& groups) {
  CurveBuild build{*plan.request, setting, plan.start, plan.end, groups, {}, {}};
  for (const PlannedCurve& part : plan.parts) {
    auto made = MakeCurves(part, setting, groups);
    if (!made) return made;
    build.parts.push_back(std::move(made->front()));
  }
  if (Status made = plan.request->kind->make(build); !made) {
    return At(*plan.request, made.Message());
  }
  if (setting.hasSound) {
    for (const auto& curve : build.curves) curve->AttachSound(setting.rate, setting.sound);
  }
  return std::move(build.curves);
}

/// The levels as bytes. An entry that a curve leaves out is 0.
std::vector<uint8_t> LevelsOf(C_VLRUnitCtrlCurve& curve) {
  std::vector<uint16_t> wide(curve.GetSampleCount());
  curve.GenerateSamples(wide.data());
  std::vector<uint8_t> levels(wide.size());
  std::ranges::transform(wide, levels.begin(), [](uint16_t level) {
    return static_cast<uint8_t>(std::min<uint16_t>(level, 255));
  });
  return levels;
}

/// What a key that was given says of the curve: "freq 2", "5 points".
std::string FactOf(const CurveKey& key, const CurveFields& fields) {
  const std::string written = fields.Written(key.name);
  const auto items = static_cast<uint64_t>(std::ranges::count(written, ',')) + 1;
  switch (key.kind) {
    case CurveValueKind::kPoints:
      return Counted(items, std::string_view(key.name) == "map" ? "map point" : "point");
    case CurveValueKind::kColours:
      return Counted(items, "colour");
    case CurveValueKind::kLevels:
      return Counted(items, "level");
    case CurveValueKind::kFlag:
      return *fields.Find<bool>(key.name) ? key.name : "";
    default:
      return std::string(key.name) + " " + written;
  }
}

/// "freq 2 · duty 25", what makes the curve this one.
std::string FactsOf(const CurveRequest& request) {
  std::string facts;
  const auto add = [&facts](const std::string& fact) {
    if (!fact.empty()) facts += (facts.empty() ? "" : " · ") + fact;
  };
  for (const CurveKey& key : kCurveKeys) {
    const bool own = std::ranges::any_of(
        request.kind->keys, [&key](const KindKey& row) { return IsSameName(row.key, key.name); });
    if (own && request.fields.Has(key.name)) add(FactOf(key, request.fields));
  }
  for (const CurveRequest& part : request.parts) {
    const std::string inner = FactsOf(part);
    add(part.kind->name + (inner.empty() ? "" : " (" + inner + ")"));
  }
  return facts;
}

CurveLane StartLane(const PlannedCurve& plan, const CurveSetting& setting) {
  const CurveRequest& request = *plan.request;
  CurveLane lane;
  lane.kind = request.kind;
  const auto* name = request.fields.Find<std::string>("name");
  lane.name = name && !name->empty() ? *name : request.kind->name;
  lane.facts = FactsOf(request);
  lane.start = plan.start;
  lane.end = plan.end;
  lane.sampleFreq = static_cast<uint32_t>(request.fields.Integer("sampleFreq", setting.sampleFreq));
  lane.resolution = static_cast<uint32_t>(request.fields.Integer("resolution", setting.resolution));
  const auto* inverted = request.fields.Find<bool>("inverted");
  lane.inverted = inverted && *inverted;
  if (const auto* points = request.fields.Find<std::vector<tagVLRCurveCtrlPoint>>("points")) {
    lane.points = *points;
  }
  return lane;
}

void NumberEqualNames(std::vector<CurveLane>& lanes) {
  const auto taken = [&lanes](const std::string& name) {
    return std::ranges::any_of(lanes, [&](const CurveLane& lane) { return lane.name == name; });
  };
  for (size_t i = 1; i < lanes.size(); ++i) {
    const std::string base = lanes[i].name;
    const auto before = std::span(lanes).first(i);
    const bool repeats =
        std::ranges::any_of(before, [&base](const CurveLane& lane) { return lane.name == base; });
    if (!repeats) continue;
    size_t number = 2;
    while (taken(base + " " + std::to_string(number))) ++number;
    lanes[i].name = base + " " + std::to_string(number);
  }
}

std::string DefaultText(const KindKey& row) {
  if (row.otherwise == kRequired) return std::string(row.key) + "!";
  if (row.otherwise == KindKey::kOptional) return row.key;
  return std::string(row.key) + "=" + std::to_string(row.otherwise);
}

}  // namespace

std::span<const CurveKind> AllCurveKinds() { return kKinds; }

const CurveKind* FindCurveKind(std::string_view name) {
  const auto* found =
      std::ranges::find_if(kKinds, [name](const CurveKind& kind) { return kind.name == name; });
  return found == std::end(kKinds) ? nullptr : found;
}

Status NoSuchKind(std::string_view name) {
  std::vector<const char*> names;
  std::string list;
  for (const CurveKind& kind : kKinds) {
    names.push_back(kind.name);
    list += (list.empty() ? "" : ", ") + std::string(kind.name);
  }
  const std::string guess = DidYouMean(name, names);
  return Status::Error("'" + std::string(name) + "' is no kind of curve" +
                       (guess.empty() ? "; there are " + list : guess));
}

std::vector<const char*> KeysOf(const CurveKind& kind, CurveRole role) {
  std::vector<const char*> names;
  for (const CurveKey& key : kCurveKeys) {
    if (FindKindKey(kind, role, key.name)) names.push_back(key.name);
  }
  return names;
}

Status CheckTakesKey(const CurveKind& kind, CurveRole role, std::string_view key) {
  if (FindKindKey(kind, role, key)) return {};
  const auto names = KeysOf(kind, role);
  std::string guess = DidYouMean(key, names);
  if (guess.empty()) {
    guess = "; it has";
    for (const char* name : names)
      guess += (name == names.front() ? " " : ", ") + std::string(name);
  }
  return Status::Error("a curve of the kind " + std::string(kind.name) + " has no '" +
                       std::string(key) + "'" + guess);
}

std::string CurveKindsText() {
  constexpr size_t kNameWidth = 17;
  std::string text = "Kinds, and what each takes (! must be given, = is what counts without):\n";
  for (const CurveKind& kind : kKinds) {
    std::string keys;
    for (const KindKey& row : kind.keys) keys += (keys.empty() ? "" : ", ") + DefaultText(row);
    text += "  " + PadRight(kind.name, kNameWidth) + kind.summary +
            (kind.needs == kSound ? " (needs the sound)" : "") +
            (kind.needs == kRate ? " (needs the rate)" : "") + "\n" +
            std::string(2 + kNameWidth, ' ') + keys + "\n";
  }
  text += "\nKeys; all kinds have name, start, end, pin, sampleFreq and resolution too:\n";
  for (const CurveKey& key : kCurveKeys) {
    text += "  " + PadRight(key.name, kNameWidth) + key.help + "\n";
  }
  return text;
}

std::string CurveLane::ColumnName(const CurveChannel& channel) const {
  return channel.name.empty() ? name : name + "." + channel.name;
}

Result<std::vector<CurveLane>> MakeCurveLanes(std::span<const CurveRequest> requests,
                                              const CurveSetting& setting) {
  std::vector<PlannedCurve> plans;
  uint64_t needed = 0;
  for (const CurveRequest& request : requests) {
    auto plan = PlanCurve(request, setting, nullptr);
    if (!plan) return plan.GetStatus();
    needed += LevelsNeeded(plan.Value());
    if (needed > kMostLevels) {
      return At(request, "asks for " + std::to_string(needed) +
                             " levels, those of the curves before it included; at most " +
                             std::to_string(kMostLevels) +
                             " are made at once (start and end say how many)");
    }
    plans.push_back(std::move(plan.Value()));
  }
  std::vector<CurveLane> lanes;
  for (const PlannedCurve& plan : plans) {
    GroupList groups;
    const auto curves = MakeCurves(plan, setting, groups);
    if (!curves) return curves.GetStatus();
    CurveLane lane = StartLane(plan, setting);
    const auto* pins = plan.request->fields.Find<std::vector<uint8_t>>("pin");
    for (size_t i = 0; i < curves->size(); ++i) {
      CurveChannel channel;
      if (curves->size() > 1) channel.name = kChannelNames[i];
      if (pins) channel.pin = (*pins)[i];
      channel.levels = LevelsOf(*curves.Value()[i]);
      lane.channels.push_back(std::move(channel));
    }
    lanes.push_back(std::move(lane));
  }
  NumberEqualNames(lanes);
  return lanes;
}

}  // namespace velora::cli
