// An INI text that a person owns, and may be edited without losing a byte of the rest.
//
// The text is kept line by line, as it came. Changing an entry replaces the bytes of
// its value; all else of the line, remarks among it, stays. What counts as a section, a
// label and a value is what C_CUIniFile reads from the same text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Status.h"

namespace velora {

/// One line.
struct IniLine {
  enum Kind : uint8_t {
    kOther,    ///< blank, or a remark alone
    kSection,  ///< "[name]"
    kEntry,    ///< "label = value", or a value alone under the empty label
  };

  std::string text;  ///< with its line end, if it has one
  Kind kind = kOther;
  bool bare = false;      ///< kEntry: there is no "="
  bool erased = false;    ///< not a part of the text any more; its place is remembered
  uint32_t number = 0;    ///< from 1 on as loaded; 0 for an added line
  std::string name;       ///< of the section, or the label
  size_t valueStart = 0;  ///< kEntry: where its value stands in `text`
  size_t valueLength = 0;

  std::string_view Value() const { return std::string_view(text).substr(valueStart, valueLength); }
};

class IniDocument {
 public:
  IniDocument() = default;
  IniDocument(const IniDocument&) = delete;
  IniDocument& operator=(const IniDocument&) = delete;

  /// Replaces the text. Refused, with the number of the line, are lines longer than
  /// 2,079 bytes and zero bytes: nobody writes them.
  Status Load(std::string_view text);

  /// The text as it now stands: after Load and no change, byte for byte what was loaded.
  std::string Text() const;

  /// False when the entry would not be read back as it is: a value with a line end or a
  /// ";", blanks around it, a line that gets too long.
  bool CanHold(std::string_view section, std::string_view label, std::string_view value) const;

  /// Sets the value of the last line of the label, the one that counts. A line that was
  /// erased comes back at its place; a new one goes behind the section's last entry; a new
  /// section to the end. Only for what CanHold allows.
  void Set(std::string_view section, std::string_view label, std::string_view value);

  /// Takes all lines of the label out of the text.
  void Erase(std::string_view section, std::string_view label);

  /// Takes the section's headers out of the text if no entry is left under them.
  void EraseEmptySection(std::string_view section);

  /// The last line of the label, an erased one too; null without one.
  const IniLine* Find(std::string_view section, std::string_view label) const;

  /// All lines in order, with the erased ones.
  const std::list<IniLine>& Lines() const { return lines_; }

 private:
  using Place = std::list<IniLine>::iterator;

  struct Section {
    size_t live = 0;  ///< entries that are not erased
    bool anchored = false;
    Place anchor;  ///< its last entry; its header while it has none
    std::vector<Place> headers;
    std::unordered_map<std::string, std::vector<Place>> entries;
  };

  const Section* FindSection(std::string_view name) const;
  Section& NeedSection(std::string_view name);
  void Enter(Place line, Section*& current);
  Place InsertLine(Place before, std::string text);
  void AppendHeader(std::string_view name, Section& section);

  std::list<IniLine> lines_;
  std::unordered_map<std::string, std::unique_ptr<Section>> sections_;  ///< by name in lower case
  std::string lineEnd_ = "\n";
};

}  // namespace velora
