#pragma once

namespace ov::runtime {

/// Draws the number that functions of this DLL keep between their variables and their return address, anew
/// for each load. For the DLL's entry, before anything else of the DLL runs: no function that began with
/// another number may be under way. A function that finds its number overwritten ends the process at once,
/// with STATUS_STACK_BUFFER_OVERRUN.
void draw_stack_guard() noexcept;

}  // namespace ov::runtime
