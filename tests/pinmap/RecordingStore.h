// A project store in memory that remembers what was asked of it, in order, and can be
// told to fail. Labels are found by their exact spelling.
#pragma once

#include <velora/I_CUIniFile.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace velora::test {

class RecordingStore : public I_CUIniFile {
 public:
  /// Values by "section/label"; a test may fill it.
  std::map<std::string, std::string> values;
  /// Calls in order, such as "SetInt VeloraPinMapInfo/Pin0_Convert 1 1": the name of the
  /// operation and its arguments.
  std::vector<std::string> calls;
  bool records_calls = true;
  /// Number of writes that succeed; all later ones give 0 and store nothing.
  size_t writes_that_succeed = std::numeric_limits<size_t>::max();

  /// The labels of the calls whose name begins so, without their section.
  std::vector<std::string> LabelsOf(const std::string& operation) const;
  /// The value of a label of the pin map's section; "(none)" without one.
  std::string PinMapValue(const std::string& label) const;

  const char* GetFileName() override { return ""; }
  const char* GetString(const char* section, const char* label, int32_t keyType,
                        int32_t errorMode) override;
  I_CUStringList* GetStringList(const char*, const char*, int32_t, int32_t) override;
  int32_t GetInt(const char* section, const char* label, int32_t defaultValue) override;
  double GetDouble(const char* section, const char* label, double defaultValue) override;
  int32_t SetString(const char* section, const char* label, const char* value, int32_t create,
                    int32_t keyType, int32_t reserved) override;
  int32_t SetStringList(const char*, const char*, I_CUStringList*, int32_t, int32_t,
                        int32_t) override;
  int32_t SetInt(const char* section, const char* label, int32_t value, int32_t create) override;
  int32_t SetDouble(const char* section, const char* label, double value, int32_t create) override;
  int32_t GetLastError() override { return 0; }
  const char* GetErrorText() override { return ""; }
  int32_t GetSectionCount() override { return 0; }
  const char* GetSectionName(int32_t) override { return nullptr; }
  int32_t DeleteLabel(const char*, const char*) override { return 0; }
  int32_t DeleteSection(const char* section) override;
  const char* GetLabelName(const char* section, int32_t index) override;

 private:
  const std::string* Find(const char* section, const char* label) const;
  int32_t Write(const char* section, const char* label, std::string value);
  void Record(std::initializer_list<std::string> words);

  std::string handed_out_;
};

}  // namespace velora::test
