// `velora events`: lists and edits the events and silence regions of a sound.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "EventText.h"
#include "Inputs.h"
#include "Json.h"
#include "SaveSound.h"
#include "SoundFile.h"
#include "audio/wavedata/WavData.h"
#include "platform/Directory.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr uint64_t kLargestImport = uint64_t{256} << 20;  // bytes
constexpr uint32_t kWaveId = 2;
constexpr uint16_t kTagPcm = 1;
constexpr const char* kForms[] = {"json", "csv", "labels"};

/// A step that ends the command, with the status to end with.
struct Failure {
  ExitStatus status = ExitStatus::kDone;
  std::string subject;
  std::string message;
};
using Step = std::optional<Failure>;

/// What the options say should change, before any file is read.
struct Edit {
  bool clearEvents = false;
  bool clearSilence = false;
  struct Pattern {
    uint32_t sample = 0;
    std::optional<int32_t> type;
    std::optional<int32_t> param;
    std::string text;
  };
  std::vector<Pattern> removals;
  std::vector<RegionRow> silenceRemovals;
  EventList additions;

  bool Any() const {
    return clearEvents || clearSilence || !removals.empty() || !silenceRemovals.empty() ||
           !additions.events.empty() || !additions.regions.empty();
  }
};

// ---- the options ------------------------------------------------------------

Status ReadAddition(const std::string& text, EventList& list) {
  const auto fields = SplitFields(text, ',');
  EventRow row;
  if (fields.size() != 3) return Status::Error("'" + text + "' is not SAMPLE,TYPE,PARAM");
  if (Status status = ParseField(fields[0], "sample", &row.sample); !status) return status;
  if (Status status = ParseField(fields[1], "type", &row.type); !status) return status;
  if (Status status = ParseField(fields[2], "param", &row.param); !status) return status;
  list.events.push_back(row);
  return {};
}

Status ReadSilence(const std::string& text, EventList& list) {
  const auto fields = SplitFields(text, ',');
  RegionRow row;
  if (fields.size() != 2) return Status::Error("'" + text + "' is not START,LENGTH");
  if (Status status = ParseField(fields[0], "start", &row.start); !status) return status;
  if (Status status = ParseField(fields[1], "length", &row.length); !status) return status;
  list.regions.push_back(row);
  return {};
}

Status ReadRemoval(const std::string& text, std::vector<Edit::Pattern>& removals) {
  const auto fields = SplitFields(text, ',');
  Edit::Pattern pattern;
  pattern.text = text;
  if (fields.size() > 3) return Status::Error("'" + text + "' is not SAMPLE[,TYPE[,PARAM]]");
  if (Status status = ParseField(fields[0], "sample", &pattern.sample); !status) return status;
  int32_t number = 0;
  if (fields.size() > 1) {
    if (Status status = ParseField(fields[1], "type", &number); !status) return status;
    pattern.type = number;
  }
  if (fields.size() > 2) {
    if (Status status = ParseField(fields[2], "param", &number); !status) return status;
    pattern.param = number;
  }
  removals.push_back(std::move(pattern));
  return {};
}

Status ReadEdit(const Arguments& arguments, Edit& edit) {
  edit.clearEvents = arguments.Has("clear");
  edit.clearSilence = arguments.Has("clear-silence");
  for (const std::string& text : arguments.Texts("remove")) {
    if (Status status = ReadRemoval(text, edit.removals); !status) return status;
  }
  for (const std::string& text : arguments.Texts("remove-silence")) {
    RegionRow row;
    if (Status status = ParseField(text, "start", &row.start); !status) return status;
    edit.silenceRemovals.push_back(row);
  }
  for (const std::string& text : arguments.Texts("add")) {
    if (Status status = ReadAddition(text, edit.additions); !status) return status;
  }
  for (const std::string& text : arguments.Texts("add-silence")) {
    if (Status status = ReadSilence(text, edit.additions); !status) return status;
  }
  return {};
}

/// The form of an imported or exported text: --as, else the file's name.
Result<EventForm> ChooseForm(const Arguments& arguments, const std::string& path) {
  if (!arguments.Has("as")) return FormOfName(path);
  const auto* form = std::ranges::find(kForms, arguments.Text("as"));
  return static_cast<EventForm>(form - std::begin(kForms));
}

