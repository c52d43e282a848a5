#include "ProjectText.h"

#include <velora/VeloraTypes.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "SoundFile.h"
#include "foundation/AsciiText.h"
#include "host/PinMapWords.h"
#include "host/Project.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kNameWidth = 10;

struct PinRow {
  uint32_t pin = 0;
  uint16_t port = 0;
  uint8_t portPin = 0;
  uint8_t pwmType = 0;
  uint8_t stopValue = 0;
  uint8_t keepLevel = 0;
  uint64_t multiPins = 0;
  PinRecord record{};
};

/// The pins in use.
std::vector<PinRow> PinRows(const C_VeloraPinMapInfoMgr& pinMap) {
  std::vector<PinRow> rows;
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) {
    PinRow row;
    row.pin = pin;
    row.record = *pinMap.GetPin(pin, &row.port, &row.portPin, &row.pwmType, &row.stopValue,
                                &row.keepLevel, &row.multiPins);
    if (row.record.Convert) rows.push_back(row);
  }
  return rows;
}

std::string Line(const char* name, const std::string& value) {
  return PadRight(name, kNameWidth) + value + "\n";
}

const char* ModeText(int64_t mode) {
  switch (mode) {
    case 2:
      return "by OUT pin";
    case 3:
      return "by name of OUT pin";
    default:
      return "by port";
  }
}

std::string PinTable(const std::vector<PinRow>& rows) {
  if (rows.empty()) return "no pin is in use\n";
  std::string text =
      "pin  place  PWM       frequency  levels  stop  keep  action  gamma     multiple\n";
  for (const PinRow& row : rows) {
    text += PadLeft(std::to_string(row.pin), 3) + "  " +
            PadRight(PinPlaceText({row.port, row.portPin}), 7) +
            PadRight(PwmTypeInWords(row.pwmType), 10) +
            PadLeft(std::to_string(row.record.XResolution), 9) +
            PadLeft(std::to_string(row.record.YResolution), 8) +
            PadLeft(std::to_string(row.stopValue), 6) + "  " +
            PadRight(row.keepLevel ? "yes" : "no", 4) +
            PadLeft(std::to_string(row.record.MapEventIndex), 8) + "  " +
            PadRight(Counted(row.record.AdjustCurveCtrlPointNum, "point"), 10) +
            ValueInWords("Pin0_OutPinMultiPinValue", std::to_string(row.multiPins)) + "\n";
  }
  return text;
}

/// The facts of a section that the file states, "OptionA 1, OptionD 1".
std::string StatedFacts(const FactValues& facts, std::string_view section) {
  std::string text;
  for (const FactRow& row : AllFacts()) {
    if (section != row.section || !facts.Has(row.fact)) continue;
    text += (text.empty() ? "" : ", ") + std::string(row.key) + " " +
            FactText(row, facts.Get(row.fact));
  }
  return text.empty() ? "all at their defaults" : text;
}

Json FactsJson(const FactValues& facts, std::string_view section) {
  Json object = Json::object();
  for (const FactRow& row : AllFacts()) {
    if (section != row.section) continue;
    std::string key = row.key;
    key[0] = ToLower(key[0]);
    if (row.optional && !facts.Has(row.fact)) {
      object[key] = nullptr;
    } else {
      object[key] = facts.Get(row.fact);
    }
  }
  return object;
}

Json PinsJson(const C_VeloraPinMapInfoMgr& pinMap) {
  Json list = Json::array();
  for (const PinRow& row : PinRows(pinMap)) {
    Json object;
    object["pin"] = row.pin;
    object["port"] = row.port;
    object["portPin"] = row.portPin;
    object["pwmType"] = row.pwmType;
    object["stopValue"] = row.stopValue;
    object["keepLevel"] = row.keepLevel != 0;
    object["multiPinValue"] = row.multiPins;
    object["mapEventIndex"] = row.record.MapEventIndex;
    object["xResolution"] = uint16_t{row.record.XResolution};
    object["yResolution"] = row.record.YResolution;
    Json gamma = Json::array();
    for (uint32_t i = 0; i < row.record.AdjustCurveCtrlPointNum; ++i) {
      const tagVLRCurveCtrlPoint point = row.record.AdjustCurveCtrlPoints[i];
      gamma.push_back({{"sample", uint32_t{point.Sample}}, {"level", point.Level}});
    }
    object["gamma"] = std::move(gamma);
    list.push_back(std::move(object));
  }
  return list;
}

Json PlaceJson(const PinPlace& place) { return {{"port", place.port}, {"pin", place.pin}}; }

