// `velora curve`: levels of outputs over time, as numbers, as a picture and as the
// events of a sound.
#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "CurveJson.h"
#include "CurveKinds.h"
#include "CurveSound.h"
#include "CurveText.h"
#include "FormatArgument.h"
#include "PlotCurves.h"
#include "SaveSound.h"
#include "Spelling.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

constexpr uint64_t kLargestDescription = uint64_t{16} << 20;  // bytes
constexpr const char* kForms[] = {"csv", "json", "raw", "svg"};
constexpr const char* kThemes[] = {"auto", "light", "dark"};
enum class Form { kCsv, kJson, kRaw, kSvg };

/// A step that ends the command, with the status to end with.
struct Failure {
  ExitStatus status = ExitStatus::kDone;
  std::string subject;
  std::string message;
};
using Step = std::optional<Failure>;

Failure Usage(const std::string& message) { return {ExitStatus::kUsage, "curve", message}; }

/// All that one run works on.
struct Run {
  CurveDocument document;
  std::string description;           ///< path of the JSON file; empty for a kind
  std::optional<CurveSound> wave;    ///< of --wave or the description
  std::optional<CurveSound> target;  ///< of --into
  std::string waveName;
  CurveSetting setting;
  std::vector<CurveLane> lanes;

  /// The sound that curves follow, or null.
  const CurveSound* Followed() const { return wave ? &*wave : target ? &*target : nullptr; }
};

std::string LastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// ---- what is asked for ------------------------------------------------------

/// Options of the run as a whole that also stand among the keys of a curve.
bool IsSharedKey(const CurveKey& key) {
  const std::string_view name = key.name;
  return name == "sampleFreq" || name == "resolution";
}

Step ReadKind(const Arguments& arguments, const CurveKind& kind, Run& run) {
  CurveRequest request;
  request.kind = &kind;
  for (const CurveKey& key : kCurveKeys) {
    if (!key.option || !arguments.Has(key.option)) continue;
    const std::string option = std::string("--") + key.option;
    if (Status takes = CheckTakesKey(kind, CurveRole::kLane, key.name); !takes) {
      return Usage(option + ": " + takes.Message());
    }
    const bool flag = key.kind == CurveValueKind::kFlag;
    if (Status added = request.fields.Add(key, flag ? "true" : arguments.Text(key.option));
        !added) {
      return Usage(option + ": " + added.Message());
    }
  }
  run.document.curves.push_back(std::move(request));
  return {};
}

/// Whether a word that is no kind can be meant for a file.
bool MayBeFile(const std::string& word) {
  return word == "-" || word.find_first_of("./") != std::string::npos ||
         FileExists(Path::Native(word));
}

Step ReadDescription(const Arguments& arguments, const std::string& path, Run& run) {
  for (const CurveKey& key : kCurveKeys) {
    if (key.option && arguments.Has(key.option) && !IsSharedKey(key)) {
      return Usage("--" + std::string(key.option) + " belongs to a curve, and " + path +
                   " describes the curves");
    }
  }
  const auto opened = OpenedInput::Open({path, path, {}});
  if (!opened) return Failure{ExitStatus::kInput, path, opened.Message()};
  const auto text = ReadWholeText(opened->GetPath(), kLargestDescription);
  if (!text) return Failure{ExitStatus::kInput, path, text.Message()};
  auto document = ParseCurveDocument(text.Value());
  if (!document) return Failure{ExitStatus::kInput, path, document.Message()};
  run.document = std::move(document.Value());
  run.description = path;
  return {};
}

Step ReadRequest(const Arguments& arguments, Run& run) {
  if (arguments.Operands().empty()) {
    return Usage("CURVE is missing: a kind of curve (--kinds lists them) or a JSON file");
  }
  const std::string& word = arguments.Operands().front();
  const CurveKind* kind = FindCurveKind(word);
  if (kind) return ReadKind(arguments, *kind, run);
  if (!MayBeFile(word))
    return Usage("there is no file of that name, and " + NoSuchKind(word).Message());
  return ReadDescription(arguments, word, run);
}

