// Descriptor writers: the glyph coordinates, metrics and kerning as text.

#include "Classes/atlas/TextureView.h"

namespace qm {

QString TextureView::getFontplist(float, const QString&, int, const QString&, float) const
{
    return {};
}

QString TextureView::getplist(int) const
{
    return {};
}

} // namespace qm
