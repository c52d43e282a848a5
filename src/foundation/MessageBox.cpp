#include "foundation/MessageBox.h"

#include <atomic>

#include "platform/System.h"

namespace velora {
namespace {

constexpr uint32_t kButtonMask = 0x0F;

std::atomic<I_WindowHost*> boxOwner{nullptr};

/// Each run of line breaks as one blank.
std::string OnOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c != '\r' && c != '\n') {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  return line;
}

int32_t RefusalOf(uint32_t style) {
  switch (style & kButtonMask) {
    case kBoxOk:
      return kAnswerOk;
    case kBoxYesNo:
      return kAnswerNo;
    default:
      return kAnswerCancel;
  }
}

}  // namespace

void SetBoxOwner(I_WindowHost* owner) { boxOwner = owner; }

I_WindowHost* GetBoxOwner() { return boxOwner; }

int32_t ShowBox(I_WindowHost* owner, const std::string& text, const std::string& caption,
                uint32_t style) {
  if (!owner) owner = GetBoxOwner();
  if (owner) return owner->ShowBox(text.c_str(), caption.c_str(), style);
  WriteStandardError(OnOneLine(caption + ": " + text) + "\n");
  return RefusalOf(style);
}

}  // namespace velora
