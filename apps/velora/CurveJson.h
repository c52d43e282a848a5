// Curves described in JSON.
//
//   {
//     "wave": "speech.wav",           all of these may be left out
//     "rate": 8000,
//     "sampleFreq": 30, "resolution": 63,
//     "title": "Mouth and eyes",
//     "curves": [
//       {"kind": "sine", "name": "glow", "freq": 0.5, "low": 40, "pin": 0},
//       {"kind": "spline", "points": [[0, 0], [4000, 255], [8000, 0]]},
//       {"kind": "colour", "colours": [[0, "#ff0000"], [4000, "#00ff00", "hold"]]},
//       {"kind": "product", "curves": [{"kind": "flash", "freq": 8}, {"kind": "ramp"}]}
//     ]
//   }
//
// A document may also be one curve, with "kind" in place of "curves".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "CurveKinds.h"
#include "platform/Status.h"

namespace velora::cli {

struct CurveDocument {
  std::string wave;  ///< as written; empty without one
  std::string title;
  std::optional<uint32_t> rate;
  std::optional<uint32_t> sampleFreq;
  std::optional<uint32_t> resolution;
  std::vector<CurveRequest> curves;
};

/// The error names line and column of a fault of the notation, otherwise the place
/// and the key, with the likely spelling of one that does not exist.
Result<CurveDocument> ParseCurveDocument(const std::string& text);

}  // namespace velora::cli
