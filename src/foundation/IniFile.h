// An INI file in memory.
//
// A line is "[section]", "label = value", or nothing; what follows a ";" is a
// remark, wherever it stands. Remarks and the order of the labels are not kept
// by saving: labels are written in the order of their hash table.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <velora/I_CUIniFile.h>
#include "foundation/CUString.h"
#include "foundation/StringList.h"
#include "foundation/SymbolTab.h"
#include "platform/Path.h"

namespace velora {

class C_CUIniFile : public I_CUIniFile {
 public:
  C_CUIniFile() = default;
  explicit C_CUIniFile(const Path& path) { SetFileName(path); }

  void SetFileName(const Path& path) { path_ = path; }

  /// Adds what the file holds to what the object holds; a label that is there
  /// already takes the new value. False, and nothing is added, when the file
  /// cannot be read: the reason stands in GetFailureText.
  bool Load();
  bool Load(const Path& path);  ///< SetFileName and Load

  /// The same from text. Cannot fail. Lines longer than 2,079 bytes are read as
  /// several lines; a zero byte ends its line. Takes time and memory in
  /// proportion to the text.
  void LoadText(std::string_view text);

  /// Writes the file where its name says. False when it cannot be written.
  bool Save();

  /// What Save writes.
  std::string SaveText() const;

  /// Why the last Load or Save failed.
  const std::string& GetFailureText() const { return errorText_; }

  void RemoveAll();

  /// Number of labels ever set in the section, deleted ones included, modulo
  /// 65,536; -1 for a missing section.
  int32_t GetLabelCount(const char* section);

  // The interface.
  const char* GetFileName() override { return path_.Text().c_str(); }
  const char* GetString(const char* section, const char* label, int32_t keyType,
                        int32_t errorMode) override;
  I_CUStringList* GetStringList(const char* section, const char* label, int32_t keyType,
                                int32_t errorMode) override;
  int32_t GetInt(const char* section, const char* label, int32_t defaultValue) override;
  double GetDouble(const char* section, const char* label, double defaultValue) override;
  int32_t SetString(const char* section, const char* label, const char* value, int32_t create,
                    int32_t keyType, int32_t reserved) override;
  int32_t SetStringList(const char* section, const char* label, I_CUStringList* list,
                        int32_t create, int32_t keyType, int32_t reserved) override;
  int32_t SetInt(const char* section, const char* label, int32_t value, int32_t create) override;
  int32_t SetDouble(const char* section, const char* label, double value, int32_t create) override;
  int32_t GetLastError() override { return lastError_; }
  const char* GetErrorText() override;
  int32_t GetSectionCount() override { return static_cast<int32_t>(sections_.size()); }
  const char* GetSectionName(int32_t index) override;
  int32_t DeleteLabel(const char* section, const char* label) override;
  int32_t DeleteSection(const char* section) override;
  const char* GetLabelName(const char* section, int32_t index) override;

 private:
  struct Section {
    C_CUString Name;
    C_IniSymbolTab Symbols;
    uint16_t LabelCount = 0;
  };

  /// Section names by the text of their section, without regard to case.
  struct NameHash {
    size_t operator()(std::string_view name) const;
  };
  struct NameEqual {
    bool operator()(std::string_view a, std::string_view b) const;
  };

  Section* LookUpSection(std::string_view name) const;
  Section& NeedSection(std::string_view name);

  // These two note the error of an operation that fails.
  Section* FindSection(const char* name);
  Symbol* FindValue(const char* section, const char* label);

  void LoadLine(std::string_view line, Section*& current);
  static void SetValue(Section& section, std::string_view label, std::string_view value);

  /// The value as its key type asks, or nothing with the error noted.
  const char* ReadValue(const char* section, const char* label, int32_t keyType, int32_t errorMode);
  bool ReadPath(const std::string& stored, int32_t keyType, int32_t errorMode);
  void ReportError(int32_t errorMode);

  /// Directory of the file as system text, ending in a backslash if not empty.
  std::string Directory() const;

  void NoteSuccess() { lastError_ = kIniOk; }
  void NoteError(IniError error, std::string_view section, std::string_view label = {},
                 std::string_view value = {});

  IniError lastError_ = kIniOk;
  C_CUString errorText_;
  C_CUString errorSection_;
  C_CUString errorLabel_;
  C_CUString errorValue_;
  Path path_;
  std::vector<std::unique_ptr<Section>> sections_;  ///< in order of appearance
  std::unordered_map<std::string_view, Section*, NameHash, NameEqual> sectionsByName_;
  C_CUString valueBuffer_;
  C_CUStringList valueList_;
};

}  // namespace velora
