#pragma once

namespace quillory {

/// Leaves the engine no way to the network but a NetworkGate, switches off what no setting of a
/// page does, and makes the scheme of PreviewedFiles known. To be called before there is an
/// application object. The answer is the gate's socket, or -1: then no page may be loaded.
int confineEngine();

/// Has pages follow the light or dark of the palette. To be called before the first page is made.
void followPalette();

} // namespace quillory
