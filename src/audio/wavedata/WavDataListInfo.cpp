#include "audio/wavedata/WavDataListInfo.h"

#include <algorithm>
#include <cstring>

#include "audio/wavedata/RiffChunkBytes.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

constexpr std::string_view kForm = "adtl";
constexpr std::string_view kLabelTag = "labl";
constexpr std::string_view kTextTag = "ltxt";
constexpr uint32_t kCueIdSize = sizeof(le32);

/// Ahead of each record's content.
struct RecordHead {
  std::array<char, 4> tag;
  le32 size;  // of the content, without a pad byte

  std::string_view Tag() const { return {tag.data(), tag.size()}; }
};
static_assert(sizeof(RecordHead) == 8);

/// The content of an "ltxt" record.
struct TextContent {
  le32 cueId;
  le32 length;  // in frames
  std::array<le32, 3> zero;
};
static_assert(sizeof(TextContent) == 20);

uint64_t RoundUpToEven(uint64_t size) { return (size + 1) & ~uint64_t{1}; }

/// Bytes of a label's text in the file: its terminator and a pad byte included.
uint64_t StoredTextSize(const C_WavDataListInfo::Label& label) {
  return RoundUpToEven(label.Text().size() + 1);
}

uint64_t LabelRecordSize(const C_WavDataListInfo::Label& label) {
  return sizeof(RecordHead) + kCueIdSize + StoredTextSize(label);
}

RecordHead MakeHead(std::string_view tag, uint64_t size) {
  RecordHead head;
  std::ranges::copy(tag, head.tag.begin());
  head.size = static_cast<uint32_t>(size);
  return head;
}

/// Writes records one after the other into bytes that were made for them.
class Writer {
 public:
  explicit Writer(std::span<std::byte> target) : rest_(target) {}

  void Put(const void* bytes, size_t size) {
    std::memcpy(rest_.data(), bytes, size);
    rest_ = rest_.subspan(size);
  }
  template <typename T>
  void PutRecord(const T& record) {
    Put(&record, sizeof record);
  }

 private:
  std::span<std::byte> rest_;
};

}  // namespace

uint32_t C_WavDataListInfo::GetChunkSize() const {
  uint64_t size = kForm.size() + (sizeof(RecordHead) + sizeof(TextContent)) * texts_.size();
  for (const Label& label : labels_) size += LabelRecordSize(label);
  return static_cast<uint32_t>(size);
}

const char* C_WavDataListInfo::GetLabelAt(uint32_t index, uint32_t* id) const {
  if (index >= labels_.size()) return nullptr;
  if (id) *id = labels_[index].cueId;
  return labels_[index].text.data();
}

int32_t C_WavDataListInfo::AddLabel(uint32_t id, const char* text) {
  AddLabelText(id, text ? std::string_view(text) : std::string_view());
  return 1;
}

void C_WavDataListInfo::AddLabelText(uint32_t id, std::string_view text) {
  Label& label = labels_.emplace_back();
  label.cueId = id;
  std::ranges::copy(text.substr(0, kMaxLabel), label.text.begin());
}

void C_WavDataListInfo::ClearTexts() {
  texts_.clear();
  lengthById_.clear();
}

uint32_t C_WavDataListInfo::GetTextLength(uint32_t id) const {
  const auto found = lengthById_.find(id);
  return found == lengthById_.end() ? 0 : found->second;
}

int32_t C_WavDataListInfo::AddText(uint32_t id, uint32_t length) {
  texts_.push_back({id, length});
  lengthById_.try_emplace(id, length);
  return 1;
}

int32_t C_WavDataListInfo::Read(I_RiffChunk* chunk) {
  const auto content = ReadRiffChunk(chunk);
  if (!content) return 0;
  ByteCursor cursor(content->Span());
  const auto form = cursor.ReadRecord<std::array<char, 4>>();
  if (!form || std::string_view(form->data(), form->size()) != kForm) return 1;
  ClearLabels();
  ClearTexts();
  ReadRecords(cursor);
  return 1;
}

void C_WavDataListInfo::ReadRecords(ByteCursor records) {
  // A rest of just a head says nothing.
  while (records.Remaining() > sizeof(RecordHead)) {
    const auto head = *records.ReadRecord<RecordHead>();
    if (head.Tag() == kLabelTag) {
      ReadLabel(records, head.size);
    } else if (head.Tag() == kTextTag) {
      ReadText(records);
    }
    if (!records.Skip(RoundUpToEven(head.size))) return;
  }
}

void C_WavDataListInfo::ReadLabel(ByteCursor record, uint32_t size) {
  const auto id = record.ReadRecord<le32>();
  if (!id) return;
  const uint64_t stated = size > kCueIdSize ? size - kCueIdSize : 0;
  const auto bytes = *record.ReadBytes(std::min({stated, uint64_t{kMaxLabel}, record.Remaining()}));
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  AddLabelText(*id, text.substr(0, text.find('\0')));
}

void C_WavDataListInfo::ReadText(ByteCursor record) {
  const auto id = record.ReadRecord<le32>();
  const auto length = record.ReadRecord<le32>();
  if (id && length) AddText(*id, *length);
}

std::vector<std::byte> C_WavDataListInfo::Serialise() const {
  std::vector<std::byte> bytes(GetChunkSize());
  Writer writer(bytes);
  writer.Put(kForm.data(), kForm.size());
  for (const Label& label : labels_) {
    const uint64_t textSize = StoredTextSize(label);
    writer.PutRecord(MakeHead(kLabelTag, kCueIdSize + textSize));
    writer.PutRecord(le32(label.cueId));
    writer.Put(label.text.data(), textSize);  // at most all 64 bytes, zeros behind the text
  }
  for (const Text& text : texts_) {
    writer.PutRecord(MakeHead(kTextTag, sizeof(TextContent)));
    writer.PutRecord(TextContent{text.cueId, text.length, {}});
  }
  return bytes;
}

int32_t C_WavDataListInfo::Write(I_RiffChunk* chunk) const {
  return FillRiffChunk(chunk, Serialise());
}

}  // namespace velora
