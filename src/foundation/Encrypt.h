// Enciphered files: the operations that both of their forms offer.
#pragma once

#include <cstdint>

#include <velora/I_ProgressCallback.h>

namespace velora {

enum EncryptCode : int32_t {
  kEncryptDone = 0,
  kEncryptNotOpened = 1,    ///< the file can't be read; or the password is in the list already
  kEncryptNoTarget = 2,     ///< the target can't be created or written
  kEncryptNoTemporary = 3,  ///< the temporary file can't be created, written or moved
  kEncryptWrongKey = 4,
  kEncryptNoPassword = 5,  ///< the password isn't in the list, or is the master key
  kEncryptNoHeader = 6,    ///< the file is not enciphered in this form
};

/// Enciphers and deciphers files, and keeps the list of passwords that each
/// file carries. Any password of the list opens the file; its first entry is the
/// master key, which the data is enciphered with and which alone may change the
/// list. The data of a file without passwords is enciphered with the default
/// key, and any key opens it.
///
/// Paths and keys are zero-terminated; paths are the system's own. A null key is
/// no key; an empty one is a key. Operations that give a code give an
/// EncryptCode. Nothing is shown to anybody. One thread at a time.
///
/// The order of the operations is the contract. Nine raw slots; the table has
/// no destructor.
class I_Encrypt {
 public:
  /// Slot 0. Deletes the object, which was made by new.
  virtual void Release() = 0;

  /// Slot 1. 0 when the file is not enciphered. Else 1, with the number of
  /// passwords and the bytes that GetPasswords may write, plus 1. A file that
  /// can't be opened gives 1 too, and nothing is written. Outputs may be null.
  virtual int32_t GetPasswordInfo(const char* path, int32_t* count, int32_t* bytes) = 0;

  /// Slot 2. Writes the passwords, each with its zero byte, and one more zero.
  virtual int32_t GetPasswords(const char* path, char* buffer) = 0;

  /// Slot 3. Enciphers with the key, which becomes the master key, or without
  /// passwords. A target that exists is replaced as a whole or, on failure, not
  /// at all; it must not be the source. `progress` may be null.
  virtual int32_t EncipherFile(const char* source, const char* target, const char* key,
                               I_ProgressCallback* progress) = 0;

  /// Slot 4. Deciphers, with the same care for the target. A null target is
  /// chosen by the form of the file.
  virtual int32_t DecipherFile(const char* source, const char* target, const char* key,
                               I_ProgressCallback* progress) = 0;

  /// Slots 5 and 6. `size` bytes with the default key, from a fresh start each
  /// time; `in` and `out` may be the same.
  virtual void EncipherBuffer(const void* in, void* out, uint32_t size) = 0;
  virtual void DecipherBuffer(const void* in, void* out, uint32_t size) = 0;

  /// Slot 7. Adds a password to the file's list; `key` must be the master key. A
  /// file without passwords is enciphered anew with the password as its master
  /// key, whatever the key, and the code of that is 1. The file is replaced as a
  /// whole or, on failure or when the process dies, not at all. A password that
  /// no list can hold, longer than 32 bytes or past 65,535 entries, gives 4.
  virtual int32_t AddPassword(const char* path, const char* key, const char* password) = 0;

  /// Slot 8. Takes a password other than the master key out of the list, with the
  /// same care. 0 for a file without passwords.
  virtual int32_t RemovePassword(const char* path, const char* key, const char* password) = 0;

 protected:
  ~I_Encrypt() = default;
};

}  // namespace velora
