#include "pinmap/RecordingStore.h"

#include <charconv>
#include <cstdlib>

namespace velora::test {

namespace {

std::string KeyOf(const char* section, const char* label) {
  return std::string(section) + '/' + label;
}

}  // namespace

void RecordingStore::Record(std::initializer_list<std::string> words) {
  if (!records_calls) return;
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    line += word;
  }
  calls.push_back(std::move(line));
}

std::vector<std::string> RecordingStore::LabelsOf(const std::string& operation) const {
  std::vector<std::string> labels;
  for (const std::string& call : calls) {
    if (call.rfind(operation, 0) != 0) continue;
    const size_t slash = call.find('/');
    if (slash == std::string::npos) continue;
    labels.push_back(call.substr(slash + 1, call.find(' ', slash) - slash - 1));
  }
  return labels;
}

std::string RecordingStore::PinMapValue(const std::string& label) const {
  const std::string* value = Find("VeloraPinMapInfo", label.c_str());
  return value ? *value : "(none)";
}

const std::string* RecordingStore::Find(const char* section, const char* label) const {
  const auto found = values.find(KeyOf(section, label));
  return found == values.end() ? nullptr : &found->second;
}

int32_t RecordingStore::Write(const char* section, const char* label, std::string value) {
  if (writes_that_succeed == 0) return 0;
  --writes_that_succeed;
  values[KeyOf(section, label)] = std::move(value);
  return 1;
}

const char* RecordingStore::GetString(const char* section, const char* label, int32_t keyType,
                                      int32_t errorMode) {
  Record({"GetString", KeyOf(section, label), std::to_string(keyType), std::to_string(errorMode)});
  const std::string* value = Find(section, label);
  if (!value) return nullptr;
  handed_out_ = *value;
  return handed_out_.c_str();
}

I_CUStringList* RecordingStore::GetStringList(const char*, const char*, int32_t, int32_t) {
  return nullptr;
}

int32_t RecordingStore::GetInt(const char* section, const char* label, int32_t defaultValue) {
  Record({"GetInt", KeyOf(section, label), std::to_string(defaultValue)});
  const std::string* value = Find(section, label);
  return value ? std::atoi(value->c_str()) : defaultValue;
}

double RecordingStore::GetDouble(const char* section, const char* label, double defaultValue) {
  Record({"GetDouble", KeyOf(section, label), std::to_string(defaultValue)});
  const std::string* value = Find(section, label);
  return value ? std::atof(value->c_str()) : defaultValue;
}

int32_t RecordingStore::SetString(const char* section, const char* label, const char* value,
                                  int32_t create, int32_t keyType, int32_t reserved) {
  Record({"SetString", KeyOf(section, label), value, std::to_string(create),
          std::to_string(keyType), std::to_string(reserved)});
  return Write(section, label, value);
}

int32_t RecordingStore::SetStringList(const char*, const char*, I_CUStringList*, int32_t, int32_t,
                                      int32_t) {
  return 0;
}

int32_t RecordingStore::SetInt(const char* section, const char* label, int32_t value,
                               int32_t create) {
  Record({"SetInt", KeyOf(section, label), std::to_string(value), std::to_string(create)});
  return Write(section, label, std::to_string(value));
}

int32_t RecordingStore::SetDouble(const char* section, const char* label, double value,
                                  int32_t create) {
  char text[64];
  *std::to_chars(text, text + sizeof(text) - 1, value).ptr = '\0';
  Record({"SetDouble", KeyOf(section, label), text, std::to_string(create)});
  return Write(section, label, text);
}

int32_t RecordingStore::DeleteSection(const char* section) {
  Record({"DeleteSection", section});
  const std::string prefix = std::string(section) + '/';
  return std::erase_if(values, [&](const auto& entry) { return entry.first.rfind(prefix, 0) == 0; })
             ? 1
             : 0;
}

const char* RecordingStore::GetLabelName(const char* section, int32_t index) {
  Record({"GetLabelName", section, std::to_string(index)});
  const std::string prefix = std::string(section) + '/';
  int32_t place = 0;
  for (const auto& [key, value] : values) {
    if (key.rfind(prefix, 0) == 0 && place++ == index) return key.c_str() + prefix.size();
  }
  return nullptr;
}

}  // namespace velora::test
