#include "Classes/render/CGGlyphBitmap.h"

#include "Platform/text/Font.h"

#include <cmath>

namespace qm {

CGGlyphBitmap::CGGlyphBitmap(char16_t character) : CGGlyphBitmap(InitialValues::Defaults)
{
    m_charname = character;
}

CGGlyphBitmap::CGGlyphBitmap(InitialValues initial)
{
    if (initial == InitialValues::Empty)
        return;
#define QM_SET_DEFAULT(Type, name, Setter, Default) m_##name = Default;
    QM_CGGLYPHBITMAP_FIELDS(QM_SET_DEFAULT)
#undef QM_SET_DEFAULT
}

bool CGGlyphBitmap::operator==(const CGGlyphBitmap& other) const
{
#define QM_COMPARE(Type, name, Setter, Default)                                                               \
    if (!(m_##name == other.m_##name))                                                                        \
        return false;
    QM_CGGLYPHBITMAP_FIELDS(QM_COMPARE)
#undef QM_COMPARE
    return m_extensions == other.m_extensions;
}

namespace {

bool isWhole(double v)
{
    return v == std::floor(v);
}

/// Truncation toward zero of a double, the program's int(x).
int trunc(double v)
{
    return static_cast<int>(v);
}

} // namespace

bool CGGlyphBitmap::setNewSize()
{
    const Font font = Font::fromName(m_fntName, m_glyphsize);
    // A missing font covers nothing, so the glyph is reported as not drawable.
    if (!font.coversCharacter(m_charname))
        return false;

    // Outline margin S: the ink the outline adds beyond the contour, rounded up, and a whole
    // width still gets one pixel more (an inside outline, width 0, gives 1).
    int S = 0;
    if (m_stroke) {
        double w = m_strokehowmode == 1 ? 0.0 : m_strokehowmode == 0 ? double(m_strokesize) : 2.0 * m_strokesize;
        if (isWhole(w))
            w += 0.1;
        S = int(std::ceil(w));
    }

    // Shadow margins; an inner shadow stays inside the glyph and needs none.
    int EX = S, EY = S;
    if (m_shadow && m_shadowhowmode == 0) {
        EX = trunc(std::fabs(double(m_shadowxoffset)) + 2.0 * double(m_shadowblurradius) + S);
        EY = trunc(std::fabs(double(m_shadowyoffset)) + 2.0 * double(m_shadowblurradius) + S);
    }

    const quint32 glyph = font.glyphForCharacter(m_charname);
    const QRectF B = font.isNull() ? QRectF() : font.glyphBoundingBox(glyph);
    double BW = B.width();
    const double BH = B.height();
    if (font.isFixedPitch())
        BW = font.fontBoundingBox().width();

    const double ascender = std::ceil(font.ascender());
    const double descender = std::ceil(font.descender());
    const double maxAdvance = font.maxAdvance();

    if (m_ongrid) {
        m_lineHeight = trunc(EY + (ascender - descender));
        const double W0 = std::ceil(maxAdvance + EX);
        const double H0 = m_lineHeight;
        m_yoffset = m_xoffset = m_yoffsetPreview = 0;
        double width, height;
        if (m_forceHeight < 1 || m_forceWidth < 1 || m_ongridAuto) {
            const int P = 2 * m_boundingPadding + 2;
            width = W0 + P;
            height = H0 + P;
        } else {
            // A forced cell gets the padding but not the extra pixel on each side.
            width = m_forceWidth + 2 * m_boundingPadding;
            height = m_forceHeight + 2 * m_boundingPadding;
            if (width <= 0)
                width = std::ceil(maxAdvance + EX);
            if (height <= 0)
                height = m_lineHeight;
        }
        m_glyphRect = QRectF(0, 0, width, height);
        m_descender = 0;
        return true;
    }

    // Own box. The sums are rounded up in single precision, as the bitmap sizes always were.
    float W1 = std::ceil(float(EX + BW));
    float H1 = std::ceil(float(EY + BH));
    m_lineHeight = trunc((ascender - descender) + EY);
    m_xadvanced = trunc(std::ceil(font.advance(glyph) + EX));
    m_maxxad = trunc(std::ceil(maxAdvance + EX));
    if (int(W1) % 2 != 0)
        W1 += 1;
    if (int(H1) % 2 != 0)
        H1 += 1;
    const int P = 2 * m_boundingPadding + 2;
    m_glyphRect = QRectF(0, 0, W1 + P, H1 + P);

    const double ceilBx = std::ceil(B.x());
    const double ceilBy = std::ceil(B.y());
    m_xoffset = trunc(ceilBx);
    m_yoffset = trunc(P + (ascender - ceilBy - m_glyphRect.height()) + EY);
    // The shadow correction applies whether or not the shadow is on; without `autoxy` the
    // plain offsets below replace it.
    m_xoffset = trunc(std::ceil(float(m_shadowxoffset * 0.5)) + ceilBx - double(m_shadowblurradius));
    m_yoffsetPreview = trunc(-descender - ceilBy);
    if (m_shadow && m_shadowhowmode == 0)
        m_descender = trunc(((EY - std::fabs(double(m_shadowyoffset))) + double(m_shadowblurradius) * -2.0) * 0.5 +
                            descender);
    else
        m_descender = trunc(descender + EY / 2);

    if (m_boundingPadding > 0) {
        m_xoffset -= m_boundingPadding;
        m_yoffset -= m_boundingPadding;
        m_yoffsetPreview += m_boundingPadding;
    }

    if (!m_autoxy) {
        m_xoffset = trunc(ceilBx);
        m_yoffset = trunc(EY + (P + (ascender - ceilBy - m_glyphRect.height())));
        m_xadvanced = trunc(std::ceil(font.advance(glyph)));
    }
    return true;
}

} // namespace qm