Json PlacesJson(const std::vector<PinPlace>& places) {
  Json list = Json::array();
  for (const PinPlace& place : places) list.push_back(PlaceJson(place));
  return list;
}

Json UserMapJson(const ProjectData& data) {
  Json object;
  Json cells = Json::array();
  for (const MatrixCell& cell : data.cells) {
    cells.push_back(
        {{"key", cell.key}, {"lineA", PlaceJson(cell.lineA)}, {"lineB", PlaceJson(cell.lineB)}});
  }
  object["cells"] = std::move(cells);
  object["inputs"] = PlacesJson(data.inputs);
  object["singles"] = PlacesJson(data.singles);
  object["outputs"] = PlacesJson(data.outputs);
  object["fixed"] = PlacesJson(data.fixed);
  return object;
}

Json SectionJson(bool there, const ProjectData& data, const char* section) {
  return there ? FactsJson(data.facts, section) : Json(nullptr);
}

}  // namespace

std::string ProjectText(Project& project) {
  const ProjectData& data = project.Data();
  C_VeloraPinMapInfoMgr& pinMap = project.PinMap();
  const std::string timer = pinMap.GetFirmwarePWMTimer();
  std::string text = Line("part", data.partNumber);
  text += Line("clock", std::to_string(project.GetSystemClock()) + " Hz");
  text += Line("pins", ModeText(data.facts.Get(Fact::kMode)));
  text += Line("method", ConvertMethodInWords(pinMap.GetConvertMethod()));
  text += Line("timer", (timer.empty() ? "none" : timer) + ", " +
                            std::to_string(pinMap.GetFirmwarePWMFrequency()) + " Hz");
  text += Line("used", std::to_string(pinMap.GetUsedRAMSize()) + " bytes of RAM, " +
                           std::to_string(pinMap.GetUsedStackSize()) + " of stack");
  for (const ProjectSound& sound : data.sounds) {
    text += Line("sound", sound.name + ", " + sound.path);
  }
  for (size_t i = 0; i < data.outs.size(); ++i) {
    const OutPin& out = data.outs[i];
    text += Line("OUT", std::to_string(i + 1) + " at " + PinPlaceText(out.place) +
                            (out.name.empty() ? "" : ", " + out.name));
  }
  if (data.hasResources) text += Line("resources", StatedFacts(data.facts, kResourcesSection));
  if (data.hasOutputs) text += Line("outputs", StatedFacts(data.facts, kOutputsSection));
  if (data.hasScript) text += Line("script", StatedFacts(data.facts, kScriptSection));
  return text + "\n" + PinTable(PinRows(pinMap));
}

Json ProjectJson(Project& project) {
  const ProjectData& data = project.Data();
  C_VeloraPinMapInfoMgr& pinMap = project.PinMap();
  Json object;
  object["part"] = data.partNumber;
  object["systemClock"] = project.GetSystemClock();
  object["mode"] = data.facts.Get(Fact::kMode);
  object["convertMethod"] = pinMap.GetConvertMethod();
  object["firmwarePwmTimer"] = pinMap.GetFirmwarePWMTimer();
  object["firmwarePwmFrequency"] = pinMap.GetFirmwarePWMFrequency();
  object["usedRam"] = pinMap.GetUsedRAMSize();
  object["usedStack"] = pinMap.GetUsedStackSize();
  Json sounds = Json::array();
  for (const ProjectSound& sound : data.sounds) {
    sounds.push_back({{"name", sound.name}, {"path", sound.path}});
  }
  object["sounds"] = std::move(sounds);
  object["pins"] = PinsJson(pinMap);
  Json outs = Json::array();
  for (const OutPin& out : data.outs) {
    Json place = PlaceJson(out.place);
    place["name"] = out.name;
    outs.push_back(std::move(place));
  }
  object["outs"] = std::move(outs);
  object["resources"] = SectionJson(data.hasResources, data, kResourcesSection);
  object["outputs"] = SectionJson(data.hasOutputs, data, kOutputsSection);
  object["script"] = SectionJson(data.hasScript, data, kScriptSection);
  object["userMap"] = data.HasUserMap() ? UserMapJson(data) : Json(nullptr);
  Json settings = Json::array();
  for (const ProjectSetting& setting : data.settings) {
    settings.push_back(
        {{"group", setting.group}, {"number", setting.number}, {"value", setting.value}});
  }
  object["settings"] = data.hasSettings ? std::move(settings) : Json(nullptr);
  return object;
}

}  // namespace velora::cli
