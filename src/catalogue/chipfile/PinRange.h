// Ports and runs of pins as the chip files write them.
//
//   BP0.0-7     pins 0 to 7 of port BP0, both inclusive
//   BP0.7-0     the same, walked downwards
//   BP0.3       one pin
//   BP0.0-3*    a range that is filled before the others of its list
//   BP0         the whole port (not in a list of ports)
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Status.h"

namespace velora {

/// A run of pins of one port. Pins are numbered within the port from 0 to 255, and
/// over the chip by an index that counts the pins of all ports in their order.
struct PinRange {
  std::string port;
  int firstPin = 0;
  int lastPin = 0;  ///< inclusive; below firstPin for a walk downwards
  int firstIndex = 0;
  int lastIndex = 0;
  bool preferred = false;

  int LowestPin() const { return firstPin < lastPin ? firstPin : lastPin; }
  int HighestPin() const { return firstPin < lastPin ? lastPin : firstPin; }
  int PinCount() const { return HighestPin() - LowestPin() + 1; }
  bool Holds(std::string_view portName, int pin) const {
    return port == portName && pin >= LowestPin() && pin <= HighestPin();
  }
};

/// The most pins a chip can have, so that an index fits 16 bits.
inline constexpr int kMostPins = 4096;

/// Reads the entries of a list of ports, each an upward run, and numbers their
/// pins. A port may stand there once.
Result<std::vector<PinRange>> ReadPorts(std::span<const std::string_view> entries);

/// Reads a range of one of these ports.
Result<PinRange> ReadPinRange(std::string_view text, std::span<const PinRange> ports);

/// The range as it would be written.
std::string PinRangeText(const PinRange& range);

}  // namespace velora
