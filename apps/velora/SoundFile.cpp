#include "SoundFile.h"

#include <nlohmann/json.hpp>

#include "FormatArgument.h"
#include "audio/WaveFileUtil/FormatTable.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

// The library counts frames from the bits of all samples in 32 bits.
constexpr uint64_t kCountableBytes = uint64_t{1} << 29;

Status CheckCountable(C_WavFile& file) {
  const uint64_t size = file.Sound()->GetWavInfo()->GetDataSize();
  if (size < kCountableBytes) return {};
  return Status::Error("holds " + std::to_string(size) +
                       " bytes of samples; frames can be counted below " +
                       std::to_string(kCountableBytes) + " bytes (512 MB) only");
}

}  // namespace

Result<std::unique_ptr<C_WavFile>> OpenInputSound(const Path& path, LoadScope scope,
                                                  SampleView view) {
  const Result<FileFacts> facts = GetFileFacts(path);
  if (!facts) return facts.GetStatus();
  // A large file is looked at before its samples are read into memory.
  if (scope == LoadScope::kAll && facts->size >= kCountableBytes) {
    auto header = OpenSound(path, {LoadScope::kHeader, view});
    if (!header) return header.GetStatus();
    if (Status countable = CheckCountable(*header.Value()); !countable) return countable;
  }
  auto file = OpenSound(path, {scope, view});
  if (!file) return file.GetStatus();
  if (!file.Value()->Sound()) return Status::Error("holds no sound");
  if (Status countable = CheckCountable(*file.Value()); !countable) return countable;
  return file;
}

bool IsChipFormat(uint32_t id) { return IsAudioId(id) && !IsSourceId(id); }

nlohmann::ordered_json FormatJson(uint32_t id) {
  std::string extension;
  (void)GetExtensionById(id, extension);
  nlohmann::ordered_json object;
  object["id"] = id;
  object["name"] = FormatName(id);
  object["extension"] = extension;
  return object;
}

nlohmann::ordered_json EventsJson(const C_WavData& sound) {
  auto list = nlohmann::ordered_json::array();
  for (const C_ActionEvent* event : sound.EventMgr().Events()) {
    nlohmann::ordered_json object;
    object["type"] = event->GetType();
    object["sample"] = event->GetSample();
    object["timeMs"] = event->GetTimeMs();
    object["param"] = event->GetParam();
    object["text"] = event->GetText();
    list.push_back(std::move(object));
  }
  return list;
}

nlohmann::ordered_json RegionsJson(const C_WavData& sound) {
  auto list = nlohmann::ordered_json::array();
  for (const C_ActionSilenceRegion* region : sound.EventMgr().Regions()) {
    nlohmann::ordered_json object;
    object["start"] = region->GetStart();
    object["length"] = region->GetLength();
    list.push_back(std::move(object));
  }
  return list;
}

std::string Counted(uint64_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string PadRight(std::string text, size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string PadLeft(std::string text, size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

}  // namespace velora::cli
