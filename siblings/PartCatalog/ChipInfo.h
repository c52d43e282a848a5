// A chip of the catalogue as the boundary sees it.
#pragma once

#include <deque>
#include <memory>
#include <optional>

#include <velora/I_ChipInfo.h>
#include <velora/I_ChipPorts.h>
#include <velora/I_ChipPwmInfo.h>
#include <velora/I_ChipResources.h>
#include "ObjectCount.h"
#include "catalogue/chipfile/ChipFile.h"
#include "foundation/Lists.h"
#include "foundation/StringList.h"

namespace velora {

class C_ChipPinRange final : public I_ChipPinRange, public C_CUItem {
 public:
  explicit C_ChipPinRange(const PinRange& range) : range_(range) {}
  const char* GetName() override { return range_.port.c_str(); }
  uint32_t GetFirstPin() override { return static_cast<uint32_t>(range_.firstPin); }
  uint32_t GetLastPin() override { return static_cast<uint32_t>(range_.lastPin); }
  uint32_t GetFirstIndex() override { return static_cast<uint32_t>(range_.firstIndex); }
  uint32_t GetLastIndex() override { return static_cast<uint32_t>(range_.lastIndex); }
  int32_t IsPreferred() override { return range_.preferred ? 1 : 0; }

 private:
  const PinRange& range_;  ///< of the chip's facts
};

using ChipRangeList = C_CUList<C_ChipPinRange, I_ChipPinRange>;

/// The lists of ranges are made when they are asked for: most callers want one.
class LazyRanges {
 public:
  /// Null for a list that the chip lacks.
  I_ChipResources::RangeList* OrNull(const RangeList& facts) {
    return facts.there ? Of(facts.ranges) : nullptr;
  }
  I_ChipResources::RangeList* Of(const std::vector<PinRange>& ranges);

 private:
  std::unique_ptr<ChipRangeList> list_;
};

class C_ChipPorts final : public I_ChipPorts {
 public:
  explicit C_ChipPorts(const ChipFacts& facts) : facts_(facts) {}
  int32_t GetPinCount0() override { return facts_.pinCounts[0]; }
  int32_t GetPinCount1() override { return facts_.pinCounts[1]; }
  int32_t GetPinCount2() override { return facts_.pinCounts[2]; }
  int32_t GetGroupSize() override { return facts_.groupSize; }
  int32_t GetOutputGroupSize() override { return facts_.outputGroupSize; }

 private:
  const ChipFacts& facts_;
};

class C_ChipPwmInfo final : public I_ChipPwmInfo {
 public:
  explicit C_ChipPwmInfo(const ChipFacts& facts);
  I_CUList<I_ChipPinRange>* GetPwmRanges() override { return ranges_.Of(facts_.pwmRanges.ranges); }
  I_CUStringList* GetTimerList() override { return &timers_; }

 private:
  const ChipFacts& facts_;
  LazyRanges ranges_;
  C_CUStringList timers_;
};

class C_ChipMemoryModel final : public I_ChipMemoryModel {
 public:
  explicit C_ChipMemoryModel(const ChipFacts& facts) : facts_(facts) {}
  int32_t GetSystemRam() override { return facts_.systemRam; }
  int32_t GetOtherRam() override { return facts_.otherRam; }

 private:
  const ChipFacts& facts_;
};

class C_ChipFeature final : public I_ChipFeature {
 public:
  explicit C_ChipFeature(const FeatureFacts& facts) : facts_(facts) {}
  const char* GetName() override { return facts_.name.c_str(); }
  uint32_t GetMask() override { return facts_.mask; }
  int32_t GetRam() override { return facts_.ram; }
  int32_t GetKind() override { return facts_.kind; }

 private:
  const FeatureFacts& facts_;
};

class C_ChipFeatureBlock final : public I_ChipFeatureBlock {
 public:
  explicit C_ChipFeatureBlock(const FeatureBlockFacts& facts) : facts_(facts) {}
  int32_t GetBlockRam() override { return facts_.ram; }
  int32_t Key() const { return facts_.key; }

