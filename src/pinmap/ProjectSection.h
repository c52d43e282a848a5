// Reading and writing a section of a project's store, key by key.
//
// A manager describes its keys once, in one function template over an archive. The
// writer and the reader below are the two archives, with the same operations:
//
//   Int(key, field, default)   an integer, cut to the width of the field
//   Keep(key, field)           an integer or double whose default is its present value
//   Double(key, field, default)
//   Text(key, field)           a missing text is empty
//   Count(key, list, keys)     the size of a list, each entry of which has `keys` keys
#pragma once

#include <velora/I_CUIniFile.h>
#include <velora/VeloraTypes.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "pinmap/Boundary.h"

namespace velora {

/// The section of the pin map and of the serial LED settings.
inline constexpr char kPinMapSection[] = "VeloraPinMapInfo";
/// The section of the motor settings.
inline constexpr char kMotorSection[] = "VLRMotorInfo";

/// The name of a key: a pattern whose every "%d" is replaced by the next index.
class KeyText {
 public:
  template <std::convertible_to<int32_t>... Indices>
  KeyText(const char* pattern, Indices... indices) {
    const std::array<int32_t, sizeof...(indices)> values{static_cast<int32_t>(indices)...};
    Expand(pattern, values);
  }

  const char* c_str() const { return text_; }

 private:
  void Expand(const char* pattern, std::span<const int32_t> indices);

  char text_[80];  // the longest pattern has 31 characters, three indices add 33
};

/// Writes to a section. While checked, the first write that fails ends the writing:
/// all later ones are left out.
class SectionWriter {
 public:
  static constexpr bool kReads = false;

  SectionWriter(I_CUIniFile& store, const char* section) : store_(store), section_(section) {}

  void BeginChecked() { checked_ = true; }
  /// Ends the checked part; false when one of its writes failed.
  bool EndChecked() {
    checked_ = false;
    return !failed_;
  }

  /// Unsigned values above 0x7FFFFFFF are written as the negative number of the same bits.
  template <std::integral T>
  void Int(const KeyText& key, const T& field, int32_t /*fallback*/) {
    WriteInt(key, static_cast<int32_t>(field));
  }
  template <std::integral T>
  void Keep(const KeyText& key, const T& field) {
    WriteInt(key, static_cast<int32_t>(field));
  }
  void Keep(const KeyText& key, const double& field) { Double(key, field, 0.0); }
  void Double(const KeyText& key, const double& field, double fallback);
  void Text(const KeyText& key, const std::string& field);
  template <typename T>
  void Count(const KeyText& key, const std::vector<T>& list, size_t /*keys*/) {
    WriteInt(key, static_cast<int32_t>(list.size()));
  }

 private:
  void WriteInt(const KeyText& key, int32_t value);
  void Note(int32_t result) { failed_ |= checked_ && result == 0; }

  I_CUIniFile& store_;
  const char* section_;
  bool checked_ = false;
  bool failed_ = false;
};

/// Reads from a section.
///
/// A store may claim any number of entries. Lists that fit in kFreeBytes together are
/// taken at their word, since entries without keys have defaults. What goes beyond must
/// be backed by the section: no more entries than its labels could make up.
class SectionReader {
 public:
  static constexpr bool kReads = true;
  static constexpr size_t kFreeBytes = size_t{1} << 20;

  SectionReader(I_CUIniFile& store, const char* section) : store_(store), section_(section) {}

  template <std::integral T>
  void Int(const KeyText& key, T& field, int32_t fallback) {
    field = static_cast<T>(ReadInt(key, fallback));
  }
  template <std::integral T>
  void Keep(const KeyText& key, T& field) {
    field = static_cast<T>(ReadInt(key, static_cast<int32_t>(field)));
  }
  void Keep(const KeyText& key, double& field) { Double(key, field, field); }
  void Double(const KeyText& key, double& field, double fallback);
  void Text(const KeyText& key, std::string& field);
  /// Reads a text with a message when it is missing, which leaves the field as it was.
  void RequiredText(const KeyText& key, std::string& field);
  /// Entries that stay keep their values, new ones are all 0.
  template <typename T>
  void Count(const KeyText& key, std::vector<T>& list, size_t keys) {
    list.resize(Bound(ReadInt(key, 0), sizeof(T), keys));
  }

  int32_t ReadInt(const KeyText& key, int32_t fallback);
  /// The number of entries to take for a claim: 0 below 0, else as the class tells.
  size_t Bound(int32_t claimed, size_t entryBytes, size_t keysPerEntry);

 private:
  size_t CountLabels();

  I_CUIniFile& store_;
  const char* section_;
  size_t freeBytes_ = kFreeBytes;
  std::optional<size_t> labelCount_;
};

/// The keys of a list of control points; the patterns may begin with other indices.
struct PointKeys {
  const char* number;
  const char* x;
  const char* y;
};

inline constexpr size_t kKeysPerPoint = 2;

/// The points behind their number, X before Y.
template <typename Archive, typename... Indices>
void TransferEntries(Archive& archive, const PointKeys& keys,
                     std::vector<tagVLRCurveCtrlPoint>& points, Indices... indices) {
  for (size_t p = 0; p < points.size(); ++p) {
    const auto index = static_cast<int32_t>(p);
    uint32_t sample = points[p].Sample;  // the record is packed: no reference to its field
    archive.Int(KeyText(keys.x, indices..., index), sample, 0);
    points[p].Sample = sample;
    archive.Int(KeyText(keys.y, indices..., index), points[p].Level, 0);
  }
}

/// A list of control points. Reading replaces the list.
template <typename Archive>
void TransferPoints(Archive& archive, const PointKeys& keys,
                    std::vector<tagVLRCurveCtrlPoint>& points) {
  if constexpr (Archive::kReads) points.clear();
  archive.Count(keys.number, points, kKeysPerPoint);
  TransferEntries(archive, keys, points);
}

}  // namespace velora
