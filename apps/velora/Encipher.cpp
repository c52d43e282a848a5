// `velora encipher` and `velora decipher`.
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "EncipherText.h"
#include "Inputs.h"
#include "Json.h"
#include "foundation/EncryptNewPC1.h"
#include "foundation/EncryptReader.h"
#include "platform/Directory.h"
#include "platform/File.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;
using Key = std::optional<std::string>;

/// One enciphering or deciphering: from `source` to `target`.
using Operation = EncryptCode (*)(const Arguments& arguments, const Path& source,
                                  const Path& target, const Key& key);

EncryptCode Encipher(const Arguments& arguments, const Path& source, const Path& target,
                     const Key& key) {
  if (!arguments.Has("older")) return C_EncryptNewPC1().Encipher(source, target, key, nullptr);
  return C_EncryptPC1().Encipher(source, target, key, nullptr);
}

EncryptCode Decipher(const Arguments&, const Path& source, const Path& target, const Key& key) {
  return C_EncryptNewPC1().Decipher(source, target, key, nullptr);
}

/// Where a deciphered file goes when nobody says: under the name that it had. Nothing for
/// a file that cannot be read.
std::optional<Path> PlainPath(const Path& source) {
  const Result<InputFile> file = InputFile::Open(source);
  if (!file) return std::nullopt;
  C_EncryptNewPC1 cipher;
  EncryptReader header(file.Value());
  if (cipher.ReadHeader(header)) return cipher.GetDefaultOutputPath(source, std::nullopt);
  return C_EncryptPC1().GetDefaultOutputPath(source, std::nullopt);
}

/// Writes to standard output by way of a temporary file.
ExitStatus ToStandardOutput(const Arguments& arguments, const std::string& name, const Path& source,
                            const Key& key, Operation operation, Console& console) {
  const Result<TemporaryFile> spool = TemporaryFile::Create("velora-cipher-");
  if (!spool) {
    console.Error("-", spool.Message());
    return ExitStatus::kOutput;
  }
  const EncryptCode code = operation(arguments, source, spool->GetPath(), key);
  if (code != kEncryptDone) {
    console.Error(name, EncryptCodeText(code));
    return EncryptCodeStatus(code);
  }
  if (Status copied = CopyToStandardOutput(spool->GetPath()); !copied) {
    console.Error("-", copied.Message());
    return ExitStatus::kOutput;
  }
  return ExitStatus::kDone;
}

ExitStatus ToFile(const Arguments& arguments, const std::string& name, const Path& source,
                  const Path& target, const Key& key, Operation operation, Console& console) {
  if (IsSameFile(source, target)) {
    console.Error(target.Text(), "is the input itself");
    return ExitStatus::kOutput;
  }
  if (!arguments.Has("force") && GetFileFacts(target)) {
    console.Error(target.Text(), "exists already");
    return ExitStatus::kOutput;
  }
  const EncryptCode code = operation(arguments, source, target, key);
  if (code != kEncryptDone) {
    const ExitStatus status = EncryptCodeStatus(code);
    console.Error(status == ExitStatus::kOutput ? target.Text() : name, EncryptCodeText(code));
    return status;
  }
  if (!arguments.Has("json")) {
    console.Note(name + " -> " + target.Text());
    return ExitStatus::kDone;
  }
  Json object;
  object["path"] = name;
  object["target"] = target.Text();
  const Result<FileFacts> facts = GetFileFacts(target);
  object["bytes"] = facts ? Json(facts->size) : Json(nullptr);
  console.Print(JsonText(object) + "\n");
  return ExitStatus::kDone;
}

ExitStatus RunCipher(const Arguments& arguments, Console& console, Operation operation,
                     const std::optional<Path>& chosen, const OpenedInput& input) {
  const std::string& name = arguments.Operands().front();
  const Result<Key> key = ReadKey(arguments);
  if (!key) {
    console.Error(arguments.GetCommand().name, key.Message());
    return ExitStatus::kUsage;
  }
  const bool toOutput = arguments.Text("output") == "-";
  if (toOutput && arguments.Has("json")) {
    console.Error(arguments.GetCommand().name, "only one thing can go to standard output");
    return ExitStatus::kUsage;
  }
  if (toOutput) {
    return ToStandardOutput(arguments, name, input.GetPath(), key.Value(), operation, console);
  }
  return ToFile(arguments, name, input.GetPath(), *chosen, key.Value(), operation, console);
}

