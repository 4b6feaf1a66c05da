#include "Classes/fonts/FontTablesReader.h"

#include "Classes/model/sharedAppState.h"
#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>
#include <queue>
#include <unordered_map>
#include <vector>

namespace qm {

namespace {

/// Big-endian fields of one table at absolute offsets. A field that does not lie wholly inside
/// the table reads as 0. Offsets are 64-bit, so sums of 32-bit table fields cannot overflow.
class TableCursor
{
public:
    explicit TableCursor(const QByteArray& bytes) : m_bytes(bytes) {}

    qint64 size() const { return m_bytes.size(); }
    /// True when `length` bytes from `offset` lie inside the table.
    bool contains(qint64 offset, qint64 length) const
    {
        return offset >= 0 && length >= 0 && offset <= size() && length <= size() - offset;
    }
    quint8 u8(qint64 offset) const { return contains(offset, 1) ? quint8(m_bytes[offset]) : 0; }
    quint16 u16(qint64 offset) const
    {
        return contains(offset, 2) ? quint16(u8(offset) << 8 | u8(offset + 1)) : 0;
    }
    qint16 s16(qint64 offset) const { return qint16(u16(offset)); }
    quint32 u32(qint64 offset) const
    {
        return contains(offset, 4) ? quint32(u16(offset)) << 16 | u16(offset + 2) : 0;
    }
    /// `count` 16-bit words from `offset`, in host order; words outside the table are 0.
    std::vector<quint16> words(qint64 offset, int count) const
    {
        std::vector<quint16> out(size_t(std::max(count, 0)), 0);
        if (count <= 0 || !contains(offset, 0))
            return out;
        const qint64 inside = std::min<qint64>(count, (size() - offset) / 2);
        const QByteArrayView bytes = QByteArrayView(m_bytes).sliced(offset, 2 * inside);
        std::memcpy(out.data(), bytes.data(), size_t(bytes.size()));
        FontTablesReader::SwapMuttableData(out.data(), int(inside));
        return out;
    }

private:
    const QByteArray& m_bytes;
};

/// The character-map writes of one read: the last code written under each glyph id. Kept flat
/// and merged into the table once at the end, as the same glyphs are written over and over.
class CmapWrites
{
public:
    CmapWrites() : m_code(0x10000, 0), m_written(0x10000 / 64, 0) {}
    void put(quint16 glyph, quint16 code)
    {
        m_code[glyph] = code;
        m_written[glyph / 64] |= quint64(1) << (glyph % 64);
    }
    /// Ascending, each insertion hinted by the last one: linear for an empty table.
    void mergeInto(CmapTable& table) const
    {
        CmapTable::const_iterator hint = table.cbegin();
        for (size_t word = 0; word < m_written.size(); ++word) {
            for (quint64 bits = m_written[word]; bits != 0; bits &= bits - 1) {
                const size_t glyph = word * 64 + size_t(std::countr_zero(bits));
                hint = std::next(table.insert(hint, quint16(glyph), char16_t(m_code[glyph])));
            }
        }
    }

private:
    std::vector<quint16> m_code;
    std::vector<quint64> m_written; ///< one bit per glyph id
};

/// The arrays of one format 4 subtable, in host order.
struct Format4
{
    int segCount = 0;
    std::vector<quint16> endCode, startCode, idDelta, idRangeOffset, glyphIdArray;

    Format4(const TableCursor& t, qint64 offset)
    {
        const int length = t.u16(offset + 2);
        // searchRange, entrySelector and rangeShift (+ 8, + 10, + 12) are not used.
        segCount = t.u16(offset + 6) / 2;
        endCode = t.words(offset + 14, segCount);
        // One reserved word separates endCode from startCode.
        startCode = t.words(offset + 16 + 2 * qint64(segCount), segCount);
        idDelta = t.words(offset + 16 + 4 * qint64(segCount), segCount);
        idRangeOffset = t.words(offset + 16 + 6 * qint64(segCount), segCount);
        // The entry count comes from the length field (C division: toward zero; below 0: none).
        glyphIdArray = t.words(offset + 16 + 8 * qint64(segCount), (length - 16 - 8 * segCount) / 2);
    }