// ---- the sounds -------------------------------------------------------------

/// The path of the sound to follow: of the option, else of the description, which
/// names it as seen from its own folder. Empty for none.
std::string WavePath(const Arguments& arguments, const Run& run) {
  if (arguments.Has("wave")) return arguments.Text("wave");
  const std::string& wave = run.document.wave;
  if (wave.empty() || wave.front() == '/' || run.description == "-") return wave;
  return run.description.substr(0, run.description.rfind('/') + 1) + wave;
}

Step OpenSounds(const Arguments& arguments, Run& run) {
  const std::string wave = WavePath(arguments, run);
  if (!wave.empty()) {
    auto opened = CurveSound::Open(wave, SampleView::kDecoded);
    if (!opened) return Failure{ExitStatus::kInput, wave, opened.Message()};
    run.wave.emplace(std::move(opened.Value()));
    run.waveName = LastComponent(wave);
  }
  if (arguments.Has("into")) {
    const std::string& path = arguments.Text("into");
    auto opened = CurveSound::Open(path, SampleView::kSource);
    if (!opened) return Failure{ExitStatus::kInput, path, opened.Message()};
    run.target.emplace(std::move(opened.Value()));
  }
  return {};
}

/// Rate, samples and grid; numbers of the command line go before the description's.
Step SettleSetting(const Arguments& arguments, Run& run) {
  const CurveDocument& document = run.document;
  CurveSetting& setting = run.setting;
  const auto number = [&arguments](const char* option, std::optional<uint32_t> written,
                                   uint32_t otherwise) {
    const int64_t fallback = written ? *written : otherwise;
    return static_cast<uint32_t>(arguments.Number(option, fallback));
  };
  setting.rate = number("rate", document.rate, 0);
  setting.sampleFreq = number("sample-freq", document.sampleFreq, setting.sampleFreq);
  setting.resolution = number("resolution", document.resolution, setting.resolution);
  const CurveSound* sound = run.Followed();
  if (!sound) return {};
  if (setting.rate != 0 && setting.rate != sound->Rate()) {
    return Usage("the rate is given as " + std::to_string(setting.rate) + ", but the sound has " +
                 std::to_string(sound->Rate()) + " samples a second");
  }
  setting.rate = sound->Rate();
  setting.hasSound = true;
  setting.sound = sound->Mono();
  if (run.target && run.target->Rate() != setting.rate) {
    return Failure{ExitStatus::kInput, arguments.Text("into"),
                   "has " + std::to_string(run.target->Rate()) +
                       " samples a second, but the sound that the curves follow " +
                       std::to_string(setting.rate)};
  }
  return {};
}

// ---- the levels -------------------------------------------------------------

/// Leaves the lanes and channels that --only names.
Step KeepOnly(const Arguments& arguments, std::vector<CurveLane>& lanes) {
  if (!arguments.Has("only")) return {};
  const auto& wanted = arguments.Texts("only");
  const auto isWanted = [&wanted](const std::string& name) {
    return std::ranges::find(wanted, name) != wanted.end();
  };
  std::vector<std::string> known;
  for (const CurveLane& lane : lanes) {
    known.push_back(lane.name);
    for (const CurveChannel& channel : lane.channels) known.push_back(lane.ColumnName(channel));
  }
  for (const std::string& name : wanted) {
    if (std::ranges::find(known, name) != known.end()) continue;
    std::vector<const char*> words;
    for (const std::string& word : known) words.push_back(word.c_str());
    return Usage("--only: there is no curve '" + name + "'" + DidYouMean(name, words));
  }
  for (CurveLane& lane : lanes) {
    if (isWanted(lane.name)) continue;
    std::erase_if(lane.channels,
                  [&](const CurveChannel& channel) { return !isWanted(lane.ColumnName(channel)); });
  }
  std::erase_if(lanes, [](const CurveLane& lane) { return lane.channels.empty(); });
  return {};
}

