#include "tests/support/TinyFont.h"

#include <QFile>

#include <algorithm>
#include <bit>

namespace qm::test {

BigEndian& BigEndian::u8(int value)
{
    m_bytes.append(char(quint8(value)));
    return *this;
}

BigEndian& BigEndian::u16(int value)
{
    return u8(value >> 8).u8(value);
}

BigEndian& BigEndian::u32(quint32 value)
{
    return u16(int(value >> 16)).u16(int(value & 0xFFFF));
}

BigEndian& BigEndian::tag(const char tag[4])
{
    m_bytes.append(tag, 4);
    return *this;
}

BigEndian& BigEndian::raw(const QByteArray& bytes)
{
    m_bytes.append(bytes);
    return *this;
}

BigEndian& BigEndian::pad4()
{
    while (m_bytes.size() % 4 != 0)
        m_bytes.append('\0');
    return *this;
}

void BigEndian::putU16(qsizetype at, int value)
{
    m_bytes[at] = char(quint8(value >> 8));
    m_bytes[at + 1] = char(quint8(value));
}

void BigEndian::putU32(qsizetype at, quint32 value)
{
    putU16(at, int(value >> 16));
    putU16(at + 2, int(value & 0xFFFF));
}

namespace {

/// Largest power of two not above n (n >= 1), and its base-2 logarithm: the binary-search
/// hints that cmap format 4, kern format 0 and the table directory carry.
struct SearchHints
{
    int power = 0;
    int log2 = 0;
};
SearchHints searchHints(int n)
{
    if (n < 1)
        return {};
    const int power = int(std::bit_floor(unsigned(n)));
    return {power, std::countr_zero(unsigned(power))};
}

quint32 checksum(const QByteArray& table)
{
    quint32 sum = 0;
    for (qsizetype i = 0; i < table.size(); i += 4) {
        quint32 word = 0;
        for (int k = 0; k < 4; ++k)
            word = (word << 8) | (i + k < table.size() ? quint8(table[i + k]) : 0);
        sum += word;
    }
    return sum;
}

int xMaxOf(const QRect& box)
{
    return box.x() + box.width();
}
int yMaxOf(const QRect& box)
{
    return box.y() + box.height();
}

QByteArray rectangleGlyph(const QRect& box)
{
    // One clockwise contour (TrueType's outer direction), four on-curve points, 16-bit deltas.
    const int x0 = box.x(), y0 = box.y(), w = box.width(), h = box.height();
    BigEndian g;
    g.s16(1).s16(x0).s16(y0).s16(x0 + w).s16(y0 + h);
    g.u16(3).u16(0);
    for (int i = 0; i < 4; ++i)
        g.u8(0x01);
    g.s16(x0).s16(0).s16(w).s16(0);
    g.s16(y0).s16(h).s16(0).s16(-h);
    return g.pad4().bytes();
}

QByteArray nameTable(const TinyFontOptions& o)
{
    const QList<std::pair<int, QString>> names = {
        {1, o.family},
        {2, o.style},
        {3, QStringLiteral("Quillmark test: %1 %2").arg(o.family, o.style)},
        {4, o.family + QLatin1Char(' ') + o.style},
        {6, o.postScriptName},
    };
    BigEndian strings;
    BigEndian t;
    t.u16(0).u16(int(names.size())).u16(6 + 12 * int(names.size()));
    for (const auto& [id, text] : names) {
        const qsizetype offset = strings.size();
        for (QChar c : text)
            strings.u16(c.unicode());
        t.u16(3).u16(1).u16(0x409).u16(id).u16(int(strings.size() - offset)).u16(int(offset));
    }
    return t.raw(strings.bytes()).bytes();
}

} // namespace

QList<TinyGlyph> defaultTinyGlyphs()
{
    return {
        {u'A', QRect(20, 0, 560, 700), 600},
        {u'V', QRect(20, 0, 560, 700), 600},
        {u'T', QRect(20, 0, 560, 700), 600},
        {u'o', QRect(40, 0, 420, 500), 500},
        {u' ', QRect(), 250},
    };
}

QByteArray buildTinyFont(const TinyFontOptions& o)
{
    QList<TinyGlyph> glyphs = o.glyphs;
    glyphs.prepend({0, QRect(50, 0, o.unitsPerEm / 2 - 100, o.ascender * 3 / 4), o.unitsPerEm / 2});
    const int numGlyphs = int(glyphs.size());

    QRect bounds;
    int maxAdvance = 0, minLsb = 0x7FFF, minRsb = 0x7FFF, maxExtent = 0, advanceSum = 0;
    for (const TinyGlyph& g : glyphs) {
        maxAdvance = std::max(maxAdvance, g.advance);
        advanceSum += g.advance;
        if (g.box.isEmpty())
            continue;
        bounds = bounds.united(g.box);
        minLsb = std::min(minLsb, g.box.x());
        minRsb = std::min(minRsb, g.advance - xMaxOf(g.box));
        maxExtent = std::max(maxExtent, xMaxOf(g.box));
    }

    QMap<QByteArray, QByteArray> tables;

    BigEndian glyf, loca;
    for (const TinyGlyph& g : glyphs) {
        loca.u32(quint32(glyf.size()));
        if (!g.box.isEmpty())
            glyf.raw(rectangleGlyph(g.box));
    }
    loca.u32(quint32(glyf.size()));
    tables["glyf"] = glyf.bytes();
    tables["loca"] = loca.bytes();

    BigEndian head;
    head.u32(0x00010000).u32(0x00010000).u32(0).u32(0x5F0F3CF5).u16(0x000B).u16(o.unitsPerEm);
    head.u32(0).u32(0).u32(0).u32(0); // created, modified
    head.s16(bounds.x()).s16(bounds.y()).s16(xMaxOf(bounds)).s16(yMaxOf(bounds));
    head.u16(o.weightClass >= 700 ? 1 : 0).u16(8).s16(2).s16(1).s16(0); // long loca offsets
    tables["head"] = head.bytes();

    BigEndian hhea;
    hhea.u32(0x00010000).s16(o.ascender).s16(o.descender).s16(0).u16(maxAdvance);
    hhea.s16(minLsb).s16(minRsb).s16(maxExtent).s16(1).s16(0).s16(0);
    hhea.s16(0).s16(0).s16(0).s16(0).s16(0).u16(numGlyphs);
    tables["hhea"] = hhea.bytes();

    BigEndian hmtx;
    for (const TinyGlyph& g : glyphs)
        hmtx.u16(g.advance).s16(g.box.isEmpty() ? 0 : g.box.x());
    tables["hmtx"] = hmtx.bytes();

    BigEndian maxp;
    maxp.u32(0x00010000).u16(numGlyphs).u16(4).u16(1).u16(0).u16(0).u16(2);
    for (int i = 0; i < 9; ++i)
        maxp.u16(0);
    tables["maxp"] = maxp.bytes();

    char16_t firstChar = 0xFFFF, lastChar = 0;
    QMap<char16_t, quint16> codeToGlyph;
    for (int i = 1; i < numGlyphs; ++i) {
        codeToGlyph.insert(glyphs[i].character, quint16(i));
        firstChar = std::min(firstChar, glyphs[i].character);
        lastChar = std::max(lastChar, glyphs[i].character);
    }
    BigEndian os2;
    const int upem = o.unitsPerEm;
    os2.u16(4).s16(advanceSum / numGlyphs).u16(o.weightClass).u16(5).u16(0);
    os2.s16(upem * 65 / 100).s16(upem * 60 / 100).s16(0).s16(upem * 14 / 100); // subscript
    os2.s16(upem * 65 / 100).s16(upem * 60 / 100).s16(0).s16(upem * 48 / 100); // superscript
    os2.s16(upem * 5 / 100).s16(upem * 26 / 100).s16(0);                       // strikeout, class
    for (int i = 0; i < 10; ++i)
        os2.u8(0); // PANOSE
    os2.u32(1).u32(0).u32(0).u32(0).tag("QMRK");
    os2.u16(o.weightClass >= 700 ? 0x20 : 0x40).u16(firstChar).u16(lastChar);
    os2.s16(o.ascender).s16(o.descender).s16(0).u16(o.ascender).u16(-o.descender);
    os2.u32(1).u32(0).s16(upem / 2).s16(upem * 7 / 10).u16(0).u16(0x20).u16(1);
    tables["OS/2"] = os2.bytes();

    tables["name"] = nameTable(o);
    tables["cmap"] = cmapTable({{3, 1, cmapFormat4Mapping(codeToGlyph)}});

    BigEndian post;
    post.u32(0x00030000).u32(0).s16(-upem / 10).s16(upem / 20);
    for (int i = 0; i < 5; ++i)
        post.u32(0);
    tables["post"] = post.bytes();

    for (auto it = o.rawTables.begin(); it != o.rawTables.end(); ++it) {
        if (it.value().isEmpty())
            tables.remove(it.key());
        else
            tables[it.key()] = it.value();
    }

    // Table directory sorted by tag (QMap's byte order is the required order), then the tables,
    // each starting on a four-byte boundary.
    const int numTables = int(tables.size());
    const SearchHints hints = searchHints(numTables);
    BigEndian file;
    file.u32(0x00010000)
        .u16(numTables)
        .u16(hints.power * 16)
        .u16(hints.log2)
        .u16(numTables * 16 - hints.power * 16);
    qsizetype offset = 12 + 16 * qsizetype(numTables);
    qsizetype headOffset = -1;
    for (auto it = tables.begin(); it != tables.end(); ++it) {
        if (it.key() == "head")
            headOffset = offset;
        file.tag(it.key().constData())
            .u32(checksum(it.value()))
            .u32(quint32(offset))
            .u32(quint32(it.value().size()));
        offset += (it.value().size() + 3) / 4 * 4;
    }
    for (const QByteArray& table : std::as_const(tables))
        file.raw(table).pad4();
    if (headOffset >= 0 && tables.value("head").size() >= 12)
        file.putU32(headOffset + 8, 0xB1B0AFBAu - checksum(file.bytes()));
    return file.bytes();
}

bool writeTinyFont(const QString& path, const TinyFontOptions& options)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray bytes = buildTinyFont(options);
    return file.write(bytes) == bytes.size() && file.flush();
}

