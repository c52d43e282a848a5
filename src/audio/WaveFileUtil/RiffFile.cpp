#include "audio/WaveFileUtil/RiffFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

#include "foundation/AsciiText.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

/// The first bytes of a RIFF file.
struct FormHeader {
  RiffTag riff;
  le32 size;  // of all that follows this field
  RiffTag form;
};
static_assert(sizeof(FormHeader) == 12);

/// What stands in front of a chunk's content.
struct ChunkHeader {
  RiffTag tag;
  le32 size;
};
static_assert(sizeof(ChunkHeader) == 8);

constexpr uint64_t kMaxRiffSize = std::numeric_limits<uint32_t>::max();

template <typename Record>
std::span<const std::byte> BytesOf(const Record& record) {
  static_assert(std::is_trivially_copyable_v<Record>);
  return std::as_bytes(std::span(&record, 1));
}

/// Reads a file forward through a window, so that headers that stand close together
/// cost one call of the system.
class WindowReader {
 public:
  WindowReader(const InputFile& file, uint64_t offset) : file_(file), position_(offset) {}

  uint64_t Position() const { return position_; }
  void Skip(uint64_t count) { position_ += count; }

  /// Passes over zero bytes and returns how many; the end of the file ends them.
  Result<uint64_t> SkipZeros() {
    const uint64_t start = position_;
    for (;;) {
      const Result<std::span<const std::byte>> window = Peek(1);
      if (!window) return window.GetStatus();
      const auto zero = [](std::byte b) { return b == std::byte{0}; };
      const auto other = std::find_if_not(window->begin(), window->end(), zero);
      position_ += static_cast<uint64_t>(other - window->begin());
      if (other != window->end() || window->empty()) return position_ - start;
    }
  }

  /// True when the file held the record whole; the position is then behind it.
  template <typename Record>
  Result<bool> Read(Record& record) {
    const Result<std::span<const std::byte>> window = Peek(sizeof(Record));
    if (!window) return window.GetStatus();
    if (window->size() < sizeof(Record)) return false;
    std::memcpy(&record, window->data(), sizeof(Record));
    position_ += sizeof(Record);
    return true;
  }

 private:
  static constexpr size_t kFirstWindow = 4096;
  static constexpr size_t kLargestWindow = 64 * 1024;

  /// What the window holds from the position on: at least `count` bytes unless the
  /// file ends before.
  Result<std::span<const std::byte>> Peek(size_t count) {
    if (position_ < windowStart_ || position_ + count > WindowEnd()) {
      if (Status status = Fill(); !status) return status;
    }
    const uint64_t at = std::min<uint64_t>(position_ - windowStart_, windowSize_);
    return std::span<const std::byte>(buffer_).subspan(at, windowSize_ - at);
  }

  Status Fill() {
    // A walk straight on from the window's end is going through a long run.
    const bool onward = !buffer_.empty() && position_ <= WindowEnd();
    const size_t size = onward ? std::min(buffer_.size() * 2, kLargestWindow) : kFirstWindow;
    buffer_.resize(size);
    windowStart_ = position_;
    windowSize_ = 0;
    const Result<size_t> got = file_.ReadAt(position_, buffer_);
    if (!got) return got.GetStatus();
    windowSize_ = got.Value();
    return {};
  }

  uint64_t WindowEnd() const { return windowStart_ + windowSize_; }

  const InputFile& file_;
  uint64_t position_;
  std::vector<std::byte> buffer_;
  uint64_t windowStart_ = 0;
  size_t windowSize_ = 0;
};

}  // namespace

std::string QuotedTag(const RiffTag& tag) {
  std::string text = "\"";
  for (const char c : tag) text += c >= ' ' && c <= '~' ? c : '?';
  return text + '"';
}

// --- C_RiffChunk -------------------------------------------------------------

C_RiffChunk::C_RiffChunk(const RiffTag& tag, uint32_t size) : tag_(tag), size_(size) {}

C_RiffChunk::C_RiffChunk(const RiffTag& tag, uint32_t size, const InputFile& file,
                         uint64_t dataOffset)
    : tag_(tag), size_(size), dataOffset_(dataOffset), file_(&file) {}

C_RiffChunk::~C_RiffChunk() = default;

bool C_RiffChunk::HasTag(std::string_view tag) const { return EqualsNoCase(TextOf(tag_), tag); }

uint64_t C_RiffChunk::SizeInFile() const {
  if (!file_ || dataOffset_ >= file_->Size()) return 0;
  return std::min<uint64_t>(size_, file_->Size() - dataOffset_);
}

Status C_RiffChunk::Load() {
  if (!content_.empty()) return {};
  const std::string where =
      "chunk " + QuotedTag(tag_) + " at offset " + std::to_string(dataOffset_);
  if (size_ == 0) return Status::Error(where + " is empty");
  if (!file_) return Status::Error("chunk " + QuotedTag(tag_) + " has no content");
  if (SizeInFile() < size_) {
    return Status::Error(where + " should have " + std::to_string(size_) +
                         " bytes, the file holds " + std::to_string(SizeInFile()));
  }
  std::vector<std::byte> bytes(size_);
  if (Status status = file_->ReadExactly(dataOffset_, bytes); !status) {
    return Status::Error(where + ": " + status.Message());
  }
  cache_ = std::move(bytes);
  content_ = cache_;
  return {};
}

Result<std::span<const std::byte>> C_RiffChunk::Content() {
  if (Status status = Load(); !status) return status;
  return content_;
}

