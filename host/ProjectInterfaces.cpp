#include "host/ProjectInterfaces.h"

#include <algorithm>
#include <string>

#include "host/ProjectStore.h"

namespace velora {
namespace {

constexpr int32_t kTimerCodeWord = 1;

int32_t Signed(const ProjectData& data, Fact fact) {
  return static_cast<int32_t>(data.facts.Get(fact));
}

uint32_t Unsigned(const ProjectData& data, Fact fact) {
  return static_cast<uint32_t>(data.facts.Get(fact));
}

template <typename Entry>
const Entry* EntryAt(const std::vector<Entry>& list, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < list.size() ? &list[static_cast<size_t>(index)]
                                                                : nullptr;
}

int32_t GivePlace(const std::vector<PinPlace>& places, int32_t n, uint32_t* port, uint32_t* pin) {
  const PinPlace* const place = EntryAt(places, n);
  if (!place) return 0;
  *port = place->port;
  *pin = place->pin;
  return 1;
}

uint32_t Halves(uint32_t low, uint32_t high) { return (low & 0xFFFF) | high << 16; }

std::vector<uint32_t> ValuesOf(I_CUElementList<uint32_t>* list) {
  std::vector<uint32_t> values;
  const int32_t count = list ? list->GetCount() : 0;
  for (int32_t i = 0; i < count; ++i) {
    uint32_t value = 0;
    if (list->GetAt(i, &value, nullptr)) values.push_back(value);
  }
  return values;
}

void Take(PinPlacing& placing, I_CUElementList<uint32_t>* keys, I_CUElementList<uint32_t>* ports,
          I_CUElementList<uint32_t>* pins) {
  placing = {ValuesOf(keys), ValuesOf(ports), ValuesOf(pins), placing.told + 1};
}

}  // namespace

// The script.

uint32_t ProjectScript::GetOutputWord() { return Unsigned(data_, Fact::kOutputWord); }
int32_t ProjectScript::GetMatrixCountA() { return Signed(data_, Fact::kMatrixCountA); }
int32_t ProjectScript::GetMatrixCountB() { return Signed(data_, Fact::kMatrixCountB); }
int32_t ProjectScript::GetSinglePinCount() { return Signed(data_, Fact::kSinglePinCount); }
int32_t ProjectScript::GetInputPinCount() { return Signed(data_, Fact::kInputPinCount); }
int32_t ProjectScript::GetOutputCountA() { return Signed(data_, Fact::kOutputCountA); }
int32_t ProjectScript::GetFixedPinCount() { return Signed(data_, Fact::kFixedPinCount); }
int32_t ProjectScript::GetOutputCountB() { return Signed(data_, Fact::kOutputCountB); }
uint32_t ProjectScript::GetFeatureFlags() { return Unsigned(data_, Fact::kFeatureFlags); }
int32_t ProjectScript::GetSecondLevelFlag() { return Signed(data_, Fact::kSecondLevelFlag); }
int32_t ProjectScript::GetFeatureKey() { return Signed(data_, Fact::kFeatureKey); }
int32_t ProjectScript::GetEventCount() { return Signed(data_, Fact::kEventCount); }

int32_t ProjectScriptWithMap::GetUserMatrixCell(int32_t cell, uint32_t* key, uint32_t* ports,
                                                uint32_t* pins) {
  const MatrixCell* const found = EntryAt(data_.cells, cell);
  if (!found) return 0;
  *key = found->key;
  *ports = Halves(found->lineA.port, found->lineB.port);
  *pins = Halves(found->lineA.pin, found->lineB.pin);
  return 1;
}

int32_t ProjectScriptWithMap::GetUserInputPin(int32_t n, uint32_t* port, uint32_t* pin) {
  return GivePlace(data_.inputs, n, port, pin);
}

int32_t ProjectScriptWithMap::GetUserSinglePin(int32_t n, uint32_t* port, uint32_t* pin) {
  return GivePlace(data_.singles, n, port, pin);
}

int32_t ProjectScriptWithMap::GetUserOutputPin(int32_t n, uint32_t* port, uint32_t* pin) {
  return GivePlace(data_.outputs, n, port, pin);
}

int32_t ProjectScriptWithMap::GetUserFixedPin(int32_t n, uint32_t* port, uint32_t* pin) {
  return GivePlace(data_.fixed, n, port, pin);
}

// The outputs.

int32_t ProjectOutputs::GetOutCount() { return static_cast<int32_t>(data_.outs.size()); }

int32_t ProjectOutputs::GetOutPin(int32_t index, int32_t* port, int32_t* pin) {
  const OutPin* const out = EntryAt(data_.outs, index);
  if (!out) return 0;
  *port = static_cast<int32_t>(out->place.port);
  *pin = static_cast<int32_t>(out->place.pin);
  return 1;
}

uint32_t ProjectOutputs::GetTimerFlags() { return Unsigned(data_, Fact::kTimerFlags); }
int32_t ProjectOutputs::GetFirstTimerIndex() { return Signed(data_, Fact::kFirstTimerIndex); }
int32_t ProjectOutputs::IsUserMapped() { return Signed(data_, Fact::kUserMapped); }
int32_t ProjectOutputs::GetColorCount() { return Signed(data_, Fact::kColorCount); }
int32_t ProjectOutputs::GetLvdLevelCount() { return Signed(data_, Fact::kLvdLevelCount); }

I_TimerRecordSource* ProjectOutputs::GetTimerRecordSource() {
  return data_.facts.Has(Fact::kTimerRecord) ? this : nullptr;
}

void ProjectOutputs::FillTimerRecord(int32_t* record) {
  record[kTimerCodeWord] = Signed(data_, Fact::kTimerRecord);
}

I_SensorRecordSource* ProjectOutputs::GetSensorRecordSource() {
  const bool known = data_.facts.Has(Fact::kSensorModeA) || data_.facts.Has(Fact::kSensorModeB);
  return known ? this : nullptr;
}

int32_t ProjectOutputs::GetSensorModeA() { return Signed(data_, Fact::kSensorModeA); }
int32_t ProjectOutputs::GetSensorModeB() { return Signed(data_, Fact::kSensorModeB); }

void ProjectOutputs::SetMatrixMap(I_CUElementList<uint32_t>* keys, I_CUElementList<uint32_t>* ports,
                                  I_CUElementList<uint32_t>* pins) {
  Take(placings_.matrix, keys, ports, pins);
}

void ProjectOutputs::SetFixedMap(I_CUElementList<uint32_t>* ports,
                                 I_CUElementList<uint32_t>* pins) {
  Take(placings_.fixed, nullptr, ports, pins);
}

void ProjectOutputs::SetSingleMap(I_CUElementList<uint32_t>* ports,
                                  I_CUElementList<uint32_t>* pins) {
  Take(placings_.single, nullptr, ports, pins);
}

void ProjectOutputs::SetInputMap(I_CUElementList<uint32_t>* ports,
                                 I_CUElementList<uint32_t>* pins) {
  Take(placings_.input, nullptr, ports, pins);
}

void ProjectOutputs::SetOutputMap(I_CUElementList<uint32_t>* ports,
                                  I_CUElementList<uint32_t>* pins) {
  Take(placings_.output, nullptr, ports, pins);
}

// The resources.

uint16_t ProjectResources::GetTimerLoadA() {
  return static_cast<uint16_t>(data_.facts.Get(Fact::kTimerLoadA));
}
int32_t ProjectResources::GetOptionA() { return Signed(data_, Fact::kOptionA); }
int32_t ProjectResources::GetOptionB() { return Signed(data_, Fact::kOptionB); }
int32_t ProjectResources::GetOptionC() { return Signed(data_, Fact::kOptionC); }
int32_t ProjectResources::GetOptionD() { return Signed(data_, Fact::kOptionD); }
int32_t ProjectResources::GetGenValueA() { return Signed(data_, Fact::kGenValueA); }
int32_t ProjectResources::GetGenValueB() { return Signed(data_, Fact::kGenValueB); }
int32_t ProjectResources::GetGenValueC() { return Signed(data_, Fact::kGenValueC); }
int32_t ProjectResources::GetTimerLoadB() { return Signed(data_, Fact::kTimerLoadB); }
uint32_t ProjectResources::GetTimerLoadC() { return Unsigned(data_, Fact::kTimerLoadC); }
uint32_t ProjectResources::GetTimerLoadD() { return Unsigned(data_, Fact::kTimerLoadD); }
uint16_t ProjectResources::GetChannelTotal() {
  return static_cast<uint16_t>(data_.facts.Get(Fact::kChannelTotal));
}
int32_t ProjectResources::GetTimerPlan() { return Signed(data_, Fact::kTimerPlan); }
int32_t ProjectResources::GetGroupTimerLoad(int32_t group) {
  return group == 0 ? Signed(data_, Fact::kGroupTimerLoad0) : 0;
}
int32_t ProjectResources::GetAudioStackFlag() { return Signed(data_, Fact::kAudioStackFlag); }

// The settings.

ProjectSetting* ProjectSettings::Find(uint32_t group, int32_t number) {
  const auto found = std::ranges::find_if(data_.settings, [&](const ProjectSetting& setting) {
    return setting.group == group && setting.number == number;
  });
  return found == data_.settings.end() ? nullptr : &*found;
}

I_SettingsGroup* ProjectSettings::GetGroup(uint32_t code) {
  const bool known = std::ranges::any_of(
      data_.settings, [code](const ProjectSetting& setting) { return setting.group == code; });
  if (!known) return nullptr;
  return &groups_.try_emplace(code, *this, code).first->second;
}

int32_t ProjectSettings::Group::GetValue(int32_t number, int32_t defaultValue) {
  const ProjectSetting* const setting = settings_.Find(code_, number);
  return setting ? setting->value : defaultValue;
}

int32_t ProjectSettings::Group::SetValue(int32_t number, int32_t value) {
  ProjectSetting* const known = settings_.Find(code_, number);
  const std::string key = known ? known->key : SettingKey(code_, number);
  if (!settings_.store_.SetInt(kSettingsSection, key.c_str(), value, 1)) return 0;
  if (known) {
    known->value = value;
  } else {
    settings_.data_.settings.push_back({code_, number, value, key});
  }
  return 1;
}

}  // namespace velora
