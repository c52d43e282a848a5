#include "chip/PortMap.h"

#include <velora/I_ChipInfo.h>

#include "chip/ChipPropertyLoader.h"
#include "foundation/PathText.h"
#include "foundation/StringHelpers.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

constexpr char kSection[] = "Register Mapping";
constexpr char kPortList[] = "IOPort";
constexpr uint32_t kL647H001Family = 0x6476000;
constexpr uint32_t kPositionShift = 16;

uint32_t ReadAddress(C_CUIniFile& file, const std::string& port) {
  const char* const text = file.GetString(kSection, port.c_str(), kIniText, kMsgNone);
  uint32_t address = 0;
  if (text) (void)ParseNumber(text, &address);
  return address;
}

}  // namespace

std::string PortMapFile(uint32_t chipCode) {
  const bool ownFile = (chipCode & kChipFamilyMask) == kL647H001Family;
  return GetModuleDir(true) + (ownFile ? "L647H001_IOMap.ini" : "IOMap.ini");
}

PortAddresses ReadPortAddresses(C_CUIniFile& file) {
  const char* const list = file.GetString(kSection, kPortList, kIniText, kMsgNone);
  C_CUStringList names;
  if (list) SplitList(list, names);
  PortAddresses result;
  uint32_t position = 0;
  for (const std::string& name : names) {
    const uint32_t address = ReadAddress(file, name);
    if (position == 0) result.base = address;
    result.codes[name] = (position << kPositionShift) - result.base + address;
    ++position;
  }
  return result;
}

PortMap ReadPortNames(C_ItemProperty& record) {
  int32_t count = 0;
  const char* const* const names = record.GetStringList(kPortName, &count);
  PortMap map;
  for (int32_t i = 0; i < count; ++i) {
    map[names[i]] = static_cast<uint32_t>(i) << kPositionShift;
  }
  return map;
}

PortMap ReadPortMap(C_ItemProperty& record, uint32_t chipCode) {
  if (record.IsA(kFamilyM0Series)) return ReadPortNames(record);
  C_CUIniFile file;
  (void)file.Load(Path::System(PortMapFile(chipCode)));
  return ReadPortAddresses(file).codes;
}

}  // namespace velora
