// Which output each input becomes, decided before anything is written.
#pragma once

#include <string>
#include <vector>

#include "CommandLine.h"
#include "FormatArgument.h"
#include "Inputs.h"
#include "platform/Status.h"

namespace velora::cli {

struct Conversion {
  std::string target;  ///< native path, or "-"; empty for an input with a fault
  uint32_t formatId = 0;
};

/// One conversion for each input, from -o or from --out-dir with --to. An error is
/// wrong usage: options that do not go together, no format, two inputs that would
/// make one output by whatever name, or an output that is the input of another.
Result<std::vector<Conversion>> PlanConversions(const Arguments& arguments,
                                                const std::vector<Input>& inputs);

}  // namespace velora::cli
