// The application object of the module.
#pragma once

namespace velora {

/// Remembers the module's own file when the module is loaded: all files that belong to the
/// module are found beside it. One object lives in the module, none in a program that links
/// this layer.
class CVeloraUtilApp {
 public:
  /// `inModule` is any address within the module.
  explicit CVeloraUtilApp(const void* inModule);
};

}  // namespace velora
