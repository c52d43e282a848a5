// What the commands over enciphered files share.
#pragma once

#include <optional>
#include <string>

#include "CommandLine.h"
#include "foundation/Encrypt.h"
#include "platform/Status.h"

namespace velora::cli {

inline constexpr Option kKeyOption = {
    .name = "key", .letter = 'k', .value = "TEXT", .kind = ValueKind::kText, .help = "The key"};

inline constexpr Option kKeyFileOption = {.name = "key-file",
                                          .value = "FILE",
                                          .kind = ValueKind::kPath,
                                          .help = "Take the key from the first line of FILE"};

/// The key of --key or --key-file; nothing without either. An error for both, a file that
/// cannot be read, and a key that no list of passwords can hold.
Result<std::optional<std::string>> ReadKey(const Arguments& arguments);

/// An error for a password that no list can hold.
Status CheckPassword(const std::string& password);

/// Why an operation failed, for a person.
const char* EncryptCodeText(EncryptCode code);

/// The status to end with.
ExitStatus EncryptCodeStatus(EncryptCode code);

}  // namespace velora::cli
