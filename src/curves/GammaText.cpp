#include "curves/GammaText.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "foundation/AsciiText.h"
#include "platform/File.h"

namespace velora {
namespace {

constexpr std::string_view kHeading =
    "// any text behind the '//' is treated as remark\n"
    "//Gamma Curve format : PinIndex,SamplePosition,LevelValue\n";

constexpr std::string_view kRemark = "//";
constexpr std::string_view kPin = "PIN";
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

constexpr size_t kMinPoints = 2;
constexpr size_t kMaxPiece = 255;
constexpr int32_t kLastRow = kOutPinCount - 1;
constexpr int32_t kMaxValue = 255;  // of positions and levels

/// The number that a field begins with, as C converts text: white space, a sign,
/// digits. Held to 32 bits; 0 without digits.
int32_t LeadingNumber(std::string_view field) {
  field = TrimLeft(field, kWhiteSpace);
  const bool negative = field.starts_with('-');
  if (negative || field.starts_with('+')) field.remove_prefix(1);
  int64_t number = 0;
  for (const char c : field) {
    if (c < '0' || c > '9') break;
    number = std::min<int64_t>(number * 10 + (c - '0'), int64_t{INT32_MAX} + 1);
  }
  return static_cast<int32_t>(negative ? -number : std::min<int64_t>(number, INT32_MAX));
}

/// The text up to the next comma, trimmed; `rest` becomes what is behind it.
std::string_view TakeField(std::string_view& rest) {
  const size_t comma = rest.find(',');
  const std::string_view field = rest.substr(0, comma);
  rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
  return Trim(field, kWhiteSpace);
}

/// A field as a message can show it: short, and without control characters.
std::string Quoted(std::string_view field) {
  constexpr size_t kShown = 32;
  std::string quoted = "\"";
  for (const char c : field.substr(0, kShown)) {
    quoted += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
  }
  return quoted + (field.size() > kShown ? "...\"" : "\"");
}

Status OutOfRange(const char* what, std::string_view field, int32_t last) {
  return Status::Error(std::string(what) + " is " + Quoted(field) + ", expected 0 to " +
                       std::to_string(last));
}

Result<uint32_t> ParseRow(std::string_view field) {
  if (field.size() <= kPin.size() || !StartsWithNoCase(field, kPin)) {
    return Status::Error("expected \"Pin\" with a row number, found " + Quoted(field));
  }
  const std::string_view digits = field.substr(kPin.size());
  const int32_t row = LeadingNumber(digits);
  if (row < 0 || row > kLastRow) return OutOfRange("row", digits, kLastRow);
  return static_cast<uint32_t>(row);
}

Result<uint8_t> ParseValue(const char* what, std::string_view field) {
  if (field.empty()) return Status::Error(std::string(what) + " is missing");
  const int32_t value = LeadingNumber(field);
  if (value < 0 || value > kMaxValue) return OutOfRange(what, field, kMaxValue);
  return static_cast<uint8_t>(value);
}

/// Reads lines one after the other into a GammaText.
class GammaReader {
 public:
  explicit GammaReader(GammaText& text) : text_(text) {}

  void ReadLine(uint64_t number, std::string_view line) {
    for (;;) {
      ReadPiece(number, line.substr(0, kMaxPiece));
      if (line.size() <= kMaxPiece) return;
      line.remove_prefix(kMaxPiece);
    }
  }

  /// To be called behind the last line.
  void CheckRows() {
    for (uint32_t row = 0; row < kOutPinCount; ++row) {
      if (text_.rows[row].size() != 1) continue;
      AddFault(lastLine_[row],
               "row " + std::to_string(row) + " has this point alone, expected 2 or more");
    }
  }

 private:
  void ReadPiece(uint64_t number, std::string_view piece) {
    if (piece.starts_with(kRemark) || Trim(piece, kWhiteSpace).empty()) return;
    if (Status status = ReadPoint(number, piece); !status) AddFault(number, status.Message());
  }

  Status ReadPoint(uint64_t number, std::string_view rest) {
    const Result<uint32_t> row = ParseRow(TakeField(rest));
    if (!row) return row.GetStatus();
    const Result<uint8_t> position = ParseValue("position", TakeField(rest));
    if (!position) return position.GetStatus();
    const Result<uint8_t> level = ParseValue("level", Trim(rest, kWhiteSpace));
    if (!level) return level.GetStatus();
    text_.rows[row.Value()].push_back({position.Value(), level.Value()});
    lastLine_[row.Value()] = number;
    return {};
  }

  void AddFault(uint64_t line, std::string message) {
    ++text_.faultCount;
    if (text_.faults.size() < GammaText::kMaxFaults) {
      text_.faults.push_back({line, std::move(message)});
    }
  }

  GammaText& text_;
  std::array<uint64_t, kOutPinCount> lastLine_ = {};
};

}  // namespace

GammaPoints DefaultGammaPoints() { return {{0, 0}, {255, 255}}; }

std::string FormatGammaText(std::span<const GammaPoints> rows) {
  std::string text(kHeading);
  for (size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].size() < kMinPoints) continue;
    for (const tagVLRCurveCtrlPoint& point : rows[row]) {
      // The position is written as a signed number.
      text += "Pin" + std::to_string(row) + "," +
              std::to_string(static_cast<int32_t>(point.Sample)) + "," +
              std::to_string(point.Level) + "\n";
    }
  }
  return text;
}

GammaText ParseGammaText(std::string_view text) {
  GammaText result;
  GammaReader reader(result);
  for (uint64_t number = 1; !text.empty(); ++number) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (end != std::string_view::npos && line.ends_with('\r')) line.remove_suffix(1);
    reader.ReadLine(number, line);
  }
  reader.CheckRows();
  return result;
}

uint32_t ApplyGammaText(const GammaText& text, GammaRows& rows) {
  uint32_t replaced = 0;
  for (size_t row = 0; row < rows.size(); ++row) {
    if (text.rows[row].size() < kMinPoints) continue;
    rows[row] = text.rows[row];
    ++replaced;
  }
  return replaced;
}

Status ExportGamma(const Path& path, std::span<const GammaPoints> rows) {
  Result<OutputFile> file = OutputFile::Create(path);
  if (!file) return file.GetStatus();
  const std::string text = FormatGammaText(rows);
  const Status written = file->Write(std::as_bytes(std::span(text)));
  const Status closed = file->Close();
  return written ? closed : written;
}

Result<GammaText> ImportGamma(const Path& path, GammaRows& rows) {
  const Result<std::string> file = ReadWholeText(path);
  if (!file) return file.GetStatus();
  GammaText text = ParseGammaText(file.Value());
  ApplyGammaText(text, rows);
  return text;
}

}  // namespace velora
