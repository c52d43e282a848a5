#include "support/MpmReader.h"

#include <stdexcept>

#include "support/TempDir.h"

namespace velora::test {
namespace {

class Bytes {
 public:
  explicit Bytes(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}
  uint32_t U8(size_t at) const { return std::to_integer<uint32_t>(bytes_.at(at)); }
  uint32_t U16(size_t at) const { return U8(at) | U8(at + 1) << 8; }
  uint32_t U32(size_t at) const { return U16(at) | U16(at + 2) << 16; }
  std::string Tag(size_t at) const {
    std::string tag;
    for (size_t i = 0; i < 4; ++i) tag += static_cast<char>(U8(at + i));
    return tag;
  }
  size_t Size() const { return bytes_.size(); }

 private:
  std::vector<std::byte> bytes_;
};

void Check(bool good, const std::string& what) {
  if (!good) throw std::runtime_error(what);
}

void DecodeFrame(const MpmContent& file, size_t at, size_t groups, int row, int& current,
                 std::vector<uint16_t>& out) {
  const int step = 8 * (row == 14 ? 0 : row) + 8;
  for (size_t group = 0; group < groups; ++group) {
    const size_t base = at + 5 * group;
    for (size_t i = 0; i < 8; ++i) {
      const bool negative = (file.stream.at(base) >> i & 1) != 0;
      const int pair = file.stream.at(base + 1 + i / 2);
      const int magnitude = i % 2 == 0 ? pair & 15 : pair >> 4;
      const int code = negative ? (magnitude == 0 ? -16 : -magnitude) : magnitude;
      current += code * step;
      Check(current >= 0 && current <= 4095, "the stream leaves the 12-bit range");
      out.push_back(static_cast<uint16_t>(current));
    }
  }
}

void ReadCommands(MpmContent& file) {
  const auto& s = file.stream;
  int current = 2047;
  size_t at = 0;
  while (true) {
    const int code = s.at(at) & 15;
    const int row = s.at(at) >> 4;
    if (code == 0) break;
    Check(code <= 8, "unknown command");
    MpmCommand command;
    command.code = code;
    command.offset = at;
    command.position = file.played.size();
    ++at;
    const auto u16 = [&](size_t p) { return static_cast<size_t>(s.at(p) | s.at(p + 1) << 8); };
    if (code <= 2) {
      Check(row == 0, "row in a silence command");
      command.length = u16(at);
      at += 2;
      file.played.insert(file.played.end(), command.length, static_cast<uint16_t>(current));
    } else if (code <= 4) {
      Check(row == 0, "row in a raw command");
      command.length = u16(at + 1) + 1;
      file.played.push_back(static_cast<uint16_t>(s.at(at) << 4));
      at += 3;
      for (size_t i = 1; i < command.length; ++i) {
        file.played.push_back(static_cast<uint16_t>(s.at(at++) << 4));
      }
      // The file's decoded block knows the low bits, from which the sound goes on.
      current = file.decoded.at(file.played.size() - 1);
    } else {
      command.before = s.at(at++);
      const size_t groups = code <= 6 ? 2 : 8;
      command.length = groups * 8;
      DecodeFrame(file, at, groups, row, current, file.played);
      at += groups * 5;
    }
    file.playedRaw.resize(file.played.size(), code == 3 || code == 4);
    if (code % 2 == 0) {
      command.hasEvent = true;
      const int rotated = s.at(at);
      command.parameter = rotated >> 2 | (rotated & 3) << 6;
      command.action = s.at(at + 1);
      at += 2;
    }
    file.commands.push_back(command);
  }
  Check(at + 1 == s.size(), "bytes behind the end of the stream");
}

}  // namespace

MpmContent ReadMpm(const std::string& path) {
  const Bytes in(ReadBytes(path));
  MpmContent file;
  for (const int at : {4, 6, 8, 10, 12, 14, 36, 46, 56, 58, 60}) {
    file.header[at] = in.U16(static_cast<size_t>(at));
  }
  for (const int at : {16, 20, 24, 28, 32, 38, 42, 48, 52}) {
    file.header[at] = in.U32(static_cast<size_t>(at));
  }
  Check(in.Tag(0) == "KMPM", "tag");
  Check(file.header[16] == in.Size(), "file size");
  Check(in.Tag(62) == "MFRM" && in.U16(66) == 14 && in.U32(68) == 76, "stream block");
  const size_t streamSize = in.U32(72);
  Check(file.header[32] == streamSize + 14, "stream size");
  for (size_t i = 0; i < streamSize; ++i)
    file.stream.push_back(static_cast<uint8_t>(in.U8(76 + i)));

  const auto words = [&](int offsetField, int countField) {
    std::vector<uint16_t> result;
    const size_t offset = file.header[offsetField];
    for (size_t i = 0; i < file.header[countField]; ++i) {
      result.push_back(static_cast<uint16_t>(in.U16(offset + 2 * i)));
    }
    return result;
  };
  file.decoded = words(48, 52);
  file.samples = words(38, 42);
  Check(file.header[48] == 76 + streamSize, "decoded offset");
  Check(file.header[38] == file.header[48] + 2 * file.decoded.size(), "samples offset");

  size_t at = file.header[20];
  Check(at == file.header[38] + 2 * file.samples.size(), "event block offset");
  Check(in.Tag(at) == "MCMD" && in.U16(at + 4) == 14 && in.U32(at + 6) == at + 14, "event block");
  const size_t events = in.U32(at + 10);
  Check(file.header[24] == 14 + 6 * events, "event block size");
  at += 14;
  for (size_t i = 0; i < events; ++i, at += 6) {
    file.events.push_back(
        {in.U32(at), static_cast<int>(in.U8(at + 4)), static_cast<int>(in.U8(at + 5))});
  }
  Check(in.Tag(at) == "KSIL" && in.U16(at + 4) == 16 && in.U16(at + 6) == 8, "silence block");
  Check(in.U32(at + 8) == at + 16, "silence offset");
  const size_t regions = in.U32(at + 12);
  at += 16;
  for (size_t i = 0; i < regions; ++i, at += 8)
    file.silence.emplace_back(in.U32(at), in.U32(at + 4));
  Check(at == in.Size(), "bytes behind the silence block");
  ReadCommands(file);
  return file;
}

}  // namespace velora::test
