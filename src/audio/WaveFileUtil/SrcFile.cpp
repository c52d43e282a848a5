#include "audio/WaveFileUtil/SrcFile.h"

#include <array>
#include <string>

#include "audio/WaveFileUtil/ByteSink.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr uint32_t kPlainId = 1;
constexpr uint32_t kEncipheredId = 13;

constexpr std::byte Scramble(std::byte plain) {
  return static_cast<std::byte>(std::to_integer<unsigned>(plain) * 7 + 3);
}

constexpr std::array<std::byte, 256> MakeUnscrambleTable() {
  std::array<std::byte, 256> table{};
  for (unsigned b = 0; b < table.size(); ++b) {
    const std::byte plain{static_cast<unsigned char>(b)};
    table[std::to_integer<size_t>(Scramble(plain))] = plain;
  }
  return table;
}
constexpr std::array<std::byte, 256> kUnscramble = MakeUnscrambleTable();

bool IsSourceForm(const C_WavInfo& info) {
  return info.GetResolutionBits() == 12 && info.GetContainerBits() == 16 && !info.IsSigned();
}

}  // namespace

Status C_SrcFile::OnReadHeader(const Path& path, bool load, uint32_t* enciphered) {
  if (Status status = OpenInput(path); !status) return status;
  SourceHeader header;
  if (Status status = Input().ReadExactly(0, std::as_writable_bytes(std::span(&header, 1)));
      !status) {
    return Status::Error("header: " + status.Message());
  }
  if (header.tag != MakeTag("KPCM")) return Status::Error("header: the tag is not \"KPCM\"");
  if (header.headerSize != sizeof header) {
    return Status::Error("header: the size at offset 6 is " + std::to_string(header.headerSize) +
                         ", not 22");
  }
  const uint64_t expected = sizeof header + uint64_t{header.count} * 2;
  if (Input().Size() != expected) {
    return Status::Error("header: the count at offset 18 makes " + std::to_string(expected) +
                         " bytes, but the file has " + std::to_string(Input().Size()));
  }

  enciphered_ = header.flag == kSourceEnciphered;
  if (enciphered) *enciphered = enciphered_ ? 1 : 0;
  if (load) {
    BeginSound(header.sampleRate, header.count * 2, header.channels, 12, 16, false);
    SetDataOffset(sizeof header);
    SetKinds(enciphered_ ? kEncipheredId : kPlainId, 0);
  }
  return {};
}

Status C_SrcFile::OnReadSamples() {
  if (Status status = ReadSamplesAt(DataOffset(), Sound()->Info().GetDataSize()); !status) {
    return status;
  }
  if (enciphered_) {
    for (std::byte& b : Sound()->Bytes()) b = kUnscramble[std::to_integer<size_t>(b)];
  }
  return {};
}

Status C_SrcFile::OnSave(const Path& path) { return SaveForm(path, kSourcePlain); }
Status C_EnSrcFile::OnSave(const Path& path) { return SaveForm(path, kSourceEnciphered); }

Status C_SrcFile::SaveForm(const Path& path, SourceFlag flag) {
  C_WavData& sound = *Sound();
  WavDataPtr converted;
  if (!IsSourceForm(sound.Info())) {
    converted.reset(sound.CreateConverted(12, 16, 0, nullptr));
    if (!converted) return Status::Error("the sample format cannot be converted to 12 bits");
  }
  const C_WavData& data = converted ? *converted : sound;
  const C_WavInfo& info = data.Info();
  if (info.GetSampleRate() > 0xFFFF) {
    return Status::Error("the rate of " + std::to_string(info.GetSampleRate()) +
                         " Hz is above the 65535 that the format can state");
  }
  const size_t words = data.Bytes().size() / 2;

  SourceHeader header;
  header.channels = info.GetChannels();
  header.flag = flag;
  header.sampleRate = static_cast<uint16_t>(info.GetSampleRate());
  header.bandLimit = BandLimit(info.GetSampleRate());
  header.count = static_cast<uint32_t>(words);

  Result<OutputFile> file = OutputFile::Create(path);
  if (!file) return file.GetStatus();
  Status status = file->Write(std::as_bytes(std::span(&header, 1)));
  const std::span<const std::byte> bytes = data.Bytes().first(words * 2);
  if (status && flag == kSourceEnciphered) {
    ByteSink scrambled;
    const std::span<std::byte> target = scrambled.Extend(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) target[i] = Scramble(bytes[i]);
    status = file->Write(scrambled.Bytes());
  } else if (status) {
    status = file->Write(bytes);
  }
  const Status closed = file->Close();
  return status ? closed : status;
}

std::vector<std::string> C_SrcFile::ListLosses(const C_WavData& sound) const {
  std::vector<std::string> losses;
  const size_t events = sound.EventMgr().Events().size();
  const size_t regions = sound.EventMgr().Regions().size();
  if (events > 0) losses.push_back(std::to_string(events) + " events: the format holds none");
  if (regions > 0) {
    losses.push_back(std::to_string(regions) + " silence regions: the format holds none");
  }
  return losses;
}

}  // namespace velora
