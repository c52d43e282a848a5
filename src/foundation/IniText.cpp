// The text form of an INI file: reading and writing.
#include <algorithm>
#include <span>

#include "foundation/AsciiText.h"
#include "foundation/IniFile.h"
#include "platform/File.h"

namespace velora {
namespace {

constexpr char kOpenFailure[] = "Unable to open ini file!!";
constexpr size_t kLineLimit = 2079;

/// Takes one line off the text: up to its line feed, with or without a carriage
/// return in front, or up to the limit.
std::string_view TakeLine(std::string_view& text) {
  const size_t feed = std::min(text.substr(0, kLineLimit + 2).find('\n'), text.size());
  std::string_view line = text.substr(0, feed);
  if (feed < text.size() && line.ends_with('\r')) line.remove_suffix(1);
  if (line.size() > kLineLimit) {
    line = line.substr(0, kLineLimit);
    text.remove_prefix(kLineLimit);
  } else {
    text.remove_prefix(std::min(feed + 1, text.size()));
  }
  return line;
}

}  // namespace

bool C_CUIniFile::Load(const Path& path) {
  SetFileName(path);
  return Load();
}

bool C_CUIniFile::Load() {
  const Result<std::string> text = ReadWholeText(path_);
  if (!text) {
    errorText_ = kOpenFailure;
    return false;
  }
  LoadText(text.Value());
  return true;
}

void C_CUIniFile::LoadText(std::string_view text) {
  NoteSuccess();
  Section* current = nullptr;
  while (!text.empty()) LoadLine(TakeLine(text), current);
}

void C_CUIniFile::LoadLine(std::string_view line, Section*& current) {
  line = line.substr(0, line.find('\0'));
  line = Trim(line.substr(0, line.find(';')));
  if (line.empty()) return;
  if (line.starts_with('[') && line.ends_with(']')) {
    current = &NeedSection(TrimRight(TrimLeft(line, "["), "]"));
    return;
  }
  if (!current) current = &NeedSection({});
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    SetValue(*current, {}, line);
  } else {
    SetValue(*current, TrimRight(line.substr(0, equals)), TrimLeft(line.substr(equals + 1)));
  }
}

std::string C_CUIniFile::SaveText() const {
  std::string text;
  for (const auto& section : sections_) {
    text.append("[").append(section->Name).append("]\n");
    for (uint32_t place = 0; place < section->Symbols.Count(); ++place) {
      const Symbol& symbol = *section->Symbols.At(place);
      if (symbol.Value) text.append(symbol.Label).append(" = ").append(*symbol.Value).append("\n");
    }
    if (section->LabelCount != 0) text.append("\n");
  }
  return text;
}

bool C_CUIniFile::Save() {
  Result<OutputFile> file = OutputFile::Create(path_);
  if (!file) {
    errorText_ = kOpenFailure;
    return false;
  }
  const std::string text = SaveText();
  Status written = file->Write(std::as_bytes(std::span(text)));
  const Status closed = file->Close();
  if (written) written = closed;
  if (!written) errorText_ = written.Message();
  return written.Ok();
}

}  // namespace velora
