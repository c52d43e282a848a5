#include "pinmap/ProjectSection.h"

#include <algorithm>
#include <charconv>

namespace velora {

constexpr int32_t kCreate = 1;  // makes the section when it is missing

void KeyText::Expand(const char* pattern, std::span<const int32_t> indices) {
  char* out = text_;
  char* const end = text_ + sizeof(text_) - 1;
  auto index = indices.begin();
  for (const char* in = pattern; *in && out < end; ++in) {
    if (in[0] == '%' && in[1] == 'd' && index != indices.end()) {
      out = std::to_chars(out, end, *index++).ptr;
      ++in;
    } else {
      *out++ = *in;
    }
  }
  *out = '\0';
}

void SectionWriter::WriteInt(const KeyText& key, int32_t value) {
  if (failed_) return;
  Note(store_.SetInt(section_, key.c_str(), value, kCreate));
}

void SectionWriter::Double(const KeyText& key, const double& field, double /*fallback*/) {
  if (failed_) return;
  Note(store_.SetDouble(section_, key.c_str(), field, kCreate));
}

void SectionWriter::Text(const KeyText& key, const std::string& field) {
  if (failed_) return;
  Note(store_.SetString(section_, key.c_str(), field.c_str(), kCreate, kIniText, 1));
}

int32_t SectionReader::ReadInt(const KeyText& key, int32_t fallback) {
  return store_.GetInt(section_, key.c_str(), fallback);
}

void SectionReader::Double(const KeyText& key, double& field, double fallback) {
  field = store_.GetDouble(section_, key.c_str(), fallback);
}

void SectionReader::Text(const KeyText& key, std::string& field) {
  field = TextOf(store_.GetString(section_, key.c_str(), kIniText, kMsgNone));
}

void SectionReader::RequiredText(const KeyText& key, std::string& field) {
  if (const char* text = store_.GetString(section_, key.c_str(), kIniText, kMsgBox)) {
    field = text;
  }
}

size_t SectionReader::Bound(int32_t claimed, size_t entryBytes, size_t keysPerEntry) {
  const size_t count = ListSize(claimed);
  const size_t free = freeBytes_ / entryBytes;
  const size_t taken =
      count <= free ? count : std::min(count, std::max(free, CountLabels() / keysPerEntry));
  freeBytes_ -= std::min(taken, free) * entryBytes;
  return taken;
}

size_t SectionReader::CountLabels() {
  if (labelCount_) return *labelCount_;
  const auto has = [this](size_t index) {
    return store_.GetLabelName(section_, static_cast<int32_t>(index)) != nullptr;
  };
  // A store hands out labels by position alone, so the end is found by halving.
  constexpr size_t kMost = size_t{64} * kMaxListEntries;
  size_t below = 0;
  size_t beyond = kMost;
  while (below < beyond) {
    const size_t middle = below + (beyond - below) / 2;
    if (has(middle)) {
      below = middle + 1;
    } else {
      beyond = middle;
    }
  }
  labelCount_ = below;
  return below;
}

}  // namespace velora
