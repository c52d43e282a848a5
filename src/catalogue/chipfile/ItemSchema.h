// Which keys the sections of the chip files may have, and what their values are.
//
// The tables here are what readers, checks, help and documents go by; the data
// files repeat them for people in their heads, which a test compares.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/Status.h"

namespace velora {

enum class KeyKind : uint8_t {
  kText,        ///< anything, not empty
  kFlag,        ///< 0 or 1
  kNumber,      ///< from `least` to `most`; decimal, 0x10, 10h or 101b
  kHexMask,     ///< up to 16 hexadecimal digits, with or without 0x
  kNumberList,  ///< {1, 2}; each from `least` to `most`
  kTextList,    ///< {a, b}
  kKeyList,     ///< {Key, Key}: keys of the same section
  kPortList,    ///< {BP0.0-7, BP1.0-7}
  kRangeList,   ///< {BP0.0-3*, BP1.7-0}
  kClockList,   ///< {Fosc/1, Fosc/4}
  kExtensions,  ///< {.WAV, .SRC}
  kItems,       ///< {[Item], [Item]}, each of the class `items`
  kParents,     ///< [Item], [Item]
};

struct KeyRule {
  const char* name;
  KeyKind kind;
  const char* meaning;  ///< for people; a phrase without a full stop
  uint64_t least = 0;
  uint64_t most = 0x7FFFFFFF;
  const char* items = nullptr;  ///< kItems: name of the class they are of
  bool required = false;        ///< a part without a value is faulty
};

/// What kind of thing a section describes.
struct ItemClass {
  const char* name;
  std::span<const KeyRule> keys;
  const char* rootItem = nullptr;  ///< name of the one section of this class, if it is fixed

  const KeyRule* Find(std::string_view key) const;
};

/// The classes of one file; the first is that of parts and their parents.
struct ItemSchema {
  const char* file;  ///< name of the file
  std::span<const ItemClass> classes;

  const ItemClass& Parts() const { return classes.front(); }
  const ItemClass* Find(std::string_view name) const;
};

const ItemSchema& ChipInfoSchema();      ///< of ChipInfo.cfg
const ItemSchema& ChipPropertySchema();  ///< of ChipProperty.cfg

/// Marks the section as a part; holds for the section alone, not for its children.
inline constexpr std::string_view kPartKey = "Part";

/// Keys of the section whose values are wrong on purpose; for the section alone.
inline constexpr std::string_view kUncheckedKey = "Unchecked";

/// Whether a value has the form of its rule, as far as that can be told without
/// the rest of the file. An empty value takes an inherited one away and is good
/// for every key that is not required.
Status CheckValue(const KeyRule& rule, std::string_view value);

}  // namespace velora