// ---- the steps --------------------------------------------------------------

Step Import(const Arguments& arguments, uint32_t rate, Console& console, Edit& edit) {
  for (const std::string& path : arguments.Texts("import")) {
    const auto form = ChooseForm(arguments, path);
    if (!form) return Failure{ExitStatus::kUsage, path, form.Message()};
    const auto opened = OpenedInput::Open({path, path, {}});
    if (!opened) return Failure{ExitStatus::kInput, path, opened.Message()};
    const auto text = ReadWholeText(opened->GetPath(), kLargestImport);
    if (!text) return Failure{ExitStatus::kInput, path, text.Message()};
    size_t skipped = 0;
    if (Status parsed = ParseEvents(text.Value(), form.Value(), rate, edit.additions, &skipped);
        !parsed) {
      return Failure{ExitStatus::kInput, path, parsed.Message()};
    }
    if (skipped) {
      console.Warning(path, Counted(skipped, "label") + " that stand for no event passed over");
    }
  }
  return {};
}

/// Removals first, then additions. A removal that meets nothing is an answer of no.
Step Apply(const Edit& edit, EventList& list) {
  if (edit.clearEvents) list.events.clear();
  if (edit.clearSilence) list.regions.clear();
  for (const Edit::Pattern& pattern : edit.removals) {
    const size_t removed = std::erase_if(list.events, [&pattern](const EventRow& row) {
      return row.sample == pattern.sample && (!pattern.type || row.type == *pattern.type) &&
             (!pattern.param || row.param == *pattern.param);
    });
    if (!removed) return Failure{ExitStatus::kNo, "", "there is no event " + pattern.text};
  }
  for (const RegionRow& removal : edit.silenceRemovals) {
    const size_t removed = std::erase_if(
        list.regions, [&removal](const RegionRow& row) { return row.start == removal.start; });
    if (!removed) {
      return Failure{ExitStatus::kNo, "",
                     "there is no silence at " + std::to_string(removal.start)};
    }
  }
  const EventList& added = edit.additions;
  list.events.insert(list.events.end(), added.events.begin(), added.events.end());
  list.regions.insert(list.regions.end(), added.regions.begin(), added.regions.end());
  return {};
}

void WarnOfPositions(const std::string& path, const EventList& list, uint32_t frames,
                     Console& console) {
  const auto behind = static_cast<size_t>(std::ranges::count_if(
      list.events, [frames](const EventRow& e) { return e.sample >= frames; }));
  if (behind) {
    console.Warning(path, Counted(behind, "event") + " behind the end of the sound, which has " +
                              Counted(frames, "frame"));
  }
}

std::string EventsTextJson(const std::string& path, const C_WavFile& file) {
  const C_WavData& sound = *file.Sound();
  Json object;
  object["path"] = path;
  object["format"] = FormatJson(file.GetSourceKind());
  object["rate"] = sound.Info().GetSampleRate();
  object["frames"] = sound.Info().GetFrameCount();
  object["events"] = EventsJson(sound);
  object["regions"] = RegionsJson(sound);
  return JsonText(object) + "\n";
}

std::string Listing(const C_WavData& sound) {
  std::string text;
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    text += "event    " + PadLeft(std::to_string(event->GetSample()), 10) +
            PadLeft(std::to_string(event->GetTimeMs()), 9) + " ms  type " +
            std::to_string(event->GetType()) + "  param " + std::to_string(event->GetParam()) +
            "\n";
  }
  for (const C_ActionSilenceRegion* region : sound.EventMgr().Regions()) {
    text += "silence  " + PadLeft(std::to_string(region->GetStart()), 10) + "  length " +
            std::to_string(region->GetLength()) + "\n";
  }
  return text;
}

std::string TextIn(EventForm form, const std::string& path, const C_WavFile& file) {
  const C_WavData& sound = *file.Sound();
  switch (form) {
    case EventForm::kJson:
      return EventsTextJson(path, file);
    case EventForm::kCsv:
      return MakeCsv(ListEvents(sound.EventMgr()));
    case EventForm::kLabels:
      return MakeLabels(ListEvents(sound.EventMgr()), sound.Info().GetSampleRate());
  }
  return {};
}

