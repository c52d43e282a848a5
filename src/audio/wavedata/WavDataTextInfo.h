// The place of a chunk that is never read nor written.
#pragma once

#include <cstdint>

#include <velora/I_WavDataChunkInfo.h>

namespace velora {

class C_WavDataTextInfo final : public I_WavDataTextInfo {
 public:
  uint32_t GetChunkSize() const override { return sizeof word_; }
  int32_t Read(I_RiffChunk*) override { return 1; }
  int32_t Write(I_RiffChunk*) const override { return 0; }

 private:
  uint32_t word_ = 0;
};

}  // namespace velora
