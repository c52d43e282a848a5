// The checks of a wave file.
//
// Two walks over the chunks: the first takes what others refer to (format, frames,
// cue points, chunk tags), the second checks what refers to it.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "audio/inspect/Checker.h"
#include "audio/inspect/FieldText.h"
#include "audio/inspect/FileWindow.h"
#include "audio/inspect/LabelGrammar.h"
#include "audio/inspect/RiffWalk.h"
#include "audio/inspect/Verifiers.h"

namespace velora {

namespace {

using layout::CuePointRecord;
using layout::FileTag;
using layout::FmtRecord;
using layout::LoopRecord;
using layout::RiffHeadRecord;
using layout::SamplerHeadRecord;
using layout::TextRecord;

constexpr uint16_t kPcm = 1;
constexpr uint16_t kMicrosoftAdpcm = 2;
constexpr uint16_t kImaAdpcm = 17;

std::string Quoted(const FileTag& tag) { return '"' + Printable(tag) + '"'; }

bool IsExact(const FileTag& tag, std::string_view name) {
  return std::string_view(tag.data(), tag.size()) == name;
}

/// Samples of a channel that one ADPCM block of this size holds.
uint64_t BlockSamples(const FmtRecord& fmt) {
  const uint64_t channels = std::max<uint64_t>(fmt.channels, 1);
  const uint64_t head = (fmt.formatTag == kMicrosoftAdpcm ? 7 : 4) * channels;
  const uint64_t inHead = fmt.formatTag == kMicrosoftAdpcm ? 2 : 1;
  if (fmt.blockAlign < head) return 0;
  return (fmt.blockAlign - head) * 2 / channels + inHead;
}

class WaveVerifier {
 public:
  WaveVerifier(const InputFile& file, Checker& checker) : window_(file), checker_(checker) {}

  Status Run() {
    const auto head = window_.Record<RiffHeadRecord>(0);
    if (!head) return window_.GetStatus();
    CheckHead(*head);
    Gather(head->size);
    std::sort(tags_.begin(), tags_.end());
    CheckPresence();
    CheckReferences(head->size);
    checker_.Report().samples = frames_;
    return window_.GetStatus();
  }

 private:
  void CheckHead(const RiffHeadRecord& head) {
    RecordCheck check(checker_, "RIFF head", layout::kRiffHeadLayout, BytesOf(head), 0);
    check.Prefer(IsExact(head.tag, "RIFF"), "tag", "\"RIFF\" in upper case");
    check.Prefer(IsExact(head.form, "WAVE"), "form", "\"WAVE\" in upper case");
    const uint64_t behind = window_.FileSize() - sizeof(layout::ChunkHeadRecord);
    // One zero byte behind a form of odd size is its pad byte.
    const bool padded = head.size % 2 == 1 && behind == uint64_t{head.size} + 1 &&
                        window_.Byte(window_.FileSize() - 1) == uint8_t{0};
    if (!padded) check.Equal("form size", behind);
  }

  // ---- first walk ----

  void Gather(uint64_t formSize) {
    RiffWalker walker(window_, formSize);
    RiffItem item;
    uint64_t before = 0;  // data bytes of the chunk before
    while (walker.Next(item)) {
      if (item.kind == RiffItem::Kind::kChunk) {
        CheckChunk(item);
        before = item.declared;
      } else {
        CheckGap(item, before);
        before = 0;
      }
    }
  }

  void CheckGap(const RiffItem& item, uint64_t before) {
    const std::string size = std::to_string(item.size) + " bytes";
    switch (item.kind) {
      case RiffItem::Kind::kPadding:
        checker_.Prefer(item.size == 1 && before % 2 == 1, item.offset, "padding",
                        "at most one byte behind a chunk of odd size", size);
        break;
      case RiffItem::Kind::kScrap:
        checker_.Fault(item.offset, "end of the form", "a whole chunk", size);
        break;
      default:
        // The form size has told already; a pad byte is no fault.
        break;
    }
  }

