#include "EncipherText.h"

#include "foundation/EncryptPC1.h"
#include "platform/File.h"

namespace velora::cli {
namespace {

constexpr uint64_t kLargestKeyFile = 4096;

Result<std::string> ReadFirstLine(const std::string& path) {
  const Result<std::string> text = ReadWholeText(Path::Native(path), kLargestKeyFile);
  if (!text) return Status::Error(path + ": " + text.Message());
  return text.Value().substr(0, text.Value().find_first_of("\r\n"));
}

}  // namespace

Status CheckPassword(const std::string& password) {
  if (password.size() <= C_EncryptPC1::kMaxPasswordLength) return {};
  return Status::Error("a password has at most " +
                       std::to_string(C_EncryptPC1::kMaxPasswordLength) + " bytes, and this one " +
                       std::to_string(password.size()));
}

Result<std::optional<std::string>> ReadKey(const Arguments& arguments) {
  std::optional<std::string> key;
  if (arguments.Has("key") && arguments.Has("key-file")) {
    return Status::Error("only one of --key and --key-file can be given");
  }
  if (arguments.Has("key")) key = arguments.Text("key");
  if (arguments.Has("key-file")) {
    Result<std::string> line = ReadFirstLine(arguments.Text("key-file"));
    if (!line) return line.GetStatus();
    key = std::move(line.Value());
  }
  if (key) {
    if (Status checked = CheckPassword(*key); !checked) return checked;
  }
  return key;
}

const char* EncryptCodeText(EncryptCode code) {
  switch (code) {
    case kEncryptDone:
      return "done";
    case kEncryptNotOpened:
      return "cannot be read";
    case kEncryptNoTarget:
      return "cannot be written";
    case kEncryptNoTemporary:
      return "a temporary file beside it cannot be written";
    case kEncryptWrongKey:
      return "the key is not the right one";
    case kEncryptNoPassword:
      return "the password is not in the list, or is the master key";
    case kEncryptNoHeader:
      return "is not enciphered";
  }
  return "failed";
}

ExitStatus EncryptCodeStatus(EncryptCode code) {
  switch (code) {
    case kEncryptDone:
      return ExitStatus::kDone;
    case kEncryptNoTarget:
    case kEncryptNoTemporary:
      return ExitStatus::kOutput;
    case kEncryptWrongKey:
    case kEncryptNoPassword:
      return ExitStatus::kNo;
    default:
      return ExitStatus::kInput;
  }
}

}  // namespace velora::cli
