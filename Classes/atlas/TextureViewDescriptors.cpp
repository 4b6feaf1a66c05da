// Descriptor writers: the glyph rectangles, offsets, advances and kerning pairs as text, in the
// four families games read (BMFont text and XML, the "#" marker text, a Lua table), and the
// sprite-sheet property list.

#include "Classes/atlas/TextureView.h"

#include "Classes/model/Format.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QSet>

#include <cmath>
#include <cstdlib>

namespace qm {

namespace {

enum class Family { Text, Xml, Hash, Lua };

Family familyOf(int code)
{
    if ((code & ~4) == 3) // 3 and 7
        return Family::Xml;
    if (code == 5 || code == 6)
        return Family::Hash;
    if (code == 8)
        return Family::Lua;
    return Family::Text;
}

/// The program's int(x): truncation toward zero.
int trunc(double v)
{
    return static_cast<int>(v);
}

/// Rounding up in single precision, as the header values always were.
int ceilf32(float v)
{
    return static_cast<int>(std::ceil(v));
}

QString uv(float v)
{
    return format("%.4f", {double(v)});
}

} // namespace

QString TextureView::getFontplist(float scale, const QString& textureName, int output, const QString& fontFace,
                                  float oriScale) const
{
    const sharedAppState fallback;
    const sharedAppState& st = m_sharedState ? *m_sharedState : fallback;
    const Family family = familyOf(output);
    const float s = scale / 100.0f;
    const float o = oriScale / 100.0f;
    const QList<CAGlyphLayer*> layers = glyphLayers();

    const int L = st.lineHeight() != 0 ? st.lineHeight() : getDefaultLineHeight();
    int D = 0;
    for (CAGlyphLayer* layer : layers)
        D = std::min(D, layer->glyphBitmap().descender());
    const int size = ceilf32(float(st.glyphSize()) * s);
    const int lineHeight = ceilf32(float(L) * s);
    const int base = ceilf32(float(L - std::abs(D)) * s);
    const int scaleW = ceilf32(float(st.width()) * s);
    const int scaleH = ceilf32(float(st.height()) * s);
    const int count = int(layers.size()); // glyphs that did not fit are counted but not written

    QString text;
    QString mapping;
    switch (family) {
    case Family::Xml:
        text += QStringLiteral("<?xml version='1.0'?>\n");
        text += QStringLiteral("   <font>\n");
        text += format("       <info aa='1' size='%d' smooth='1' stretchH='100' bold='0' padding='0,0,0,0' "
                       "spacing='0,0' charset='' italic='0' unicode='0' face='%@'/>\n",
                       {size, fontFace});
        text += format("       <common scaleW='%d' packed='0' pages='1' lineHeight='%d' scaleH='%d' base='%d'/>\n",
                       {scaleW, lineHeight, scaleH, base});
        text += QStringLiteral("       <pages>\n");
        text += format("            <page id='0' file='%@'/>\n", {textureName});
        text += QStringLiteral("       </pages>\n");
        text += format("        <chars count='%d'>\n", {count});
        break;
    case Family::Text:
        text += format("info face=\"%@\" size=%d bold=0 italic=0 charset=\"\" unicode=0 stretchH=100 smooth=1 aa=1 "
                       "padding=0,0,0,0 spacing=0,0\n",
                       {fontFace, size});
        text += format("common lineHeight=%d base=%d scaleW=%d scaleH=%d pages=1 packed=0\n",
                       {lineHeight, base, scaleW, scaleH});
        text += format("page id=0 file=\"%@\"\n", {textureName});
        text += format("chars count=%d\n", {count});
        break;
    case Family::Hash:
        text += format("#fontFace=\"%@\" #fontSize=%d\n", {fontFace, size});
        text += format("#lineHeight=%d #baseLine=%d #textureWidth=%d #textureHeight=%d\n",
                       {lineHeight, base, scaleW, scaleH});
        text += format("#textureFile=\"%@\"\n", {textureName});
        text += format("#charsCount=%d\n", {count});
        break;
    case Family::Lua:
        text += QStringLiteral("local sheetData = {}\n\n");
        text += QStringLiteral("sheetData.info = {}\n");
        text += format("sheetData.info.lineHeight = %d\n", {lineHeight});
        text += format("sheetData.info.base = %d\n", {base});
        text += format("sheetData.info.fontface = \"%@\"\n\n", {fontFace});
        text += QStringLiteral("sheetData.frames = {\n");
        mapping = QStringLiteral("sheetData.mapping = {\n");
        break;
    }

    const double H = st.height();
    int written = 0;
    QSet<char16_t> fitted;
    for (CAGlyphLayer* layer : layers) {
        if (!layer->canfit())
            continue;
        const CGGlyphBitmap& g = layer->glyphBitmap();
        fitted.insert(g.charname());
        const bool custom = g.hasCustomPicture();
        const bool space = g.charname() == 32;
        const QRectF R = custom ? g.frameImage() : g.glyphRect();
        const QPointF P = layer->position();

        // The glyph's rectangle centred on its layer, from the top left of the texture.
        int x = trunc((P.x() - R.width() * 0.5) * s);
        int y = trunc((H - P.y() - R.height() * 0.5) * s);
        if (st.grid()) {
            y = trunc(y + st.boundingPadding() * s);
            x = trunc(x - st.boundingPadding() * s);
        }
        const int width = space ? 0 : trunc(R.width() * s);
        const int height = space ? 0 : trunc(R.height() * s);
        // Custom pictures are measured at the original scale o, not from the font.
        const int xoffset = custom ? trunc((g.addXOffset() - st.postXOffset()) * o)
                                   : trunc((g.xoffset() + g.addXOffset() - st.postXOffset()) * s);
        const int yoffset = custom ? int(std::ceil((st.postYOffset() - g.addYOffset()) * o))
                                   : int(std::ceil((st.postYOffset() + g.yoffset() - g.addYOffset()) * s));
        int advanceBase;
        if (st.fixedadvance())
            advanceBase = st.fixedadvancevalue();
        else if (space)
            advanceBase = st.spaceWidth();
        else if (custom)
            advanceBase = s >= 1 ? trunc(g.addXAdvance() * o) : g.addXAdvance();
        else
            advanceBase = g.xadvanced() + g.addXAdvance();
        const int xadvance = trunc((advanceBase + st.xadvancedOffset()) * s);
        const int id = g.charname();

        switch (family) {
        case Family::Xml:
            text += format("            <char xadvance='%d' x='%d' chnl='0' yoffset='%d' y='%d' xoffset='%d' "
                           "id='%@' page='0' height='%d' width='%d'/>\n",
                           {xadvance, x, yoffset, y, xoffset, id, height, width});
            break;
        case Family::Text:
            text += format("char id=%@ x=%d y=%d width=%d height=%d xoffset=%d yoffset=%d xadvance=%d page=0 chnl=0\n",
                           {id, x, y, width, height, xoffset, yoffset, xadvance});
            break;
        case Family::Lua:
            text += format("{\nid = %@,x = %d,y = %d,width = %d,height = %d,sourceX = %d,sourceY = %d,sourceWidth = "
                           "%d, sourceHeight = %d, xadvance = %d,xoffset = %d, yoffset = %d\n},\n",
                           {id, x, y, width, height, 0, 0, width, height, xadvance, xoffset, yoffset});
            mapping += format("[\"%@\"] = %d,\n", {id, ++written});
            break;
        case Family::Hash: {
            const float fw = float(scaleW), fh = float(scaleH);
            const float uStart = float(x) / fw;
            const float uEnd = uStart + float(width) / fw;
            float vStart, vEnd;
            if (output == 5) {
                vStart = float(y) / fh;
                vEnd = vStart + float(height) / fh;
            } else {
                vStart = (fh - float(y) - float(height)) / fh;
                vEnd = (fh - float(y)) / fh;
            }
            text += format("#charId=%@ #uvStart=(%@, %@) #uvEnd=(%@, %@) #size=(%d.0, %d.0) #xOffset=%d #yOffset=%d "
                           "#xAdvance=%d \n",
                           {id, uv(uStart), uv(vStart), uv(uEnd), uv(vEnd), width, height, xoffset, yoffset, xadvance});
            break;
        }
        }
    }

    if (family == Family::Xml) {
        text += QStringLiteral("       </chars>\n");
    } else if (family == Family::Lua) {
        text += QStringLiteral("}\n");
        mapping += QStringLiteral("}\n");
        text += mapping;
    }

    if (st.kernings() && !st.kerningTable().isEmpty() && !st.cmapTable().isEmpty()) {
        QString lines;
        int kept = 0;
        for (auto it = st.kerningTable().cbegin(); it != st.kerningTable().cend(); ++it) {
            const int first = it.key().first, second = it.key().second;
            const long long raw = static_cast<long long>(it.value()) * size;
            // Pairs that would round to nothing, or name a glyph not in the texture, are left out.
            if ((raw >= -2047 && raw <= 2047) || !fitted.contains(char16_t(first)) ||
                !fitted.contains(char16_t(second)))
                continue;
            const int amount = int(raw / 2048); // a 2048-unit em, whatever the font's own
            switch (family) {
            case Family::Xml:
                lines += format("            <kerning first=\"%i\" second=\"%i\" amount=\"%i\"/>\n", {first, second, amount});
                break;
            case Family::Lua: lines += format("[\"%i,%i\"] = %i,\n", {first, second, amount}); break;
            case Family::Hash: lines += format("#kerning #first=%i #second=%i #amount=%i\n", {first, second, amount}); break;
            case Family::Text: lines += format("kerning first=%i second=%i amount=%i\n", {first, second, amount}); break;
            }
            ++kept;
        }
        switch (family) {
        case Family::Xml: text += format("       <kernings count=\"%i\">\n%@       </kernings>\n", {kept, lines}); break;
        case Family::Hash: text += format("#kerningsCount=%i\n%@", {kept, lines}); break;
        case Family::Text: text += format("kernings count=%i\n%@", {kept, lines}); break;
        case Family::Lua:
            text += format("sheetData.kernings = {\n%@\n}\n", {lines});
            text += QStringLiteral("return sheetData\n");
            break;
        }
    }

    if (family == Family::Xml)
        text += QStringLiteral("   </font>\n");
    return text;
}

QString TextureView::getplist(int kind) const
{
    const double k = kind == 2 ? 1.0 : 0.5;
    const double H = m_frameSize.height();
    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    text += QStringLiteral("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n");
    text += QStringLiteral("<plist version=\"1.0\">\n");
    text += QStringLiteral("<dict><key>frames</key><dict>\n");
    for (CAGlyphLayer* layer : glyphLayers()) {
        if (!layer->canfit())
            continue;
        const double lw = layer->bounds().width(), lh = layer->bounds().height();
        const QPointF P = layer->position();
        const int x = int(std::floor((P.x() - lw * 0.5) * k));
        const int y = int(std::floor((H - P.y() - lh * 0.5) * k));
        const int w = trunc(lw * k), h = trunc(lh * k);
        text += format("<key>%@</key>\n", {layer->name().section(QLatin1Char('/'), -1)});
        text += QStringLiteral("<dict><key>aliases</key><array/>\n");
        text += QStringLiteral("<key>spriteColorRect</key>") + format("<string>{{%d, %d}, {%d, %d}}</string>\n", {0, 0, w, h});
        text += QStringLiteral("<key>spriteOffset</key> <string>{0, 0}</string>\n");
        text += format("<key>spriteSize</key><string>{%d, %d}</string>\n", {w, h});
        text += format("<key>spriteSourceSize</key><string>{%d, %d}</string>\n", {w, h});
        text += QStringLiteral("<key>spriteTrimmed</key><false/>");
        text += format("<key>textureRect</key><string>{{%d, %d}, {%d, %d}}</string>\n", {x, y, w, h});
        text += QStringLiteral("<key>textureRotated</key><false/> </dict>");
    }
    text += QStringLiteral("</dict><key>metadata</key><dict><key>format</key><integer>3</integer><key>size</key>");
    text += format("<string>{%d, %d}</string>", {trunc(m_frameSize.width() * k), trunc(H * k)});
    text += QStringLiteral("</dict></dict></plist>");
    return text;
}

} // namespace qm
