// Message boxes, with windows and without.
#pragma once

#include <cstdint>
#include <string>

#include <velora/I_WindowHost.h>

namespace velora {

/// Remembers the window that boxes without an owner of their own appear over;
/// null forgets it. Whoever sets one takes it back before the window goes.
void SetBoxOwner(I_WindowHost* owner);
I_WindowHost* GetBoxOwner();

/// Shows a box and waits for its answer, a BoxAnswer; `style` is a sum of
/// BoxStyle. With a null owner the remembered one is used.
///
/// Where there is none of either, nobody can be asked: the box becomes one line
/// on standard error, "caption: text", and is answered at once, with OK if that
/// is its only button and otherwise with the refusal.
int32_t ShowBox(I_WindowHost* owner, const std::string& text, const std::string& caption,
                uint32_t style);

}  // namespace velora