QByteArray cmapFormat0(const QMap<quint8, quint8>& codeToGlyph)
{
    BigEndian t;
    t.u16(0).u16(6 + 256).u16(0);
    for (int c = 0; c < 256; ++c)
        t.u8(codeToGlyph.value(quint8(c), 0));
    return t.bytes();
}

QByteArray cmapFormat4(const QList<CmapSegment>& segments)
{
    const int segCount = int(segments.size());
    const SearchHints hints = searchHints(segCount);
    QList<int> rangeOffsets;
    QList<quint16> glyphIdArray;
    for (int i = 0; i < segCount; ++i) {
        if (segments[i].glyphIds.isEmpty()) {
            rangeOffsets.append(0);
            continue;
        }
        // Bytes from this segment's idRangeOffset word to its first glyphIdArray entry.
        rangeOffsets.append(2 * (segCount - i) + 2 * int(glyphIdArray.size()));
        glyphIdArray += segments[i].glyphIds;
    }
    BigEndian t;
    t.u16(4).u16(16 + 8 * segCount + 2 * int(glyphIdArray.size())).u16(0);
    t.u16(2 * segCount).u16(2 * hints.power).u16(hints.log2).u16(2 * segCount - 2 * hints.power);
    for (const CmapSegment& s : segments)
        t.u16(s.end);
    t.u16(0);
    for (const CmapSegment& s : segments)
        t.u16(s.start);
    for (const CmapSegment& s : segments)
        t.s16(s.idDelta);
    for (int offset : rangeOffsets)
        t.u16(offset);
    for (quint16 glyph : glyphIdArray)
        t.u16(glyph);
    return t.bytes();
}