Step Export(const Arguments& arguments, const std::string& path, const C_WavFile& file,
            Console& console) {
  if (!arguments.Has("export")) return {};
  const std::string& target = arguments.Text("export");
  const auto form = ChooseForm(arguments, target);
  if (!form) return Failure{ExitStatus::kUsage, target, form.Message()};
  const std::string text = TextIn(form.Value(), path, file);
  if (arguments.Has("dry-run")) {
    console.Print(path + " -> " + target + "\n");
    return {};
  }
  if (target == "-") {
    console.Print(text);
    return {};
  }
  const SaveOptions options = {!arguments.Has("no-flush"), arguments.Has("force"), nullptr};
  if (Status saved = SaveAtomically(Path::Native(target), text, options); !saved) {
    return Failure{ExitStatus::kOutput, target, saved.Message()};
  }
  return {};
}

/// Writes the edited sound over its own file, or where -o says.
Step Save(const Arguments& arguments, const std::string& path, const C_WavFile& file,
          const Path& loadedFrom, Console& console) {
  const bool elsewhere = arguments.Has("output");
  const std::string& target = elsewhere ? arguments.Text("output") : path;
  const bool force = !elsewhere || arguments.Has("force");
  for (const std::string& loss : ListDropped(file, loadedFrom, file.GetSourceKind())) {
    console.Warning(path, loss);
  }
  if (file.GetSourceKind() == kWaveId && file.FormatTag() != kTagPcm) {
    console.Warning(path, "not kept: the ADPCM form; the samples are written as PCM");
  }
  if (arguments.Has("dry-run")) {
    console.Print(path + " -> " + target + "\n");
    return {};
  }
  const SaveOptions options = {!arguments.Has("no-flush"), force, nullptr};
  const Status saved = SaveSound(*file.Sound(), file.GetSourceKind(), target, options);
  if (!saved) return Failure{ExitStatus::kOutput, target, saved.Message()};
  console.Note(path + " -> " + target);
  return {};
}

Step Run(const Arguments& arguments, Edit& edit, Console& console) {
  const std::string& path = arguments.Operands().front();
  const auto opened = OpenedInput::Open({path, path, {}});
  if (!opened) return Failure{ExitStatus::kInput, path, opened.Message()};
  const bool edits = edit.Any() || arguments.Has("import");
  const LoadScope scope = edits ? LoadScope::kAll : LoadScope::kMetadata;
  const auto loaded = OpenInputSound(opened->GetPath(), scope, SampleView::kSource);
  if (!loaded) return Failure{ExitStatus::kInput, path, loaded.Message()};
  const C_WavFile& file = *loaded.Value();
  C_WavData& sound = *file.Sound();
  if (Step step = Import(arguments, sound.Info().GetSampleRate(), console, edit)) return step;

  if (edits) {
    KeepWriteSettings(file);
    EventList list = ListEvents(sound.EventMgr());
    if (Step step = Apply(edit, list)) {
      step->subject = path;
      return step;
    }
    WarnOfPositions(path, list, sound.Info().GetFrameCount(), console);
    StoreEvents(list, *sound.GetEventMgr());
    // A chip file's writer looks for silence anew where no region says where it is.
    if (list.regions.empty() && edit.clearSilence) sound.SetSilenceSegments(nullptr);
  }
  if (Step step = Export(arguments, path, file, console)) return step;
  if (edits) {
    if (Step step = Save(arguments, path, file, opened->GetPath(), console)) return step;
  }
  if (arguments.Has("json")) {
    console.Print(EventsTextJson(path, file));
  } else if (!edits && !arguments.Has("export")) {
    console.Print(Listing(sound));
  }
  return {};
}

/// Wrong usage that no single option shows.
Status CheckTogether(const Arguments& arguments, bool edits) {
  const bool stdoutTaken = arguments.Text("output") == "-" || arguments.Text("export") == "-";
  if (arguments.Has("output") && !edits) return Status::Error("--output needs an edit to write");
  if (edits && arguments.Operands().front() == "-" && !arguments.Has("output")) {
    return Status::Error("standard input cannot be edited in place; --output says where to write");
  }
  if (stdoutTaken &&
      (arguments.Has("json") || arguments.Text("output") == arguments.Text("export"))) {
    return Status::Error("only one thing can go to standard output");
  }
  return {};
}

