// PC1 as its author published it, register by register, and enciphered files
// built with it by hand: what the module's own are compared with.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/EncryptKeys.h"

namespace velora::test {

class PublishedPC1 {
 public:
  explicit PublishedPC1(const std::array<uint8_t, 16>& key) : cle_(key) {}

  std::string Encipher(std::string_view plain) { return Run(plain, true); }
  std::string Decipher(std::string_view coded) { return Run(coded, false); }

 private:
  std::string Run(std::string_view in, bool encipher) {
    std::string out;
    for (const char c : in) {
      Assemble();
      const auto byte = static_cast<uint8_t>(c);
      const auto other = static_cast<uint8_t>(byte ^ (inter_ >> 8) ^ (inter_ & 255));
      for (uint8_t& each : cle_) each ^= encipher ? byte : other;
      out += static_cast<char>(other);
    }
    return out;
  }

  void Code() {
    uint16_t dx = static_cast<uint16_t>(x1a2_ + i_);
    uint16_t ax = x1a0_[i_];
    uint16_t cx = 0x015A;
    const uint16_t bx = 0x4E35;
    std::swap(ax, si_);
    std::swap(ax, dx);
    if (ax != 0) ax = static_cast<uint16_t>(uint32_t{ax} * bx);
    std::swap(ax, cx);
    if (ax != 0) {
      ax = static_cast<uint16_t>(uint32_t{ax} * si_);
      cx = static_cast<uint16_t>(ax + cx);
    }
    std::swap(ax, si_);
    ax = static_cast<uint16_t>(uint32_t{ax} * bx);
    dx = static_cast<uint16_t>(cx + dx);
    ax = static_cast<uint16_t>(ax + 1);
    x1a2_ = dx;
    x1a0_[i_] = ax;
    res_ = ax ^ dx;
    ++i_;
  }

  void Assemble() {
    inter_ = 0;
    i_ = 0;
    for (size_t word = 0; word < 8; ++word) {
      const auto key = static_cast<uint16_t>(cle_[2 * word] * 256 + cle_[2 * word + 1]);
      x1a0_[word] = word == 0 ? key : static_cast<uint16_t>(x1a0_[word - 1] ^ key);
      Code();
      inter_ ^= res_;
    }
  }

  std::array<uint8_t, 16> cle_;
  std::array<uint16_t, 8> x1a0_{};
  uint16_t x1a2_ = 0, si_ = 0, res_ = 0, inter_ = 0, i_ = 0;
};

/// The key that a key text gives.
inline std::array<uint8_t, 16> KeyFromText(std::string_view text) {
  std::array<uint8_t, 16> key = kKeyMask;
  for (const char c : text) {
    for (uint8_t& byte : key) byte ^= static_cast<uint8_t>(c);
  }
  return key;
}

inline std::string Enciphered(std::string_view text, std::string_view key = "TaLkInGrIvErS") {
  return PublishedPC1(KeyFromText(key)).Encipher(text);
}

inline std::string Word(uint32_t value) {
  return {static_cast<char>(value & 255), static_cast<char>(value >> 8 & 255)};
}

/// A length word: the complement under the mask.
inline std::string LengthWord(uint32_t value) { return Word((0xFFFF - value) ^ kLengthMask); }

inline std::string Entry(std::string_view password) {
  return LengthWord(static_cast<uint32_t>(password.size())) + Enciphered(password);
}

inline std::string OldForm(const std::vector<std::string>& passwords, std::string_view plain) {
  std::string file = LengthWord(static_cast<uint32_t>(passwords.size()));
  for (const std::string& password : passwords) file += Entry(password);
  return file + (passwords.empty() ? Enciphered(plain) : Enciphered(plain, passwords.front()));
}

inline std::string Chunk(uint32_t type, uint32_t size, const std::string& body = {}) {
  const uint32_t sum = type + (size & 0xFFFF) + (size >> 16);
  return Enciphered(Word(0x10000 - (sum & 0xFFFF)) + Word(type) + Word(size) + Word(size >> 16)) +
         body;
}

inline std::string PasswordChunk(std::string_view password) {
  return Chunk(0x201, static_cast<uint32_t>(password.size() + 2), Entry(password));
}

inline std::string NewForm(const std::vector<std::string>& passwords, std::string_view name,
                           std::string_view plain) {
  std::string file = "KENC" + Chunk(0x100, static_cast<uint32_t>(name.size()), Enciphered(name));
  file += Chunk(0x200, 2, LengthWord(static_cast<uint32_t>(passwords.size())));
  for (const std::string& password : passwords) file += PasswordChunk(password);
  file += Chunk(0x101, static_cast<uint32_t>(plain.size()));
  return file + (passwords.empty() ? Enciphered(plain) : Enciphered(plain, passwords.front()));
}

}  // namespace velora::test
