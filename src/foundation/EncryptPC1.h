// Enciphered files in the older form.
//
//   size   field
//   2      number of passwords, a length word
//   2 + n  each password: its length as a length word, at most 32, and its bytes
//          enciphered as a buffer
//   rest   the data
//
// A length word is little-endian and stands under a mask (EncryptKeys.h).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Encrypt.h"
#include "foundation/EncryptData.h"
#include "foundation/EncryptReader.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

class C_EncryptPC1 : public I_Encrypt {
 public:
  /// Nothing, or a key that may be empty.
  using OptionalKey = std::optional<std::string_view>;

  /// A longer password can be written by EncipherFile, but no reader takes the
  /// file: check before.
  static constexpr size_t kMaxPasswordLength = 32;
  static constexpr size_t kMaxPasswords = 65535;

  C_EncryptPC1() = default;
  C_EncryptPC1(const C_EncryptPC1&) = delete;
  C_EncryptPC1& operator=(const C_EncryptPC1&) = delete;

  // The interface.
  void Release() override { delete this; }
  int32_t GetPasswordInfo(const char* path, int32_t* count, int32_t* bytes) override;
  int32_t GetPasswords(const char* path, char* buffer) override;
  int32_t EncipherFile(const char* source, const char* target, const char* key,
                       I_ProgressCallback* progress) override;
  int32_t DecipherFile(const char* source, const char* target, const char* key,
                       I_ProgressCallback* progress) override;
  void EncipherBuffer(const void* in, void* out, uint32_t size) override;
  void DecipherBuffer(const void* in, void* out, uint32_t size) override;
  int32_t AddPassword(const char* path, const char* key, const char* password) override;
  int32_t RemovePassword(const char* path, const char* key, const char* password) override;

  virtual ~C_EncryptPC1() = default;

  /// Takes the password list from the header and leaves the reader at the first
  /// byte of the data. False when the file is not in this form.
  virtual bool ReadHeader(EncryptReader& file);

  // These write the password list, or a part of it.
  virtual Status WriteHeader(OutputFile& file);
  virtual Status WriteCount(OutputFile& file, size_t count);
  virtual Status WriteEntry(OutputFile& file, std::string_view entry);

  /// Where DecipherFile writes: to the target, or beside the source under its
  /// name with the extension ".kmd".
  virtual Path GetDefaultOutputPath(const Path& source, const std::optional<Path>& target);

  // The operations of the interface over paths of either kind.

  /// The list behind GetPasswordInfo and that behind GetPasswords: they differ for
  /// a class that knows two forms. kEncryptDone with the list, kEncryptNotOpened or
  /// kEncryptNoHeader.
  virtual EncryptCode ReadPasswordInfo(const Path& path, std::vector<std::string>& passwords);
  EncryptCode ReadPasswords(const Path& path, std::vector<std::string>& passwords);
  EncryptCode Encipher(const Path& source, const Path& target, OptionalKey key,
                       I_ProgressCallback* progress);
  virtual EncryptCode Decipher(const Path& source, const std::optional<Path>& target,
                               OptionalKey key, I_ProgressCallback* progress);
  EncryptCode AddPasswordTo(const Path& path, OptionalKey key, std::string_view password);
  EncryptCode RemovePasswordFrom(const Path& path, OptionalKey key, std::string_view password);

  /// As Decipher, for a file that is open already, into memory. `source` is its
  /// path. `plain` is untouched on failure.
  virtual EncryptCode DecipherToMemory(const Path& source, const InputFile& file, OptionalKey key,
                                       std::vector<std::byte>& plain);

 protected:
  /// One password as it stands in a list. False when the file ends or the
  /// password is too long.
  bool ReadEntry(EncryptReader& file, std::string& entry);

  /// The list with its count.
  Status WriteList(OutputFile& file);

  /// Appends a text enciphered as a buffer.
  Status WriteEnciphered(OutputFile& file, std::string_view text);

  std::vector<std::string> passwords_;  ///< as read or to be written; the first is the master key
  std::string currentPath_;  ///< the source when enciphering; else the name that the header keeps
  uint32_t fileSize_ = 0;    ///< of the plain data, modulo 2^32

 private:
  bool Holds(std::string_view password) const;

  /// Whether the key opens a file with the current list, and with what.
  EncryptCode ChooseDataKey(OptionalKey key, PC1Cipher::Key& dataKey) const;

  /// Replaces `target` by the header as it now stands and the data of `source`
  /// from `start` on. What goes wrong in writing gives `writeFailure`.
  EncryptCode WriteFile(const Path& target, const InputFile& source, uint64_t start,
                        const DataSteps& steps, EncryptCode writeFailure,
                        I_ProgressCallback* progress);
};

}  // namespace velora
