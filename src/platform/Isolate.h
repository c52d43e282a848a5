// Work in a process of its own, which may crash, hang or leak without harm.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/Status.h"

namespace velora {

/// Runs `work` in a copy of this process and gives what it gave. An error when the copy
/// could not be made, took longer than `seconds`, or ended before the work was done; the
/// message says which. Nothing that the work does to memory is seen here; its standard
/// output and error go nowhere.
///
/// For programs with one thread, which is the only one that the copy has.
Result<std::string> RunIsolated(const std::function<std::string()>& work, double seconds);

/// Within such work: says what is done next. When the process ends early, the error names
/// the last step told.
void NoteStep(const char* step);

/// Bytes that are taken from the heap at this moment.
uint64_t GetHeapBytesInUse();

}  // namespace velora
