// Plain 12-bit source files, in clear or enciphered.
#pragma once

#include "audio/WaveFileUtil/MpmLayout.h"
#include "audio/WaveFileUtil/WavFile.h"

namespace velora {

/// A file of 12-bit offset binary samples in 16-bit words behind a SourceHeader.
/// It keeps neither events nor silence. Both forms are read; Save writes the plain
/// one.
///
/// SourceKind is 1 for the plain form and 13 for the enciphered one, and the out
/// value of ReadHeader tells which: 1 for enciphered. TargetKind is 0.
class C_SrcFile : public C_WavFile {
 public:
  std::vector<std::string> ListLosses(const C_WavData& sound) const override;

 protected:
  Status OnReadHeader(const Path& path, bool load, uint32_t* enciphered) override;
  Status OnReadSamples() override;
  Status OnReadEvents() override { return {}; }
  Status OnSave(const Path& path) override;

  Status SaveForm(const Path& path, SourceFlag flag);

 private:
  bool enciphered_ = false;
};

/// The same, written enciphered. The scramble is no secret: it keeps samples from
/// being heard by accident.
class C_EnSrcFile final : public C_SrcFile {
 protected:
  Status OnSave(const Path& path) override;
};

}  // namespace velora