  void CheckChunk(const RiffItem& chunk) {
    const std::string name = "chunk " + Quoted(chunk.tag);
    checker_.Require(std::all_of(chunk.tag.begin(), chunk.tag.end(),
                                 [](char c) { return c >= ' ' && c <= '~'; }),
                     chunk.offset, "chunk tag", "four printable characters", Quoted(chunk.tag));
    checker_.Require(chunk.available == chunk.declared, chunk.offset + 4, name + ": size",
                     "at most the " + std::to_string(chunk.available) + " bytes left",
                     chunk.declared);
    for (const std::string_view known : {"fmt ", "data", "cue ", "smpl", "LIST"}) {
      checker_.Prefer(!chunk.Is(known) || IsExact(chunk.tag, known), chunk.offset, "chunk tag",
                      '"' + std::string(known) + '"', Quoted(chunk.tag));
    }
    tags_.push_back(chunk.tag);
    if (chunk.Is("fmt ")) GatherFmt(chunk);
    if (chunk.Is("data")) GatherData(chunk);
    if (chunk.Is("cue ")) GatherCues(chunk);
  }

  void CheckOnce(const RiffItem& chunk, bool again) {
    checker_.Prefer(!again, chunk.offset, "chunk " + Quoted(chunk.tag), "once",
                    "again; the last one counts");
  }

  void GatherFmt(const RiffItem& chunk) {
    CheckOnce(chunk, fmt_.has_value());
    if (!checker_.Require(chunk.available >= sizeof(FmtRecord), chunk.offset + 4,
                          "chunk \"fmt \": size", "16 or more", chunk.available)) {
      return;
    }
    fmt_ = window_.Record<FmtRecord>(chunk.dataOffset);
    if (fmt_) CheckFmt(chunk);
  }

  void CheckFmt(const RiffItem& chunk) {
    RecordCheck check(checker_, "fmt", layout::kFmtLayout, BytesOf(*fmt_), chunk.dataOffset);
    const uint16_t tag = fmt_->formatTag;
    const bool known = tag == kPcm || tag == kMicrosoftAdpcm || tag == kImaAdpcm;
    check.Require(known, "format tag", "1, 2 or 17");
    check.Require(fmt_->channels != 0, "channels", "1 or more");
    check.Require(fmt_->rate != 0, "sample rate", "above 0");
    if (tag == kMicrosoftAdpcm || tag == kImaAdpcm) {
      CheckAdpcm(check, chunk);
    } else if (check.Require(fmt_->bits >= 1 && fmt_->bits <= 16, "bits", "1 to 16")) {
      const uint64_t align = uint64_t{fmt_->channels} * ((fmt_->bits + 7u) / 8);
      check.Equal("block align", align);
      check.Equal("byte rate", fmt_->rate * align);
    }
  }

  void CheckAdpcm(RecordCheck& check, const RiffItem& chunk) {
    check.Equal("bits", 4);
    const uint64_t samples = BlockSamples(*fmt_);
    if (!check.Require(samples > 0, "block align", "room for the head of a block")) return;
    const auto stored = window_.Record<le16>(chunk.dataOffset + sizeof(FmtRecord) + 2);
    if (chunk.available < sizeof(FmtRecord) + 4 || !stored) {
      checker_.Fault(chunk.offset + 4, "chunk \"fmt \": size", "20 or more",
                     std::to_string(chunk.available));
      return;
    }
    checker_.Equal(chunk.dataOffset + sizeof(FmtRecord) + 2, "fmt: samples of a block", samples,
                   *stored);
    // Programs round this in both directions.
    const uint64_t rate = uint64_t{fmt_->rate} * fmt_->blockAlign / samples;
    const uint64_t found = fmt_->byteRate;
    check.Require(found + 1 >= rate && found <= rate + 1, "byte rate",
                  std::to_string(rate) + ", give or take one");
  }

  void GatherData(const RiffItem& chunk) {
    CheckOnce(chunk, data_.has_value());
    data_ = chunk;
  }

  void GatherCues(const RiffItem& chunk) {
    CheckOnce(chunk, haveCues_);
    haveCues_ = true;
    cueIds_.clear();
    const auto count = window_.Record<le32>(chunk.dataOffset);
    if (chunk.available < sizeof(le32) || !count) {
      checker_.Fault(chunk.offset + 4, "chunk \"cue \": size", "4 or more",
                     std::to_string(chunk.available));
      return;
    }
    checker_.Equal(chunk.offset + 4, "chunk \"cue \": size",
                   sizeof(le32) + sizeof(CuePointRecord) * uint64_t{*count}, chunk.declared);
    cueOffset_ = chunk.dataOffset + sizeof(le32);
    cueCount_ =
        std::min<uint64_t>(*count, (chunk.available - sizeof(le32)) / sizeof(CuePointRecord));
    for (uint64_t i = 0; i < cueCount_; ++i) {
      const auto point = window_.Record<CuePointRecord>(cueOffset_ + i * sizeof(CuePointRecord));
      if (point) cueIds_.push_back(point->id);
    }
    std::sort(cueIds_.begin(), cueIds_.end());
  }

