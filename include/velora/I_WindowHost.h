// The windows of the host, as the module sees them.
#pragma once

#include <cstdint>

namespace velora {

class I_DialogModel;  // a dialog without its window

/// Styles of a message box: one button set and one icon, added.
enum BoxStyle : uint32_t {
  kBoxOk = 0x00,
  kBoxOkCancel = 0x01,
  kBoxYesNo = 0x04,
  kBoxStop = 0x10,
  kBoxQuestion = 0x20,
  kBoxWarning = 0x30,
  kBoxInformation = 0x40,
};

/// The button that closed a box or a dialog.
enum BoxAnswer : int32_t {
  kAnswerOk = 1,
  kAnswerCancel = 2,
  kAnswerYes = 6,
  kAnswerNo = 7,
};

/// What a parent handle points to. A null handle means that there are no windows:
/// boxes then go to standard error and never wait, and no dialog is shown.
///
/// The host owns the object and keeps it alive while the module holds the handle.
class I_WindowHost {
 public:
  /// Slot 0. Shows a message box and waits for it. Texts are zero-terminated and
  /// borrowed for the call. Returns the BoxAnswer.
  virtual int32_t ShowBox(const char* text, const char* caption, uint32_t style) = 0;

  /// Slot 1. Shows a dialog over the model and waits for it. Returns kAnswerOk
  /// when it was confirmed, kAnswerCancel otherwise or when the host has no
  /// window for this model. The model stays the caller's.
  virtual int32_t ShowDialog(I_DialogModel* model) = 0;

 protected:
  ~I_WindowHost() = default;
};

}  // namespace velora
