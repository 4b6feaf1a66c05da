#pragma once

namespace qm {

class sharedAppState;
class TextureView;

/// The line height and space width a glyph-size change leaves in the project, for the panel
/// fields that show them.
struct GlyphSizeDefaults
{
    int lineHeight = 0;
    int spaceWidth = 0;
};

/// Applies a glyph size to the whole glyph set: `setGlyphSize`, then the canvas's default line
/// height becomes the project's `lineHeight` and its space width the project's `spaceWidth`
/// (replacing values set by hand), and the preview is laid out again with the project's
/// `previewTextString`. Shared by the glyph-size control and the font choice.
GlyphSizeDefaults reallyChangeGlyphSize(sharedAppState& state, TextureView& view, int size);

} // namespace qm
