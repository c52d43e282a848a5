#include "ConvertPlan.h"

#include <map>

#include "platform/Directory.h"

namespace velora::cli {
namespace {

std::string WithExtension(const std::string& path, const std::string& extension) {
  return path.substr(0, path.size() - ExtensionOf(path).size()) + extension;
}

Result<FormatChoice> ChooseFormat(const Arguments& arguments) {
  if (arguments.Has("to")) return ParseFormat(arguments.Text("to"));
  const std::string& output = arguments.Text("output");
  if (arguments.Has("out-dir") || output == "-") {
    return Status::Error("--to is missing: there is no name that tells the format");
  }
  const auto format = FormatOfName(output);
  if (!format) return Status::Error(output + ": " + format.Message());
  return format;
}

Status CheckOptions(const Arguments& arguments, const std::vector<Input>& inputs) {
  const bool output = arguments.Has("output");
  if (output == arguments.Has("out-dir")) {
    return Status::Error(output ? "--output and --out-dir do not go together"
                                : "--output or --out-dir must say where to write");
  }
  if (output && inputs.size() > 1) {
    return Status::Error("--output takes one input, here are " + std::to_string(inputs.size()) +
                         "; --out-dir takes many");
  }
  if (arguments.Has("json") && arguments.Text("output") == "-") {
    return Status::Error("--json and a sound cannot both go to standard output");
  }
  return {};
}

/// Refuses what would make the result depend on which file comes first.
Status CheckTargets(const std::vector<Input>& inputs, const std::vector<Conversion>& plan) {
  std::map<std::string, size_t> sources;
  for (size_t i = 0; i < inputs.size(); ++i) {
    if (inputs[i].fault && inputs[i].path != "-") {
      sources.emplace(ResolveLinks(Path::Native(inputs[i].path)), i);
    }
  }
  std::map<std::string, size_t> targets;
  for (size_t i = 0; i < plan.size(); ++i) {
    if (plan[i].target.empty() || plan[i].target == "-") continue;
    const std::string target = ResolveLinks(Path::Native(plan[i].target));
    const auto [other, fresh] = targets.emplace(target, i);
    if (!fresh) {
      return Status::Error(inputs[other->second].path + " and " + inputs[i].path +
                           " would both become " + plan[i].target);
    }
    const auto source = sources.find(target);
    if (source != sources.end() && source->second != i) {
      return Status::Error(inputs[i].path + " would become " + plan[i].target +
                           ", which is an input too");
    }
  }
  return {};
}

}  // namespace

Result<std::vector<Conversion>> PlanConversions(const Arguments& arguments,
                                                const std::vector<Input>& inputs) {
  if (Status options = CheckOptions(arguments, inputs); !options) return options;
  const auto format = ChooseFormat(arguments);
  if (!format) return format.GetStatus();
  std::string directory = arguments.Text("out-dir");
  if (!directory.empty() && !directory.ends_with('/')) directory += '/';
  std::vector<Conversion> plan;
  for (const Input& input : inputs) {
    Conversion conversion;
    conversion.formatId = format->id;
    if (input.fault) {
      conversion.target = arguments.Has("output")
                              ? arguments.Text("output")
                              : directory + WithExtension(input.relative, format->extension);
    }
    plan.push_back(std::move(conversion));
  }
  if (Status targets = CheckTargets(inputs, plan); !targets) return targets;
  return plan;
}

}  // namespace velora::cli