QByteArray cmapFormat4Mapping(const QMap<char16_t, quint16>& codeToGlyph)
{
    QList<CmapSegment> segments;
    for (auto it = codeToGlyph.begin(); it != codeToGlyph.end(); ++it) {
        if (it.key() == 0xFFFF)
            continue;
        const qint16 delta = qint16(quint16(it.value() - it.key()));
        if (!segments.isEmpty() && segments.last().end + 1 == it.key() && segments.last().idDelta == delta)
            segments.last().end = it.key();
        else
            segments.append({it.key(), it.key(), delta, {}});
    }
    segments.append({0xFFFF, 0xFFFF, 1, {}});
    return cmapFormat4(segments);
}

QByteArray cmapTable(const QList<CmapRecord>& records)
{
    QList<QByteArray> subtables;
    QList<qsizetype> offsets;
    qsizetype next = 4 + 8 * records.size();
    BigEndian t;
    t.u16(0).u16(int(records.size()));
    for (const CmapRecord& r : records) {
        qsizetype index = subtables.indexOf(r.subtable);
        if (index < 0) {
            index = subtables.size();
            subtables.append(r.subtable);
            offsets.append(next);
            next += r.subtable.size();
        }
        t.u16(r.platformId).u16(r.encodingId).u32(quint32(offsets[index]));
    }
    for (const QByteArray& s : subtables)
        t.raw(s);
    return t.bytes();
}