std::optional<Path> GivenTarget(const Arguments& arguments) {
  if (!arguments.Has("output")) return std::nullopt;
  return Path::Native(arguments.Text("output"));
}

Result<OpenedInput> OpenOperand(const Arguments& arguments, Console& console) {
  const std::string& name = arguments.Operands().front();
  Result<OpenedInput> input = OpenedInput::Open({name, name, {}});
  if (input && !FileExists(input->GetPath())) input = Status::Error("cannot be read");
  if (!input) console.Error(name, input.Message());
  return input;
}

ExitStatus RunEncipher(const Arguments& arguments, Console& console) {
  if (!arguments.Has("output")) {
    console.Error("encipher", "--output says where to write");
    return ExitStatus::kUsage;
  }
  const Result<OpenedInput> input = OpenOperand(arguments, console);
  if (!input) return ExitStatus::kInput;
  return RunCipher(arguments, console, Encipher, GivenTarget(arguments), input.Value());
}

ExitStatus RunDecipher(const Arguments& arguments, Console& console) {
  if (arguments.Operands().front() == "-" && !arguments.Has("output")) {
    console.Error("decipher", "with standard input, --output says where to write");
    return ExitStatus::kUsage;
  }
  const Result<OpenedInput> input = OpenOperand(arguments, console);
  if (!input) return ExitStatus::kInput;
  const std::optional<Path> given = GivenTarget(arguments);
  return RunCipher(arguments, console, Decipher, given ? given : PlainPath(input->GetPath()),
                   input.Value());
}

constexpr Operand kPlainOperand[] = {{.name = "FILE",
                                      .kind = ValueKind::kPath,
                                      .help = "The file to encipher; - for standard input"}};
constexpr Operand kCipherOperand[] = {{.name = "FILE",
                                       .kind = ValueKind::kPath,
                                       .help = "The enciphered file; - for standard input"}};

constexpr Option kEncipherOptions[] = {
    kKeyOption,
    kKeyFileOption,
    kOutputOption,
    kForceOption,
    {.name = "older", .help = "Write the older form, which is known by the extension .kif alone"},
    kJsonOption,
};
constexpr Option kDecipherOptions[] = {kKeyOption, kKeyFileOption, kOutputOption, kForceOption,
                                       kJsonOption};

constexpr Example kEncipherExamples[] = {
    {"velora encipher --key secret chips.cfg -o chips.kif", "with a password"},
    {"velora encipher chips.cfg -o chips.kif", "without one: any key opens it"},
};
constexpr Example kDecipherExamples[] = {
    {"velora decipher --key secret chips.kif", "to the name that the file had"},
    {"velora decipher --key secret chips.kif -o -", "to standard output"},
};

}  // namespace

extern const Command kEncipherCommand;
constinit const Command kEncipherCommand = {
    .name = "encipher",
    .summary = "encipher a file",
    .operands = kPlainOperand,
    .description =
        "Writes an enciphered copy of a file. The key becomes the first of its passwords, the "
        "master key; velora passwords adds others. The cipher is an old one with a short key: it "
        "keeps honest people out and nobody else.",
    .options = kEncipherOptions,
    .examples = kEncipherExamples,
    .run = RunEncipher,
};

extern const Command kDecipherCommand;
constinit const Command kDecipherCommand = {
    .name = "decipher",
    .summary = "decipher a file",
    .operands = kCipherOperand,
    .description =
        "Writes a plain copy of an enciphered file: where --output says, else beside the file "
        "under the name that it had. Any of its passwords opens it; a file without passwords is "
        "opened by any key and by none. A wrong key ends with status 1.",
    .options = kDecipherOptions,
    .examples = kDecipherExamples,
    .run = RunDecipher,
};

}  // namespace velora::cli
