#pragma once

namespace quillory {

/// Whether the program runs inside a Flatpak (which has the file /.flatpak-info) or a Snap (which
/// sets SNAP), where the programs of the system cannot be reached.
bool isSandboxed();

} // namespace quillory
