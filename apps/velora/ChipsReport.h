// What `velora chips` says, as text and as JSON.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/chipfile/ChipFile.h"
#include "catalogue/chipfile/ItemCheck.h"
#include "catalogue/chipfile/ItemSchema.h"
#include "foundation/IniFile.h"
#include "platform/Path.h"

namespace velora::cli {

/// Families that rules ask a record for.
inline constexpr const char* kChipFamilies[] = {"664", "K664", "L664", "M0Series", "SDS_L668H"};

/// False for what a section of ChipProperty.cfg says for itself alone.
bool IsRecordFact(const KeyRule& rule);

/// The data files of a directory.
struct ChipsData {
  Path directory;
  ChipFile catalogue;                    ///< ChipInfo.cfg
  std::shared_ptr<C_CUIniFile> records;  ///< ChipProperty.cfg; null when it cannot be read
};

/// One file and what was explained or found in it.
struct ExplainedFile {
  const char* file;
  std::vector<std::string> lineage;  ///< sections in the order of search
  std::vector<KeyOrigin> keys;
};

/// Parts as a table; each of `parts` is one of the catalogue's.
std::string ChipsListText(const ChipsData& data, std::span<const std::string> parts);
std::string ChipsListJson(const ChipsData& data, std::span<const std::string> parts);

/// One part in full.
std::string ChipText(const ChipsData& data, const ChipFacts& facts);
std::string ChipJson(const ChipsData& data, const ChipFacts& facts);

std::string ChipWhyText(const std::string& part, std::span<const ExplainedFile> files);
std::string ChipWhyJson(const std::string& part, std::span<const ExplainedFile> files);

/// Findings one a line, "PATH:LINE: [SECTION] KEY: MESSAGE".
std::string ChipsCheckText(const Path& directory, std::span<const ItemFinding> findings);
std::string ChipsCheckJson(std::span<const ItemFinding> findings);

}  // namespace velora::cli
