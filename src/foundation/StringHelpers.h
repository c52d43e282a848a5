// Numbers and lists in text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <velora/I_CUStringList.h>

namespace velora {

class C_CUStringList;

// The parsers answer whether the whole text is a number of their form. Values
// are unsigned 32-bit and wrap silently. `value` is written as the digits are
// read, so after a failure it holds what stood in front of the bad character;
// ParseHex and ParseBinary write nothing without their prefix or suffix.

/// Digits, at least one.
bool ParseDecimal(std::string_view text, uint32_t* value);

/// Prefix "0x" or "0X", or else suffix "h" or "H"; digits of either case. The
/// prefix or suffix alone is 0.
bool ParseHex(std::string_view text, uint32_t* value);

/// Suffix "b" or "B"; digits 0 and 1. The suffix alone is 0.
bool ParseBinary(std::string_view text, uint32_t* value);

/// Decimal, else hexadecimal, else binary.
bool ParseNumber(std::string_view text, uint32_t* value);

/// The integer that the text begins with, behind blanks, with or without a sign:
/// held to the range, 0 where there is none.
int32_t ReadInt(std::string_view text);

/// The same for a decimal number with or without fraction and exponent; beyond
/// the range infinity or 0. Always with a decimal point, whatever the locale.
double ReadDouble(std::string_view text);

/// The number with six decimals and an exponent of at least two digits, "1.500000e+00",
/// whatever the locale.
std::string WriteDouble(double value);

/// Field `index`, from 1 on, of a text with the separators "," and ";", without
/// the blanks, tabs and newlines around it. The whole text, trimmed, for an
/// index below 1; empty for a field beyond the last.
std::string GetToken(std::string_view list, int32_t index);

/// Fills `fields` with the trimmed fields of `list` up to the first empty one.
void SplitList(std::string_view list, C_CUStringList& fields);

/// Index of the first string equal to `text`; -1 when there is none or the list
/// is null. The list's cursor stays.
int32_t FindString(std::string_view text, I_CUStringList* list);
int32_t FindStringNoCase(std::string_view text, I_CUStringList* list);

/// True when FindStringNoCase finds the text.
bool IsInList(std::string_view text, I_CUStringList* list);

}  // namespace velora
