// The checks of each kind of file. Each fills the report behind the checker and
// gives an error only when the file cannot be read.
#pragma once

#include "audio/inspect/Checker.h"
#include "audio/inspect/ChipFrame.h"
#include "platform/File.h"
#include "platform/Status.h"

namespace velora {

Status VerifyWave(const InputFile& file, Checker& checker);
Status VerifySource(const InputFile& file, Checker& checker);
Status VerifyChip(const InputFile& file, Checker& checker);

/// The part of VerifyChip behind the headers: decodes the stream against the
/// decoded block, the source samples, the event and the silence records.
Status VerifyStream(const InputFile& file, const ChipFrame& chip, Checker& checker);

}  // namespace velora
