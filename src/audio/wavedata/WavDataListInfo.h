// The "LIST" chunk of form "adtl": labels and lengths of cue points.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string_view>
#include <vector>

#include <velora/I_WavDataChunkInfo.h>
#include "foundation/ByteCursor.h"

namespace velora {

class C_WavDataListInfo final : public I_WavDataListInfo {
 public:
  static constexpr size_t kMaxLabel = 63;  ///< characters

  struct Label {
    uint32_t cueId = 0;
    std::array<char, kMaxLabel + 1> text{};  ///< zero-terminated

    std::string_view Text() const { return text.data(); }
  };
  struct Text {
    uint32_t cueId = 0;
    uint32_t length = 0;  ///< in frames
  };

  uint32_t GetChunkSize() const override;
  uint32_t GetLabelCount() const override { return static_cast<uint32_t>(labels_.size()); }
  void ClearLabels() override { labels_.clear(); }
  const char* GetLabelAt(uint32_t index, uint32_t* id) const override;
  int32_t AddLabel(uint32_t id, const char* text) override;
  int32_t Read(I_RiffChunk* chunk) override;
  int32_t Write(I_RiffChunk* chunk) const override;
  uint32_t GetTextCount() const override { return static_cast<uint32_t>(texts_.size()); }
  void ClearTexts() override;
  uint32_t GetTextLength(uint32_t id) const override;
  int32_t AddText(uint32_t id, uint32_t length) override;

  const std::deque<Label>& Labels() const { return labels_; }
  const std::vector<Text>& Texts() const { return texts_; }

 private:
  void ReadRecords(ByteCursor records);
  void ReadLabel(ByteCursor record, uint32_t size);
  void ReadText(ByteCursor record);
  void AddLabelText(uint32_t id, std::string_view text);
  std::vector<std::byte> Serialise() const;

  std::deque<Label> labels_;  ///< a deque: texts handed out must not move
  std::vector<Text> texts_;
  std::map<uint32_t, uint32_t> lengthById_;  ///< of the first text of each id
};

}  // namespace velora
