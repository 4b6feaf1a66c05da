// The character panel over a real project: blocks shown and added, typed ranges, quick sets, the
// field applied as typed with the space kept in front, characters that a text view would alter
// kept as they are, and selecting the glyphs of the selected letters.

#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CharacterPanel.h"
#include "tests/ui/PanelTestSupport.h"

#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTableWidget>

using namespace qm;
using namespace qm::test;

namespace {

QString codes(char16_t first, char16_t last)
{
    QString s;
    for (int c = first; c <= last; ++c)
        s += QChar(char16_t(c));
    return s;
}

struct Fixture
{
    Project p;
    CharacterSet charset{p.state, p.view};
    CharacterPanel panel{charset, p.state};
    QSignalSpy changed{&panel, &CharacterPanel::charactersChanged};

    Fixture()
    {
        panel.resize(320, 560);
        present(panel);
    }
    /// Clicks a block's row in the table.
    void clickBlock(const QString& name)
    {
        QTableWidget* table = panel.rangeTableView();
        const QList<QTableWidgetItem*> items = table->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << name.toStdString();
        table->scrollToItem(items.first());
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualItemRect(items.first()).center());
    }
    QString field() const { return panel.allLetters()->toPlainText(); }
    /// Distinct characters of the project, each one glyph.
    int distinct() const
    {
        return int(QSet<QChar>(p.state.textGlyph().begin(), p.state.textGlyph().end()).size());
    }
    /// Types at the end of the character-set field.
    void typeAtEnd(const QString& text)
    {
        QPlainTextEdit* e = panel.allLetters();
        e->setFocus();
        e->moveCursor(QTextCursor::End);
        QTest::keyClicks(e, text);
    }
};

} // namespace

TEST(CharacterPanel, TableListsTheBlocksAndShowsTheSelectedOnesCharacters)
{
    Fixture f;
    QTableWidget* table = f.panel.rangeTableView();
    ASSERT_EQ(table->rowCount(), 101);
    EXPECT_EQ(table->item(0, 0)->text(), QStringLiteral("basicLatin"));
    EXPECT_EQ(table->item(0, 1)->text(), QStringLiteral("0x0021-0x007f"));
    EXPECT_EQ(table->item(100, 0)->text(), QStringLiteral("specials"));
    EXPECT_EQ(table->rowHeight(50), 24);

    f.clickBlock(QStringLiteral("greekAndCoptic"));
    EXPECT_EQ(f.panel.rangeTextField()->toPlainText(), codes(0x370, 0x3FF));
    f.clickBlock(QStringLiteral("cjkUnifiedIdeographsExtensionA"));
    EXPECT_EQ(f.panel.rangeTextField()->toPlainText().size(), 6592);

    // Too large to add: the fields show the block, the characters stay as they were.
    const QString before = f.p.state.textGlyph();
    click(f.panel.addBlockButton());
    EXPECT_EQ(f.panel.rangestart()->text(), QStringLiteral("3400"));
    EXPECT_EQ(f.panel.rangeend()->text(), QStringLiteral("4DBF"));
    EXPECT_EQ(f.p.state.textGlyph(), before);
    EXPECT_EQ(f.changed.count(), 0);
}

TEST(CharacterPanel, AddingABlockTwiceAppendsItTwice)
{
    Fixture f;
    ASSERT_EQ(f.field(), QStringLiteral(" ABC"));
    f.clickBlock(QStringLiteral("basicLatin"));
    click(f.panel.addBlockButton());
    const QString once = QStringLiteral(" ABC") + codes(0x21, 0x7F);
    EXPECT_EQ(f.p.state.textGlyph(), once);
    EXPECT_EQ(f.field(), once);
    EXPECT_EQ(f.panel.rangestart()->text(), QStringLiteral("21"));
    EXPECT_EQ(f.panel.rangeend()->text(), QStringLiteral("7F"));
    EXPECT_EQ(int(f.p.view.glyphLayers().size()), f.distinct());
    EXPECT_EQ(f.distinct(), 96);

    click(f.panel.addBlockButton());
    EXPECT_EQ(f.p.state.textGlyph(), once + codes(0x21, 0x7F));
    EXPECT_EQ(int(f.p.view.glyphLayers().size()), 96) << "one glyph per character all the same";
    EXPECT_EQ(f.changed.count(), 2);
}