  void CheckPresence() {
    checker_.Require(fmt_.has_value(), 0, "chunk \"fmt \"", "in the file", "none");
    if (!checker_.Require(data_.has_value(), 0, "chunk \"data\"", "in the file", "none")) return;
    if (!fmt_ || fmt_->blockAlign == 0) return;
    const uint64_t rest = data_->declared % fmt_->blockAlign;
    const std::string what = "chunk \"data\": size";
    const std::string expected = "a multiple of " + std::to_string(fmt_->blockAlign);
    frames_ = data_->available / fmt_->blockAlign;
    if (fmt_->formatTag == kPcm) {
      checker_.Require(rest == 0, data_->offset + 4, what, expected, data_->declared);
      return;
    }
    // The last ADPCM block may be short.
    checker_.Prefer(rest == 0, data_->offset + 4, what, expected, std::to_string(data_->declared));
    frames_ = (frames_ + (rest != 0)) * BlockSamples(*fmt_);
  }

  // ---- second walk ----

  void CheckReferences(uint64_t formSize) {
    CheckCues();
    RiffWalker walker(window_, formSize);
    RiffItem item;
    bool haveList = false;
    bool haveSampler = false;
    while (walker.Next(item)) {
      if (item.kind != RiffItem::Kind::kChunk) continue;
      if (item.Is("smpl")) {
        CheckOnce(item, haveSampler);
        haveSampler = true;
        CheckSampler(item);
      }
      if (item.Is("LIST")) haveList = CheckList(item, haveList);
    }
  }

  void CheckCues() {
    const auto twice = std::adjacent_find(cueIds_.begin(), cueIds_.end());
    if (twice != cueIds_.end()) {
      checker_.Fault(cueOffset_, "cue point ids", "each once",
                     std::to_string(*twice) + " more than once");
    }
    for (uint64_t i = 0; i < cueCount_; ++i) {
      const uint64_t offset = cueOffset_ + i * sizeof(CuePointRecord);
      const auto point = window_.Record<CuePointRecord>(offset);
      if (point) CheckCue(*point, offset, i);
    }
  }

  void CheckCue(const CuePointRecord& point, uint64_t offset, uint64_t index) {
    RecordCheck check(checker_, "cue point " + std::to_string(index), layout::kCuePointLayout,
                      BytesOf(point), offset);
    check.Require(std::binary_search(tags_.begin(), tags_.end(), point.chunk), "chunk",
                  "the tag of a chunk in the file");
    check.Prefer(point.position <= frames_, "position",
                 "at most the " + std::to_string(frames_) + " frames");
    check.Prefer(point.chunkStart == 0, "chunk start", "0");
    check.Prefer(point.blockStart == 0, "block start", "0");
    check.Prefer(point.sampleOffset == point.position, "sample offset",
                 std::to_string(point.position) + ", the position");
  }

  void CheckSampler(const RiffItem& chunk) {
    const auto head = window_.Record<SamplerHeadRecord>(chunk.dataOffset);
    if (chunk.available < sizeof(SamplerHeadRecord) || !head) {
      checker_.Fault(chunk.offset + 4, "chunk \"smpl\": size", "36 or more",
                     std::to_string(chunk.available));
      return;
    }
    const uint64_t loops = head->loopCount;
    checker_.Equal(chunk.offset + 4, "chunk \"smpl\": size",
                   sizeof(*head) + sizeof(LoopRecord) * loops + head->samplerDataSize,
                   chunk.declared);
    const uint64_t room = (chunk.available - sizeof(*head)) / sizeof(LoopRecord);
    for (uint64_t i = 0; i < std::min(loops, room); ++i) {
      const uint64_t offset = chunk.dataOffset + sizeof(*head) + i * sizeof(LoopRecord);
      const auto loop = window_.Record<LoopRecord>(offset);
      if (!loop) return;
      RecordCheck check(checker_, "loop " + std::to_string(i), layout::kLoopLayout, BytesOf(*loop),
                        offset);
      check.Require(loop->start <= loop->end, "start", "at most the end");
      check.Require(loop->end < frames_, "end", "below the " + std::to_string(frames_) + " frames");
    }
  }

