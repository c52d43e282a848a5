#include "ChipInfo.h"

#include <algorithm>

namespace velora {
namespace {

/// Lists of a chip are handed out as they are, so they are members of it and the
/// count of their references does not matter.
void Fill(C_CUStringList& list, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) list.AddText(text);
}

}  // namespace

I_ChipResources::RangeList* LazyRanges::Of(const std::vector<PinRange>& ranges) {
  if (!list_) {
    list_ = std::make_unique<ChipRangeList>();
    for (const PinRange& range : ranges) list_->Add(std::make_unique<C_ChipPinRange>(range));
  }
  return list_.get();
}

C_ChipPwmInfo::C_ChipPwmInfo(const ChipFacts& facts) : facts_(facts) {
  Fill(timers_, facts.timers);
}

C_ChipResources::ExtensionLists::ExtensionLists(const ResourceLists& lists) {
  Fill(audio, lists.audio);
  Fill(music, lists.music);
  Fill(image, lists.image);
}

C_ChipResources::C_ChipResources(const ChipFacts& facts) : facts_(facts), memoryModel_(facts) {
  extensions_.emplace_back(facts.resources);
  for (const ResourceLists& set : facts.resourceSets) extensions_.emplace_back(set);
  for (const FeatureFacts& feature : facts.features) features_.emplace_back(feature);
  for (const FeatureBlockFacts& block : facts.featureBlocks) blocks_.emplace_back(block);
}

int32_t C_ChipResources::GetResourceLists(int32_t index, I_CUStringList** audio,
                                          I_CUStringList** music, I_CUStringList** image) {
  const size_t place = index < 0 ? 0 : static_cast<size_t>(index) + 1;
  if (place >= extensions_.size()) return 0;
  ExtensionLists& lists = extensions_[place];
  if (audio) *audio = &lists.audio;
  if (music) *music = &lists.music;
  if (image) *image = &lists.image;
  return 1;
}

I_ChipFeature* C_ChipResources::GetFeature(int32_t index) {
  return index >= 0 && index < GetFeatureCount() ? &features_[static_cast<size_t>(index)] : nullptr;
}

I_ChipFeatureBlock* C_ChipResources::GetFeatureBlock(int32_t key) {
  const auto found = std::ranges::find(blocks_, key, &C_ChipFeatureBlock::Key);
  return found == blocks_.end() ? nullptr : &*found;
}

void* C_ChipInfo::FindInterface(int32_t id) {
  if (!facts_->HasInterface(id)) return nullptr;
  // Each through a pointer of its interface's type: that is what the caller reads.
  switch (id) {
    case kChipPorts: {
      if (!ports_) ports_.emplace(*facts_);
      I_ChipPorts* const ports = &*ports_;
      return ports;
    }
    case kChipResources: {
      if (!resources_) resources_.emplace(*facts_);
      I_ChipResources* const resources = &*resources_;
      return resources;
    }
    case kChipPwmInfo: {
      if (!pwmInfo_) pwmInfo_.emplace(*facts_);
      I_ChipPwmInfo* const pwmInfo = &*pwmInfo_;
      return pwmInfo;
    }
    default:
      return nullptr;
  }
}

int32_t C_ChipInfo::GetInterface(int32_t id, void** out) {
  if (!out) return 0;
  *out = FindInterface(id);
  return *out ? 1 : 0;
}

}  // namespace velora