Step MakeLanes(const Arguments& arguments, Run& run) {
  auto lanes = MakeCurveLanes(run.document.curves, run.setting);
  if (!lanes) {
    if (run.description.empty()) return Usage(lanes.Message());
    return Failure{ExitStatus::kInput, run.description, lanes.Message()};
  }
  run.lanes = std::move(lanes.Value());
  return KeepOnly(arguments, run.lanes);
}

// ---- rendering --------------------------------------------------------------

Result<Form> ChooseForm(const Arguments& arguments) {
  if (arguments.Has("as")) {
    const auto* form = std::ranges::find(kForms, arguments.Text("as"));
    return static_cast<Form>(form - std::begin(kForms));
  }
  if (arguments.Has("json")) return Form::kJson;
  if (!arguments.Has("output") || arguments.Text("output") == "-") return Form::kCsv;
  const std::string_view extension = ExtensionOf(arguments.Text("output"));
  if (extension == ".csv") return Form::kCsv;
  if (extension == ".json") return Form::kJson;
  if (extension == ".raw" || extension == ".bin") return Form::kRaw;
  if (extension == ".svg") return Form::kSvg;
  return Status::Error(
      "the name does not end in .csv, .json, .raw, .bin or .svg; --as names the "
      "form");
}

std::string Draw(const Arguments& arguments, const Run& run) {
  CurvePlotOptions options;
  options.title = !run.document.title.empty() ? run.document.title
                  : run.description.empty()   ? run.lanes.front().name
                  : run.description == "-"    ? "standard input"
                                              : LastComponent(run.description);
  options.soundName = run.waveName;
  options.width = static_cast<double>(arguments.Number("width", 1200));
  options.laneHeight = static_cast<double>(arguments.Number("height", 96));
  options.rate = run.setting.rate;
  options.theme = SvgThemeOf(arguments.Text("theme"));
  return PlotCurves(run.lanes, run.wave ? &run.wave->Sound() : nullptr, options);
}

Result<std::string> Render(const Arguments& arguments, const Run& run, Form form) {
  switch (form) {
    case Form::kCsv:
      return CurvesCsv(run.lanes);
    case Form::kJson:
      return CurvesJson(run.lanes, run.setting.rate);
    case Form::kRaw:
      return CurvesRaw(run.lanes);
    case Form::kSvg:
      return Draw(arguments, run);
  }
  return std::string();
}

Step WriteRendering(const Arguments& arguments, const Run& run, Form form, Console& console) {
  const std::string target = arguments.Has("output") ? arguments.Text("output") : "-";
  const auto text = Render(arguments, run, form);
  if (!text) return Usage(text.Message());
  if (target == "-") {
    console.Print(text.Value());
    return {};
  }
  if (arguments.Has("dry-run")) {
    console.Print(arguments.Operands().front() + " -> " + target + "\n");
    return {};
  }
  const SaveOptions options = {!arguments.Has("no-flush"), arguments.Has("force"), nullptr};
  if (Status saved = SaveAtomically(Path::Native(target), text.Value(), options); !saved) {
    return Failure{ExitStatus::kOutput, target, saved.Message()};
  }
  return {};
}

// ---- into a sound -----------------------------------------------------------

void WarnOfPositions(const std::string& path, std::span<const PinCourse> courses, uint64_t frames,
                     Console& console) {
  uint64_t behind = 0;
  for (const PinCourse& course : courses) {
    behind += static_cast<uint64_t>(std::ranges::count_if(
        course.events, [frames](const EventRow& event) { return event.sample >= frames; }));
  }
  if (behind > 0) {
    console.Warning(path, Counted(behind, "event") + " behind the end of the sound, which has " +
                              Counted(frames, "frame"));
  }
}

