#include "audio/inspect/LabelGrammar.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace velora {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string_view Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<int32_t> ReadNumber(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The first opening bracket, comma and closing bracket in this order make a pair,
/// whatever stands around them.
std::optional<LabelMeaning> ReadPair(std::string_view text, char open, char close) {
  const size_t first = text.find(open);
  if (first == std::string_view::npos) return std::nullopt;
  const size_t comma = text.find(',', first + 1);
  if (comma == std::string_view::npos) return std::nullopt;
  const size_t last = text.find(close, comma + 1);
  if (last == std::string_view::npos) return std::nullopt;

  LabelMeaning meaning;
  const auto type = ReadNumber(text.substr(first + 1, comma - first - 1));
  const auto parameter = ReadNumber(text.substr(comma + 1, last - comma - 1));
  meaning.kind = type && parameter ? LabelKind::kEvent : LabelKind::kBroken;
  meaning.type = type.value_or(0);
  meaning.parameter = parameter.value_or(0);
  meaning.more = !Trim(text.substr(0, first)).empty() || !Trim(text.substr(last + 1)).empty();
  return meaning;
}

bool IsSilence(std::string_view text) {
  constexpr std::string_view kWord = "SILENCE";
  return std::equal(text.begin(), text.end(), kWord.begin(), kWord.end(), [](char a, char b) {
    return (a >= 'a' && a <= 'z' ? a - ('a' - 'A') : a) == b;
  });
}

}  // namespace

LabelMeaning ReadLabelMeaning(std::string_view text) {
  if (const auto pair = ReadPair(text, '(', ')')) return *pair;
  const std::string_view trimmed = Trim(text);
  LabelMeaning meaning;
  if (IsSilence(trimmed)) {
    meaning.kind = LabelKind::kSilence;
    return meaning;
  }
  if (const auto pair = ReadPair(text, '[', ']')) return *pair;
  const bool opens = !trimmed.empty() && (trimmed.front() == '(' || trimmed.front() == '[');
  meaning.kind = opens ? LabelKind::kBroken : LabelKind::kPlain;
  return meaning;
}

}  // namespace velora
