#include "Classes/fonts/GlyphSizeChange.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"

namespace qm {

GlyphSizeDefaults reallyChangeGlyphSize(sharedAppState& state, TextureView& view, int size)
{
    state.setGlyphSize(size);
    GlyphSizeDefaults defaults;
    // Both are read after the resize: they come from the re-measured glyphs.
    defaults.lineHeight = view.getDefaultLineHeight();
    state.setLineHeight(defaults.lineHeight);
    defaults.spaceWidth = view.getSpaceWidth();
    state.setSpaceWidth(defaults.spaceWidth);
    view.updatePreview(state.previewTextString());
    return defaults;
}

} // namespace qm
