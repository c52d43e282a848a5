// The JSON form of what `velora chips` says.
#include <nlohmann/json.hpp>

#include "ChipsReport.h"
#include "Json.h"
#include "catalogue/chipfile/ItemSchema.h"
#include "foundation/ItemProperty.h"

namespace velora::cli {
namespace {

using Json = nlohmann::ordered_json;

Json RangeJson(const PinRange& range) {
  Json object;
  object["port"] = range.port;
  object["firstPin"] = range.firstPin;
  object["lastPin"] = range.lastPin;
  object["firstIndex"] = range.firstIndex;
  object["lastIndex"] = range.lastIndex;
  object["preferred"] = range.preferred;
  return object;
}

Json RangesJson(const std::vector<PinRange>& ranges) {
  auto list = Json::array();
  for (const PinRange& range : ranges) list.push_back(RangeJson(range));
  return list;
}

/// Null for a list that the chip lacks.
Json RangesJson(const RangeList& list) { return list.there ? RangesJson(list.ranges) : Json(); }

Json FilesJson(const ResourceLists& lists) {
  Json object;
  object["audio"] = lists.audio;
  object["music"] = lists.music;
  object["image"] = lists.image;
  return object;
}

Json RamJson(const ChipFacts& facts) {
  Json object;
  object["size"] = facts.ramSize;
  object["system"] = facts.hasMemoryModel ? Json(facts.systemRam) : Json();
  object["other"] = facts.hasMemoryModel ? Json(facts.otherRam) : Json();
  object["stackBase"] = facts.stackBase;
  object["portScanBase"] = facts.portScanBase;
  object["scanA"] = facts.scanRamA;
  object["scanB"] = facts.scanRamB;
  object["matrixBase"] = facts.matrixBase;
  object["matrixPerLine"] = facts.matrixPerLine;
  object["event"] = facts.eventRam;
  return object;
}

Json PinsJson(const ChipFacts& facts) {
  Json object;
  object["bothWays"] = facts.pinCounts[0];
  object["inputs"] = facts.pinCounts[1];
  object["outputs"] = facts.pinCounts[2];
  object["groupSize"] = facts.groupSize;
  object["outputGroupSize"] = facts.outputGroupSize;
  return object;
}

Json AllRangesJson(const ChipFacts& facts) {
  Json object;
  object["pwm"] = RangesJson(facts.pwmRanges);
  object["inputs"] = RangesJson(facts.inputRanges);
  object["outputs"] = RangesJson(facts.outputRanges);
  object["matrixA"] = RangesJson(facts.matrixRangesA);
  object["matrixB"] = RangesJson(facts.matrixRangesB);
  object["fixed"] = RangesJson(facts.fixedRanges);
  object["options"] = RangesJson(facts.optionRanges);
  object["reserved"] = RangesJson(facts.reservedRanges);
  object["shared"] = RangesJson(facts.sharedRanges);
  object["special"] = RangesJson(facts.specialRanges);
  return object;
}

Json FeaturesJson(const ChipFacts& facts) {
  auto list = Json::array();
  for (const FeatureFacts& feature : facts.features) {
    list.push_back({{"name", feature.name},
                    {"mask", feature.mask},
                    {"ram", feature.ram},
                    {"kind", feature.kind}});
  }
  return list;
}

Json FeatureBlocksJson(const ChipFacts& facts) {
  auto list = Json::array();
  for (const FeatureBlockFacts& block : facts.featureBlocks) {
    list.push_back({{"key", block.key}, {"ram", block.ram}});
  }
  return list;
}

/// Null for a part without a record.
Json RecordJson(const ChipsData& data, const ChipFacts& facts) {
  C_ItemProperty record(data.records, facts.part.c_str());
  if (!record.IsLoaded()) return {};
  Json object;
  object["families"] = Json::array();
  for (const char* const family : kChipFamilies) {
    if (record.IsA(family)) object["families"].push_back(family);
  }
  object["keys"] = Json::array();
  for (const KeyRule& rule : ChipPropertySchema().Parts().keys) {
    const char* const value = IsRecordFact(rule) ? record.GetString(rule.name) : nullptr;
    if (value) object["keys"].push_back({{"key", rule.name}, {"value", value}});
  }
  return object;
}

Json PlaceJson(const KeyOrigin::Place& place) {
  return {{"section", place.section}, {"line", place.line}, {"value", place.value}};
}

}  // namespace

std::string ChipsListJson(const ChipsData& data, std::span<const std::string> parts) {
  auto list = Json::array();
  for (const std::string& part : parts) {
    const Result<ChipFacts> facts = data.catalogue.Read(part);
    Json object;
    object["part"] = part;
    if (facts) {
      object["title"] = facts->title;
      object["chipCode"] = facts->chipCode;
      object["ramSize"] = facts->ramSize;
      object["pins"] = facts->PinCount();
    } else {
      object["error"] = facts.Message();
    }
    list.push_back(std::move(object));
  }
  Json whole;
  whole["parts"] = std::move(list);
  return JsonText(whole) + "\n";
}

std::string ChipJson(const ChipsData& data, const ChipFacts& facts) {
  Json object;
  object["part"] = facts.part;
  object["title"] = facts.title;
  object["chipCode"] = facts.chipCode;
  object["interfaces"] = facts.interfaces;
  object["ram"] = RamJson(facts);
  object["pins"] = PinsJson(facts);
  object["ports"] = RangesJson(facts.ports);
  for (Json& port : object["ports"]) port.erase("preferred");
  object["ranges"] = AllRangesJson(facts);
  object["timers"] = facts.timers;
  object["features"] = FeaturesJson(facts);
  object["featureBlocks"] = FeatureBlocksJson(facts);
  object["files"] = FilesJson(facts.resources);
  object["resourceSets"] = Json::array();
  for (const ResourceLists& set : facts.resourceSets) {
    object["resourceSets"].push_back(FilesJson(set));
  }
  object["record"] = RecordJson(data, facts);
  return JsonText(object) + "\n";
}

std::string ChipWhyJson(const std::string& part, std::span<const ExplainedFile> files) {
  Json object;
  object["part"] = part;
  object["files"] = Json::array();
  for (const ExplainedFile& file : files) {
    Json explained;
    explained["file"] = file.file;
    explained["sections"] = file.lineage;
    explained["keys"] = Json::array();
    for (const KeyOrigin& key : file.keys) {
      Json origin;
      origin["key"] = key.key;
      origin["setBy"] = PlaceJson(key.setBy);
      origin["overrides"] = Json::array();
      for (const KeyOrigin::Place& place : key.overrode) {
        origin["overrides"].push_back(PlaceJson(place));
      }
      explained["keys"].push_back(std::move(origin));
    }
    object["files"].push_back(std::move(explained));
  }
  return JsonText(object) + "\n";
}

std::string ChipsCheckJson(std::span<const ItemFinding> findings) {
  auto list = Json::array();
  for (const ItemFinding& finding : findings) {
    list.push_back({{"file", finding.file},
                    {"line", finding.line},
                    {"section", finding.section},
                    {"key", finding.key},
                    {"message", finding.message}});
  }
  Json whole;
  whole["findings"] = std::move(list);
  return JsonText(whole) + "\n";
}

}  // namespace velora::cli
