#include "catalogue/chipfile/ItemSource.h"

#include <algorithm>
#include <unordered_set>

#include "foundation/AsciiText.h"
#include "platform/File.h"

namespace velora {
namespace {

constexpr std::string_view kListSeparators = ", \t";
constexpr size_t kLineLimit = 2079;  // where the loader of item files cuts a line

std::string_view Enclosed(std::string_view text, char first, char last) {
  if (text.size() < 2 || text.front() != first || text.back() != last) return {};
  return text.substr(1, text.size() - 2);
}

}  // namespace

std::string_view ReferredItem(std::string_view text) { return Enclosed(text, '[', ']'); }

std::vector<std::string_view> SplitEntries(std::string_view text) {
  std::vector<std::string_view> entries;
  for (;;) {
    text = TrimLeft(text, kListSeparators);
    if (text.empty()) return entries;
    entries.push_back(text.substr(0, text.find_first_of(kListSeparators)));
    text.remove_prefix(entries.back().size());
  }
}

std::vector<std::string_view> ListEntries(std::string_view text) {
  return SplitEntries(Enclosed(text, '{', '}'));
}

const ItemLabel* ItemSection::Find(std::string_view key) const {
  const auto found = std::ranges::find(labels, key, &ItemLabel::key);
  return found == labels.end() ? nullptr : &*found;
}

Result<ItemSource> ItemSource::Open(const Path& path) {
  const Result<std::string> text = ReadWholeText(path);
  if (!text) return text.GetStatus();
  return Parse(text.Value());
}

ItemSource ItemSource::Parse(std::string_view text) {
  ItemSource source;
  size_t current = SIZE_MAX;
  for (size_t number = 1; !text.empty(); ++number) {
    const size_t feed = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, feed);
    text.remove_prefix(std::min(feed + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() > kLineLimit) {
      source.remarks_.push_back({number,
                                 {},
                                 {},
                                 "line of " + std::to_string(line.size()) +
                                     " bytes; readers cut lines behind byte " +
                                     std::to_string(kLineLimit)});
    }
    while (line.size() > kLineLimit) {
      source.ReadLine(line.substr(0, kLineLimit), number, current);
      line.remove_prefix(kLineLimit);
    }
    source.ReadLine(line, number, current);
  }
  source.ResolveParents();
  return source;
}

void ItemSource::ReadLine(std::string_view line, size_t number, size_t& current) {
  line = line.substr(0, line.find('\0'));
  line = Trim(line.substr(0, line.find(';')));
  if (line.empty()) return;
  if (line.starts_with('[') && line.ends_with(']')) {
    const std::string_view name = TrimRight(TrimLeft(line, "["), "]");
    current = IndexOf(NeedSection(name, number, true));
    return;
  }
  if (current == SIZE_MAX) {
    current = IndexOf(NeedSection({}, number, false));
    remarks_.push_back({number, {}, {}, "a label in front of the first section"});
  }
  ItemSection& section = sections_[current];
  const size_t equals = line.find('=');
  // As in the loader, a line without "=" is the value of the empty key.
  const bool hasKey = equals != std::string_view::npos;
  if (!hasKey) remarks_.push_back({number, section.name, {}, "no \"=\" in the line"});
  const std::string_view key = hasKey ? TrimRight(line.substr(0, equals)) : std::string_view();
  const std::string_view value = hasKey ? TrimLeft(line.substr(equals + 1)) : line;
  const auto found = std::ranges::find(section.labels, key, &ItemLabel::key);
  if (found == section.labels.end()) {
    section.labels.push_back({std::string(key), std::string(value), number});
    return;
  }
  remarks_.push_back(
      {number, section.name, std::string(key),
       "stands in line " + std::to_string(found->line) + " already; this one counts"});
  *found = {std::string(key), std::string(value), number};
}

ItemSection& ItemSource::NeedSection(std::string_view name, size_t line, bool header) {
  const auto [place, added] = places_.try_emplace(ToLower(name), sections_.size());
  if (added) {
    sections_.push_back({std::string(name), line, {}});
  } else if (header) {
    remarks_.push_back({line,
                        std::string(name),
                        {},
                        "the section stands in line " +
                            std::to_string(sections_[place->second].line) +
                            " already; both are one"});
  }
  return sections_[place->second];
}

const ItemSection* ItemSource::Find(std::string_view name) const {
  const auto found = places_.find(ToLower(name));
  return found == places_.end() ? nullptr : &sections_[found->second];
}

void ItemSource::ResolveParents() {
  for (const ItemSection& section : sections_) {
    std::vector<size_t>& parents = parents_.emplace_back();
    const ItemLabel* const isa = section.Find(kIsaKey);
    if (!isa) continue;
    for (const std::string_view entry : SplitEntries(isa->value)) {
      const std::string_view name = ReferredItem(entry);
      const ItemSection* const parent = name.data() ? Find(name) : nullptr;
      if (parent) parents.push_back(IndexOf(*parent));
    }
  }
}

std::vector<const ItemSection*> ItemSource::ParentsOf(const ItemSection& section) const {
  std::vector<const ItemSection*> parents;
  for (const size_t index : parents_[IndexOf(section)]) parents.push_back(&sections_[index]);
  return parents;
}

std::vector<const ItemSection*> ItemSource::Lineage(const ItemSection& section, size_t most) const {
  std::vector<const ItemSection*> lineage;
  std::unordered_set<size_t> met;
  // Not by recursion: a file may nest deeper than the stack.
  std::vector<size_t> ahead = {IndexOf(section)};
  while (!ahead.empty() && lineage.size() < most) {
    const size_t item = ahead.back();
    ahead.pop_back();
    if (!met.insert(item).second) continue;
    lineage.push_back(&sections_[item]);
    ahead.insert(ahead.end(), parents_[item].rbegin(), parents_[item].rend());
  }
  return lineage;
}

}  // namespace velora
