#include "audio/inspect/FieldText.h"

#include <algorithm>
#include <cstdio>

namespace velora {

using layout::FieldForm;
using layout::Layout;
using layout::LayoutField;

namespace {

std::string Hex(uint64_t number, int digits) {
  char text[24];
  std::snprintf(text, sizeof(text), "0x%0*llX", digits, static_cast<unsigned long long>(number));
  return text;
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string printable;
  for (const char c : text) {
    if (c >= ' ' && c <= '~' && c != '\\') {
      printable += c;
      continue;
    }
    char escape[8];
    std::snprintf(escape, sizeof(escape), "\\x%02X", static_cast<unsigned char>(c));
    printable += escape;
  }
  return printable;
}

std::string Printable(const layout::FileTag& tag) {
  return Printable(std::string_view(tag.data(), tag.size()));
}

uint64_t FieldNumber(std::span<const std::byte> record, const LayoutField& field) {
  if (field.offset + field.size > record.size() || field.size > sizeof(uint64_t)) return 0;
  uint64_t number = 0;
  for (uint32_t i = field.size; i > 0; --i) {
    number = number << 8 | std::to_integer<uint64_t>(record[field.offset + i - 1]);
  }
  return number;
}

std::string FieldText(std::span<const std::byte> record, const LayoutField& field) {
  if (field.offset + field.size > record.size()) return "cut off";
  const std::span<const std::byte> bytes = record.subspan(field.offset, field.size);
  switch (field.form) {
    case FieldForm::kTag:
      return '"' +
             Printable(
                 std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())) +
             '"';
    case FieldForm::kHex:
      return Hex(FieldNumber(record, field), static_cast<int>(field.size) * 2);
    case FieldForm::kBytes:
      return BytesText(bytes);
    case FieldForm::kDecimal:
      break;
  }
  return std::to_string(FieldNumber(record, field));
}

std::string BytesText(std::span<const std::byte> bytes) {
  constexpr size_t kShown = 16;
  std::string text;
  for (const std::byte byte : bytes.first(std::min(bytes.size(), kShown))) {
    char digits[4];
    std::snprintf(digits, sizeof(digits), "%02X", std::to_integer<unsigned>(byte));
    if (!text.empty()) text += ' ';
    text += digits;
  }
  if (bytes.size() > kShown) text += " ...";
  return text;
}

const LayoutField* FindField(const Layout& layout, std::string_view name) {
  const auto found = std::find_if(layout.fields.begin(), layout.fields.end(),
                                  [&](const LayoutField& field) { return field.name == name; });
  return found == layout.fields.end() ? nullptr : &*found;
}

}  // namespace velora
