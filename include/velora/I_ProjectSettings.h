// Numbered settings of a project, in groups.
#pragma once

#include <cstdint>

namespace velora {

/// The group that says which pins the second level takes, and its values.
inline constexpr uint32_t kSecondLevelGroup = 0x101;
inline constexpr int32_t kSecondLevelRanges = 2;   ///< 1: the special ranges are reserved
inline constexpr int32_t kSecondLevelPinUsed = 3;  ///< non-zero: value 4 is in use
inline constexpr int32_t kSecondLevelPin = 4;      ///< port position << 16 | pin

/// A group of settings. Two raw slots; no destructor.
class I_SettingsGroup {
 public:
  /// Slot 0. The value, or `defaultValue` where there is none.
  virtual int32_t GetValue(int32_t number, int32_t defaultValue) = 0;

  /// Slot 1. 1 when stored, 0 when the project can't be changed.
  virtual int32_t SetValue(int32_t number, int32_t value) = 0;

 protected:
  ~I_SettingsGroup() = default;
};

/// All settings of a project. One raw slot; no destructor.
class I_SettingsBlock {
 public:
  /// Slot 0. Null where there is no such group: every value then has its default.
  virtual I_SettingsGroup* GetGroup(uint32_t code) = 0;

 protected:
  ~I_SettingsBlock() = default;
};

/// Project interface 9. All that it hands out belongs to the project.
///
/// The order of the operations is the contract. One raw slot; the table has no
/// destructor.
class I_ProjectSettings {
 public:
  /// Slot 0. Null where there is none.
  virtual I_SettingsBlock* GetSettingsBlock() = 0;

 protected:
  ~I_ProjectSettings() = default;
};

}  // namespace velora
