// A typed record of a configuration file, across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// One section of a configuration file, read as a record: its labels are the
/// record's keys. A key that the section does not define is looked for in the
/// record's parents, depth first in the order of its label "ISA". An empty
/// value is defined, and hides what the parents say.
///
/// A value is a text, a number or a flag as it stands; "{a, b}" is a list whose
/// entries are separated by commas, blanks and tabs; "[Name]" refers to another
/// section of the file. Nothing fails: a key without a value of the form asked
/// for gives the empty answer told at each operation. A null key counts as "".
///
/// Texts, arrays and records that are handed out belong to the record and live
/// as long as it does. A record reached through GetItem or GetItemList is never
/// released by the caller.
///
/// Each list operation writes the number of entries to `count`, which may be
/// null, and gives null for a list of none.
///
/// The order of the operations is the contract. Fifteen raw slots; the table
/// has no destructor.
class I_ItemProperty {
 public:
  /// Slot 0. Deletes the record and all that it handed out. On a record that
  /// belongs to another one it does nothing.
  virtual void Release() = 0;

  /// Slot 1. A new record of the same name, to be released by the caller. Where
  /// this one opened a file by its path, the new one opens that path itself;
  /// else both share the file in memory.
  virtual I_ItemProperty* Clone() = 0;

  /// Slot 2. 1 when the file has a section of the record's name with a label.
  virtual int32_t IsLoaded() = 0;

  /// Slot 3. Never null.
  virtual const char* GetName() = 0;

  /// Slot 4. 1 when this record or one up its parents has that name, letter for
  /// letter; 0 without a file.
  virtual int32_t IsA(const char* name) = 0;

  /// Slot 5.
  virtual const char* const* GetStringList(const char* key, int32_t* count) = 0;

  /// Slot 6. The value, or null.
  virtual const char* GetString(const char* key) = 0;

  /// Slot 7. 0 or 1 each, by the rule of GetBool.
  virtual const int32_t* GetBoolList(const char* key, int32_t* count) = 0;

  /// Slot 8. 0 for a missing or empty value, "0", and "FALSE" in any case; else 1.
  virtual int32_t GetBool(const char* key) = 0;

  /// Slot 9. Entries that are no numbers are left out.
  virtual const int32_t* GetNumberList(const char* key, int32_t* count) = 0;

  /// Slot 10. Decimal, hexadecimal (0x10, 10h) or binary (101b); the low 32 bits
  /// of larger numbers. -1 for a missing or empty value. Of a value that is no
  /// number, what its leading digits say.
  virtual int32_t GetNumber(const char* key) = 0;

  /// Slot 11. The records that a list refers to; entries that are no references
  /// are left out.
  virtual I_ItemProperty* const* GetItemList(const char* key, int32_t* count) = 0;

  /// Slot 12. The record referred to, or null when the value is no reference. A
  /// name that the file lacks gives a record that is not loaded.
  virtual I_ItemProperty* GetItem(const char* key) = 0;

  /// Slot 13. As GetBool; `exists` is 1 when the value is not empty. May be null.
  virtual int32_t GetBoolEx(const char* key, int32_t* exists) = 0;

  /// Slot 14. As GetNumber; `exists` is 1 when the value is a number. May be null.
  virtual int32_t GetNumberEx(const char* key, int32_t* exists) = 0;

 protected:
  ~I_ItemProperty() = default;
};

}  // namespace velora