  /// Checks a list of labels; answers whether there has been one.
  bool CheckList(const RiffItem& chunk, bool before) {
    if (chunk.available < 4) {
      checker_.Fault(chunk.offset + 4, "chunk \"LIST\": size", "4 or more",
                     std::to_string(chunk.available));
      return before;
    }
    if (!ListWalker::IsAdtl(window_, chunk)) return before;
    CheckOnce(chunk, before);
    lengthIds_.clear();
    ListRecord record;
    for (ListWalker walker(window_, chunk); walker.Next(record);) {
      if (record.Is("ltxt")) lengthIds_.push_back(record.id);
    }
    std::sort(lengthIds_.begin(), lengthIds_.end());
    ListWalker walker(window_, chunk);
    while (walker.Next(record)) CheckListRecord(record);
    checker_.Require(walker.Left() == 0, walker.Offset(), "chunk \"LIST\"", "whole records",
                     std::to_string(walker.Left()) + " bytes left over");
    return true;
  }

  void CheckListRecord(const ListRecord& record) {
    const std::string name = "record " + Quoted(record.tag);
    checker_.Require(record.available == record.declared, record.offset + 4, name + ": size",
                     "at most the " + std::to_string(record.available) + " bytes left",
                     record.declared);
    const bool label = record.Is("labl");
    const bool text = record.Is("ltxt");
    if (!label && !text) return;
    const uint64_t least = label ? sizeof(layout::LabelHeadRecord) : sizeof(TextRecord);
    if (!checker_.Require(record.available >= least, record.offset + 4, name + ": size",
                          std::to_string(least) + " or more", record.available)) {
      return;
    }
    checker_.Require(std::binary_search(cueIds_.begin(), cueIds_.end(), record.id),
                     record.offset + sizeof(layout::ChunkHeadRecord), name + ": cue id",
                     "the id of a cue point", record.id);
    if (label) CheckLabel(record, name);
    if (text) {
      checker_.Prefer(record.length <= frames_, record.offset + 12, name + ": length",
                      "at most the " + std::to_string(frames_) + " frames",
                      std::to_string(record.length));
    }
  }

  void CheckLabel(const ListRecord& record, const std::string& name) {
    const uint64_t offset = record.offset + sizeof(layout::ChunkHeadRecord) + 4;
    const std::string found = '"' + Printable(record.text) + '"';
    checker_.Prefer(record.terminated && record.available - 4 <= kLabelLimit + 2, offset,
                    name + ": text", "at most 63 characters and a zero byte", found);
    const LabelMeaning meaning = ReadLabelMeaning(record.text);
    checker_.Require(meaning.kind != LabelKind::kBroken, offset, name + ": text",
                     "(type,parameter), [type,parameter] or SILENCE", found);
    checker_.Prefer(meaning.kind != LabelKind::kPlain && !meaning.more, offset, name + ": text",
                    "one pair in brackets or SILENCE; other text makes no event", found);
    if (meaning.kind == LabelKind::kEvent) ++checker_.Report().events;
    if (meaning.kind == LabelKind::kSilence) {
      ++checker_.Report().silenceRegions;
      checker_.Require(std::binary_search(lengthIds_.begin(), lengthIds_.end(), record.id), offset,
                       name + ": SILENCE", "a \"ltxt\" record with its length", "none");
    }
  }

  FileWindow window_;
  Checker& checker_;
  std::optional<FmtRecord> fmt_;
  std::optional<RiffItem> data_;
  uint64_t frames_ = 0;
  std::vector<FileTag> tags_;  // of all chunks, sorted after the first walk
  bool haveCues_ = false;
  uint64_t cueOffset_ = 0;
  uint64_t cueCount_ = 0;
  std::vector<uint32_t> cueIds_;     // sorted
  std::vector<uint32_t> lengthIds_;  // of the list's "ltxt" records, sorted
};

}  // namespace

Status VerifyWave(const InputFile& file, Checker& checker) {
  return WaveVerifier(file, checker).Run();
}

}  // namespace velora