int32_t C_RiffChunk::Read(void* buffer, uint32_t length, uint32_t offset) {
  if (!Load() || !buffer) return 0;
  if (uint64_t{offset} + length > content_.size()) return 0;
  std::memcpy(buffer, content_.data() + offset, length);
  return 1;
}

void C_RiffChunk::SetData(const void* bytes) {
  if (size_ == 0 || !bytes) return;
  const auto* first = static_cast<const std::byte*>(bytes);
  cache_.assign(first, first + size_);
  content_ = cache_;
}

void C_RiffChunk::Borrow(std::span<const std::byte> bytes) {
  content_ = bytes.first(std::min<size_t>(bytes.size(), size_));
  cache_.clear();
}

C_RiffChunkList& C_RiffChunk::Children() {
  if (!children_) children_ = std::make_unique<C_RiffChunkList>();
  return *children_;
}

Status C_RiffChunk::ParseChildren() {
  if (!file_) return Status::Error("chunk " + QuotedTag(tag_) + " stands in no file");
  return Children().Parse(*file_, dataOffset_, size_);
}

Status C_RiffChunk::Write(OutputFile& file) {
  if (Status status = file.Write(BytesOf(ChunkHeader{tag_, size_})); !status) return status;
  dataOffset_ = file.Position();
  if (content_.size() == size_) return file.Write(content_);
  if (children_) return children_->Write(file);
  return Status::Error("chunk " + QuotedTag(tag_) + " of " + std::to_string(size_) +
                       " bytes has no content");
}

// --- C_RiffChunkList ---------------------------------------------------------

C_RiffChunk* C_RiffChunkList::AddChunk(const RiffTag& tag, uint32_t size) {
  return Add(std::make_unique<C_RiffChunk>(tag, size));
}

uint64_t C_RiffChunkList::GetTotalSize() const {
  uint64_t total = 0;
  for (C_RiffChunk* chunk : *this) total += sizeof(ChunkHeader) + chunk->GetSize();
  return total;
}

Status C_RiffChunkList::Parse(const InputFile& file, uint64_t offset, uint32_t length) {
  if (length == 0) return {};
  WindowReader reader(file, offset);
  // Signed: padding may use up more than is left, and the chunk behind it is listed.
  int64_t remaining = length;
  for (;;) {
    const Result<uint64_t> padding = reader.SkipZeros();
    if (!padding) return padding.GetStatus();
    remaining -= static_cast<int64_t>(padding.Value());

    ChunkHeader header;
    const Result<bool> whole = reader.Read(header);
    if (!whole) return whole.GetStatus();
    if (!whole.Value()) return {};

    const uint32_t size = header.size;
    Add(std::make_unique<C_RiffChunk>(header.tag, size, file, reader.Position()));
    reader.Skip(size);
    remaining -= int64_t{size} + int64_t{sizeof(ChunkHeader)};
    if (remaining <= 0) return {};
  }
}

Status C_RiffChunkList::Write(OutputFile& file) {
  for (C_RiffChunk* chunk : *this) {
    if (Status status = chunk->Write(file); !status) return status;
  }
  return {};
}

// --- C_RiffFile --------------------------------------------------------------

Status C_RiffFile::Open(const Path& path, std::string_view form) {
  Result<InputFile> file = InputFile::Open(path);
  if (!file) {
    chunks_.Clear();
    file_.reset();
    return file.GetStatus();
  }
  return Open(std::move(file.Value()), form);
}

Status C_RiffFile::Open(InputFile file, std::string_view form) {
  chunks_.Clear();
  file_.reset();
  file_.emplace(std::move(file));
  Status status = OpenBorrowed(*file_, form);
  if (!status) file_.reset();
  return status;
}

Status C_RiffFile::OpenBorrowed(const InputFile& file, std::string_view form) {
  chunks_.Clear();
  FormHeader header;
  const Status status = file.ReadExactly(0, std::as_writable_bytes(std::span(&header, 1)));
  if (!status) return Status::Error("no RIFF file: " + status.Message());
  if (!EqualsNoCase(TextOf(header.riff), "RIFF")) {
    return Status::Error("no RIFF file: begins with " + QuotedTag(header.riff));
  }
  if (!EqualsNoCase(TextOf(header.form), form)) {
    return Status::Error("RIFF form " + QuotedTag(header.form) + " found, \"" + std::string(form) +
                         "\" expected");
  }
  // A size below 4 wraps: a writer that streams leaves 0, and all of the file counts.
  const Status walked =
      chunks_.Parse(file, sizeof header, uint32_t{header.size} - uint32_t{sizeof header.form});
  if (!walked) chunks_.Clear();
  return walked;
}

Status C_RiffFile::Save(const Path& path, const RiffTag& form) {
  const uint64_t size = chunks_.GetTotalSize() + form.size();
  if (size > kMaxRiffSize) {
    return Status::Error("a RIFF file holds at most " + std::to_string(kMaxRiffSize) +
                         " bytes, these chunks need " + std::to_string(size));
  }
  Result<OutputFile> file = OutputFile::Create(path);
  if (!file) return file.GetStatus();
  const FormHeader header{{'R', 'I', 'F', 'F'}, static_cast<uint32_t>(size), form};
  Status status = file->Write(BytesOf(header));
  if (status) status = chunks_.Write(file.Value());
  const Status closed = file->Close();
  return status ? closed : status;
}

}  // namespace velora
