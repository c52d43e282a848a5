// Configuration files of items, plain or enciphered.
#pragma once

#include <memory>

#include "foundation/IniFile.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// Reads an item file once. The result may be shared by any number of items, by
/// one thread at a time.
///
/// An enciphered file (see EncryptNewPC1.h) must hold the pass key of the
/// module's data files among its passwords, or no password at all. It is
/// deciphered in memory; its plain text never reaches the disk.
Result<std::shared_ptr<C_CUIniFile>> OpenItemFile(const Path& path);

}  // namespace velora