 private:
  const FeatureBlockFacts& facts_;
};

class C_ChipResources final : public I_ChipResources {
 public:
  explicit C_ChipResources(const ChipFacts& facts);

  int32_t GetRamSize() override { return facts_.ramSize; }
  I_ChipMemoryModel* GetMemoryModel(I_ProjectHost* /*project*/) override {
    return facts_.hasMemoryModel ? &memoryModel_ : nullptr;
  }
  RangeList* GetPortList() override { return ports_.Of(facts_.ports); }
  RangeList* GetReservedRanges() override { return reserved_.Of(facts_.reservedRanges.ranges); }
  int32_t GetResourceLists(int32_t index, I_CUStringList** audio, I_CUStringList** music,
                           I_CUStringList** image) override;
  RangeList* GetMatrixRangesA() override { return matrixA_.Of(facts_.matrixRangesA.ranges); }
  RangeList* GetMatrixRangesB() override { return matrixB_.Of(facts_.matrixRangesB.ranges); }
  RangeList* GetFixedRanges() override { return fixed_.Of(facts_.fixedRanges.ranges); }
  RangeList* GetInputRanges() override { return input_.Of(facts_.inputRanges.ranges); }
  RangeList* GetOutputRanges() override { return output_.Of(facts_.outputRanges.ranges); }
  RangeList* GetOptionRanges() override { return option_.OrNull(facts_.optionRanges); }
  RangeList* GetSharedRanges() override { return shared_.OrNull(facts_.sharedRanges); }
  RangeList* GetSpecialRanges() override { return special_.OrNull(facts_.specialRanges); }
  int32_t GetStackBase() override { return facts_.stackBase; }
  int32_t GetPortScanBase() override { return facts_.portScanBase; }
  int32_t GetScanRamA() override { return facts_.scanRamA; }
  int32_t GetScanRamB() override { return facts_.scanRamB; }
  int32_t GetMatrixBase() override { return facts_.matrixBase; }
  int32_t GetMatrixPerLine() override { return facts_.matrixPerLine; }
  int32_t GetEventRam() override { return facts_.eventRam; }
  int32_t GetFeatureCount() override { return static_cast<int32_t>(features_.size()); }
  I_ChipFeature* GetFeature(int32_t index) override;
  I_ChipFeatureBlock* GetFeatureBlock(int32_t key) override;

 private:
  /// The three lists of a resource set; the first set here is the chip as a whole.
  struct ExtensionLists {
    explicit ExtensionLists(const ResourceLists& lists);
    C_CUStringList audio;
    C_CUStringList music;
    C_CUStringList image;
  };

  const ChipFacts& facts_;
  C_ChipMemoryModel memoryModel_;
  LazyRanges ports_, reserved_, matrixA_, matrixB_, fixed_, input_, output_, option_, shared_,
      special_;
  std::deque<ExtensionLists> extensions_;
  std::deque<C_ChipFeature> features_;
  std::deque<C_ChipFeatureBlock> blocks_;
};

/// Deleted by Release. The facts are shared with the catalogue that made it.
class C_ChipInfo final : public I_ChipInfo {
 public:
  explicit C_ChipInfo(std::shared_ptr<const ChipFacts> facts) : facts_(std::move(facts)) {}
  void Release() override { delete this; }
  int32_t GetInterface(int32_t id, void** out) override;
  uint32_t GetChipCode() override { return facts_->chipCode; }

 private:
  void* FindInterface(int32_t id);

  std::shared_ptr<const ChipFacts> facts_;
  std::optional<C_ChipPorts> ports_;
  std::optional<C_ChipResources> resources_;
  std::optional<C_ChipPwmInfo> pwmInfo_;
  Counted counted_{liveChips};
};

}  // namespace velora
