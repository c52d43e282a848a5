#include "foundation/MsgHandler.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "foundation/MessageBox.h"
#include "foundation/StringResources.h"
#include "platform/System.h"

namespace velora {
namespace {

constexpr uint32_t kKindWarning = 2;
constexpr uint32_t kKindError = 3;

__attribute__((format(printf, 1, 0))) std::string FormatMessage(const char* format,
                                                                std::va_list arguments) {
  std::array<char, 2080> buffer{};
  std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  return buffer.data();
}

std::string PrefixOf(uint32_t kind) {
  if (kind == kKindError) return std::string(FindStringResource(kStringError)) + ": ";
  if (kind == kKindWarning) return std::string(FindStringResource(kStringWarning)) + ": ";
  return {};
}

void SendRecord(I_MsgWindow* window, const std::string& message, uint32_t kind) {
  if (!window) return;
  MsgRecord record{};
  record.Kind = static_cast<int32_t>(kind);
  message.copy(record.Text, sizeof(record.Text) - 1);
  window->SendMessage(kMsgReport, 0, &record);
}

}  // namespace

void C_CUMsgHandler::Report(int32_t errorMode, const std::string& title, const std::string& message,
                            uint32_t flags) {
  switch (errorMode) {
    case kMsgBox:
      ShowBox(Window, message, title, flags);
      break;
    case kMsgWindow:
      SendRecord(Window, PrefixOf(flags) + message, flags);
      break;
    case kMsgStandardOutput:
      std::puts((PrefixOf(flags) + message).c_str());
      break;
    default:
      break;
  }
}

void C_CUMsgHandler::ReportById(int32_t errorMode, uint32_t titleId, uint32_t messageId,
                                uint32_t flags, ...) {
  const char* const title = FindStringResource(titleId);
  const char* const format = FindStringResource(messageId);
  std::va_list arguments;
  va_start(arguments, flags);
  const std::string message = format ? FormatMessage(format, arguments) : std::string();
  va_end(arguments);
  Report(errorMode, title ? title : GetProgramFile(), message, flags);
}

void C_CUMsgHandler::ReportText(int32_t errorMode, const char* title, const char* format,
                                uint32_t flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const std::string message = FormatMessage(format, arguments);
  va_end(arguments);
  Report(errorMode, title ? title : "", message, flags);
}

C_CUMsgHandler& GetMsgHandler() {
  static C_CUMsgHandler handler;
  return handler;
}

}  // namespace velora
