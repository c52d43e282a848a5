// Gamma curves of a project in a text file.
//
// After two remarks the file has one line for each point: row, position and level.
//
//   // any text behind the '//' is treated as remark
//   //Gamma Curve format : PinIndex,SamplePosition,LevelValue
//   Pin0,0,0
//   Pin0,255,255
//
// Rows count from 0 to 31. In a valid curve there are two points or more; position
// and level are 0 to 255.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <velora/VeloraTypes.h>
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

using GammaPoints = std::vector<tagVLRCurveCtrlPoint>;

/// The gamma curve of each output row.
using GammaRows = std::array<GammaPoints, kOutPinCount>;

/// The curve of a row that nobody changed: (0, 0) and (255, 255).
GammaPoints DefaultGammaPoints();

/// A line that was passed over, or a row that stayed without a curve.
struct GammaFault {
  uint64_t line;        ///< from 1
  std::string message;  ///< what is wrong, without the line's number
};

/// What a file holds.
struct GammaText {
  /// Points in the order of the file, neither sorted nor thinned.
  GammaRows rows;

  /// The first faults, in the order of their lines, and behind those the rows with a
  /// single point. Empty lines are no faults.
  std::vector<GammaFault> faults;

  /// All faults, those that were not kept included.
  uint64_t faultCount = 0;

  static constexpr size_t kMaxFaults = 100;
};

/// The text of the curves, rows and points in order; a row with fewer than two
/// points writes nothing. A position above 255 is written but not read again.
std::string FormatGammaText(std::span<const GammaPoints> rows);

/// Reads any text; what is no remark and no good point is a fault. Lines end with
/// LF or CR LF and are taken in pieces of at most 255 characters, the end
/// included, each of which counts as a line of its own.
///
/// Fields may have blanks around them, letters may be of either case, and digits
/// end a number where they end: "pin 3 , 12x, 200" is a good line. A field without
/// digits is 0.
GammaText ParseGammaText(std::string_view text);

/// Replaces the curve of each row for which the text has two points or more.
/// Returns the number of rows replaced.
uint32_t ApplyGammaText(const GammaText& text, GammaRows& rows);

/// Writes the curves. An error when the file cannot be created or written.
Status ExportGamma(const Path& path, std::span<const GammaPoints> rows);

/// Reads curves into `rows` and gives what the file held. An error, with `rows`
/// untouched, when the file cannot be read.
Result<GammaText> ImportGamma(const Path& path, GammaRows& rows);

}  // namespace velora
