#include "platform/ModuleExports.h"

#include <elf.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/File.h"

namespace velora {
namespace {

constexpr uint64_t kLargestModule = uint64_t{1} << 30;

Status NoModule(const std::string& why) { return Status::Error("is no module: " + why); }

/// The bytes of a file, read by offset and never past the end.
class Image {
 public:
  explicit Image(std::string bytes) : bytes_(std::move(bytes)) {}

  template <typename Record>
  bool Read(uint64_t offset, Record& record) const {
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof record) return false;
    std::memcpy(&record, bytes_.data() + offset, sizeof record);
    return true;
  }

  /// The zero-terminated text at `offset`, as far as the file goes.
  std::string_view TextAt(uint64_t offset) const {
    if (offset >= bytes_.size()) return {};
    const std::string_view rest = std::string_view(bytes_).substr(offset);
    return rest.substr(0, rest.find('\0'));
  }

 private:
  std::string bytes_;
};

bool IsExport(const Elf64_Sym& symbol) {
  const int binding = ELF64_ST_BIND(symbol.st_info);
  const int visibility = ELF64_ST_VISIBILITY(symbol.st_other);
  return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL &&
         (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

std::vector<std::string> NamesIn(const Image& image, const Elf64_Shdr& symbols,
                                 const Elf64_Shdr& strings) {
  std::vector<std::string> names;
  for (uint64_t i = 0; i < symbols.sh_size / sizeof(Elf64_Sym); ++i) {
    Elf64_Sym symbol;
    if (!image.Read(symbols.sh_offset + i * sizeof symbol, symbol)) break;
    if (!IsExport(symbol)) continue;
    const std::string_view name = image.TextAt(strings.sh_offset + symbol.st_name);
    if (!name.empty()) names.emplace_back(name);
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace

Result<std::vector<std::string>> ListModuleExports(const Path& path) {
  Result<std::string> bytes = ReadWholeText(path, kLargestModule);
  if (!bytes) return bytes.GetStatus();
  const Image image(std::move(bytes.Value()));
  Elf64_Ehdr header;
  if (!image.Read(0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
    return NoModule("it does not begin as one");
  }
  if (header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_ident[EI_DATA] != ELFDATA2LSB ||
      header.e_type != ET_DYN || header.e_shentsize != sizeof(Elf64_Shdr)) {
    return NoModule("it was made for another kind of machine, or to be run");
  }
  for (uint64_t i = 0; i < header.e_shnum; ++i) {
    Elf64_Shdr symbols;
    Elf64_Shdr strings;
    if (!image.Read(header.e_shoff + i * sizeof symbols, symbols)) break;
    if (symbols.sh_type != SHT_DYNSYM) continue;
    if (!image.Read(header.e_shoff + symbols.sh_link * sizeof strings, strings)) break;
    return NamesIn(image, symbols, strings);
  }
  return NoModule("it has no table of exports, or is cut off");
}

}  // namespace velora
