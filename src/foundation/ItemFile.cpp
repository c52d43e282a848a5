#include "foundation/ItemFile.h"

#include <string_view>
#include <vector>

#include "foundation/EncryptKeys.h"
#include "foundation/EncryptNewPC1.h"
#include "platform/File.h"

namespace velora {

Result<std::shared_ptr<C_CUIniFile>> OpenItemFile(const Path& path) {
  const Result<InputFile> file = InputFile::Open(path);
  if (!file) return file.GetStatus();

  C_EncryptNewPC1 cipher;
  std::vector<std::byte> text;
  switch (cipher.DecipherToMemory(path, file.Value(), kDataFilePassKey, text)) {
    case kEncryptDone:
      break;
    case kEncryptNoHeader:
      text.resize(static_cast<size_t>(file->Size()));
      if (Status status = file->ReadExactly(0, text); !status) return status;
      break;
    case kEncryptWrongKey:
      return Status::Error("is enciphered, and not for the key of the module's data files");
    default:
      return Status::Error("is enciphered and cannot be read to its end");
  }
  auto items = std::make_shared<C_CUIniFile>(path);
  items->LoadText({reinterpret_cast<const char*>(text.data()), text.size()});
  return items;
}

}  // namespace velora
