// Sibling modules, loaded when they are needed.
#pragma once

#include <string_view>

#include <velora/I_WindowHost.h>

namespace velora {

/// Loads the module at the path, its own dependencies from beside it, and gives
/// its handle, null on failure. The caller frees it with FreeModule. With
/// `showError` a failure is shown in a box over `parent` (null: as ShowBox does)
/// under `title`, or "Load Dll Library" for null.
void* LoadModule(std::string_view path, const char* title, I_WindowHost* parent, bool showError);

/// The address of an export, null when there is none. A failure is shown as that
/// of LoadModule; the title for null is "Get Procedure Address". A null module
/// gives null and shows nothing.
void* GetExport(void* module, const char* name, const char* title, I_WindowHost* parent,
                bool showError);

/// Null is allowed.
void FreeModule(void* module);

}  // namespace velora
