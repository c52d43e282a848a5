#include "host/IniDocument.h"

#include <algorithm>

#include "foundation/AsciiText.h"

namespace velora {
namespace {

constexpr size_t kLineLimit = 2079;

/// The bytes of a line that are read: without its line end.
std::string_view WithoutLineEnd(std::string_view text) {
  if (!text.ends_with('\n')) return text;
  text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

void ReadEntry(IniLine& line, std::string_view entry) {
  const size_t equals = entry.find('=');
  line.kind = IniLine::kEntry;
  line.bare = equals == std::string_view::npos;
  std::string_view value = entry;
  if (!line.bare) {
    line.name = TrimRight(entry.substr(0, equals));
    value = entry.substr(equals + 1);
    // Trimming an empty value gives a view without a place: it stands behind the "=".
    const size_t blanks = std::min(value.find_first_not_of(kBlanks), value.size());
    value.remove_prefix(blanks);
  }
  line.valueStart = static_cast<size_t>(value.data() - line.text.data());
  line.valueLength = value.size();
}

/// Finds out what a line is.
IniLine ReadLine(std::string text) {
  IniLine line;
  line.text = std::move(text);
  std::string_view read = WithoutLineEnd(line.text);
  read = Trim(read.substr(0, read.find(';')));
  if (read.empty()) return line;
  if (read.starts_with('[') && read.ends_with(']')) {
    line.kind = IniLine::kSection;
    line.name = TrimRight(TrimLeft(read, "["), "]");
  } else {
    ReadEntry(line, read);
  }
  return line;
}

std::string EntryText(std::string_view label, std::string_view value) {
  std::string text(label);
  text += label.empty() ? "=" : " =";
  if (!value.empty()) text.append(" ").append(value);
  return text;
}

std::string HeaderText(std::string_view name) { return "[" + std::string(name) + "]"; }

/// The text of a line with another value.
std::string WithValue(const IniLine& line, std::string_view value) {
  std::string text = line.text;
  std::string put(value);
  if (line.bare) {
    put.insert(0, "= ");
  } else if (line.valueLength == 0 && text[line.valueStart - 1] == '=') {
    put.insert(0, " ");
  }
  return text.replace(line.valueStart, line.valueLength, put);
}

}  // namespace

Status IniDocument::Load(std::string_view text) {
  lines_.clear();
  sections_.clear();
  lineEnd_ = "\n";
  Section* current = nullptr;
  for (uint32_t number = 1; !text.empty(); ++number) {
    const size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view bytes = text.substr(0, size);
    text.remove_prefix(size);
    const std::string where = "line " + std::to_string(number);
    if (bytes.find('\0') != std::string_view::npos) {
      return Status::Error(where + ": has a zero byte, so this is no text");
    }
    if (const size_t length = WithoutLineEnd(bytes).size(); length > kLineLimit) {
      return Status::Error(where + ": has " + std::to_string(length) +
                           " bytes; a line has at most " + std::to_string(kLineLimit));
    }
    if (number == 1 && bytes.ends_with("\r\n")) lineEnd_ = "\r\n";
    const Place line = lines_.insert(lines_.end(), ReadLine(std::string(bytes)));
    line->number = number;
    Enter(line, current);
  }
  return {};
}

/// Makes a new line known to its section.
void IniDocument::Enter(Place line, Section*& current) {
  if (line->kind == IniLine::kOther) return;
  if (line->kind == IniLine::kSection) {
    current = &NeedSection(line->name);
    current->headers.push_back(line);
  } else {
    if (!current) current = &NeedSection({});
    current->entries[line->name].push_back(line);
    ++current->live;
  }
  current->anchor = line;
  current->anchored = true;
}

std::string IniDocument::Text() const {
  std::string text;
  for (const IniLine& line : lines_) {
    if (!line.erased) text += line.text;
  }
  return text;
}

const IniDocument::Section* IniDocument::FindSection(std::string_view name) const {
  const auto found = sections_.find(ToLower(name));
  return found == sections_.end() ? nullptr : found->second.get();
}

IniDocument::Section& IniDocument::NeedSection(std::string_view name) {
  auto& section = sections_[ToLower(name)];
  if (!section) section = std::make_unique<Section>();
  return *section;
}

const IniLine* IniDocument::Find(std::string_view section, std::string_view label) const {
  const Section* const home = FindSection(section);
  if (!home) return nullptr;
  const auto found = home->entries.find(std::string(label));
  return found == home->entries.end() ? nullptr : &*found->second.back();
}

bool IniDocument::CanHold(std::string_view section, std::string_view label,
                          std::string_view value) const {
  for (const std::string_view part : {section, label, value}) {
    if (part.find_first_of(std::string_view("\0\n", 2)) != std::string_view::npos) return false;
  }
  if (!section.empty()) {
    const IniLine header = ReadLine(HeaderText(section));
    if (header.kind != IniLine::kSection || header.name != section) return false;
    if (header.text.size() > kLineLimit) return false;
  }
  const IniLine* const present = Find(section, label);
  const IniLine entry =
      ReadLine(present ? WithValue(*present, value) : EntryText(label, value) + lineEnd_);
  return entry.kind == IniLine::kEntry && entry.name == label && entry.Value() == value &&
         WithoutLineEnd(entry.text).size() <= kLineLimit;
}

IniDocument::Place IniDocument::InsertLine(Place before, std::string text) {
  if (before != lines_.begin()) {
    std::string& previous = std::prev(before)->text;
    if (!previous.ends_with('\n')) previous += lineEnd_;
  }
  return lines_.insert(before, ReadLine(text + lineEnd_));
}

void IniDocument::AppendHeader(std::string_view name, Section& section) {
  const bool first = std::ranges::all_of(lines_, &IniLine::erased);
  if (!first && !WithoutLineEnd(lines_.back().text).empty()) InsertLine(lines_.end(), "");
  section.anchor = InsertLine(lines_.end(), HeaderText(name));
  section.headers.push_back(section.anchor);
  section.anchored = true;
}

void IniDocument::Set(std::string_view section, std::string_view label, std::string_view value) {
  Section& home = NeedSection(section);
  for (const Place& header : home.headers) header->erased = false;
  std::vector<Place>& places = home.entries[std::string(label)];
  if (!places.empty()) {
    IniLine& line = *places.back();
    if (line.erased) ++home.live;
    line.erased = false;
    if (line.Value() == value) return;
    IniLine changed = ReadLine(WithValue(line, value));
    changed.number = line.number;
    line = std::move(changed);
    return;
  }
  if (!home.anchored && !section.empty()) AppendHeader(section, home);
  const Place behind = home.anchored ? std::next(home.anchor) : lines_.begin();
  const Place line = InsertLine(behind, EntryText(label, value));
  places.push_back(line);
  ++home.live;
  home.anchor = line;
  home.anchored = true;
}

void IniDocument::Erase(std::string_view section, std::string_view label) {
  Section& home = NeedSection(section);
  const auto found = home.entries.find(std::string(label));
  if (found == home.entries.end()) return;
  for (const Place& line : found->second) {
    if (!line->erased) --home.live;
    line->erased = true;
  }
}

void IniDocument::EraseEmptySection(std::string_view section) {
  Section& home = NeedSection(section);
  if (home.live != 0) return;
  for (const Place& header : home.headers) header->erased = true;
}

}  // namespace velora