ExitStatus RunEvents(const Arguments& arguments, Console& console) {
  Edit edit;
  if (Status status = ReadEdit(arguments, edit); !status) {
    console.Error("events", status.Message());
    return ExitStatus::kUsage;
  }
  const bool edits = edit.Any() || arguments.Has("import");
  if (Status status = CheckTogether(arguments, edits); !status) {
    console.Error("events", status.Message());
    return ExitStatus::kUsage;
  }
  if (const Step failure = Run(arguments, edit, console)) {
    console.Error(failure->subject, failure->message);
    return failure->status;
  }
  return arguments.Has("strict") && console.Warnings() ? ExitStatus::kNo : ExitStatus::kDone;
}

constexpr Option kOptions[] = {
    {.name = "add",
     .letter = 'a',
     .value = "SAMPLE,TYPE,PARAM",
     .kind = ValueKind::kText,
     .help = "Add an event",
     .repeatable = true},
    {.name = "remove",
     .value = "SAMPLE[,TYPE[,PARAM]]",
     .kind = ValueKind::kText,
     .help = "Remove all events at the sample, or those of them with the type and parameter",
     .repeatable = true},
    {.name = "add-silence",
     .value = "START,LENGTH",
     .kind = ValueKind::kText,
     .help = "Add a silence region, in samples",
     .repeatable = true},
    {.name = "remove-silence",
     .value = "START",
     .kind = ValueKind::kText,
     .help = "Remove the silence regions that start at the sample",
     .repeatable = true},
    {.name = "clear", .help = "Remove all events"},
    {.name = "clear-silence", .help = "Remove all silence regions"},
    {.name = "import",
     .letter = 'i',
     .value = "FILE",
     .kind = ValueKind::kPath,
     .help = "Add what FILE lists: .json, .csv, or .txt for a label track",
     .repeatable = true},
    {.name = "export",
     .letter = 'e',
     .value = "FILE",
     .kind = ValueKind::kPath,
     .help = "Write the list, edited, to FILE: .json, .csv, or .txt for a label track; - is "
             "standard output and needs --as"},
    {.name = "as",
     .value = "FORM",
     .kind = ValueKind::kChoice,
     .help = "The form of imports and exports, whatever their names",
     .choices = kForms},
    {.name = "output",
     .letter = 'o',
     .value = "FILE",
     .kind = ValueKind::kPath,
     .help = "Write the edited sound to FILE, in its own format; - is standard output"},
    {.name = "force", .letter = 'f', .help = "Overwrite an --output or --export that exists"},
    kDryRunOption,
    kStrictOption,
    kNoFlushOption,
    kJsonOption,
};
constexpr Operand kOperands[] = {{.name = "FILE", .help = "a sound file; - is standard input"}};
constexpr Example kExamples[] = {
    {"velora events hello.MPM", "list them"},
    {"velora events hello.wav --add 800,12,5 --remove 1600", "edit the file in place"},
    {"velora events hello.wav --export hello.txt", "a label track for an audio editor"},
    {"velora events hello.wav --clear --import hello.txt -o new.wav", "and back"},
};

}  // namespace

extern const Command kEventsCommand;
constinit const Command kEventsCommand = {
    .name = "events",
    .summary = "list and edit action events and silence regions",
    .operands = kOperands,
    .description =
        "Without an edit, lists events and silence regions in order. With one, the file is "
        "replaced as a whole by the edited sound, or stays as it is when anything fails; -o "
        "writes elsewhere. Removals come first, then additions and imports.\n\n"
        "A chip file is written again from its stored source samples, which an edit of events "
        "leaves bit for bit. When no silence region is left in it, silence is looked for anew.\n\n"
        "CSV has the heading kind,sample,length,type,param. A label track has start and end in "
        "seconds and the label of a wave file, (TYPE,PARAM) or SILENCE, with tabs between.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunEvents,
};

}  // namespace velora::cli
