#include "platform/Directory.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "platform/File.h"
#include "platform/System.h"

namespace velora {
namespace {

constexpr size_t kBlock = 64 * 1024;

}  // namespace

Result<std::vector<DirectoryEntry>> ListDirectory(const Path& path) {
  namespace fs = std::filesystem;
  std::vector<DirectoryEntry> entries;
  std::error_code fault;
  fs::directory_iterator at(NativeForReading(path), fault);
  while (!fault && at != fs::directory_iterator()) {
    std::error_code vanished;  // an entry that goes while we look is a plain name
    const fs::file_status status = at->symlink_status(vanished);
    entries.push_back(
        {at->path().filename().native(), fs::is_directory(status), fs::is_symlink(status)});
    at.increment(fault);
  }
  if (fault) return Status::Error("cannot list the directory: " + fault.message());
  std::ranges::sort(entries, {}, &DirectoryEntry::name);
  return entries;
}

std::string ResolveLinks(const Path& path) {
  std::error_code fault;
  const std::filesystem::path native = NativeForWriting(path);
  std::filesystem::path absolute = std::filesystem::absolute(native, fault);
  if (fault) absolute = native;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(absolute, fault);
  return (fault ? absolute.lexically_normal() : resolved).native();
}

Status CopyStandardInputTo(const Path& file) {
  Result<OutputFile> out = OutputFile::Create(file);
  if (!out) return out.GetStatus();
  std::vector<std::byte> block(kBlock);
  while (const size_t count = std::fread(block.data(), 1, block.size(), stdin)) {
    if (IsInterrupted()) return Status::Error("interrupted");
    if (Status written = out->Write(std::span(block).first(count)); !written) return written;
  }
  if (std::ferror(stdin)) {
    return Status::Error("cannot read standard input: " + GetSystemErrorText());
  }
  return out->Close();
}

Status CopyToStandardOutput(const Path& file) {
  const Result<InputFile> in = InputFile::Open(file);
  if (!in) return in.GetStatus();
  std::vector<std::byte> block(kBlock);
  for (uint64_t offset = 0; offset < in->Size();) {
    const Result<size_t> count = in->ReadAt(offset, block);
    if (!count) return count.GetStatus();
    if (count.Value() == 0) break;
    if (std::fwrite(block.data(), 1, count.Value(), stdout) != count.Value()) {
      return Status::Error("cannot write: " + GetSystemErrorText());
    }
    offset += count.Value();
  }
  if (std::fflush(stdout) != 0) return Status::Error("cannot write: " + GetSystemErrorText());
  return {};
}

}  // namespace velora
