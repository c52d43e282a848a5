// Reports of the foundation classes, on the channel that their caller chose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <velora/I_CUIniFile.h>
#include <velora/I_WindowHost.h>

namespace velora {

#pragma pack(push, 1)
/// What a window gets for a report.
struct MsgRecord {
  int32_t Kind;      ///< the flags of the report
  char Source[256];  ///< empty
  int32_t Line;      ///< 0
  char Text[256];    ///< the message, at most 255 bytes of it, and a terminator
};
#pragma pack(pop)
static_assert(sizeof(MsgRecord) == 520);
static_assert(offsetof(MsgRecord, Line) == 260 && offsetof(MsgRecord, Text) == 264);

inline constexpr uint32_t kMsgReport = 1124;  ///< the window message that carries a MsgRecord

/// A window of the host that takes reports.
class I_MsgWindow : public I_WindowHost {
 public:
  /// Behind the slots of I_WindowHost. `record` is borrowed for the call.
  virtual int32_t SendMessage(uint32_t message, uint32_t first, const MsgRecord* record) = 0;

 protected:
  ~I_MsgWindow() = default;
};

/// Reports a message on one of four channels, a MsgErrorMode: nothing; a message
/// box over `Window` with `flags` as its style; a MsgRecord sent to `Window`, if
/// there is one; a line on standard output. On the last two a message of kind 3
/// begins with "Error: ", one of kind 2 with "Warning: ". A message has up to
/// 2,079 bytes.
class C_CUMsgHandler {
 public:
  C_CUMsgHandler() = default;
  virtual ~C_CUMsgHandler() = default;

  /// Title and format are string resources. A missing title is replaced by the
  /// running program's file name, a missing format by empty text.
  void ReportById(int32_t errorMode, uint32_t titleId, uint32_t messageId, uint32_t flags, ...);

  void ReportText(int32_t errorMode, const char* title, const char* format, uint32_t flags, ...)
      __attribute__((format(printf, 4, 6)));

  I_MsgWindow* Window = nullptr;  ///< borrowed

 private:
  void Report(int32_t errorMode, const std::string& title, const std::string& message,
              uint32_t flags);
};

/// The one handler of the module.
C_CUMsgHandler& GetMsgHandler();

}  // namespace velora
