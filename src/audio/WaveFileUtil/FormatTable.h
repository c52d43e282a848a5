// What is known of every kind of sound file: format id, extensions, tag, name.
//
// Extensions, tags and names are compared without regard to case. Several ids share
// extensions; the first row wins, so ".SRC" is 1 and ".WAV" is 2.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/Path.h"

namespace velora {

/// What an extension stands for; exactly one of these.
enum FormatKind : uint32_t {
  kKindAudio = 0x01000000,
  kKindMusic = 0x02000000,
  kKindInstrument = 0x04000000,
  kKindImage = 0x10000000,
  kKindBinary = 0x80000000,
};

/// The form of the samples, for the lists of what a chip takes.
enum FormatGroup : uint32_t {
  kGroupNone = 0,
  kGroupSource = 0x100,
  kGroupAdpcm = 0x200,
  kGroupMdpcm = 0x400,
  kGroupPcm10 = 0x1000,
};

#pragma pack(push, 1)
struct ExtensionRecord {
  uint32_t id;
  char ext[6];     ///< with its dot, filled with zeros
  uint32_t kind;   ///< FormatKind
  uint32_t group;  ///< FormatGroup
};
struct TagRecord {
  uint32_t id;
  char tag[5];  ///< the first four bytes of the file, terminated
};
struct NameRecord {
  uint32_t id;
  char name[5];  ///< short name, terminated
};
#pragma pack(pop)
static_assert(sizeof(ExtensionRecord) == 18 && sizeof(TagRecord) == 9 && sizeof(NameRecord) == 9);

std::span<const ExtensionRecord> GetExtensionTable();
std::span<const TagRecord> GetTagTable();
std::span<const NameRecord> GetNameTable();

/// The first extension of the format. False, and the text is left as it is, for an
/// unknown id.
bool GetExtensionById(uint32_t id, std::string& extension);

/// 0 for an unknown extension. The extension has its dot.
uint32_t GetFormatIdByExtension(std::string_view extension);

/// The short name. False, and the text is left as it is, for an unknown id.
bool GetFormatName(uint32_t id, std::string& name);

/// 0 for an unknown id or extension.
uint32_t GetKindById(uint32_t id);
uint32_t GetKindByExtension(std::string_view extension);
uint32_t GetGroupById(uint32_t id);
uint32_t GetGroupByExtension(std::string_view extension);

/// The format whose files begin with these four bytes; 0 for none.
uint32_t GetFormatIdByTag(std::string_view tag);

/// The format that the first four bytes of the file name; 0 when they name none or
/// cannot be read.
uint32_t DetectTag(const Path& path);

inline bool IsAudioExtension(std::string_view e) { return GetKindByExtension(e) == kKindAudio; }
inline bool IsMusicExtension(std::string_view e) { return GetKindByExtension(e) == kKindMusic; }
inline bool IsInstrumentExtension(std::string_view e) {
  return GetKindByExtension(e) == kKindInstrument;
}
inline bool IsImageExtension(std::string_view e) { return GetKindByExtension(e) == kKindImage; }
inline bool IsBinaryExtension(std::string_view e) { return GetKindByExtension(e) == kKindBinary; }
inline bool IsSourceExtension(std::string_view e) { return GetGroupByExtension(e) == kGroupSource; }

inline bool IsAudioId(uint32_t id) { return GetKindById(id) == kKindAudio; }
inline bool IsMusicId(uint32_t id) { return GetKindById(id) == kKindMusic; }
inline bool IsInstrumentId(uint32_t id) { return GetKindById(id) == kKindInstrument; }
inline bool IsImageId(uint32_t id) { return GetKindById(id) == kKindImage; }
inline bool IsBinaryId(uint32_t id) { return GetKindById(id) == kKindBinary; }
inline bool IsSourceId(uint32_t id) { return GetGroupById(id) == kGroupSource; }

}  // namespace velora
