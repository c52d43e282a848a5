#include "audio/inspect/FileKind.h"

#include <string>

#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/FieldText.h"
#include "audio/inspect/Layouts.h"
#include "audio/inspect/RiffWalk.h"

namespace velora {

namespace {

bool IsTag(const layout::FileTag& tag, std::string_view name) {
  RiffItem item;
  item.tag = tag;
  return item.Is(name);
}

std::string_view View(const layout::FileTag& tag) { return {tag.data(), tag.size()}; }

const ChipFormat* ChipFormatOf(FileWindow& window) {
  const auto tag = window.Record<layout::FileTag>(0);
  return tag ? FindChipFormat(View(*tag)) : nullptr;
}

}  // namespace

FileKind DetectKind(FileWindow& window) {
  const auto riff = window.Record<layout::RiffHeadRecord>(0);
  if (riff && IsTag(riff->tag, "RIFF") && IsTag(riff->form, "WAVE")) return FileKind::kWave;
  const auto tag = window.Record<layout::FileTag>(0);
  if (!tag) return FileKind::kUnknown;
  if (View(*tag) == "KPCM") return FileKind::kSource;
  return ChipFormatOf(window) ? FileKind::kChip : FileKind::kUnknown;
}

std::string KindName(FileWindow& window) {
  if (const ChipFormat* const format = ChipFormatOf(window)) {
    return std::string(format->grammar->name);
  }
  switch (DetectKind(window)) {
    case FileKind::kWave:
      return "WAV";
    case FileKind::kSource:
      return "SRC";
    default:
      return {};
  }
}

std::string UnknownReason(FileWindow& window) {
  const auto tag = window.Record<layout::FileTag>(0);
  if (!tag) return "too short for any sound file";
  std::string name;
  if (GetFormatName(GetFormatIdByTag(View(*tag)), name)) {
    return "a file of the format " + name + ", whose layout is not told here";
  }
  const auto riff = window.Record<layout::RiffHeadRecord>(0);
  if (riff && IsTag(riff->tag, "RIFF")) {
    return "RIFF of the form \"" + Printable(riff->form) + "\", expected \"WAVE\"";
  }
  return "no known sound file begins with \"" + Printable(*tag) + '"';
}

}  // namespace velora
