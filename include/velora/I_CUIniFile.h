// An INI file in memory, across the boundary.
#pragma once

#include <cstdint>

#include <velora/I_CUStringList.h>

namespace velora {

/// What a value is. A path is stored as two fields, "relative,absolute": reading
/// tries the first against the directory of the INI file, then the second.
enum IniKeyType : int32_t {
  kIniText = 0,
  kIniPath = 1,
  kIniPath2 = 2,              ///< as kIniPath
  kIniFile = 3,               ///< a missing file is reported, its path still given
  kIniDirectory = 4,          ///< the same for a directory
  kIniExistingFile = 5,       ///< a missing file is a failure
  kIniExistingDirectory = 6,  ///< the same for a directory
};

/// Where failures are reported.
enum MsgErrorMode : int32_t {
  kMsgNone = 0,
  kMsgBox = 1,
  kMsgWindow = 2,
  kMsgStandardOutput = 3,
};

/// Values of GetLastError.
enum IniError : int32_t {
  kIniOk = 0,
  kIniNoSection = 1,
  kIniNoLabel = 2,
  kIniNoFile = 3,
  kIniNoDirectory = 4,
};

/// Sections of labels with values. Section names have no case; labels should be
/// spelt as they were stored.
///
/// Texts and lists that are handed out are borrowed: GetString and GetStringList
/// each have one buffer, valid until their next call; names are valid until
/// their section is deleted. A null section, label or value counts as empty text.
/// Each operation but GetFileName, GetLastError, GetErrorText and
/// GetSectionCount sets the error code.
///
/// The order of the operations is the contract. Seventeen operations, eighteen
/// raw slots: the destructor takes two.
class I_CUIniFile {
 public:
  /// Slot 0. The path as it was given; empty when there is none.
  virtual const char* GetFileName() = 0;

  /// Slot 1. The value, or null with the reason in GetLastError; a failure is
  /// reported as the MsgErrorMode says.
  virtual const char* GetString(const char* section, const char* label, int32_t keyType,
                                int32_t errorMode) = 0;

  /// Slot 2. The values of label1, label2, ... up to the first that is missing;
  /// null when there is none. Values that fail otherwise are reported and left out.
  virtual I_CUStringList* GetStringList(const char* section, const char* label, int32_t keyType,
                                        int32_t errorMode) = 0;

  /// Slot 3. The integer that the value begins with, held to the range; 0 when
  /// it begins with none. The default only for a missing section or label.
  virtual int32_t GetInt(const char* section, const char* label, int32_t defaultValue) = 0;

  /// Slot 4. As GetInt, for a decimal floating-point number.
  virtual double GetDouble(const char* section, const char* label, double defaultValue) = 0;

  /// Slot 5. 1 when stored. A missing section is made with `create`, else the
  /// answer is 0; a missing label is always made. `reserved` is ignored.
  virtual int32_t SetString(const char* section, const char* label, const char* value,
                            int32_t create, int32_t keyType, int32_t reserved) = 0;

  /// Slot 6. Stores label1 to labelN as SetString does, and deletes labelN+1 and
  /// so on up to the first that is missing. 0 for a null list.
  virtual int32_t SetStringList(const char* section, const char* label, I_CUStringList* list,
                                int32_t create, int32_t keyType, int32_t reserved) = 0;

  /// Slot 7. SetString of the number in decimal.
  virtual int32_t SetInt(const char* section, const char* label, int32_t value, int32_t create) = 0;

  /// Slot 8. SetString of the number with six decimals and an exponent.
  virtual int32_t SetDouble(const char* section, const char* label, double value,
                            int32_t create) = 0;

  /// Slot 9. The IniError of the last operation.
  virtual int32_t GetLastError() = 0;

  /// Slot 10. Its text; valid until the next call.
  virtual const char* GetErrorText() = 0;

  /// Slot 11.
  virtual int32_t GetSectionCount() = 0;

  /// Slot 12. Null for an index that is none, with kIniNoSection.
  virtual const char* GetSectionName(int32_t index) = 0;

  /// Slot 13. 1 when the label had a value. It loses it and is no longer saved,
  /// but still counts and keeps its place.
  virtual int32_t DeleteLabel(const char* section, const char* label) = 0;

  /// Slot 14. 1 when there was the section.
  virtual int32_t DeleteSection(const char* section) = 0;

  /// Slot 15. The label at this place of the hash order, also a deleted one; null
  /// for a place that is none.
  virtual const char* GetLabelName(const char* section, int32_t index) = 0;

  /// Slots 16 and 17.
  virtual ~I_CUIniFile() = default;
};

}  // namespace velora
