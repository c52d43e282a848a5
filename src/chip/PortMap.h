// How the name of a port becomes its code.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "foundation/IniFile.h"
#include "foundation/ItemProperty.h"

namespace velora {

/// Port codes by name, which compares by bytes. The high half of a code is the port's
/// position in the list of ports, the low half the distance of its register from that of
/// the first port.
using PortMap = std::map<std::string, uint32_t, std::less<>>;

/// The file of port addresses that belongs to a chip, in this module's directory.
std::string PortMapFile(uint32_t chipCode);

/// What a file of port addresses says; empty without its section or list. The section
/// "Register Mapping" has the list "IOPort" of names, and each name's address. The port at
/// position i with the address Ai gets i x 0x10000 - A0 + Ai, in 32 bits without sign, so
/// that an address below the first one's borrows from the position. A missing address is
/// 0. Of a name that stands twice the later position counts.
struct PortAddresses {
  PortMap codes;
  uint32_t base = 0;  ///< A0, the address of the first port
};
PortAddresses ReadPortAddresses(C_CUIniFile& file);

/// The ports that a record lists under "PortName": the port at position i gets i << 16.
PortMap ReadPortNames(C_ItemProperty& record);

/// The map of a chip: from its record for the M0Series, else from its file. Empty where
/// the file is missing.
PortMap ReadPortMap(C_ItemProperty& record, uint32_t chipCode);

}  // namespace velora