    /// The glyph of `code` through segment `j`.
    quint16 glyph(int code, int j) const
    {
        if (idRangeOffset[j] == 0)
            return quint16(code + idDelta[j]);
        // idRangeOffset counts bytes from its own word; turned into an index of glyphIdArray,
        // which starts segCount - j words after that word.
        const quint32 base = (quint32(qint64(idRangeOffset[j]) + 2 * j - 2 * qint64(segCount)) >> 1) & 0x7FFF;
        const quint32 index = (base + quint32(code - startCode[j])) & 0xFFFF;
        const quint16 entry = index < glyphIdArray.size() ? glyphIdArray[index] : 0;
        return entry == 0 ? 0 : quint16(entry + idDelta[j]);
    }
};

/// Codes of a format 4 subtable that share the first segment holding them (the one the glyph
/// look-up finds, scanning from segment 0) and the last (the one whose walk writes them last).
struct Run
{
    int first = 0;
    int last = 0;
    int from = 0; ///< first code
    int to = 0;   ///< last code, inclusive
};

/// Splits the codes of all non-empty segments into runs, by a sweep over segment ends.
std::vector<Run> runsOf(const Format4& f)
{
    struct Edge
    {
        int code;
        int segment;
        bool opens;
    };
    std::vector<Edge> edges;
    for (int i = 0; i < f.segCount; ++i) {
        if (f.startCode[i] <= f.endCode[i]) {
            edges.push_back({f.startCode[i], i, true});
            edges.push_back({f.endCode[i] + 1, i, false});
        }
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.code < b.code; });
    // The open segments' lowest and highest indices, through heaps that drop closed segments
    // when they come to the top.
    std::vector<bool> isOpen(size_t(f.segCount), false);
    std::priority_queue<int, std::vector<int>, std::greater<int>> lowest;
    std::priority_queue<int> highest;
    std::vector<Run> runs;
    for (size_t k = 0; k < edges.size();) {
        const int code = edges[k].code;
        for (; k < edges.size() && edges[k].code == code; ++k) {
            isOpen[size_t(edges[k].segment)] = edges[k].opens;
            if (edges[k].opens) {
                lowest.push(edges[k].segment);
                highest.push(edges[k].segment);
            }
        }
        while (!lowest.empty() && !isOpen[size_t(lowest.top())])
            lowest.pop();
        while (!highest.empty() && !isOpen[size_t(highest.top())])
            highest.pop();
        // Every open segment closes at a later edge, so k is valid when one is open.
        if (!lowest.empty())
            runs.push_back({lowest.top(), highest.top(), code, edges[k].code - 1});
    }
    return runs;
}

/// One character-map write: `code` under `glyph`.
struct CmapWrite
{
    quint16 glyph;
    quint16 code;
};

/// How many writes of walked subtables one read keeps for replay (4 MB).
constexpr size_t kMaxKeptWrites = size_t(1) << 20;

/// The writes of a format 4 subtable, as if walking every segment in order and every code of it
/// in ascending order, looking each code's segment up from segment 0, and writing the code under
/// its glyph. Only the last write of a code can decide a glyph's final value (a code always maps
/// to the same glyph), so each code is written once, in the order of the last walks: by the last
/// segment holding it, then by code. The result is the plain walk's, at a cost that does not
/// grow with codes x segments, which a hostile subtable could make take minutes.
std::vector<CmapWrite> walkFormat4(const TableCursor& t, qint64 offset)
{
    const Format4 f(t, offset);
    std::vector<Run> runs = runsOf(f);
    std::sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) {
        return a.last != b.last ? a.last < b.last : a.from < b.from;
    });
    std::vector<CmapWrite> writes;
    for (const Run& run : runs)
        for (int code = run.from; code <= run.to; ++code)
            writes.push_back({f.glyph(code, run.first), quint16(code)});
    return writes;
}

std::vector<CmapWrite> walkSubtable(const TableCursor& t, qint64 offset)
{
    // length (+ 2) and language (+ 4) are not used; format 4 reads its length itself.
    switch (t.u16(offset)) {
    case 0: {
        std::vector<CmapWrite> writes;
        for (int code = 0; code < 256; ++code)
            writes.push_back({t.u8(offset + 6 + code), quint16(code)});
        return writes;
    }
    case 4:
        return walkFormat4(t, offset);
    default: // formats 2, 6, 12, ... carry no 16-bit map of their own here
        return {};
    }
}

} // namespace

