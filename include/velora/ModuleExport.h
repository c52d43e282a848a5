// What marks the exports of a module.
#pragma once

/// In front of a function that a module is loaded for. The module's build names it
/// once more, among the exports of velora_module.
#define VELORA_EXPORT extern "C" [[gnu::visibility("default")]]