size_t CountPins(std::span<const PinCourse> courses) {
  std::set<uint8_t> pins;
  for (const PinCourse& course : courses) pins.insert(course.pin);
  return pins.size();
}

Step WriteEvents(const Arguments& arguments, const Run& run, Console& console) {
  const std::string& path = arguments.Text("into");
  const auto courses = MakePinCourses(run.lanes, run.setting.rate);
  if (!courses) return Usage(courses.Message());
  const CurveSound& sound = *run.target;
  WarnOfPositions(path, courses.Value(), sound.Frames(), console);
  for (const std::string& loss : sound.Losses()) console.Warning(path, loss);
  const PinChange change = PutIntoSound(courses.Value(), sound);

  const bool elsewhere = arguments.Has("output");
  const std::string& target = elsewhere ? arguments.Text("output") : path;
  if (arguments.Has("dry-run")) {
    console.Print(path + " -> " + target + "\n");
  } else {
    const SaveOptions options = {!arguments.Has("no-flush"), !elsewhere || arguments.Has("force"),
                                 nullptr};
    const Status saved = SaveSound(sound.Sound(), sound.File().GetSourceKind(), target, options);
    if (!saved) return Failure{ExitStatus::kOutput, target, saved.Message()};
  }
  console.Summary(target + ": " + Counted(change.added, "event") + " on " +
                  Counted(CountPins(courses.Value()), "pin") + ", in place of " +
                  std::to_string(change.replaced));
  return {};
}

/// Wrong usage that no single option shows.
Step CheckTogether(const Arguments& arguments) {
  const bool into = arguments.Has("into");
  if (into && (arguments.Has("as") || arguments.Has("json"))) {
    return Usage("--into writes events; levels and pictures are another run");
  }
  if (into && arguments.Text("into") == "-" && !arguments.Has("output")) {
    return Usage("standard input cannot be edited in place; --output says where to write");
  }
  if (arguments.Has("json") && arguments.Has("as") && arguments.Text("as") != "json") {
    return Usage("--json and --as " + arguments.Text("as") + " contradict each other");
  }
  const int readers = (!arguments.Operands().empty() && arguments.Operands().front() == "-") +
                      (arguments.Text("wave") == "-") + (arguments.Text("into") == "-");
  if (readers > 1) return Usage("only one thing can come from standard input");
  return {};
}

Step RunSteps(const Arguments& arguments, Console& console) {
  if (Step together = CheckTogether(arguments)) return together;
  const auto form = ChooseForm(arguments);
  if (!arguments.Has("into") && !form) {
    return Failure{ExitStatus::kUsage, arguments.Text("output"), form.Message()};
  }
  Run run;
  if (Step request = ReadRequest(arguments, run)) return request;
  if (Step sounds = OpenSounds(arguments, run)) return sounds;
  if (Step setting = SettleSetting(arguments, run)) return setting;
  if (Step lanes = MakeLanes(arguments, run)) return lanes;
  if (arguments.Has("into")) return WriteEvents(arguments, run, console);
  return WriteRendering(arguments, run, form.Value(), console);
}

ExitStatus RunCurve(const Arguments& arguments, Console& console) {
  if (arguments.Has("kinds")) {
    console.Print(CurveKindsText());
    return ExitStatus::kDone;
  }
  if (const Step failure = RunSteps(arguments, console)) {
    console.Error(failure->subject, failure->message);
    return failure->status;
  }
  return arguments.Has("strict") && console.Warnings() ? ExitStatus::kNo : ExitStatus::kDone;
}

// ---- the tables -------------------------------------------------------------

