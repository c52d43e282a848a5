#include "ProjectEdit.h"

#include <velora/VeloraTypes.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/AsciiText.h"
#include "host/Project.h"

namespace velora::cli {
namespace {

constexpr uint16_t kDefaultFrequency = 30;
constexpr uint8_t kDefaultLevels = 63;
constexpr uint8_t kActionOfPin0 = 253;
constexpr tagVLRCurveCtrlPoint kStraightGamma[] = {{0, 0}, {255, 255}};

/// A pin of the pin map, taken out, changed and put back.
struct PinSettings {
  uint16_t port = 0;
  uint8_t portPin = 0;
  uint8_t pwmType = kPwmNone;
  uint8_t stopValue = 0;
  uint8_t keepLevel = 0;
  uint64_t multiPins = 0;
  PinRecord record{};
  std::vector<tagVLRCurveCtrlPoint> gamma;
};

PinSettings TakePin(const C_VeloraPinMapInfoMgr& pinMap, uint32_t pin) {
  PinSettings settings;
  settings.record = *pinMap.GetPin(pin, &settings.port, &settings.portPin, &settings.pwmType,
                                   &settings.stopValue, &settings.keepLevel, &settings.multiPins);
  const tagVLRCurveCtrlPoint* const points = settings.record.AdjustCurveCtrlPoints;
  settings.gamma.assign(points, points + settings.record.AdjustCurveCtrlPointNum);
  return settings;
}

void PutPin(C_VeloraPinMapInfoMgr& pinMap, uint32_t pin, PinSettings settings) {
  settings.record.AdjustCurveCtrlPointNum = static_cast<uint32_t>(settings.gamma.size());
  settings.record.AdjustCurveCtrlPoints = settings.gamma.data();
  pinMap.SetPin(pin, settings.port, settings.portPin, settings.pwmType, settings.stopValue,
                settings.keepLevel, settings.multiPins, &settings.record);
}

/// Reads a whole number into a field of any width.
template <typename Field>
Status ReadNumber(std::string_view value, int64_t least, int64_t most, Field& field) {
  const auto number = ParseWhole(value, least, most);
  if (number) field = static_cast<Field>(number.Value());
  return number.GetStatus();
}

struct Word {
  const char* word;
  int32_t value;
};

constexpr Word kFlags[] = {{"no", 0}, {"yes", 1}, {"0", 0}, {"1", 1}};
constexpr Word kTypes[] = {{"none", kPwmNone},
                           {"hardware", kPwmHardware},
                           {"firmware", kPwmFirmware},
                           {"expander", kPwmIoExpander}};
constexpr Word kMethods[] = {
    {"pwm", kConvertPwm}, {"mips-first", kConvertMipsFirstPwm}, {"bam", kConvertBam}};

template <typename Field>
Status ReadWord(std::string_view value, std::span<const Word> words, Field& field) {
  std::string list;
  for (const Word& word : words) {
    if (EqualsNoCase(value, word.word)) {
      field = static_cast<Field>(word.value);
      return {};
    }
    list += (list.empty() ? "" : ", ") + std::string(word.word);
  }
  return Status::Error("'" + std::string(value) + "' is none of " + list);
}

/// "0:0,255:255": positions from 0 to 255, each with its level.
Status ReadGamma(std::string_view value, std::vector<tagVLRCurveCtrlPoint>& gamma) {
  gamma.clear();
  while (true) {
    const size_t comma = std::min(value.find(','), value.size());
    const std::string_view point = value.substr(0, comma);
    const size_t colon = point.find(':');
    if (colon == std::string_view::npos) {
      return Status::Error("'" + std::string(point) + "' is no gamma point such as 128:90");
    }
    uint32_t sample = 0;
    uint8_t level = 0;
    if (Status read = ReadNumber(point.substr(0, colon), 0, 255, sample); !read) return read;
    if (Status read = ReadNumber(point.substr(colon + 1), 0, 255, level); !read) return read;
    gamma.push_back({sample, level});
    if (comma == value.size()) return {};
    value.remove_prefix(comma + 1);
  }
}

/// Numbers, or the name of a port of the chip and a number.
std::optional<PinPlace> FindPlace(std::string_view value, const PortNames& ports) {
  const size_t dot = value.find('.');
  const auto port = std::ranges::find_if(
      ports, [&](const std::string& name) { return EqualsNoCase(name, value.substr(0, dot)); });
  if (dot == std::string_view::npos || port == ports.end()) return ParsePinPlace(value);
  return ParsePinPlace(std::to_string(port - ports.begin()) + std::string(value.substr(dot)));
}

Status SetPlace(std::string_view value, uint32_t pin, const PortNames& ports,
                PinSettings& settings) {
  if (EqualsNoCase(value, "none")) {
    settings = {};
    return {};
  }
  const auto place = FindPlace(value, ports);
  if (!place) {
    std::string known;
    for (const std::string& port : ports) known += (known.empty() ? "" : ", ") + port;
    return Status::Error("'" + std::string(value) + "' is neither PORT.PIN, such as 0.3, nor none" +
                         (known.empty() ? "" : "; the ports are " + known));
  }
  if (!settings.record.Convert) {
    settings = {};
    settings.record.Convert = 1;
    settings.record.MapEventIndex = static_cast<uint8_t>(kActionOfPin0 - pin);
    settings.record.XResolution = kDefaultFrequency;
    settings.record.YResolution = kDefaultLevels;
    settings.gamma.assign(std::begin(kStraightGamma), std::end(kStraightGamma));
  }
  settings.port = static_cast<uint16_t>(place->port);
  settings.portPin = static_cast<uint8_t>(place->pin);
  return {};
}

Status SetField(std::string_view field, std::string_view value, PinSettings& settings) {
  PinRecord& record = settings.record;
  if (field == "type") return ReadWord(value, kTypes, settings.pwmType);
  if (field == "frequency") {
    uint16_t frequency = record.XResolution;  // the record is packed: no reference to its field
    const Status read = ReadNumber(value, 0, 0xFFFF, frequency);
    record.XResolution = frequency;
    return read;
  }
  if (field == "levels") return ReadNumber(value, 0, 255, record.YResolution);
  if (field == "action") return ReadNumber(value, 0, 255, record.MapEventIndex);
  if (field == "stop") return ReadNumber(value, 0, 1, settings.stopValue);
  if (field == "keep") return ReadWord(value, kFlags, settings.keepLevel);
  if (field == "multi") return ReadNumber(value, 0, int64_t{1} << 62, settings.multiPins);
  if (field == "gamma") return ReadGamma(value, settings.gamma);
  return Status::Error(
      "a pin has type, frequency, levels, stop, keep, action, multi and gamma, and no '" +
      std::string(field) + "'");
}

Status SetPin(std::string_view name, std::string_view value, const PortNames& ports,
              Project& project) {
  const size_t dot = std::min(name.find('.'), name.size());
  const auto pin = ParseWhole(name.substr(0, dot), 0, kOutPinCount - 1);
  if (!pin) return Status::Error("pin " + pin.Message());
  const auto index = static_cast<uint32_t>(pin.Value());
  PinSettings settings = TakePin(project.PinMap(), index);
  Status set;
  if (dot == name.size()) {
    set = SetPlace(value, index, ports, settings);
  } else if (!settings.record.Convert) {
    const std::string number = std::to_string(index);
    set = Status::Error("pin " + number + " is not in use; pin" + number +
                        "=PORT.PIN gives it a place");
  } else {
    set = SetField(name.substr(dot + 1), value, settings);
  }
  if (set) PutPin(project.PinMap(), index, std::move(settings));
  return set;
}

Status SetMapValue(std::string_view name, std::string_view value, C_VeloraPinMapInfoMgr& pinMap) {
  if (name == "timer") {
    pinMap.SetFirmwarePWMTimer(std::string(value).c_str());
    return {};
  }
  int32_t number = 0;
  if (name == "pwm-frequency") {
    const Status read = ReadNumber(value, 0, INT32_MAX, number);
    if (read) pinMap.SetFirmwarePWMFrequency(number);
    return read;
  }
  const Status read = ReadWord(value, kMethods, number);
  if (read) pinMap.SetConvertMethod(number);
  return read;
}

Status SetEntry(std::string_view name, std::string_view value, Project& project) {
  constexpr const char* kSections[] = {kProjectSection, kSoundsSection, kResourcesSection,
                                       kOutputsSection, kScriptSection, kSettingsSection};
  // A sound may have dots in its name, and a setting has one.
  const size_t dot = name.find('.');
  const std::string_view section = name.substr(0, dot);
  const auto* const known = std::ranges::find_if(
      kSections, [section](const char* each) { return EqualsNoCase(each, section); });
  if (dot == std::string_view::npos || known == std::end(kSections)) {
    return Status::Error(
        "there is no such name; names are pinN, pinN.FIELD, method, timer, pwm-frequency, and "
        "SECTION.KEY with Project, Sounds, Resources, Outputs, Script or Settings");
  }
  const std::string_view key = name.substr(dot + 1);
  return value.empty() ? project.RemoveEntry(*known, key) : project.SetEntry(*known, key, value);
}

Status Assign(std::string_view name, std::string_view value, const PortNames& ports,
              Project& project) {
  if (name.starts_with("pin") && name.size() > 3) {
    return SetPin(name.substr(3), value, ports, project);
  }
  if (name == "timer" || name == "pwm-frequency" || name == "method") {
    return SetMapValue(name, value, project.PinMap());
  }
  return SetEntry(name, value, project);
}

}  // namespace

Status ApplyAssignment(std::string_view assignment, const PortNames& ports, Project& project) {
  const size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    return Status::Error("'" + std::string(assignment) + "' is not NAME=VALUE");
  }
  const std::string_view name = assignment.substr(0, equals);
  const Status status = Assign(name, assignment.substr(equals + 1), ports, project);
  return status ? status : Status::Error(std::string(name) + ": " + status.Message());
}

}  // namespace velora::cli
