#include "host/ProjectStore.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <span>

#include "foundation/AsciiText.h"
#include "foundation/StringHelpers.h"

namespace velora {
namespace {

constexpr uint64_t kLargestFile = uint64_t{4} << 20;

const char* TextOf(const char* text) { return text ? text : ""; }

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

/// The usual form of a number if it is exact, else the shortest one that is.
std::string ExactText(double value) {
  if (std::isinf(value)) return value < 0 ? "-1e999" : "1e999";
  std::string text = WriteDouble(value);
  if (std::isnan(value) || SameBits(ReadDouble(text), value)) return text;
  std::array<char, 32> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return std::string(buffer.data(), end.ptr);
}

template <typename Number>
bool IsWhole(std::string_view text, Number& number) {
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ptr == text.data() + text.size() && read.ec != std::errc::invalid_argument;
}

}  // namespace

bool IsInteger(std::string_view text) {
  int64_t value = 0;
  return text.size() < 16 && IsWhole(text, value) && value >= INT32_MIN && value <= INT32_MAX;
}

bool IsDecimal(std::string_view text) {
  double value = 0;
  const size_t digits = text.find_first_not_of("+-");
  // "inf", "nan" and hexadecimal digits are no decimal numbers.
  if (digits == std::string_view::npos || ToLower(text[digits]) >= 'a') return false;
  return IsWhole(text, value);
}

Status ProjectStore::LoadFile(const Path& path) {
  SetFileName(path);
  const Result<std::string> text = ReadWholeText(path, kLargestFile);
  if (!text) return text.GetStatus();
  return LoadProjectText(text.Value());
}

Status ProjectStore::LoadProjectText(std::string_view text) {
  RemoveAll();
  used_.clear();
  misreadKeys_.clear();
  misreads_.clear();
  refused_.clear();
  if (Status loaded = document_.Load(text); !loaded) return loaded;
  LoadText(text);
  return {};
}

Status ProjectStore::SaveFile(const Path& path, const SaveOptions& options) const {
  return SaveAtomically(path, ProjectText(), options);
}

ProjectStore::Key ProjectStore::KeyOf(std::string_view section, std::string_view label) {
  return {ToLower(section), std::string(label)};
}

bool ProjectStore::WasUsed(std::string_view section, std::string_view label) const {
  return used_.contains(KeyOf(section, label));
}

void ProjectStore::NoteUse(const char* section, const char* label) {
  if (document_.Find(TextOf(section), TextOf(label))) {
    used_.insert(KeyOf(TextOf(section), TextOf(label)));
  }
}

void ProjectStore::NoteMisread(const char* section, const char* label, const char* wanted) {
  const IniLine* const line = document_.Find(TextOf(section), TextOf(label));
  if (!line || !misreadKeys_.insert(KeyOf(TextOf(section), TextOf(label))).second) return;
  misreads_.push_back(
      {line->number, TextOf(section), TextOf(label), std::string(line->Value()), wanted});
}

const char* ProjectStore::GetString(const char* section, const char* label, int32_t keyType,
                                    int32_t errorMode) {
  NoteUse(section, label);
  return C_CUIniFile::GetString(section, label, keyType, errorMode);
}

int32_t ProjectStore::GetInt(const char* section, const char* label, int32_t defaultValue) {
  NoteUse(section, label);
  const char* const text = C_CUIniFile::GetString(section, label, kIniText, kMsgNone);
  if (text && !IsInteger(text)) NoteMisread(section, label, "a whole number");
  return C_CUIniFile::GetInt(section, label, defaultValue);
}

double ProjectStore::GetDouble(const char* section, const char* label, double defaultValue) {
  NoteUse(section, label);
  const char* const text = C_CUIniFile::GetString(section, label, kIniText, kMsgNone);
  if (text && !IsDecimal(text)) NoteMisread(section, label, "a number");
  return C_CUIniFile::GetDouble(section, label, defaultValue);
}

int32_t ProjectStore::SetString(const char* section, const char* label, const char* value,
                                int32_t create, int32_t keyType, int32_t reserved) {
  const std::string home = TextOf(section);
  const std::string name = TextOf(label);
  if (!document_.CanHold(home, name, TextOf(value))) {
    refused_.push_back("[" + home + "] " + name);
    return 0;
  }
  if (!C_CUIniFile::SetString(section, label, value, create, keyType, reserved)) return 0;
  // A path is stored in another form than it was given.
  const char* const stored = C_CUIniFile::GetString(section, label, kIniText, kMsgNone);
  if (!document_.CanHold(home, name, TextOf(stored))) {
    C_CUIniFile::DeleteLabel(section, label);
    refused_.push_back("[" + home + "] " + name);
    return 0;
  }
  document_.Set(home, name, TextOf(stored));
  used_.insert(KeyOf(home, name));
  return 1;
}

int32_t ProjectStore::SetInt(const char* section, const char* label, int32_t value,
                             int32_t create) {
  const IniLine* const line = document_.Find(TextOf(section), TextOf(label));
  const std::string text = line && IsInteger(line->Value()) && ReadInt(line->Value()) == value
                               ? std::string(line->Value())
                               : std::to_string(value);
  return SetString(section, label, text.c_str(), create, kIniText, 0);
}

int32_t ProjectStore::SetDouble(const char* section, const char* label, double value,
                                int32_t create) {
  const IniLine* const line = document_.Find(TextOf(section), TextOf(label));
  const std::string text = line && SameBits(ReadDouble(line->Value()), value)
                               ? std::string(line->Value())
                               : ExactText(value);
  return SetString(section, label, text.c_str(), create, kIniText, 0);
}

int32_t ProjectStore::DeleteLabel(const char* section, const char* label) {
  if (!C_CUIniFile::DeleteLabel(section, label)) return 0;
  document_.Erase(TextOf(section), TextOf(label));
  return 1;
}

int32_t ProjectStore::DeleteSection(const char* section) {
  const std::string home = TextOf(section);
  if (!C_CUIniFile::DeleteSection(section)) return 0;
  const std::string folded = ToLower(home);
  for (auto used = used_.lower_bound({folded, ""}); used != used_.end() && used->first == folded;
       ++used) {
    document_.Erase(home, used->second);
  }
  document_.EraseEmptySection(home);
  return 1;
}

}  // namespace velora
