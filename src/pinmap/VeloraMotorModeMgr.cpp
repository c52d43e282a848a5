#include "pinmap/VeloraMotorModeMgr.h"

#include <algorithm>
#include <array>

#include "pinmap/Boundary.h"
#include "pinmap/ProjectSection.h"

namespace velora {

namespace {

constexpr uint32_t kMotorModeCount = 3;
constexpr int32_t kMaxGpioLines = 20;  // 2^20 sectors, the limit of all lists
constexpr int32_t kFullCircle = 360;

/// A value of an entry and its key.
template <typename Entry>
struct EntryKey {
  const char* key;
  int32_t Entry::*field;
};

/// The keys of a table: its size, and the values of each entry in their order.
template <typename Entry, size_t N>
struct TableKeys {
  const char* number;
  std::array<EntryKey<Entry>, N> fields;
};

constexpr TableKeys<GPIOSectorInfo, 4> kGpioKeys{
    "GPIOSectorInfoCount",
    {{{"GPIOSectorInfo%d_SectorIndex", &GPIOSectorInfo::SectorIndex},
      {"GPIOSectorInfo%d_GPIOValue", &GPIOSectorInfo::GPIOValue},
      {"GPIOSectorInfo%d_AngleRangeStart", &GPIOSectorInfo::AngleRangeStart},
      {"GPIOSectorInfo%d_AngleRangeEnd", &GPIOSectorInfo::AngleRangeEnd}}}};

constexpr TableKeys<ADCSectorInfo, 5> kAdcKeys{
    "ADCSectorInfoCount",
    {{{"ADCSectorInfo%d_SectorIndex", &ADCSectorInfo::SectorIndex},
      {"ADCSectorInfo%d_ADCRangeStart", &ADCSectorInfo::ADCRangeStart},
      {"ADCSectorInfo%d_ADCRangeEnd", &ADCSectorInfo::ADCRangeEnd},
      {"ADCSectorInfo%d_AngleRangeStart", &ADCSectorInfo::AngleRangeStart},
      {"ADCSectorInfo%d_AngleRangeEnd", &ADCSectorInfo::AngleRangeEnd}}}};

constexpr char kServoCountKey[] = "ServoModePinIndexCount";
constexpr char kServoPinKey[] = "ServoMode%d_PinIndex";

template <typename Table, typename Keys>
void SaveTable(SectionWriter& writer, const Keys& keys, Table& table) {
  table.Sort();
  writer.Count(keys.number, table.Entries(), keys.fields.size());
  int32_t index = 0;
  for (const auto& entry : table.Entries()) {
    for (const auto& field : keys.fields)
      writer.Int(KeyText(field.key, index), entry.*field.field, 0);
    ++index;
  }
}

template <typename Table, typename Entry, size_t N>
void LoadTable(SectionReader& reader, const TableKeys<Entry, N>& keys, Table& table) {
  const size_t count = reader.Bound(reader.ReadInt(keys.number, 0), sizeof(Entry), N);
  table.Clear();
  for (size_t i = 0; i < count; ++i) {
    Entry entry{};
    for (const auto& field : keys.fields) {
      reader.Int(KeyText(field.key, static_cast<int32_t>(i)), entry.*field.field, 0);
    }
    table.Add(entry);
  }
}

/// Where part `index` of a range cut evenly ends, whole numbers.
int32_t EndOfPart(int32_t index, double step) { return static_cast<int32_t>((index + 1) * step); }

/// Where part `index` begins: past the end of the part before when they would meet.
int32_t StartOfPart(int32_t index, double step, int32_t endBefore) {
  const auto start = static_cast<int32_t>(index * step);
  return index > 0 && start == endBefore ? start + 1 : start;
}

template <typename Entry>
const Entry* EntryAt(const std::vector<Entry>& entries, const int32_t* index) {
  return index && Holds(entries, *index) ? &entries[static_cast<size_t>(*index)] : nullptr;
}

template <typename Entry>
const Entry* FindByAngle(const std::vector<Entry>& entries, const int32_t* angle) {
  if (!angle) return nullptr;
  const auto found = std::ranges::find_if(entries, [angle](const Entry& entry) {
    return entry.AngleRangeStart <= *angle && *angle <= entry.AngleRangeEnd;
  });
  return found == entries.end() ? nullptr : &*found;
}

}  // namespace

void C_VeloraMotorModeMgr::CopyFrom(const I_VeloraMotorModeMgr* other) {
  if (!other || other == this) return;
  using Mgr = I_VeloraMotorModeMgr;
  const uint32_t mode = other->GetMotorMode();
  const int32_t gpioCount = other->GetGPIOCount();
  const int32_t adcSectorCount = other->GetADCSectorCount();
  SetEnableMotorMode(other->GetEnableMotorMode());
  SetMotorMode(&mode);
  SetGPIOCount(&gpioCount);
  SetADCSectorCount(&adcSectorCount);
  ClearGPIOSectors();
  for (const GPIOSectorInfo& entry : ArrayOf(*other, &Mgr::GetGPIOSectors)) AddGPIOSector(&entry);
  ClearADCSectors();
  for (const ADCSectorInfo& entry : ArrayOf(*other, &Mgr::GetADCSectors)) AddADCSector(&entry);
  ClearServoPins();
  for (const int32_t& pin : ArrayOf(*other, &Mgr::GetServoPins)) AddServoPin(&pin);
}

int32_t C_VeloraMotorModeMgr::IsSame(const I_VeloraMotorModeMgr* other) const {
  if (!other) return 1;
  using Mgr = I_VeloraMotorModeMgr;
  const Mgr& self = *this;
  return enableMotorMode_ == other->GetEnableMotorMode() && motorMode_ == other->GetMotorMode() &&
         gpioCount_ == other->GetGPIOCount() && adcSectorCount_ == other->GetADCSectorCount() &&
         Same(ArrayOf(self, &Mgr::GetGPIOSectors), ArrayOf(*other, &Mgr::GetGPIOSectors)) &&
         Same(ArrayOf(self, &Mgr::GetADCSectors), ArrayOf(*other, &Mgr::GetADCSectors)) &&
         Same(ArrayOf(self, &Mgr::GetServoPins), ArrayOf(*other, &Mgr::GetServoPins));
}

int32_t C_VeloraMotorModeMgr::Save(I_CUIniFile* store) {
  if (!store) return 0;
  store->DeleteSection(kMotorSection);  // entries of a longer table must not stay
  SectionWriter writer(*store, kMotorSection);
  writer.Keep("EnableMotorMode", enableMotorMode_);
  writer.Keep("MotorMode", motorMode_);
  writer.Keep("GPIOCount", gpioCount_);
  writer.Keep("ADCSectorCount", adcSectorCount_);
  SaveTable(writer, kGpioKeys, gpioSectors_);
  SaveTable(writer, kAdcKeys, adcSectors_);
  servoPins_.Sort();
  writer.Count(kServoCountKey, servoPins_.Entries(), 1);
  int32_t index = 0;
  for (const int32_t pin : servoPins_.Entries()) writer.Int(KeyText(kServoPinKey, index++), pin, 0);
  return 1;
}

int32_t C_VeloraMotorModeMgr::Load(I_CUIniFile* store) {
  if (!store) return 0;
  SectionReader reader(*store, kMotorSection);
  reader.Keep("EnableMotorMode", enableMotorMode_);
  uint32_t mode = motorMode_;
  reader.Keep("MotorMode", mode);
  SetMotorMode(&mode);
  reader.Keep("GPIOCount", gpioCount_);
  reader.Keep("ADCSectorCount", adcSectorCount_);
  LoadTable(reader, kGpioKeys, gpioSectors_);
  LoadTable(reader, kAdcKeys, adcSectors_);
  const size_t count = reader.Bound(reader.ReadInt(kServoCountKey, 0), sizeof(int32_t), 1);
  servoPins_.Clear();
  for (size_t i = 0; i < count; ++i) {
    servoPins_.Add(reader.ReadInt(KeyText(kServoPinKey, static_cast<int32_t>(i)), 0));
  }
  return 1;
}

void C_VeloraMotorModeMgr::SetMotorMode(const uint32_t* mode) {
  if (mode && *mode < kMotorModeCount) motorMode_ = *mode;
}

void C_VeloraMotorModeMgr::SetGPIOCount(const int32_t* count) {
  if (count) gpioCount_ = *count;
}

void C_VeloraMotorModeMgr::SetADCSectorCount(const int32_t* count) {
  if (count) adcSectorCount_ = *count;
}

const GPIOSectorInfo* C_VeloraMotorModeMgr::BuildGPIOSectors(const int32_t* gpioCount,
                                                             int32_t* count) {
  generatedGpioSectors_.clear();
  if (gpioCount && *gpioCount >= 1 && *gpioCount <= kMaxGpioLines) {
    const int32_t sectors = 1 << *gpioCount;
    const double step = static_cast<double>(kFullCircle) / sectors;
    int32_t endBefore = 0;
    for (int32_t i = 0; i < sectors; ++i) {
      const int32_t end = EndOfPart(i, step);
      generatedGpioSectors_.push_back({i, i, StartOfPart(i, step, endBefore), end});
      endBefore = end;
    }
  }
  return HandOut(generatedGpioSectors_, count);
}

const ADCSectorInfo* C_VeloraMotorModeMgr::BuildADCSectors(const int32_t* adcSectorCount,
                                                           const int32_t* adcRange,
                                                           int32_t* count) {
  generatedAdcSectors_.clear();
  if (adcSectorCount && adcRange && *adcSectorCount >= 1 && *adcSectorCount <= kMaxListEntries) {
    const int32_t sectors = *adcSectorCount;
    const double adcStep = static_cast<double>(*adcRange) / sectors;
    const double angleStep = static_cast<double>(kFullCircle) / sectors;
    int32_t adcEndBefore = 0;
    int32_t angleEndBefore = 0;
    for (int32_t i = 0; i < sectors; ++i) {
      const int32_t adcEnd = i + 1 == sectors ? *adcRange : EndOfPart(i, adcStep);
      const int32_t angleEnd = EndOfPart(i, angleStep);
      generatedAdcSectors_.push_back({i, StartOfPart(i, adcStep, adcEndBefore), adcEnd,
                                      StartOfPart(i, angleStep, angleEndBefore), angleEnd});
      adcEndBefore = adcEnd;
      angleEndBefore = angleEnd;
    }
  }
  return HandOut(generatedAdcSectors_, count);
}

const GPIOSectorInfo* C_VeloraMotorModeMgr::GetGPIOSectors(int32_t* count) const {
  return HandOut(gpioSectors_.Entries(), count);
}

const GPIOSectorInfo* C_VeloraMotorModeMgr::GetGPIOSectorAt(const int32_t* index) const {
  return EntryAt(gpioSectors_.Entries(), index);
}

const GPIOSectorInfo* C_VeloraMotorModeMgr::FindGPIOSectorByAngle(const int32_t* angle) const {
  return FindByAngle(gpioSectors_.Entries(), angle);
}

int32_t C_VeloraMotorModeMgr::AddGPIOSector(const GPIOSectorInfo* info) {
  return info && gpioSectors_.Add(*info);
}

int32_t C_VeloraMotorModeMgr::ClearGPIOSectors() {
  gpioSectors_.Clear();
  return 1;
}

int32_t C_VeloraMotorModeMgr::SortGPIOSectors() {
  gpioSectors_.Sort();
  return 1;
}

const ADCSectorInfo* C_VeloraMotorModeMgr::GetADCSectors(int32_t* count) const {
  return HandOut(adcSectors_.Entries(), count);
}

const ADCSectorInfo* C_VeloraMotorModeMgr::GetADCSectorAt(const int32_t* index) const {
  return EntryAt(adcSectors_.Entries(), index);
}

const ADCSectorInfo* C_VeloraMotorModeMgr::FindADCSectorByAngle(const int32_t* angle) const {
  return FindByAngle(adcSectors_.Entries(), angle);
}

int32_t C_VeloraMotorModeMgr::AddADCSector(const ADCSectorInfo* info) {
  return info && adcSectors_.Add(*info);
}

int32_t C_VeloraMotorModeMgr::ClearADCSectors() {
  adcSectors_.Clear();
  return 1;
}

int32_t C_VeloraMotorModeMgr::SortADCSectors() {
  adcSectors_.Sort();
  return 1;
}

const int32_t* C_VeloraMotorModeMgr::GetServoPins(int32_t* count) const {
  return HandOut(servoPins_.Entries(), count);
}

int32_t C_VeloraMotorModeMgr::HasServoPin(const int32_t* pin) const {
  return pin && servoPins_.Has(*pin);
}

int32_t C_VeloraMotorModeMgr::AddServoPin(const int32_t* pin) {
  return pin && servoPins_.Add(*pin);
}

int32_t C_VeloraMotorModeMgr::ClearServoPins() {
  servoPins_.Clear();
  return 1;
}

int32_t C_VeloraMotorModeMgr::SortServoPins() {
  servoPins_.Sort();
  return 1;
}

uint8_t C_VeloraMotorModeMgr::AngleToServoLevel(const int32_t* angle) const {
  if (!angle || *angle < 0 || *angle > kFullCircle) return 255;
  return static_cast<uint8_t>((*angle / 180.0 + 1) / 20 * 255);
}

}  // namespace velora
