// What all formats of the compressed layout share on reading.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "audio/WaveFileUtil/EventCollector.h"
#include "audio/WaveFileUtil/MpmLayout.h"
#include "audio/WaveFileUtil/WavFile.h"

namespace velora {

/// What tells the files of one class from those of another.
struct MpmIdentity {
  std::string_view tag;        ///< first four bytes of a file
  std::string_view secondTag;  ///< of bare streams; kept, never read back
  uint32_t sourceKind = 0;     ///< the format's id
  uint32_t targetKind = 1;     ///< 1: framed delta stream
};

/// Reads header, blocks and samples of a file in the layout of MpmLayout.h. The
/// base is the class whose plain samples the file also holds: C_SrcFile, or the
/// ADPCM class of the older layout.
template <typename SourceBase>
class T_MpmFormatBase : public SourceBase {
 public:
  explicit T_MpmFormatBase(const MpmIdentity& identity) : identity_(identity) {}

  /// The command stream as loaded; empty when there was none to load.
  std::span<const std::byte> GetCompressedData() const { return compressedData_; }
  const MpmHeader& GetHeader() const { return header_; }

 protected:
  /// Accepts a file that begins with the tag and whose event block is in place.
  Status OnReadHeader(const Path& path, bool load, uint32_t* out) override;

  /// The decoded stream, or the source samples when the view says so.
  Status OnReadSamples() override;

  /// Events, silence and command stream. Events stop at the first record that the
  /// file lacks, and a file may end before the silence block; neither is an error.
  Status OnReadEvents() override;

  /// The decoded stream as the sound's samples.
  virtual Status ReadStoredSamples();

  const MpmIdentity& GetIdentity() const { return identity_; }

  MpmHeader header_;

 private:
  void StateSizeOfView();
  void ReadCompressedData();
  Status ReadSilence(uint64_t offset, EventCollector& found);

  MpmIdentity identity_;
  std::vector<std::byte> compressedData_;
};

}  // namespace velora
