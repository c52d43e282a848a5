// `velora passwords`: the list of passwords of an enciphered file.
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "CommonOptions.h"
#include "Console.h"
#include "EncipherText.h"
#include "Json.h"
#include "foundation/EncryptNewPC1.h"
#include "foundation/EncryptPaths.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kActions[] = {"list", "add", "remove"};

ExitStatus Fail(const std::string& path, EncryptCode code, Console& console) {
  console.Error(path, EncryptCodeText(code));
  return EncryptCodeStatus(code);
}

/// The reader of the form that a file has: the older one is known by its extension alone.
std::unique_ptr<C_EncryptPC1> CipherOf(const Path& file) {
  std::vector<std::string> passwords;
  auto current = std::make_unique<C_EncryptNewPC1>();
  const bool older =
      ExtensionOf(file) == ".kif" && current->ReadPasswords(file, passwords) == kEncryptNoHeader;
  if (older) return std::make_unique<C_EncryptPC1>();
  return current;
}

ExitStatus List(const Arguments& arguments, const std::string& path, Console& console) {
  std::vector<std::string> passwords;
  const EncryptCode code = C_EncryptNewPC1().ReadPasswordInfo(Path::Native(path), passwords);
  if (code != kEncryptDone) return Fail(path, code, console);
  if (arguments.Has("json")) {
    Json object;
    object["path"] = path;
    object["passwords"] = passwords;
    console.Print(JsonText(object) + "\n");
    return ExitStatus::kDone;
  }
  for (const std::string& password : passwords) console.Print(password + "\n");
  if (passwords.empty()) console.Summary("any key opens the file");
  return ExitStatus::kDone;
}

ExitStatus Change(const Arguments& arguments, bool add, Console& console) {
  const auto& operands = arguments.Operands();
  const Path file = Path::Native(operands[1]);
  const std::string& password = operands[2];
  auto key = ReadKey(arguments);
  const Status fit = key ? CheckPassword(password) : key.GetStatus();
  if (!fit) {
    console.Error("passwords", fit.Message());
    return ExitStatus::kUsage;
  }
  const std::unique_ptr<C_EncryptPC1> cipher = CipherOf(file);
  std::vector<std::string> before;
  if (const EncryptCode read = cipher->ReadPasswords(file, before); read != kEncryptDone) {
    return Fail(operands[1], read, console);
  }
  if (add && std::ranges::find(before, password) != before.end()) {
    console.Error(operands[1], "the password is in the list already");
    return ExitStatus::kNo;
  }
  if (!add && before.empty()) return Fail(operands[1], kEncryptNoPassword, console);
  EncryptCode code = add ? cipher->AddPasswordTo(file, key.Value(), password)
                         : cipher->RemovePasswordFrom(file, key.Value(), password);
  // A file that had no passwords is enciphered anew, which has a code of its own.
  if (add && before.empty() && code == kEncryptNotOpened) code = kEncryptDone;
  if (code != kEncryptDone) return Fail(operands[1], code, console);
  return arguments.Has("json") ? List(arguments, operands[1], console) : ExitStatus::kDone;
}

ExitStatus RunPasswords(const Arguments& arguments, Console& console) {
  const auto& operands = arguments.Operands();
  const std::string& action = operands.front();
  const size_t wanted = action == "list" ? 2 : 3;
  if (operands.size() != wanted) {
    console.Error("passwords", action == "list" ? "list takes a file and nothing else"
                                                : action + " takes a file and a password");
    return ExitStatus::kUsage;
  }
  if (action == "list") return List(arguments, operands[1], console);
  return Change(arguments, action == "add", console);
}

constexpr Operand kOperands[] = {
    {.name = "ACTION", .kind = ValueKind::kChoice, .help = "What to do", .choices = kActions},
    {.name = "FILE", .kind = ValueKind::kPath, .help = "The enciphered file"},
    {.name = "PASSWORD",
     .kind = ValueKind::kText,
     .help = "add, remove: the password",
     .required = false},
};

constexpr Option kOptions[] = {kKeyOption, kKeyFileOption, kJsonOption};

constexpr Example kExamples[] = {
    {"velora passwords list chips.kif", "all passwords, the master key first"},
    {"velora passwords add --key secret chips.kif guest", "a second password"},
    {"velora passwords remove --key secret chips.kif guest", "and away with it"},
};

}  // namespace

extern const Command kPasswordsCommand;
constinit const Command kPasswordsCommand = {
    .name = "passwords",
    .summary = "list and change the passwords of an enciphered file",
    .operands = kOperands,
    .description =
        "Each password of the list opens the file; the first is the master key, which --key has "
        "to give to change the list, and which cannot be removed. Adding a password to a file "
        "without any makes it the master key. The file is replaced as a whole or not at all.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunPasswords,
};

}  // namespace velora::cli
