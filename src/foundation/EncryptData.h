// The data part of an enciphered file on its way from one file to another.
#pragma once

#include <cstdint>
#include <optional>

#include "foundation/Encrypt.h"
#include "foundation/PC1Cipher.h"
#include "platform/File.h"

namespace velora {

/// What happens to the data: neither a plain copy, both a change of the key.
struct DataSteps {
  std::optional<PC1Cipher> decipher;  ///< first
  std::optional<PC1Cipher> encipher;
};

/// Appends what `source` holds from `start` on to `target`, in pieces of bounded
/// size, and tells `progress`, which may be null, each whole percent once.
/// kEncryptNotOpened when reading fails; kEncryptNoTarget when writing does, or
/// when the process is interrupted.
EncryptCode CopyData(const InputFile& source, uint64_t start, DataSteps steps, OutputFile& target,
                     I_ProgressCallback* progress);

}  // namespace velora
