// Reading a wave file.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "audio/WaveFileUtil/RiffFile.h"
#include "audio/WaveFileUtil/WavFile.h"
#include "audio/WaveFileUtil/WaveFormatRecord.h"
#include "audio/wavedata/WavData.h"
#include "foundation/EncryptKeys.h"
#include "foundation/EncryptNewPC1.h"

namespace velora {
namespace {

/// What a wave file is as a source; its format id too.
constexpr uint32_t kWaveSource = 2;

/// Targets by format tag.
constexpr uint32_t kTargetPcm = 0;
constexpr uint32_t kTargetMsAdpcm = 3;
constexpr uint32_t kTargetImaAdpcm = 6;

constexpr uint16_t kMaxBits = 16;

/// The private chunks that are kept as they are.
constexpr std::string_view kPrivateTags[] = {"KIOD", "VLRW", "MIOW", "VLRI"};

bool IsPrivate(const C_RiffChunk& chunk) {
  return std::ranges::any_of(kPrivateTags, [&](std::string_view tag) { return chunk.HasTag(tag); });
}

constexpr uint32_t TargetOf(uint16_t formatTag) {
  if (formatTag == kTagMsAdpcm) return kTargetMsAdpcm;
  if (formatTag == kTagImaAdpcm) return kTargetImaAdpcm;
  return kTargetPcm;
}

/// Eight bits and less are offset binary.
constexpr bool IsSignedWidth(uint16_t bits) { return bits > 8; }

std::string Where(const C_RiffChunk& chunk) {
  return QuotedTag(chunk.Tag()) + " at offset " + std::to_string(chunk.DataOffset());
}

/// Why a metadata chunk could not be read.
Status ChunkFault(C_RiffChunk& chunk) {
  const Result<std::span<const std::byte>> content = chunk.Content();
  if (!content) return content.GetStatus();
  return Status::Error("chunk " + Where(chunk) + " cannot be read");
}

}  // namespace

Status C_WavFile::OpenPlain(const Path& path) {
  if (Status status = OpenInput(path); !status) return status;
  C_EncryptNewPC1 cipher;
  std::vector<std::string> passwords;
  if (cipher.ReadPasswordInfo(path, passwords) == kEncryptNoHeader) return {};

  Result<TemporaryFile> plain = TemporaryFile::Create("xxx");
  if (!plain) return plain.GetStatus();
  const EncryptCode code =
      cipher.Decipher(path, plain->GetPath(), kDataFilePassKey, /*progress=*/nullptr);
  if (code != kEncryptDone) {
    return Status::Error("is enciphered and cannot be deciphered (code " + std::to_string(code) +
                         ")");
  }
  temporary_.emplace(std::move(plain.Value()));
  return OpenInput(temporary_->GetPath());
}

Status C_WavFile::OnReadHeader(const Path& path, bool load, uint32_t* /*out*/) {
  if (Status status = OpenPlain(path); !status) return status;
  C_RiffFile riff;
  if (Status status = riff.OpenBorrowed(Input(), "WAVE"); !status) return status;
  if (load) EnsureSound();
  if (Status status = FindFormatAndData(riff.Chunks()); !status) return status;
  if (load) {
    BeginSound(rate_, static_cast<uint32_t>(dataSize_), channels_, bits_, bits_,
               IsSignedWidth(bits_));
    sourceKind_ = kWaveSource;
    if (Status status = ReadMetadata(riff.Chunks()); !status) return status;
  }
  targetKind_ = TargetOf(formatTag_);
  return {};
}

Status C_WavFile::FindFormatAndData(C_RiffChunkList& chunks) {
  formatTag_ = 0;
  formatOffset_ = 0;
  dataOffset_ = 0;
  dataSize_ = 0;
  bool found = false;
  for (C_RiffChunk* chunk : chunks) {
    if (chunk->HasTag("fmt ")) {
      if (Status status = ReadFormat(*chunk); !status) return status;
      found = true;
    } else if (chunk->HasTag("data")) {
      dataOffset_ = chunk->DataOffset();
      dataSize_ = chunk->SizeInFile();
    }
  }
  return found ? Status() : Status::Error("no \"fmt \" chunk");
}

Status C_WavFile::ReadFormat(C_RiffChunk& chunk) {
  const Result<std::span<const std::byte>> content = chunk.Content();
  if (!content) return content.GetStatus();
  PcmFormat format;
  if (content.Value().size() < sizeof format) {
    return Status::Error("chunk " + Where(chunk) + " has " +
                         std::to_string(content.Value().size()) + " bytes, at least " +
                         std::to_string(sizeof format) + " expected");
  }
  std::memcpy(&format, content.Value().data(), sizeof format);

  const uint16_t tag = format.formatTag;
  if (tag != kTagPcm && tag != kTagMsAdpcm && tag != kTagImaAdpcm) {
    throw WaveFormatError("Unsupported wave format!(" + path_.Text() + ")",
                          "Unsupported wave format! (" + Where(chunk) + ": format tag " +
                              std::to_string(tag) + " found, 1, 2 or 17 expected)");
  }
  if (format.bits > kMaxBits) {
    const std::string fault = "Unsupported " + std::to_string(format.bits) + "-bit PCM format!";
    throw WaveFormatError(fault + "(" + path_.Text() + ")",
                          fault + " (" + Where(chunk) + ": at most 16 bits expected)");
  }
  formatTag_ = tag;
  formatOffset_ = chunk.DataOffset();
  channels_ = format.channels;
  rate_ = format.rate;
  bits_ = format.bits;
  return {};
}

Status C_WavFile::ReadMetadata(C_RiffChunkList& chunks) {
  C_WavData& sound = EnsureSound();
  for (C_RiffChunk* chunk : chunks) {
    bool read = true;
    if (chunk->HasTag("cue ")) {
      read = sound.CueInfo().Read(chunk);
    } else if (chunk->HasTag("smpl")) {
      read = sound.SamplerInfo().Read(chunk);
    } else if (chunk->HasTag("LIST")) {
      read = sound.ListInfo().Read(chunk);
    } else if (IsPrivate(*chunk)) {
      read = sound.ExtraChunks().AddFromChunk(chunk->Tag().data(), chunk);
    }
    if (!read) return ChunkFault(*chunk);
  }
  return {};
}

Status C_WavFile::OnReadSamples() {
  if (formatTag_ != kTagPcm) {
    return Status::Error("ADPCM samples (format tag " + std::to_string(formatTag_) +
                         ") cannot be decoded");
  }
  return dataSize_ == 0 ? Status() : ReadSamplesAt(dataOffset_, dataSize_);
}

Status C_WavFile::OnReadEvents() {
  C_WavData& sound = EnsureSound();
  LabelsToEvents(sound.CueInfo(), sound.ListInfo(), labelConverter_.get(), *sound.GetEventMgr());
  return {};
}

}  // namespace velora
