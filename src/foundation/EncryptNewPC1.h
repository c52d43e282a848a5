// Enciphered files in the form that is written today.
//
// Behind the four bytes "KENC" stands a chain of chunks. Each is opened by a
// header of eight bytes, enciphered as a buffer: four little-endian words whose
// sum is 0 modulo 65,536.
//
//   word  field
//   0     makes the sum
//   1     type
//   2, 3  size, low and high half
//
//   type   size                 body
//   0x100  of the body          name and extension of the plain file, at most 255
//                               bytes, enciphered as a buffer
//   0x200  2                    number of passwords, a length word
//   0x201  of the body          a password as in the older form
//   0x101  of the plain data,   none; the data follows, to the end of the file
//          modulo 2^32
//   other  of the body          skipped
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/EncryptPC1.h"

namespace velora {

/// Writes the form above. DecipherFile and GetPasswordInfo read the older form
/// too, in files with the extension ".kif", spelt so.
class C_EncryptNewPC1 : public C_EncryptPC1 {
 public:
  bool ReadHeader(EncryptReader& file) override;
  Status WriteHeader(OutputFile& file) override;
  Status WriteCount(OutputFile& file, size_t count) override;
  Status WriteEntry(OutputFile& file, std::string_view entry) override;

  /// A target that is no folder stands. Else the name that the header keeps, in
  /// the target or beside the source; a header that keeps no name, or one that
  /// would lead elsewhere, gives the source's with the extension ".kmd".
  Path GetDefaultOutputPath(const Path& source, const std::optional<Path>& target) override;

  EncryptCode ReadPasswordInfo(const Path& path, std::vector<std::string>& passwords) override;
  EncryptCode Decipher(const Path& source, const std::optional<Path>& target, OptionalKey key,
                       I_ProgressCallback* progress) override;
  EncryptCode DecipherToMemory(const Path& source, const InputFile& file, OptionalKey key,
                               std::vector<std::byte>& plain) override;

 private:
  bool ReadName(EncryptReader& file, uint32_t size);
  bool ReadPassword(EncryptReader& file, uint32_t size);
  Status WriteChunkHeader(OutputFile& file, uint16_t type, uint32_t size);

  C_EncryptPC1 oldForm_;
};

}  // namespace velora