TEST(CharacterPanel, TypedRangesAreReadAsHexadecimalAndLimited)
{
    Fixture f;
    type(f.panel.rangestart(), QStringLiteral("61"));
    type(f.panel.rangeend(), QStringLiteral("7a"));
    click(f.panel.addRangeButton());
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" ABCabcdefghijklmnopqrstuvwxyz"));
    EXPECT_EQ(f.panel.rangeend()->text(), QStringLiteral("7A"));
    EXPECT_NE(f.p.view.getCAGlyphLayer(u'q'), nullptr);

    // Return in the end field adds too; a reversed or too long range adds nothing.
    type(f.panel.rangestart(), QStringLiteral("30"));
    enter(f.panel.rangeend(), QStringLiteral("2f"));
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" ABCabcdefghijklmnopqrstuvwxyz"));
    type(f.panel.rangestart(), QStringLiteral("0"));
    type(f.panel.rangeend(), QStringLiteral("7d1"));
    click(f.panel.addRangeButton());
    EXPECT_EQ(f.p.state.textGlyph().size(), 30);
    type(f.panel.rangestart(), QStringLiteral("zz"));
    type(f.panel.rangeend(), QStringLiteral("31"));
    click(f.panel.addRangeButton());
    EXPECT_EQ(f.panel.rangestart()->text(), QStringLiteral("0"));
    EXPECT_EQ(f.p.state.textGlyph().size(), 80) << "0 to 0x31 is 50 codes: added";
}

TEST(CharacterPanel, FieldAppliesAsTypedAndKeepsTheSpaceInFront)
{
    Fixture f;
    QPlainTextEdit* e = f.panel.allLetters();
    e->setFocus();
    e->selectAll();
    QTest::keyClicks(e, QStringLiteral("xy"));
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" xy"));
    EXPECT_EQ(f.field(), QStringLiteral(" xy"));
    EXPECT_EQ(e->textCursor().position(), 3) << "typing goes on where it was";
    QTest::keyClicks(e, QStringLiteral("z"));
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" xyz"));
    EXPECT_NE(f.p.view.getCAGlyphLayer(u'z'), nullptr);
    EXPECT_EQ(f.p.view.getCAGlyphLayer(u'A'), nullptr);

    QTest::keyClick(e, Qt::Key_Return);
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" xyz")) << "Return makes no line break glyph";

    e->selectAll();
    QTest::keyClick(e, Qt::Key_Delete);
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" "));
    EXPECT_EQ(f.field(), QStringLiteral(" "));
}

TEST(CharacterPanel, CharactersATextViewWouldAlterStayAsTheyAre)
{
    Fixture f;
    f.clickBlock(QStringLiteral("latin1Supplement"));
    click(f.panel.addBlockButton());
    f.panel.addCharSet(5); // U+0000
    const QString expected = QStringLiteral(" ABC") + codes(0x80, 0xFF) + QChar(u'\0');
    ASSERT_EQ(f.p.state.textGlyph(), expected);
    ASSERT_TRUE(f.p.state.textGlyph().contains(QChar(0xA0)));

    f.typeAtEnd(QStringLiteral("Q"));
    EXPECT_EQ(f.p.state.textGlyph(), expected + u'Q');
    QTest::keyClick(f.panel.allLetters(), Qt::Key_Backspace);
    EXPECT_EQ(f.p.state.textGlyph(), expected);
}

TEST(CharacterPanel, QuickSetsResetAndSelectingLetters)
{
    Fixture f;
    QMenu* menu = f.panel.quickSetButton()->menu();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 7);
    for (QAction* action : menu->actions())
        EXPECT_FALSE(action->text().isEmpty());
    menu->findChild<QAction*>(QStringLiteral("quickSet3"))->trigger();
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" ABC") + codes(0x370, 0x3CF));
    EXPECT_EQ(f.field(), f.p.state.textGlyph());

    // Select "BC" in the field; their glyphs get selected on the canvas.
    QTextCursor selection = f.panel.allLetters()->textCursor();
    selection.setPosition(2);
    selection.setPosition(4, QTextCursor::KeepAnchor);
    f.panel.allLetters()->setTextCursor(selection);
    click(f.panel.selectLettersButton());
    QString selected;
    for (CAGlyphLayer* layer : f.p.view.glyphLayers())
        if (layer->selected())
            selected += QChar(layer->glyphBitmap().charname());
    EXPECT_EQ(selected, QStringLiteral("BC"));

    click(f.panel.resetButton());
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" "));
    EXPECT_EQ(f.field(), QStringLiteral(" "));
    EXPECT_EQ(f.p.view.glyphLayers().size(), 1);
}

TEST(CharacterPanel, ReloadShowsTheProjectsCharacters)
{
    Fixture f;
    f.p.state.setTextGlyph(QStringLiteral(" hello"));
    f.panel.reloadFromSettings();
    EXPECT_EQ(f.field(), QStringLiteral(" hello"));
    EXPECT_EQ(f.changed.count(), 0) << "showing is no change";
    f.typeAtEnd(QStringLiteral("!"));
    EXPECT_EQ(f.p.state.textGlyph(), QStringLiteral(" hello!"));
}
