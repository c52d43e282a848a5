#include "foundation/EncryptNewPC1.h"

#include "foundation/EncryptPaths.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

constexpr std::string_view kMagic = "KENC";
constexpr std::string_view kOldFormExtension = ".kif";
constexpr size_t kMaxNameLength = 255;

enum ChunkType : uint16_t {
  kNameChunk = 0x100,
  kDataChunk = 0x101,
  kCountChunk = 0x200,
  kPasswordChunk = 0x201,
};

struct ChunkHeader {
  le16 check;  // the sum of the four words is 0
  le16 type;
  le16 sizeLow;
  le16 sizeHigh;

  uint16_t Sum() const { return static_cast<uint16_t>(check + type + sizeLow + sizeHigh); }
  uint32_t Size() const { return sizeLow | static_cast<uint32_t>(sizeHigh) << 16; }
};
static_assert(sizeof(ChunkHeader) == 8);

bool MayHaveOldForm(const Path& path) { return ExtensionOf(path) == kOldFormExtension; }

}  // namespace

// Reading the header.

bool C_EncryptNewPC1::ReadHeader(EncryptReader& file) {
  passwords_.clear();
  currentPath_.clear();
  fileSize_ = 0;
  std::string magic(kMagic.size(), 0);
  if (!file.Read(std::as_writable_bytes(std::span(magic))) || magic != kMagic) return false;

  ChunkHeader header;
  while (file.ReadRecord(header)) {
    DecipherBuffer(&header, &header, sizeof(header));
    if (header.Sum() != 0) return false;
    const uint32_t size = header.Size();
    bool good = true;
    switch (header.type) {
      case kDataChunk:
        fileSize_ = size;
        return true;
      case kNameChunk:
        good = ReadName(file, size);
        break;
      case kPasswordChunk:
        good = ReadPassword(file, size);
        break;
      default:  // the count too: the passwords that are there count
        good = file.Skip(size);
        break;
    }
    if (!good) return false;
  }
  return false;
}

bool C_EncryptNewPC1::ReadName(EncryptReader& file, uint32_t size) {
  if (size > kMaxNameLength) return false;
  currentPath_.resize(size);
  if (!file.Read(std::as_writable_bytes(std::span(currentPath_)))) return false;
  DecipherBuffer(currentPath_.data(), currentPath_.data(), size);
  return true;
}

bool C_EncryptNewPC1::ReadPassword(EncryptReader& file, uint32_t size) {
  if (passwords_.size() == kMaxPasswords) return false;
  const uint64_t start = file.Position();
  if (!ReadEntry(file, passwords_.emplace_back())) return false;
  const uint64_t taken = file.Position() - start;
  return taken <= size && file.Skip(size - taken);
}

// Writing it.

Status C_EncryptNewPC1::WriteHeader(OutputFile& file) {
  if (Status status = file.Write(std::as_bytes(std::span(kMagic))); !status) return status;
  const Path path = Path::System(currentPath_);
  const std::string_view name = NameOf(path).substr(0, kMaxNameLength);
  if (Status status = WriteChunkHeader(file, kNameChunk, static_cast<uint32_t>(name.size()));
      !status) {
    return status;
  }
  if (Status status = WriteEnciphered(file, name); !status) return status;
  if (Status status = WriteList(file); !status) return status;
  return WriteChunkHeader(file, kDataChunk, fileSize_);
}

Status C_EncryptNewPC1::WriteChunkHeader(OutputFile& file, uint16_t type, uint32_t size) {
  ChunkHeader header;
  header.type = type;
  header.sizeLow = static_cast<uint16_t>(size);
  header.sizeHigh = static_cast<uint16_t>(size >> 16);
  header.check = static_cast<uint16_t>(-header.Sum());
  EncipherBuffer(&header, &header, sizeof(header));
  return file.Write(std::as_bytes(std::span(&header, 1)));
}

Status C_EncryptNewPC1::WriteCount(OutputFile& file, size_t count) {
  if (Status status = WriteChunkHeader(file, kCountChunk, 2); !status) return status;
  return C_EncryptPC1::WriteCount(file, count);
}

Status C_EncryptNewPC1::WriteEntry(OutputFile& file, std::string_view entry) {
  const auto size = static_cast<uint32_t>(entry.size() + 2);
  if (Status status = WriteChunkHeader(file, kPasswordChunk, size); !status) return status;
  return C_EncryptPC1::WriteEntry(file, entry);
}

// What differs besides.

Path C_EncryptNewPC1::GetDefaultOutputPath(const Path& source, const std::optional<Path>& target) {
  const bool intoFolder =
      !target || (!target->Empty() && NameOf(*target).empty()) || DirectoryExists(*target);
  if (!intoFolder) return *target;
  const Path beside = C_EncryptPC1::GetDefaultOutputPath(source, std::nullopt);
  std::string_view name = SafeName(currentPath_);
  if (name.empty()) name = NameOf(beside);
  return InFolder(target.value_or(FolderOf(source)), name);
}

EncryptCode C_EncryptNewPC1::ReadPasswordInfo(const Path& path,
                                              std::vector<std::string>& passwords) {
  const EncryptCode code = C_EncryptPC1::ReadPasswordInfo(path, passwords);
  if (code != kEncryptNoHeader || !MayHaveOldForm(path)) return code;
  return oldForm_.ReadPasswordInfo(path, passwords);
}

EncryptCode C_EncryptNewPC1::Decipher(const Path& source, const std::optional<Path>& target,
                                      OptionalKey key, I_ProgressCallback* progress) {
  const EncryptCode code = C_EncryptPC1::Decipher(source, target, key, progress);
  if (code != kEncryptNoHeader || !MayHaveOldForm(source)) return code;
  return oldForm_.Decipher(source, target, key, progress);
}

EncryptCode C_EncryptNewPC1::DecipherToMemory(const Path& source, const InputFile& file,
                                              OptionalKey key, std::vector<std::byte>& plain) {
  const EncryptCode code = C_EncryptPC1::DecipherToMemory(source, file, key, plain);
  if (code != kEncryptNoHeader || !MayHaveOldForm(source)) return code;
  return oldForm_.DecipherToMemory(source, file, key, plain);
}

}  // namespace velora
