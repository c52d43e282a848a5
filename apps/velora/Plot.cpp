// `velora plot`: a sound as a picture.
#include <charconv>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "FormatArgument.h"
#include "Inputs.h"
#include "PlotSound.h"
#include "SoundFile.h"
#include "audio/wavedata/WavData.h"
#include "platform/File.h"

namespace velora::cli {
namespace {

constexpr const char* kThemes[] = {"auto", "light", "dark"};

/// Seconds as a decimal number; false for anything else.
bool ParseSeconds(const std::string& text, double& seconds) {
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, seconds);
  return parsed.ec == std::errc() && parsed.ptr == end && seconds >= 0;
}

Status WritePicture(const std::string& svg, const std::string& target, bool replace,
                    Console& console) {
  if (target == "-") {
    console.Print(svg);
    return {};
  }
  return SaveAtomically(Path::Native(target), svg, {.flush = false, .replace = replace});
}

/// The file's name without its folders.
std::string LastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

ExitStatus RunPlot(const Arguments& arguments, Console& console) {
  const std::string& path = arguments.Operands().front();
  SoundPlotOptions options;
  options.title = path == "-" ? "standard input" : LastComponent(path);
  options.width = static_cast<double>(arguments.Number("width", 1200));
  options.height = static_cast<double>(arguments.Number("height", 220));
  options.theme = SvgThemeOf(arguments.Text("theme"));
  for (const auto& [name, value] :
       {std::pair{"from", &options.fromSeconds}, std::pair{"to", &options.toSeconds}}) {
    if (arguments.Has(name) && !ParseSeconds(arguments.Text(name), *value)) {
      console.Error({}, std::string("--") + name + ": '" + arguments.Text(name) +
                            "' is no number of seconds");
      return ExitStatus::kUsage;
    }
  }

  const auto opened = OpenedInput::Open({path, path, {}});
  if (!opened) {
    console.Error(path, opened.Message());
    return ExitStatus::kInput;
  }
  const SampleView view = arguments.Has("source") ? SampleView::kSource : SampleView::kDecoded;
  const auto file = OpenInputSound(opened->GetPath(), LoadScope::kAll, view);
  if (!file) {
    console.Error(path, file.Message());
    return ExitStatus::kInput;
  }
  const C_WavData& sound = *file.Value()->Sound();
  if (sound.FrameCount() == 0) {
    console.Error(path, "holds no samples to draw");
    return ExitStatus::kInput;
  }
  options.formatName = FormatName(file.Value()->GetSourceKind());

  const std::string target = arguments.Has("output") ? arguments.Text("output") : path + ".svg";
  const bool replace = arguments.Has("force");
  const Status written = WritePicture(PlotSound(sound, options), target, replace, console);
  if (written) return ExitStatus::kDone;
  console.Error(target, written.Message());
  return ExitStatus::kOutput;
}

constexpr Option kOptions[] = {
    kOutputOption,
    kForceOption,
    {.name = "source", .help = "Draw the source samples of a chip file, not what the chip plays"},
    {.name = "theme",
     .value = "THEME",
     .kind = ValueKind::kChoice,
     .help = "Background: as the viewer prefers, light or dark",
     .choices = kThemes},
    {.name = "from", .value = "SECONDS", .kind = ValueKind::kText, .help = "Begin here"},
    {.name = "to", .value = "SECONDS", .kind = ValueKind::kText, .help = "End here"},
    {.name = "width",
     .value = "PIXELS",
     .kind = ValueKind::kNumber,
     .help = "Width of the picture; without it, 1200",
     .least = 300,
     .most = 20000},
    {.name = "height",
     .value = "PIXELS",
     .kind = ValueKind::kNumber,
     .help = "Height of each channel; without it, 220",
     .least = 40,
     .most = 5000},
};
constexpr Operand kOperands[] = {{.name = "FILE", .help = "a sound file; - is standard input"}};
constexpr Example kExamples[] = {
    {"velora plot hello.wav -o hello.svg", "the whole sound"},
    {"velora plot hello.MPM --from 0.5 --to 0.75 -o -", "a quarter of a second, to a pipe"},
};

}  // namespace

extern const Command kPlotCommand;
constinit const Command kPlotCommand = {
    .name = "plot",
    .summary = "draw a sound with its events and silence",
    .operands = kOperands,
    .description =
        "Writes an SVG picture: for each pixel column the lowest and the highest sample, and "
        "within them the mean level; the silence shaded; each event as a line with a label of "
        "its type and parameter; times below and levels at the side, full scale being 1.\n\n"
        "Without -o the picture goes beside the sound, with \".svg\" added to its name.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunPlot,
};

}  // namespace velora::cli
