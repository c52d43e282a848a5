// What the managers need where plain arguments turn into values and back.
#pragma once

#include <velora/VeloraTypes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velora {

/// No list of a manager grows past this, whatever a caller or a store asks for.
inline constexpr int32_t kMaxListEntries = 0x100000;

/// A count held to 0 .. kMaxListEntries.
constexpr size_t ListSize(int32_t count) {
  return static_cast<size_t>(std::clamp(count, 0, kMaxListEntries));
}

/// True when `index` names an entry of the list.
template <typename List>
bool Holds(const List& list, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < list.size();
}

/// A text that a caller handed in; null is empty.
constexpr std::string_view TextOf(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

/// A copy of an array that a caller handed in, which may be the list's own.
template <typename T>
std::vector<T> CopyOf(const T* values, int32_t count) {
  if (!values || count <= 0) return {};
  return std::vector<T>(values, values + count);
}

/// Hands out a list: null and 0 when it is empty.
template <typename T>
const T* HandOut(const std::vector<T>& list, int32_t* count) {
  if (count) *count = static_cast<int32_t>(list.size());
  return list.empty() ? nullptr : list.data();
}

/// Stores a result where the caller wants it.
template <typename T>
void Give(T* target, T value) {
  if (target) *target = value;
}

/// The array that a getter of an interface hands out, its count being the last argument.
template <typename Manager, typename Getter, typename... Arguments>
auto ArrayOf(const Manager& manager, Getter getter, Arguments... arguments) {
  int32_t count = 0;
  const auto* values = (manager.*getter)(arguments..., &count);
  return values && count > 0 ? std::span(values, static_cast<size_t>(count))
                             : std::span(values, size_t{0});
}

/// True when two arrays hold equal entries.
template <typename T>
bool Same(std::span<const T> a, std::span<const T> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace velora
