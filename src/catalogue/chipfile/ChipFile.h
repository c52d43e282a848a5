// ChipInfo.cfg: what each part of the catalogue has.
//
// An item file; a section with `Part = 1` of its own is a part, every other one a
// parent or something that parts refer to. The file's head tells all keys.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/chipfile/PinRange.h"
#include "foundation/IniFile.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// A list of ranges that a chip may lack altogether.
struct RangeList {
  bool there = false;
  std::vector<PinRange> ranges;
};

struct FeatureFacts {
  std::string name;
  uint32_t mask = 0;
  int32_t ram = 0;  ///< bytes
  int32_t kind = 0;
};

struct FeatureBlockFacts {
  int32_t key = 0;
  int32_t ram = 0;  ///< bytes
};

/// Extensions, each with its dot.
struct ResourceLists {
  std::vector<std::string> audio;
  std::vector<std::string> music;
  std::vector<std::string> image;
};

/// Everything the catalogue says of one part. RAM is in bytes.
struct ChipFacts {
  std::string part;  ///< spelt as in the file
  std::string title;
  uint32_t chipCode = 0;
  std::vector<int32_t> interfaces;

  std::vector<PinRange> ports;
  int32_t pinCounts[3] = {};  ///< both ways, inputs only, outputs only
  int32_t groupSize = 1;
  int32_t outputGroupSize = 1;

  int32_t ramSize = 0;
  bool hasMemoryModel = false;  ///< false when neither of the next two has a value
  int32_t systemRam = 0;
  int32_t otherRam = 0;
  int32_t stackBase = 0;
  int32_t portScanBase = 0;
  int32_t scanRamA = 0;
  int32_t scanRamB = 0;
  int32_t matrixBase = 0;
  int32_t matrixPerLine = 0;
  int32_t eventRam = 0;

  RangeList reservedRanges;
  RangeList matrixRangesA;
  RangeList matrixRangesB;
  RangeList fixedRanges;
  RangeList inputRanges;
  RangeList outputRanges;
  RangeList optionRanges;
  RangeList sharedRanges;
  RangeList specialRanges;
  RangeList pwmRanges;
  std::vector<std::string> timers;

  std::vector<FeatureFacts> features;
  std::vector<FeatureBlockFacts> featureBlocks;
  ResourceLists resources;
  std::vector<ResourceLists> resourceSets;

  bool HasInterface(int32_t id) const;
  int32_t PinCount() const { return pinCounts[0] + pinCounts[1] + pinCounts[2]; }
};

/// A value that makes a part unusable, found while its facts were read. Where it
/// stands, item and key, is as seen from the part: a parent may have set it.
struct ChipFault {
  std::string item;  ///< section whose key it is: the part, a feature, ...
  std::string key;
  std::string message;
};

/// The file in memory. Reading parts is for one thread at a time.
class ChipFile {
 public:
  /// Reads the file, plain or enciphered. An error when it names no part.
  static Result<ChipFile> Open(const Path& path);
  static Result<ChipFile> FromText(std::string_view text);

  /// Part numbers as the file spells them, in its order.
  const std::vector<std::string>& Parts() const { return parts_; }

  /// The part number as the file spells it, looked up without regard to case;
  /// null when the file has no such part.
  const std::string* FindPart(std::string_view part) const;

  /// What the file says of a part. Every fault adds to `faults`; the facts are
  /// only whole when there is none. The part must be one of Parts().
  ChipFacts Read(const std::string& part, std::vector<ChipFault>& faults) const;

  /// The same with the first fault as an error; an error for an unknown part too.
  Result<ChipFacts> Read(std::string_view part) const;

 private:
  static Result<ChipFile> FromItems(std::shared_ptr<C_CUIniFile> items);

  std::shared_ptr<C_CUIniFile> items_;
  std::vector<std::string> parts_;
};

}  // namespace velora
