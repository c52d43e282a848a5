// The records of ChipProperty.cfg, each opened once.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/IniFile.h"
#include "foundation/ItemProperty.h"
#include "platform/File.h"

namespace velora {

/// Opens records and keeps them. A record lives as long as its loader, belongs to
/// it, and goes on answering from memory whatever becomes of the file. The file is
/// read once and again only when it has changed. For one thread at a time.
class C_ChipPropLoader {
 public:
  C_ChipPropLoader() = default;
  C_ChipPropLoader(const C_ChipPropLoader&) = delete;
  C_ChipPropLoader& operator=(const C_ChipPropLoader&) = delete;

  /// The record of the part, never null. Part numbers that differ in case alone
  /// have a record each, which read the same section. Without the file or the
  /// section the record is empty: it answers every key with its default and no
  /// family test. That is told in a box once for each part number.
  C_ItemProperty* GetChipProperty(const std::string& partNumber);

 private:
  const std::shared_ptr<C_CUIniFile>& NeedFile(const Path& path);

  struct OpenedFile {
    std::string path;
    FileFacts facts;
    std::shared_ptr<C_CUIniFile> items;
  };
  OpenedFile file_;
  std::map<std::string, std::unique_ptr<C_ItemProperty>> records_;
};

/// The record of the part from the loader of this process. Valid until the module
/// goes; the caller must not release it.
C_ItemProperty* GetChipProperty(const std::string& partNumber);

// Families that the rules ask a record for, by I_ItemProperty::IsA.
inline constexpr char kFamily664[] = "664";
inline constexpr char kFamilyK664[] = "K664";
inline constexpr char kFamilyL664[] = "L664";
inline constexpr char kFamilyM0Series[] = "M0Series";
inline constexpr char kFamilySdsL668H[] = "SDS_L668H";

// Keys of a record.
inline constexpr char kPinPerPort[] = "PinPerPort";
inline constexpr char kPortName[] = "PortName";
inline constexpr char kDisabledOutPinMask[] = "DisabledOutPinMask";
inline constexpr char kBamTimers[] = "BAMTimers";
inline constexpr char kVlrOutPortOrder[] = "VlrOutPortOrder";
inline constexpr char kHwPwmClockSources[] = "HW_Pwm_Clock_Sources";
inline constexpr char kIoExpHwPwmClockSources[] = "IoExp_HW_Pwm_Clock_Sources";
inline constexpr char kMaxIoExpanderNum[] = "MaxIOExpanderNum";
inline constexpr char kAvailableIoExpanders[] = "AvailableIOExpanders";

/// The number of the key; `otherwise` for a missing or empty value and a null
/// record.
int32_t ReadNumberOr(I_ItemProperty* record, const char* key, int32_t otherwise);

/// Hexadecimal digits, at most 16, with or without 0x; reading stops at the first
/// other character. 0 where there are none, and for a null record.
uint64_t ReadMask(I_ItemProperty* record, const char* key);

}  // namespace velora
