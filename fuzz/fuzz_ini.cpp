// INI text, and the path and number functions that its values go through.
#include <cstdint>
#include <string>

#include "foundation/IniFile.h"
#include "foundation/PathText.h"
#include "foundation/StringHelpers.h"

namespace {

using namespace velora;

void AskEveryLabel(C_CUIniFile& file) {
  for (int32_t i = 0; i < file.GetSectionCount() && i < 50; ++i) {
    const std::string section = file.GetSectionName(i);
    for (int32_t j = 0; const char* name = file.GetLabelName(section.c_str(), j); ++j) {
      const std::string label = name;
      file.GetString(section.c_str(), label.c_str(), kIniPath, 0);
      file.GetStringList(section.c_str(), label.c_str(), kIniText, 0);
      file.GetInt(section.c_str(), label.c_str(), 1);
      file.GetDouble(section.c_str(), label.c_str(), 1);
    }
  }
}

/// Short lines of printable text, once loaded, save and load as the same text again.
/// (A carriage return at a line's end, and what passes the line limit, changes once more.)
void CheckRoundTrip(std::string text) {
  constexpr size_t kShortText = 1000;
  if (text.size() > kShortText) return;
  std::erase_if(text, [](char c) { return c == '\r'; });
  C_CUIniFile file;
  file.LoadText(text);
  C_CUIniFile again;
  again.LoadText(file.SaveText());
  C_CUIniFile third;
  third.LoadText(again.SaveText());
  if (third.SaveText() != again.SaveText()) __builtin_trap();
}

void TakePathsApart(std::string first, std::string second) {
  (void)CombinePath(first, second);
  (void)MakeRelative(first, second);
  (void)MakeAbsolute(first, second);
  (void)JoinPath(first, {second});
  std::string name;
  SplitPath(first, &first, &name, nullptr);
  C_CUPathSplit split(second);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  C_CUIniFile file;
  file.LoadText(text);
  AskEveryLabel(file);
  CheckRoundTrip(text);
  TakePathsApart(text.substr(0, size / 2), text.substr(size / 2));

  uint32_t value = 0;
  (void)ParseNumber(text.c_str(), &value);
  C_CUStringList list;
  SplitList(text.c_str(), list);
  (void)GetToken(text.c_str(), 3);
  return 0;
}