void FontTablesReader::SwapMuttableData(quint16* words, int count)
{
    for (int i = 0; i < count; ++i)
        words[i] = qFromBigEndian(words[i]);
}

QByteArray FontTablesReader::familyTable(const QString& family, int size, const char tag[4])
{
    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(family);
    if (members.isEmpty())
        return {};
    return Font::fromName(members.first().postScriptName, size).tableData(tag);
}

bool FontTablesReader::kernHasFormat0(const QByteArray& kern)
{
    const TableCursor t(kern);
    const int subtables = t.u16(2);
    for (int i = 0; i < subtables; ++i) {
        // The 32-bit word before each coverage word (version and length) is not used.
        if (t.u16(8 + 6 * qint64(i)) < 0x0100)
            return true;
    }
    return false;
}

void FontTablesReader::readCmap(const QByteArray& cmap, CmapTable& table)
{
    const TableCursor t(cmap);
    const int records = t.u16(2);
    if (records == 0)
        return;
    CmapWrites written;
    // Records often share a subtable (Unicode under two platforms): its writes are kept, up to
    // a bound, and replayed, which is what walking it again would write.
    std::unordered_map<quint32, std::vector<CmapWrite>> walked;
    size_t kept = 0;
    for (int r = 0; r < records; ++r) {
        // Platform and encoding IDs (+ 0, + 2) are not tested: every record counts.
        const qint64 offsetField = 4 + 8 * qint64(r) + 4;
        const quint32 offset = t.u32(offsetField);
        auto it = walked.find(offset);
        if (it == walked.end()) {
            std::vector<CmapWrite> writes = walkSubtable(t, offset);
            if (kept + writes.size() > kMaxKeptWrites) {
                walked.clear();
                kept = 0;
            }
            kept += writes.size();
            it = walked.emplace(offset, std::move(writes)).first;
        }
        for (const CmapWrite& w : it->second)
            written.put(w.glyph, w.code);
        // From here on every record reads offset 0 and repeats the walk just made, which
        // changes nothing.
        if (!t.contains(offsetField, 4))
            break;
    }
    written.mergeInto(table);
}

void FontTablesReader::readKerning(const QByteArray& kern, const CmapTable& cmap, KerningTable& table)
{
    const TableCursor t(kern);
    const int subtables = t.u16(2);
    qint64 p = 4;
    for (int s = 0; s < subtables; ++s) {
        // Past the end every remaining subtable reads as an empty format 0 one.
        if (p >= t.size())
            break;
        // The 32-bit word at p (version and length) is not used: a subtable of another format
        // is taken to be 6 bytes long, and what follows it is read from inside it.
        if (t.u16(p + 4) > 0x00FF) {
            p += 6;
            continue;
        }
        const int pairs = t.u16(p + 6);
        // searchRange, entrySelector and rangeShift (p + 8 .. p + 13) are not used.
        const qint64 first = p + 14;
        for (int k = 0; k < pairs; ++k) {
            const qint64 pair = first + 6 * qint64(k);
            if (!t.contains(pair, 6))
                break; // the value reads 0 here and for every later pair
            const qint16 value = t.s16(pair + 4);
            if (value == 0)
                continue;
            const auto left = cmap.constFind(t.u16(pair));
            const auto right = cmap.constFind(t.u16(pair + 2));
            if (left != cmap.cend() && right != cmap.cend())
                table.insert({left.value(), right.value()}, value);
        }
        p = first + 6 * qint64(pairs);
    }
}

bool FontTablesReader::hasKernings(const QString& family) const
{
    const QByteArray kern = familyTable(family, m_state.glyphSize(), "kern");
    return !kern.isEmpty() && kernHasFormat0(kern);
}

void FontTablesReader::loadCmapTable(const QString& family)
{
    const QByteArray cmap = familyTable(family, m_state.glyphSize(), "cmap");
    if (cmap.isEmpty())
        return;
    CmapTable table = m_state.cmapTable();
    readCmap(cmap, table);
    m_state.setCmapTable(table);
}

void FontTablesReader::fillKerningTable(const QString& family)
{
    loadCmapTable(m_state.fontName());
    const QByteArray kern = familyTable(family, m_state.glyphSize(), "kern");
    if (kern.isEmpty())
        return;
    KerningTable table = m_state.kerningTable();
    readKerning(kern, m_state.cmapTable(), table);
    m_state.setKerningTable(table);
}

} // namespace qm
