#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace qm {

/// One row of the block table: its name as shown, and its range text "0x....-0x...." as
/// written (the letter case of the digits varies by row; it is read case-blind).
struct UnicodeBlock
{
    QString name;
    QString range;
};

/// A block's or a quick set's first and last code, both included.
struct CodeRange
{
    quint32 start = 0;
    quint32 end = 0;
    bool operator==(const CodeRange&) const = default;
};

/// The fixed data behind the character-set choices: the Unicode block table, the quick sets,
/// the range limit, and the hexadecimal reading and writing of the range fields.
class UnicodeRanges
{
public:
    /// A typed range is added only when it spans fewer codes than this. Two blocks are larger
    /// (cjkUnifiedIdeographsExtensionA, privateUseArea): they can be shown, never added.
    static constexpr quint32 kRangeLimit = 2001;

    /// The 101 blocks in display order.
    static const QList<UnicodeBlock>& blocks();
    /// The block names in display order (`allrangesArray`).
    static QStringList allrangesArray();
    /// Block name -> range text (`allrangeskeys`).
    static const QMap<QString, QString>& allrangeskeys();
    /// The block whose name equals `name` ignoring case, for command lines and scripts.
    static std::optional<UnicodeBlock> blockNamed(const QString& name);

    /// Splits a range text at "-" and reads each half as hexadecimal ("0x" prefix accepted).
    static CodeRange parseRange(const QString& rangeText);

    /// The quick set of a menu tag 1..7; any other tag is the set of tag 5, U+0000 alone.
    static CodeRange quickSet(int tag);

    /// Reads a range field: "0x" is put in front of the text, then a hexadecimal number is
    /// scanned, ignoring case; text that does not scan reads 0. So "5a" reads 0x5A, while
    /// "0x41" (which becomes "0x0x41") reads 0. Values past 32 bits read 0xFFFFFFFF.
    static quint32 readHexField(const QString& text);
    /// Upper-case hexadecimal without prefix ("%lX"), the form the fields are rewritten in.
    static QString hexFieldText(quint32 value);

    /// One UTF-16 code unit per code from start to end inclusive, in ascending order (each code
    /// taken modulo 0x10000); empty when end < start. No size limit.
    static QString codesText(quint32 start, quint32 end);
};

} // namespace qm
