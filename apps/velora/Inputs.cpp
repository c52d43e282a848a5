#include "Inputs.h"

#include "FormatArgument.h"
#include "platform/Directory.h"

namespace velora::cli {
namespace {

std::string NameOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string Join(const std::string& directory, const std::string& name) {
  if (directory.empty() || directory.ends_with('/')) return directory + name;
  return directory + "/" + name;
}

void GatherBelow(const std::string& directory, const std::string& relative,
                 std::vector<Input>& inputs) {
  const auto entries = ListDirectory(Path::Native(directory));
  if (!entries) {
    inputs.push_back({directory, relative, entries.GetStatus()});
    return;
  }
  for (const DirectoryEntry& entry : entries.Value()) {
    const std::string path = Join(directory, entry.name);
    const std::string below = Join(relative, entry.name);
    if (entry.directory) {
      GatherBelow(path, below, inputs);
    } else if (IsReadableSoundName(entry.name) &&
               !(entry.link && DirectoryExists(Path::Native(path)))) {
      inputs.push_back({path, below, {}});
    }
  }
}

}  // namespace

std::vector<Input> GatherInputs(const std::vector<std::string>& arguments, bool recursive) {
  std::vector<Input> inputs;
  for (const std::string& argument : arguments) {
    if (argument == "-") {
      inputs.push_back({argument, "stdin", {}});
    } else if (!DirectoryExists(Path::Native(argument))) {
      inputs.push_back({argument, NameOf(argument), {}});
    } else if (!recursive) {
      inputs.push_back({argument, NameOf(argument),
                        Status::Error("is a directory; --recursive takes the sounds below it")});
    } else {
      const size_t before = inputs.size();
      GatherBelow(argument, "", inputs);
      if (inputs.size() == before) {
        inputs.push_back({argument, NameOf(argument), Status::Error("holds no sound files")});
      }
    }
  }
  return inputs;
}

Result<OpenedInput> OpenedInput::Open(const Input& input) {
  if (!input.fault) return input.fault;
  OpenedInput opened;
  opened.path_ = Path::Native(input.path);
  if (input.path != "-") return opened;
  Result<TemporaryFile> spool = TemporaryFile::Create("velora-stdin-");
  if (!spool) return spool.GetStatus();
  if (Status copied = CopyStandardInputTo(spool->GetPath()); !copied) return copied;
  opened.path_ = spool->GetPath();
  opened.spool_ = std::move(spool.Value());
  return opened;
}

}  // namespace velora::cli
