#include "foundation/EncryptData.h"

#include <vector>

#include "platform/System.h"

namespace velora {
namespace {

constexpr size_t kPieceSize = 64 * 1024;

class PercentReport {
 public:
  PercentReport(I_ProgressCallback* callback, uint64_t total) : callback_(callback), total_(total) {
    if (callback_) callback_->Begin();
  }
  PercentReport(const PercentReport&) = delete;
  PercentReport& operator=(const PercentReport&) = delete;
  ~PercentReport() {
    if (callback_) callback_->End();
  }

  void Reach(uint64_t done) {
    if (!callback_) return;
    const auto percent = static_cast<int32_t>(total_ ? done * 100 / total_ : 100);
    if (percent <= last_) return;
    last_ = percent;
    callback_->Report(percent);
  }

 private:
  I_ProgressCallback* callback_;
  uint64_t total_;
  int32_t last_ = -1;
};

}  // namespace

EncryptCode CopyData(const InputFile& source, uint64_t start, DataSteps steps, OutputFile& target,
                     I_ProgressCallback* progress) {
  const uint64_t total = source.Size() - start;
  PercentReport report(progress, total);
  std::vector<std::byte> piece(kPieceSize);
  for (uint64_t done = 0; done < total;) {
    const Result<size_t> read = source.ReadAt(start + done, piece);
    if (!read || read.Value() == 0) return kEncryptNotOpened;
    const std::span<std::byte> bytes(piece.data(), read.Value());
    if (steps.decipher) steps.decipher->Decipher(bytes, bytes.data());
    if (steps.encipher) steps.encipher->Encipher(bytes, bytes.data());
    if (!target.Write(bytes) || IsInterrupted()) return kEncryptNoTarget;
    done += bytes.size();
    report.Reach(done);
  }
  report.Reach(total);
  return kEncryptDone;
}

}  // namespace velora
