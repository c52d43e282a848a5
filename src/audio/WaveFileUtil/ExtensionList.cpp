#include "audio/WaveFileUtil/ExtensionList.h"

#include <velora/I_ChipResources.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>

#include "audio/WaveFileUtil/FormatTable.h"
#include "catalogue/ChipInfoLoader.h"
#include "foundation/AsciiText.h"
#include "foundation/StringHelpers.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

constexpr uint32_t kIdMask = 0xFF;
constexpr uint32_t kGroupMask = 0x00FFFF00;
constexpr uint32_t kWaveId = 2;
constexpr const char* kWaveExtensions[] = {".KIO", ".KAX"};

// --- The families with lists of their own ------------------------------------

struct GroupList {
  uint32_t group;
  const char* extensions;
};

struct OldFamily {
  std::span<const char* const> prefixes;
  const char* except;  ///< a prefix that does not belong, null for none
  const char* all;
  const char* audio;
  const char* music;
  std::span<const uint8_t> ids;
  std::span<const GroupList> groups;
};

constexpr const char* kKamPrefixes[] = {"K611", "K618"};
constexpr uint8_t kKamIds[] = {1, 2, 3};
constexpr GroupList kKamGroups[] = {{kGroupSource, ".SRC,.WAV"}, {kGroupAdpcm, ".KAM"}};

constexpr const char* kKmdPrefixes[] = {"K613", "K663"};
constexpr uint8_t kKmdIds[] = {1, 2, 4};
constexpr GroupList kKmdGroups[] = {{kGroupSource, ".SRC,.WAV"}, {kGroupMdpcm, ".KMD"}};

constexpr const char* kApmPrefixes[] = {"K646"};
constexpr uint8_t kApmIds[] = {1, 2, 5, 6, 8, 9, 10, 12};
constexpr GroupList kApmGroups[] = {{kGroupSource, ".PC8,.WAV,.SRC"},
                                    {kGroupAdpcm, ".APM,.WAV,.SRC"},
                                    {kGroupMdpcm, ".MPM,.WAV,.SRC"},
                                    {kGroupPcm10, ".P10,.WAV,.SRC"}};

constexpr OldFamily kOldFamilies[] = {
    {kKamPrefixes, nullptr, ".KAM,.SRC,.WAV", ".KAM,.SRC,.WAV", "", kKamIds, kKamGroups},
    {kKmdPrefixes, "K663C", ".KMD,.SRC,.WAV", ".KMD,.SRC,.WAV", "", kKmdIds, kKmdGroups},
    {kApmPrefixes, nullptr, ".APM,.MPM,.PC8,.p10,.MID,.WAV,.SRC", ".APM,.MPM,.PC8,.p10,.WAV,.SRC",
     ".MID", kApmIds, kApmGroups},
};

const OldFamily* FindOldFamily(std::string_view chipName) {
  const auto begins = [chipName](const char* prefix) { return StartsWithNoCase(chipName, prefix); };
  const auto* found = std::ranges::find_if(kOldFamilies, [&begins](const OldFamily& family) {
    return std::ranges::any_of(family.prefixes, begins) &&
           !(family.except && begins(family.except));
  });
  return found == std::end(kOldFamilies) ? nullptr : found;
}

void AddOnce(C_CUStringList& out, const char* extension) {
  if (!IsInList(extension, &out)) out.Add(extension);
}

void AddAll(C_CUStringList& out, const char* extensions) {
  C_CUStringList fields;
  SplitList(extensions, fields);
  for (const std::string& field : fields) AddOnce(out, field.c_str());
}

void AddExtensionOf(uint32_t id, C_CUStringList& out) {
  std::string extension;
  if (GetExtensionById(id, extension)) AddOnce(out, extension.c_str());
}

void AddOfOldFamily(const OldFamily& family, uint32_t filter, C_CUStringList& out) {
  if (filter == 0) return AddAll(out, family.all);
  if (filter == kKindAudio) return AddAll(out, family.audio);
  if (filter == kKindMusic) return AddAll(out, family.music);
  if (filter <= kIdMask) {
    if (std::ranges::find(family.ids, filter) != family.ids.end()) AddExtensionOf(filter, out);
    return;
  }
  for (const GroupList& list : family.groups) {
    if (filter & list.group) AddAll(out, list.extensions);
  }
}

// --- The catalogue's lists ---------------------------------------------------

/// Adds the sounds of the list that have a group of `groups`, all for 0.
void AddSounds(I_CUStringList* list, uint32_t groups, C_CUStringList& out) {
  if (!list) return;
  const auto add = [groups, &out](const char* extension) {
    if (groups == 0 || (GetGroupByExtension(extension) & groups)) AddOnce(out, extension);
  };
  bool wave = false;
  for (int32_t i = 0; i < list->GetCount(); ++i) {
    add(list->GetAt(i));
    wave |= GetFormatIdByExtension(list->GetAt(i)) == kWaveId;
  }
  if (wave) std::ranges::for_each(kWaveExtensions, add);
}

void AddList(I_CUStringList* list, C_CUStringList& out) {
  if (!list) return;
  for (int32_t i = 0; i < list->GetCount(); ++i) AddOnce(out, list->GetAt(i));
}

void AddOfChip(I_ChipInfo& chip, int32_t index, uint32_t filter, C_CUStringList& out) {
  void* interface = nullptr;
  if (!chip.GetInterface(kChipResources, &interface) || !interface) return;
  I_CUStringList* audio = nullptr;
  I_CUStringList* music = nullptr;
  I_CUStringList* image = nullptr;
  auto* const resources = static_cast<I_ChipResources*>(interface);
  if (!resources->GetResourceLists(index, &audio, &music, &image)) return;

  const uint32_t groups = filter & kGroupMask;
  if (filter == 0 || (filter & kKindAudio) || groups) AddSounds(audio, groups, out);
  if (filter == 0 || (filter & kKindMusic)) AddList(music, out);
  if (filter == 0 || (filter & kKindImage)) AddList(image, out);
  if (filter & kIdMask) AddExtensionOf(filter & kIdMask, out);
}

void AddByName(std::string_view chipName, int32_t index, uint32_t filter, C_CUStringList& out) {
  const C_ChipInfoLoader guard;
  if (!LoadChipCatalog(nullptr)) return;
  const std::unique_ptr<I_ChipInfo, ChipRelease> chip(
      GetChipCatalog()->GetChip(std::string(chipName).c_str()));
  if (chip) AddOfChip(*chip, index, filter, out);
}

}  // namespace

bool GetExtensionList(std::string_view chipName, uint32_t filter, C_CUStringList& out,
                      I_ChipInfo* chip, int32_t index) {
  if (const OldFamily* const family = FindOldFamily(chipName)) {
    AddOfOldFamily(*family, filter, out);
  } else if (chip) {
    AddOfChip(*chip, index, filter, out);
  } else {
    AddByName(chipName, index, filter, out);
  }
  return out.Count() > 0;
}

}  // namespace velora