constexpr Option kRunOptions[] = {
    kOutputOption,
    {.name = "as",
     .value = "FORM",
     .kind = ValueKind::kChoice,
     .help = "What to write, whatever the output's name; to standard output, csv without it",
     .choices = kForms},
    {.name = "json", .help = "The same as --as json"},
    {.name = "wave",
     .letter = 'w',
     .value = "SOUND",
     .kind = ValueKind::kPath,
     .help = "The sound that curves follow and pictures show; tells the rate and the end"},
    {.name = "into",
     .value = "SOUND",
     .kind = ValueKind::kPath,
     .help = "Write the curves into this sound as events of their pins, in place or to --output"},
    {.name = "only",
     .value = "NAME",
     .kind = ValueKind::kText,
     .help = "Write this curve of a description, or one channel of a colour, as run.red",
     .repeatable = true},
    {.name = "rate",
     .value = "HZ",
     .kind = ValueKind::kNumber,
     .help = "Samples a second where no sound tells it",
     .least = 1,
     .most = 10'000'000},
    {.name = "kinds", .help = "List the kinds of curves with what each takes"},
    kForceOption,
    kDryRunOption,
    kStrictOption,
    kNoFlushOption,
    {.name = "theme",
     .value = "THEME",
     .kind = ValueKind::kChoice,
     .help = "Background of a picture: as the viewer prefers, light or dark",
     .choices = kThemes},
    {.name = "width",
     .value = "PIXELS",
     .kind = ValueKind::kNumber,
     .help = "Width of a picture; without it, 1200",
     .least = 300,
     .most = 20000},
    {.name = "height",
     .value = "PIXELS",
     .kind = ValueKind::kNumber,
     .help = "Height of each curve in a picture; without it, 96",
     .least = 24,
     .most = 5000},
};

constexpr size_t kCurveOptionCount = static_cast<size_t>(
    std::ranges::count_if(kCurveKeys, [](const CurveKey& key) { return key.option != nullptr; }));

/// An option for each key of a curve, then those of the run.
constexpr auto MakeOptions() {
  std::array<Option, kCurveOptionCount + std::size(kRunOptions)> options{};
  size_t next = 0;
  for (const CurveKey& key : kCurveKeys) {
    if (!key.option) continue;
    Option& option = options[next++];
    option.name = key.option;
    option.value = key.placeholder;
    option.help = key.help;
    if (key.kind == CurveValueKind::kFlag) continue;
    const bool number = key.kind == CurveValueKind::kInteger;
    option.kind = number ? ValueKind::kNumber : ValueKind::kText;
    option.least = key.least;
    option.most = key.most;
  }
  for (const Option& option : kRunOptions) options[next++] = option;
  return options;
}

constexpr auto kOptions = MakeOptions();
constexpr Operand kOperands[] = {
    {.name = "CURVE",
     .help = "a kind of curve, as sine, or a JSON file that describes curves; - is standard input",
     .required = false}};
constexpr Example kExamples[] = {
    {"velora curve sine --end 7999 --rate 8000 --freq 12.5 --low 20",
     "a level for each sample, as CSV"},
    {"velora curve demo.json -o demo.svg", "a picture of several curves under their sound"},
    {"velora curve envelope --wave speech.wav -o mouth.svg", "a curve that follows a sound"},
    {"velora curve envelope --pin 0 --into speech.wav", "and as events of output 0 in that sound"},
};

}  // namespace

extern const Command kCurveCommand;
constinit const Command kCurveCommand = {
    .name = "curve",
    .summary = "draw control curves and turn them into events of a sound",
    .operands = kOperands,
    .description =
        "A curve gives the level of an output, 0 to 255, for each sample from its start to its "
        "end. It is described by its kind and options, or with others in a JSON file. Levels go "
        "out as CSV, JSON or raw bytes; a picture shows the curves in lanes under their sound.\n\n"
        "With --into they become events: --sample-freq times a second the level is taken, scaled "
        "so that 255 is --resolution, and an event of action 253 less the pin is put where it "
        "begins and wherever it changes. It replaces the pin's events from the curve's start to "
        "its end. The sound is saved as a whole, or stays as it is when anything fails.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunCurve,
};

}  // namespace velora::cli
