// Levels of curves as CSV, JSON and raw bytes.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "CurveKinds.h"

namespace velora::cli {

/// A heading "sample,NAME,...", with a column for each channel, and a row for each
/// sample that any of them has. A cell is empty where the curve has no sample.
std::string CurvesCsv(std::span<const CurveLane> lanes);

/// {"rate", "curves": [{"name", "kind", "start", "end", "pin", "levels"}]} with an
/// element for each channel, one a line; rate and pin are null where nobody said.
std::string CurvesJson(std::span<const CurveLane> lanes, uint32_t rate);

/// A byte for each sample of the one channel there is; an error for more.
Result<std::string> CurvesRaw(std::span<const CurveLane> lanes);

}  // namespace velora::cli
