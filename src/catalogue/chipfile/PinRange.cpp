#include "catalogue/chipfile/PinRange.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace velora {
namespace {

constexpr int kHighestPin = 255;

/// A pin number, all of the text.
std::optional<int> ReadPin(std::string_view text) {
  int pin = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pin);
  if (error != std::errc() || end != text.data() + text.size() || text.front() == '-') return {};
  return pin <= kHighestPin ? std::optional(pin) : std::nullopt;
}

/// What the text says, without a look at any port. A port alone has no pins yet.
struct WrittenRange {
  PinRange range;
  bool wholePort = false;
};

std::optional<WrittenRange> Scan(std::string_view text) {
  WrittenRange written;
  if (text.ends_with('*')) {
    written.range.preferred = true;
    text.remove_suffix(1);
  }
  const size_t dot = text.rfind('.');
  written.range.port = text.substr(0, dot);
  if (written.range.port.empty()) return {};
  if (dot == std::string_view::npos) {
    written.wholePort = true;
    return written;
  }
  const std::string_view pins = text.substr(dot + 1);
  const size_t dash = pins.find('-');
  const std::optional<int> first = ReadPin(pins.substr(0, dash));
  const std::optional<int> last =
      dash == std::string_view::npos ? first : ReadPin(pins.substr(dash + 1));
  if (!first || !last) return {};
  written.range.firstPin = *first;
  written.range.lastPin = *last;
  return written;
}

Status NotARange(std::string_view text) {
  return Status::Error("\"" + std::string(text) +
                       "\" is no run of pins, such as BP0.0-7 with pins from 0 to " +
                       std::to_string(kHighestPin));
}

}  // namespace

Result<std::vector<PinRange>> ReadPorts(std::span<const std::string_view> entries) {
  std::vector<PinRange> ports;
  int index = 0;
  for (const std::string_view entry : entries) {
    const std::optional<WrittenRange> written = Scan(entry);
    if (!written || written->wholePort) return NotARange(entry);
    PinRange port = written->range;
    if (port.firstPin > port.lastPin || port.preferred) {
      return Status::Error("\"" + std::string(entry) +
                           "\": a port is written upwards and without a mark");
    }
    if (std::ranges::find(ports, port.port, &PinRange::port) != ports.end()) {
      return Status::Error("port " + port.port + " stands there twice");
    }
    port.firstIndex = index;
    index += port.PinCount();
    port.lastIndex = index - 1;
    if (index > kMostPins) {
      return Status::Error("more than " + std::to_string(kMostPins) + " pins");
    }
    ports.push_back(std::move(port));
  }
  return ports;
}

Result<PinRange> ReadPinRange(std::string_view text, std::span<const PinRange> ports) {
  const std::optional<WrittenRange> written = Scan(text);
  if (!written) return NotARange(text);
  PinRange range = written->range;
  const auto port = std::ranges::find(ports, range.port, &PinRange::port);
  if (port == ports.end()) {
    return Status::Error("\"" + std::string(text) + "\": the chip has no port " + range.port);
  }
  if (written->wholePort) {
    range.firstPin = port->firstPin;
    range.lastPin = port->lastPin;
  }
  if (range.LowestPin() < port->firstPin || range.HighestPin() > port->lastPin) {
    return Status::Error("\"" + std::string(text) + "\" leaves the port, which is " +
                         PinRangeText(*port));
  }
  range.firstIndex = port->firstIndex + range.firstPin - port->firstPin;
  range.lastIndex = port->firstIndex + range.lastPin - port->firstPin;
  return range;
}

std::string PinRangeText(const PinRange& range) {
  std::string text = range.port + "." + std::to_string(range.firstPin);
  if (range.lastPin != range.firstPin) text += "-" + std::to_string(range.lastPin);
  if (range.preferred) text += "*";
  return text;
}

}  // namespace velora
