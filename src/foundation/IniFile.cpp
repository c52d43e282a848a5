#include "foundation/IniFile.h"

#include <algorithm>

#include "foundation/AsciiText.h"
#include "foundation/FileHelpers.h"
#include "foundation/MsgHandler.h"
#include "foundation/PathText.h"
#include "foundation/StringHelpers.h"

namespace velora {
namespace {

constexpr char kErrorTitle[] = "Error";

std::string_view ViewOf(const char* text) { return text ? text : std::string_view(); }

bool IsPath(int32_t keyType) { return keyType >= kIniPath && keyType <= kIniExistingDirectory; }

std::string Numbered(const char* label, int32_t number) {
  return std::string(ViewOf(label)) + std::to_string(number);
}

/// The path in the system's own form; a native one only differs in its separators.
std::string SystemText(const Path& path) {
  std::string text = path.Text();
  if (path.IsNative()) std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

}  // namespace

// Sections and labels.

size_t C_CUIniFile::NameHash::operator()(std::string_view name) const {
  uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(ToLower(c))) * 0x100000001B3;
  return static_cast<size_t>(hash);
}

bool C_CUIniFile::NameEqual::operator()(std::string_view a, std::string_view b) const {
  return EqualsNoCase(a, b);
}

C_CUIniFile::Section* C_CUIniFile::LookUpSection(std::string_view name) const {
  const auto found = sectionsByName_.find(name);
  return found == sectionsByName_.end() ? nullptr : found->second;
}

C_CUIniFile::Section& C_CUIniFile::NeedSection(std::string_view name) {
  if (Section* const section = LookUpSection(name)) return *section;
  Section& section = *sections_.emplace_back(std::make_unique<Section>());
  section.Name.assign(name);
  sectionsByName_.emplace(section.Name, &section);
  return section;
}

C_CUIniFile::Section* C_CUIniFile::FindSection(const char* name) {
  Section* const section = LookUpSection(ViewOf(name));
  if (section) {
    NoteSuccess();
  } else {
    NoteError(kIniNoSection, ViewOf(name));
  }
  return section;
}

Symbol* C_CUIniFile::FindValue(const char* section, const char* label) {
  const Section* const home = FindSection(section);
  if (!home) return nullptr;
  Symbol* const symbol = home->Symbols.FindLabel(ViewOf(label));
  if (symbol && symbol->Value) return symbol;
  NoteError(kIniNoLabel, home->Name, ViewOf(label));
  return nullptr;
}

void C_CUIniFile::SetValue(Section& section, std::string_view label, std::string_view value) {
  auto symbol = std::make_unique<Symbol>();
  symbol->Label = label;
  const auto added = section.Symbols.Add(std::move(symbol));
  if (added.outcome == HashAddOutcome::kAdded) ++section.LabelCount;
  if (added.record) added.record->Value = value;
}

const char* C_CUIniFile::GetSectionName(int32_t index) {
  if (index >= 0 && index < GetSectionCount()) {
    NoteSuccess();
    return sections_[static_cast<size_t>(index)]->Name.c_str();
  }
  NoteError(kIniNoSection, "Section Index(" + std::to_string(index) + ")");
  return nullptr;
}

int32_t C_CUIniFile::GetLabelCount(const char* section) {
  const Section* const home = FindSection(section);
  return home ? home->LabelCount : -1;
}

const char* C_CUIniFile::GetLabelName(const char* section, int32_t index) {
  const Section* const home = FindSection(section);
  if (!home || index < 0) return nullptr;
  const Symbol* const symbol = home->Symbols.At(static_cast<uint32_t>(index));
  return symbol ? symbol->Label.c_str() : nullptr;
}

int32_t C_CUIniFile::DeleteLabel(const char* section, const char* label) {
  Symbol* const symbol = FindValue(section, label);
  if (!symbol) return 0;
  symbol->Value.reset();
  return 1;
}

int32_t C_CUIniFile::DeleteSection(const char* section) {
  Section* const home = FindSection(section);
  if (!home) return 0;
  sectionsByName_.erase(home->Name);
  std::erase_if(sections_, [home](const auto& each) { return each.get() == home; });
  return 1;
}

void C_CUIniFile::RemoveAll() {
  sectionsByName_.clear();
  sections_.clear();
}

// Values.

const char* C_CUIniFile::GetString(const char* section, const char* label, int32_t keyType,
                                   int32_t errorMode) {
  const char* const value = ReadValue(section, label, keyType, errorMode);
  if (!value) ReportError(errorMode);
  return value;
}

const char* C_CUIniFile::ReadValue(const char* section, const char* label, int32_t keyType,
                                   int32_t errorMode) {
  const Symbol* const symbol = FindValue(section, label);
  if (!symbol) return nullptr;
  if (!IsPath(keyType)) {
    valueBuffer_ = *symbol->Value;
    return valueBuffer_.c_str();
  }
  if (!ReadPath(*symbol->Value, keyType, errorMode)) {
    if (keyType == kIniExistingFile || keyType == kIniExistingDirectory) {
      NoteError(keyType == kIniExistingFile ? kIniNoFile : kIniNoDirectory, ViewOf(section),
                ViewOf(label), *symbol->Value);
      return nullptr;
    }
  }
  return valueBuffer_.c_str();
}

/// Leaves the resolved path in the value buffer, also when its check fails.
bool C_CUIniFile::ReadPath(const std::string& stored, int32_t keyType, int32_t errorMode) {
  const std::string directory = Directory();
  const std::string relative = GetToken(stored, 1);
  valueBuffer_ = relative;
  if (ResolvePath(directory, valueBuffer_, keyType, kMsgNone)) return true;
  // Without a second field the first one is what gets reported.
  const std::string absolute = GetToken(stored, 2);
  valueBuffer_ = absolute.empty() ? relative : absolute;
  return ResolvePath(directory, valueBuffer_, keyType, errorMode);
}

I_CUStringList* C_CUIniFile::GetStringList(const char* section, const char* label, int32_t keyType,
                                           int32_t errorMode) {
  valueList_.Clear();
  for (int32_t number = 1;; ++number) {
    const char* const value =
        ReadValue(section, Numbered(label, number).c_str(), keyType, errorMode);
    if (value) {
      valueList_.Add(value);
    } else if (lastError_ == kIniNoSection || lastError_ == kIniNoLabel) {
      break;
    } else {
      ReportError(errorMode);
    }
  }
  if (valueList_.Count() == 0) return nullptr;
  NoteSuccess();
  return &valueList_;
}

int32_t C_CUIniFile::GetInt(const char* section, const char* label, int32_t defaultValue) {
  const Symbol* const symbol = FindValue(section, label);
  return symbol ? ReadInt(*symbol->Value) : defaultValue;
}

double C_CUIniFile::GetDouble(const char* section, const char* label, double defaultValue) {
  const Symbol* const symbol = FindValue(section, label);
  return symbol ? ReadDouble(*symbol->Value) : defaultValue;
}

int32_t C_CUIniFile::SetString(const char* section, const char* label, const char* value,
                               int32_t create, int32_t keyType, int32_t /*reserved*/) {
  if (create) NeedSection(ViewOf(section));
  Section* const home = FindSection(section);
  if (!home) return 0;
  std::string stored(ViewOf(value));
  if (IsPath(keyType)) stored = MakeRelative(Directory(), stored) + "," + stored;
  SetValue(*home, ViewOf(label), stored);
  return 1;
}

int32_t C_CUIniFile::SetStringList(const char* section, const char* label, I_CUStringList* list,
                                   int32_t create, int32_t keyType, int32_t reserved) {
  if (!create && !FindSection(section)) return 0;
  if (!list) return 0;
  // Read first: the list may be the one that GetStringList hands out.
  const int32_t count = list->GetCount();
  for (int32_t i = 0; i < count; ++i) {
    SetString(section, Numbered(label, i + 1).c_str(), list->GetAt(i), create, keyType, reserved);
  }
  int32_t left = count + 1;
  while (DeleteLabel(section, Numbered(label, left).c_str())) ++left;
  NoteSuccess();
  return 1;
}

int32_t C_CUIniFile::SetInt(const char* section, const char* label, int32_t value, int32_t create) {
  return SetString(section, label, std::to_string(value).c_str(), create, kIniText, 0);
}

int32_t C_CUIniFile::SetDouble(const char* section, const char* label, double value,
                               int32_t create) {
  return SetString(section, label, WriteDouble(value).c_str(), create, kIniText, 0);
}

// Errors and paths.

void C_CUIniFile::NoteError(IniError error, std::string_view section, std::string_view label,
                            std::string_view value) {
  lastError_ = error;
  errorSection_.assign(section);
  errorLabel_.assign(label);
  errorValue_.assign(value);
}

const char* C_CUIniFile::GetErrorText() {
  const char* const file = GetFileName();
  const char* const section = errorSection_.c_str();
  const char* const label = errorLabel_.c_str();
  const char* const value = errorValue_.c_str();
  switch (lastError_) {
    case kIniNoSection:
      errorText_.Format("Unable to locate specified section [%s]\nin file '%s'", section, file);
      break;
    case kIniNoLabel:
      errorText_.Format("Unable to locate specified label '%s' of section [%s]\nin file '%s'",
                        label, section, file);
      break;
    case kIniNoFile:
      errorText_.Format("Key value is not an existing file: '%s:[%s][%s]=%s'", file, section, label,
                        value);
      break;
    case kIniNoDirectory:
      errorText_.Format("Key value is not an existing directory: '%s:[%s][%s]=%s'", file, section,
                        label, value);
      break;
    case kIniOk:
      errorText_ = "No error.";
      break;
  }
  return errorText_.c_str();
}

void C_CUIniFile::ReportError(int32_t errorMode) {
  if (errorMode == kMsgNone) return;
  GetMsgHandler().ReportText(errorMode, kErrorTitle, "%s", 0, GetErrorText());
}

std::string C_CUIniFile::Directory() const {
  const std::string file = SystemText(path_);
  return file.substr(0, file.rfind('\\') + 1);
}

}  // namespace velora
