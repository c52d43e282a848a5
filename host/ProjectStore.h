// The store of a project: an INI file that belongs to a person.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/IniFile.h"
#include "host/IniDocument.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// Answers as C_CUIniFile does, over a text whose remarks, order, spelling and unknown
/// entries survive a save byte for byte. Two things are better than there: a double that
/// was set comes back exactly, and an entry whose value stays the same keeps its spelling.
///
/// Deleting a section takes the entries that were read or written through this store out
/// of the text; entries that nobody asked for are somebody else's and stay in it, though
/// the section is gone as far as the operations are concerned. What is then set again
/// stands where it stood.
///
/// A value that an INI line cannot hold is refused with 0 and told by RefusedValues.
class ProjectStore final : public C_CUIniFile {
 public:
  ProjectStore() = default;

  /// Replaces all by what the file holds, at most 4 MB; messages name lines.
  Status LoadFile(const Path& path);
  Status LoadProjectText(std::string_view text);

  /// Replaces the file as a whole or leaves it as it was.
  Status SaveFile(const Path& path, const SaveOptions& options = {}) const;
  std::string ProjectText() const { return document_.Text(); }

  const IniDocument& Document() const { return document_; }

  /// A value that was read as a number and is none.
  struct Misread {
    uint32_t line = 0;
    std::string section;
    std::string label;
    std::string value;
    const char* wanted = "";  ///< "a whole number"
  };
  const std::vector<Misread>& Misreads() const { return misreads_; }

  /// Whether the entry was read or written since the text was loaded.
  bool WasUsed(std::string_view section, std::string_view label) const;

  /// The entries that SetString refused, as "[section] label".
  const std::vector<std::string>& RefusedValues() const { return refused_; }

  const char* GetString(const char* section, const char* label, int32_t keyType,
                        int32_t errorMode) override;
  int32_t GetInt(const char* section, const char* label, int32_t defaultValue) override;
  double GetDouble(const char* section, const char* label, double defaultValue) override;
  int32_t SetString(const char* section, const char* label, const char* value, int32_t create,
                    int32_t keyType, int32_t reserved) override;
  int32_t SetInt(const char* section, const char* label, int32_t value, int32_t create) override;
  int32_t SetDouble(const char* section, const char* label, double value, int32_t create) override;
  int32_t DeleteLabel(const char* section, const char* label) override;
  int32_t DeleteSection(const char* section) override;

 private:
  using Key = std::pair<std::string, std::string>;  // section in lower case, label

  static Key KeyOf(std::string_view section, std::string_view label);
  void NoteUse(const char* section, const char* label);
  void NoteMisread(const char* section, const char* label, const char* wanted);

  IniDocument document_;
  std::set<Key> used_;
  std::set<Key> misreadKeys_;
  std::vector<Misread> misreads_;
  std::vector<std::string> refused_;
};

/// Whether the text is a decimal integer of 32 bits, or a decimal number, and nothing else.
bool IsInteger(std::string_view text);
bool IsDecimal(std::string_view text);

}  // namespace velora
