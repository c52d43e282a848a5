// Fields of records as text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "audio/inspect/Layouts.h"

namespace velora {

/// The text with everything but printable ASCII, and the backslash, as \xNN.
std::string Printable(std::string_view text);
std::string Printable(const layout::FileTag& tag);

/// The little-endian number of a field of at most 8 bytes; 0 when `record` is too
/// short for the field.
uint64_t FieldNumber(std::span<const std::byte> record, const layout::LayoutField& field);

/// The field's value as its form asks: "KMPM" in quotes, 8000, 0x0110.
std::string FieldText(std::span<const std::byte> record, const layout::LayoutField& field);

/// The first 16 bytes in hexadecimal, with an ellipsis when there are more.
std::string BytesText(std::span<const std::byte> bytes);

/// The field of that name; null when the layout has none.
const layout::LayoutField* FindField(const layout::Layout& layout, std::string_view name);

}  // namespace velora
