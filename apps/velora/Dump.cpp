// `velora dump`: the command stream of a chip file.
#include <nlohmann/json.hpp>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "Inputs.h"
#include "Json.h"
#include "SoundFile.h"
#include "audio/inspect/StreamWalker.h"
#include "platform/System.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

bool IsFrame(const StreamCommand& command) {
  return command.kind == CommandKind::kShortFrame || command.kind == CommandKind::kLongFrame;
}

std::string CommandText(const StreamCommand& command) {
  std::string line =
      PadLeft(std::to_string(command.fileOffset), 10) + PadLeft(std::to_string(command.size), 8) +
      PadLeft(std::to_string(command.position), 11) + PadLeft(std::to_string(command.length), 8) +
      "  " + PadRight(CommandKindName(command.kind), 12) +
      PadLeft(IsFrame(command) ? std::to_string(command.row) : "-", 3);
  if (command.event.present) {
    line += "  event " + std::to_string(command.event.action) + " (" +
            std::to_string(command.event.parameter) + ")";
    if (command.event.planesSize) {
      line += " + " + Counted(command.event.planesSize, "byte") + " of planes";
    }
  }
  return line + "\n";
}

Json CommandJson(const StreamCommand& command) {
  Json object;
  object["offset"] = command.fileOffset;
  object["size"] = command.size;
  object["kind"] = CommandKindName(command.kind);
  object["number"] = command.number;
  object["position"] = command.position;
  object["length"] = command.length;
  object["row"] = nullptr;
  if (IsFrame(command)) object["row"] = command.row;
  object["event"] = nullptr;
  if (command.event.present) {
    Json event;
    event["offset"] = command.event.offset;
    event["word"] = command.event.word;
    event["action"] = command.event.action;
    event["parameter"] = command.event.parameter;
    object["event"] = std::move(event);
  }
  return object;
}

std::string BreakText(const StreamWalker& walker) {
  return "stream breaks at offset " + std::to_string(walker.Offset()) + ": " +
         walker.GetStatus().Message();
}

/// One line a command, printed as it is read.
void PrintText(StreamWalker& walker, Console& console) {
  console.Print("    offset    size   position  length  command      row  event\n");
  StreamCommand command;
  while (!IsInterrupted() && walker.Next(command)) console.Print(CommandText(command));
}

void PrintJson(const std::string& path, const CommandStream& stream, StreamWalker& walker,
               Console& console) {
  Json object;
  object["path"] = path;
  object["format"] = stream.Place().grammar->name;
  object["rate"] = stream.SampleRate();
  object["stream"] = {{"offset", stream.Place().offset}, {"size", stream.Place().size}};
  auto commands = Json::array();
  StreamCommand command;
  while (!IsInterrupted() && walker.Next(command)) commands.push_back(CommandJson(command));
  object["commands"] = std::move(commands);
  object["error"] = nullptr;
  if (!walker.GetStatus()) object["error"] = BreakText(walker);
  console.Print(JsonText(object) + "\n");
}

ExitStatus RunDump(const Arguments& arguments, Console& console) {
  const std::string& path = arguments.Operands().front();
  const auto opened = OpenedInput::Open({path, path, {}});
  if (!opened) {
    console.Error(path, opened.Message());
    return ExitStatus::kInput;
  }
  const auto stream = CommandStream::Open(opened->GetPath());
  if (!stream) {
    console.Error(path, stream.Message());
    return ExitStatus::kInput;
  }
  StreamWalker walker = stream->Walk();
  if (arguments.Has("json")) {
    PrintJson(path, stream.Value(), walker, console);
  } else {
    PrintText(walker, console);
  }
  if (walker.GetStatus()) return ExitStatus::kDone;
  console.Error(path, BreakText(walker));
  return ExitStatus::kInput;
}

constexpr Option kOptions[] = {kJsonOption};
constexpr Operand kOperands[] = {{.name = "FILE", .help = "a chip file; - is standard input"}};
constexpr Example kExamples[] = {
    {"velora dump hello.MPM", "the commands with their places in file and sound"},
    {"velora dump hello.MPM | grep event", "only the commands that carry an event"},
};

}  // namespace

extern const Command kDumpCommand;
constinit const Command kDumpCommand = {
    .name = "dump",
    .summary = "print the command stream of a chip file",
    .operands = kOperands,
    .description =
        "Prints the stream one command a line: byte offset in the file, size in bytes, position "
        "of its first sample, length in samples, kind, row of the step table, and the event that "
        "it carries with its parameter in brackets.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunDump,
};

}  // namespace velora::cli