namespace {
void appendPairs(BigEndian& t, const QList<KernPair>& pairs)
{
    const int n = int(pairs.size());
    const SearchHints hints = searchHints(n);
    t.u16(n).u16(6 * hints.power).u16(hints.log2).u16(6 * n - 6 * hints.power);
    for (const KernPair& p : pairs)
        t.u16(p.left).u16(p.right).s16(p.value);
}
} // namespace

QByteArray kernFormat0(const QList<KernPair>& pairs, quint16 coverage)
{
    BigEndian t;
    t.u16(0).u16(14 + 6 * int(pairs.size())).u16(coverage);
    appendPairs(t, pairs);
    return t.bytes();
}

QByteArray kernFormat2(quint16 firstLeft, int leftCount, quint16 firstRight, int rightCount, qint16 value)
{
    // Two classes per side (0: every other glyph, 1: the listed ones), so a 2 x 2 array of
    // values. Left class values are byte offsets of rows from the subtable start, right class
    // values byte offsets within a row.
    const int rowWidth = 4;
    const int leftTable = 14;
    const int rightTable = leftTable + 4 + 2 * leftCount;
    const int array = rightTable + 4 + 2 * rightCount;
    BigEndian t;
    t.u16(0).u16(array + 2 * rowWidth).u16(0x0201);
    t.u16(rowWidth).u16(leftTable).u16(rightTable).u16(array);
    t.u16(firstLeft).u16(leftCount);
    for (int i = 0; i < leftCount; ++i)
        t.u16(array + rowWidth);
    t.u16(firstRight).u16(rightCount);
    for (int i = 0; i < rightCount; ++i)
        t.u16(2);
    t.s16(0).s16(0).s16(0).s16(value);
    return t.bytes();
}

QByteArray kernTable(const QList<QByteArray>& subtables)
{
    BigEndian t;
    t.u16(0).u16(int(subtables.size()));
    for (const QByteArray& s : subtables)
        t.raw(s);
    return t.bytes();
}

QByteArray kernTableVersion1(const QList<KernPair>& pairs)
{
    BigEndian t;
    t.u32(0x00010000).u32(1);
    t.u32(quint32(16 + 6 * pairs.size())).u16(0x0000).u16(0);
    appendPairs(t, pairs);
    return t.bytes();
}

} // namespace qm::test
