#include "foundation/StringHelpers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "foundation/AsciiText.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

constexpr std::string_view kSeparators = ",;";

/// The value of a digit of any base up to 16; 16 for what is none.
uint32_t DigitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0');
  const char lower = ToLower(c);
  if (lower >= 'a' && lower <= 'f') return static_cast<uint32_t>(lower - 'a' + 10);
  return 16;
}

bool ParseDigits(std::string_view digits, uint32_t base, uint32_t* value) {
  *value = 0;
  for (const char c : digits) {
    const uint32_t digit = DigitValue(c);
    if (digit >= base) return false;
    *value = *value * base + digit;
  }
  return true;
}

bool HasSuffix(std::string_view text, char lowerCase) {
  return !text.empty() && ToLower(text.back()) == lowerCase;
}

/// The text from its first digit or point on, behind blanks and one sign.
std::string_view DropBlanksAndSign(std::string_view text, bool& negative) {
  text = TrimLeft(text, " \t\n\v\f\r");
  negative = text.substr(0, 1) == "-";
  if (negative || text.substr(0, 1) == "+") text.remove_prefix(1);
  return text;
}

template <typename Equal>
int32_t FindBy(I_CUStringList* list, Equal equal) {
  const int32_t count = list ? list->GetCount() : 0;
  for (int32_t i = 0; i < count; ++i) {
    const char* const entry = list->GetAt(i);
    if (entry && equal(entry)) return i;
  }
  return -1;
}

}  // namespace

bool ParseDecimal(std::string_view text, uint32_t* value) {
  return ParseDigits(text, 10, value) && !text.empty();
}

bool ParseHex(std::string_view text, uint32_t* value) {
  if (StartsWithNoCase(text, "0x")) return ParseDigits(text.substr(2), 16, value);
  if (HasSuffix(text, 'h')) return ParseDigits(text.substr(0, text.size() - 1), 16, value);
  return false;
}

bool ParseBinary(std::string_view text, uint32_t* value) {
  return HasSuffix(text, 'b') && ParseDigits(text.substr(0, text.size() - 1), 2, value);
}

bool ParseNumber(std::string_view text, uint32_t* value) {
  return ParseDecimal(text, value) || ParseHex(text, value) || ParseBinary(text, value);
}

int32_t ReadInt(std::string_view text) {
  bool negative = false;
  text = DropBlanksAndSign(text, negative);
  constexpr int64_t kLimit = std::numeric_limits<int32_t>::max();
  int64_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    value = std::min(value * 10 + (c - '0'), kLimit + 1);
  }
  return static_cast<int32_t>(negative ? -value : std::min(value, kLimit));
}

double ReadDouble(std::string_view text) {
  bool negative = false;
  text = DropBlanksAndSign(text, negative);
  if (text.empty() || (text[0] != '.' && (text[0] < '0' || text[0] > '9'))) return 0.0;
  const char* const end = text.data() + text.size();
  double value = 0.0;
  if (std::from_chars(text.data(), end, value).ec == std::errc::result_out_of_range) {
    // The wider type tells what is too large from what is too small.
    long double wide = std::numeric_limits<long double>::infinity();
    std::from_chars(text.data(), end, wide);
    value = static_cast<double>(wide);
  }
  return negative ? -value : value;
}

std::string WriteDouble(double value) {
  std::array<char, 32> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::scientific, 6);
  return std::string(buffer.data(), end.ptr);
}

std::string GetToken(std::string_view list, int32_t index) {
  if (index < 1) return std::string(Trim(list));
  for (int32_t skipped = 1; skipped < index; ++skipped) {
    const size_t separator = list.find_first_of(kSeparators);
    if (separator == std::string_view::npos) return {};
    list.remove_prefix(separator + 1);
  }
  return std::string(Trim(list.substr(0, list.find_first_of(kSeparators))));
}

void SplitList(std::string_view list, C_CUStringList& fields) {
  fields.Clear();
  while (true) {
    const size_t separator = list.find_first_of(kSeparators);
    const std::string_view field = Trim(list.substr(0, separator));
    if (field.empty()) return;
    fields.AddText(field);
    if (separator == std::string_view::npos) return;
    list.remove_prefix(separator + 1);
  }
}

int32_t FindString(std::string_view text, I_CUStringList* list) {
  return FindBy(list, [text](std::string_view entry) { return entry == text; });
}

int32_t FindStringNoCase(std::string_view text, I_CUStringList* list) {
  return FindBy(list, [text](std::string_view entry) { return EqualsNoCase(entry, text); });
}

bool IsInList(std::string_view text, I_CUStringList* list) {
  return FindStringNoCase(text, list) >= 0;
}

}  // namespace velora
