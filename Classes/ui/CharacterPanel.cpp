#include "Classes/ui/CharacterPanel.h"

#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/PanelControls.h"
#include "Classes/ui/StyledNameDelegate.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTextBlock>
#include <QToolButton>

#include <algorithm>

namespace qm {

namespace {

struct QuickSetTitle
{
    int tag;
    const char* title;
};

constexpr QuickSetTitle kQuickSets[] = {
    {1, QT_TRANSLATE_NOOP("CharacterPanel", "Basic Latin: ! to ~ (U+0021–U+007E)")},
    {2, QT_TRANSLATE_NOOP("CharacterPanel", "Latin-1 letters and signs: ¡ to ÿ (U+00A1–U+00FF)")},
    {3, QT_TRANSLATE_NOOP("CharacterPanel", "Greek (U+0370–U+03CF)")},
    {4, QT_TRANSLATE_NOOP("CharacterPanel", "Cyrillic (U+0400–U+04FF)")},
    {6, QT_TRANSLATE_NOOP("CharacterPanel", "Mathematical operators (U+2200–U+22FF)")},
    {7, QT_TRANSLATE_NOOP("CharacterPanel", "Box drawing (U+2500–U+257F)")},
    {5, QT_TRANSLATE_NOOP("CharacterPanel", "Null character (U+0000)")},
};

constexpr int kRangeRowHeight = 24;

} // namespace

CharacterPanel::CharacterPanel(CharacterSet& charset, sharedAppState& state, QWidget* parent)
    : QWidget(parent), m_charset(charset), m_state(state)
{
    setObjectName(QStringLiteral("characterPanel"));

    auto* lettersCaption = makeCaption(this, QStringLiteral("allLettersText"), tr("Characters:"));
    m_allLetters = new QPlainTextEdit(this);
    m_allLetters->setObjectName(QStringLiteral("allLetters"));
    m_allLetters->setToolTip(tr("Every character in this text becomes one glyph; the space is always "
                                "included. Changes apply as you type."));
    m_allLetters->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_allLetters->setTabChangesFocus(true);
    m_allLetters->setFixedHeight(m_allLetters->fontMetrics().lineSpacing() * 4 + 12);
    m_allLetters->installEventFilter(this);
    lettersCaption->setBuddy(m_allLetters);

    m_reset = new QPushButton(tr("Reset to Space"), this);
    m_reset->setObjectName(QStringLiteral("refreshDefaultLetters"));
    m_reset->setToolTip(tr("Replace the characters by a single space"));
    m_selectLetters = new QPushButton(tr("Select These Letters"), this);
    m_selectLetters->setObjectName(QStringLiteral("selectLetters"));
    m_selectLetters->setToolTip(
        tr("Select on the texture the glyphs of the characters selected in the text"));

    auto* blocksCaption = makeCaption(this, QStringLiteral("rangeTableText"), tr("Unicode blocks:"));
    m_rangeTableView = new QTableWidget(this);
    m_rangeTableView->setObjectName(QStringLiteral("rangeTableView"));
    m_rangeTableView->setToolTip(tr("Select a block to see its characters; Add Block appends them"));
    buildRangeTable();
    blocksCaption->setBuddy(m_rangeTableView);

    m_rangeTextField = new QPlainTextEdit(this);
    m_rangeTextField->setObjectName(QStringLiteral("rangeTextField"));
    m_rangeTextField->setReadOnly(true);
    m_rangeTextField->setToolTip(tr("The characters of the selected block"));
    m_rangeTextField->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_rangeTextField->setFixedHeight(m_rangeTextField->fontMetrics().lineSpacing() * 4 + 12);
    m_rangeTextField->setPlaceholderText(tr("Select a block above"));

    m_addBlock = new QPushButton(tr("Add Block"), this);
    m_addBlock->setObjectName(QStringLiteral("rangepopadd"));
    m_addBlock->setToolTip(tr("Append the characters of the selected block (blocks of more than %1 "
                              "characters cannot be added)")
                               .arg(UnicodeRanges::kRangeLimit));

    m_quickSets = new QPushButton(tr("Quick Sets"), this);
    m_quickSets->setObjectName(QStringLiteral("addCharSet"));
    m_quickSets->setToolTip(tr("Append a ready-made set of characters"));
    auto* menu = new QMenu(m_quickSets);
    menu->setObjectName(QStringLiteral("quickSetMenu"));
    for (const QuickSetTitle& set : kQuickSets) {
        QAction* action = menu->addAction(tr(set.title));
        action->setObjectName(QStringLiteral("quickSet%1").arg(set.tag));
        action->setData(set.tag);
        connect(action, &QAction::triggered, this, [this, tag = set.tag] { addCharSet(tag); });
    }
    m_quickSets->setMenu(menu);

    auto* rangeCaption = makeCaption(this, QStringLiteral("rangeText"), tr("Range:"));
    auto* toCaption = makeCaption(this, QStringLiteral("rangeToText"), tr("to"));
    const auto hexField = [this](const QString& name, const QString& toolTip) {
        auto* field = new QLineEdit(this);
        field->setObjectName(name);
        field->setToolTip(toolTip);
        field->setMaxLength(8);
        field->setPlaceholderText(QStringLiteral("hex"));
        field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 16);
        return field;
    };
    m_rangestart = hexField(QStringLiteral("rangestart"), tr("First character code, hexadecimal (41 is A)"));
    m_rangeend = hexField(QStringLiteral("rangeend"), tr("Last character code, hexadecimal (5A is Z)"));
    rangeCaption->setBuddy(m_rangestart);
    // Return after the last code adds the range, as the button does.
    connect(m_rangeend, &QLineEdit::returnPressed, this, &CharacterPanel::charsetaddrange);
    m_addRange = new QPushButton(tr("Add"), this);
    m_addRange->setObjectName(QStringLiteral("charsetaddrange"));
    m_addRange->setToolTip(tr("Append every character from the first code to the last (at most %1)")
                               .arg(UnicodeRanges::kRangeLimit));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 6, 8, 6);
    column->setSpacing(6);
    column->addWidget(lettersCaption);
    column->addWidget(m_allLetters);
    auto* letterButtons = new QHBoxLayout;
    letterButtons->addWidget(m_reset);
    letterButtons->addWidget(m_selectLetters);
    letterButtons->addStretch(1);
    column->addLayout(letterButtons);
    column->addSpacing(4);
    column->addWidget(blocksCaption);
    column->addWidget(m_rangeTableView, 1);
    column->addWidget(m_rangeTextField);
    auto* blockButtons = new QHBoxLayout;
    blockButtons->addWidget(m_addBlock);
    blockButtons->addWidget(m_quickSets);
    blockButtons->addStretch(1);
    column->addLayout(blockButtons);
    auto* range = new QHBoxLayout;
    range->addWidget(rangeCaption);
    range->addWidget(m_rangestart);
    range->addWidget(toCaption);
    range->addWidget(m_rangeend);
    range->addWidget(m_addRange);
    range->addStretch(1);
    column->addLayout(range);

    connect(m_allLetters->document(), &QTextDocument::contentsChange, this, &CharacterPanel::lettersEdited);
    connect(m_rangeTableView, &QTableWidget::itemSelectionChanged, this, &CharacterPanel::rangeTableSelected);
    connect(m_addBlock, &QPushButton::clicked, this, &CharacterPanel::rangepopadd);
    connect(m_addRange, &QPushButton::clicked, this, &CharacterPanel::charsetaddrange);
    connect(m_reset, &QPushButton::clicked, this, &CharacterPanel::refreshDefaultLettersClicker);
    connect(m_selectLetters, &QPushButton::clicked, this, &CharacterPanel::selectLettersClicked);

    reloadFromSettings();
}

void CharacterPanel::buildRangeTable()
{
    const QList<UnicodeBlock>& blocks = UnicodeRanges::blocks();
    QTableWidget* table = m_rangeTableView;
    table->setColumnCount(2);
    table->setRowCount(int(blocks.size()));
    table->setHorizontalHeaderLabels({tr("Block"), tr("Range")});
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(kRangeRowHeight);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    table->horizontalHeader()->setHighlightSections(false);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    StyledNameDelegate::useLightSelection(table);
    table->setMinimumHeight(kRangeRowHeight * 7 + table->horizontalHeader()->sizeHint().height() + 4);

    // The names as they stand, in "Arial" at the largest of 12 to 9 that fits, with a shadow.
    StyledNameDelegate::Style style;
    style.defaultFamily = QStringLiteral("Arial");
    style.largestSize = 12;
    style.smallestSize = 9;
    style.maxTextHeight = 20;
    style.widthMargin = 20;
    style.rowHeight = kRangeRowHeight;
    style.alignment = Qt::AlignLeft;
    table->setItemDelegateForColumn(0, new StyledNameDelegate(style, table));

    for (int row = 0; row < blocks.size(); ++row) {
        auto* name = new QTableWidgetItem(blocks[row].name);
        name->setToolTip(blocks[row].name);
        auto* range = new QTableWidgetItem(blocks[row].range);
        range->setForeground(palette().color(QPalette::PlaceholderText).darker(130));
        table->setItem(row, 0, name);
        table->setItem(row, 1, range);
    }
}

void CharacterPanel::reloadFromSettings()
{
    m_charset.setAllLetters(m_state.textGlyph());
    showLetters();
    showRangeFields();
}

void CharacterPanel::showLetters(int cursor)
{
    m_showing = true;
    m_allLetters->setPlainText(m_charset.allLetters());
    QTextCursor c = m_allLetters->textCursor();
    const int end = m_allLetters->document()->characterCount() - 1;
    c.setPosition(cursor < 0 ? end : std::clamp(cursor, 0, end));
    m_allLetters->setTextCursor(c);
    m_showing = false;
}

void CharacterPanel::showRangeFields()
{
    m_rangestart->setText(m_charset.rangestart());
    m_rangeend->setText(m_charset.rangeend());
}

void CharacterPanel::lettersEdited(int position, int removed, int added)
{
    if (m_showing)
        return;
    QTextDocument* document = m_allLetters->document();
    const int length = document->characterCount() - 1; // without the closing paragraph separator
    QString text = m_charset.allLetters();
    // A change that reaches the document's end is reported with the closing separator counted.
    position = std::clamp(position, 0, int(text.size()));
    removed = std::clamp(removed, 0, int(text.size()) - position);
    added = std::clamp(added, 0, length - position);
    QTextCursor inserted(document);
    inserted.setPosition(position);
    inserted.setPosition(position + added, QTextCursor::KeepAnchor);
    QString typed = inserted.selectedText();
    typed.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(position, removed, typed);
    if (text.size() != length) {
        // The document and the set no longer line up (an edit the reports missed): the
        // document's own text is the best guess of what the user sees.
        text = m_allLetters->toPlainText();
    }
    const int cursor = m_allLetters->textCursor().position();

    m_charset.setAllLetters(text);
    m_charset.allLettersChanged();
    // The set puts a space in front of a text without one; show it without losing the cursor.
    const QString& applied = m_charset.allLetters();
    if (applied != text)
        showLetters(cursor + int(applied.size() - text.size()));
    emit charactersChanged();
}

bool CharacterPanel::eventFilter(QObject* watched, QEvent* event)
{
    // Return ends no line here: a line break would become a glyph.
    if (watched == m_allLetters && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void CharacterPanel::rangeTableSelected()
{
    const QList<QTableWidgetItem*> items = m_rangeTableView->selectedItems();
    const int row = items.isEmpty() ? -1 : items.first()->row();
    m_charset.rangeTableSelected(row);
    if (row >= 0)
        m_rangeTextField->setPlainText(m_charset.rangeTextField());
}

void CharacterPanel::addCharSet(int tag)
{
    m_charset.addCharSet(tag);
    showLetters();
    emit charactersChanged();
}

void CharacterPanel::charsetaddrange()
{
    const QString before = m_charset.allLetters();
    m_charset.setRangestart(m_rangestart->text());
    m_charset.setRangeend(m_rangeend->text());
    m_charset.charsetaddrange();
    showRangeFields();
    if (m_charset.allLetters() != before) {
        showLetters();
        emit charactersChanged();
    }
}

void CharacterPanel::rangepopadd()
{
    const QString before = m_charset.allLetters();
    m_charset.rangepopadd();
    showRangeFields();
    if (m_charset.allLetters() != before) {
        showLetters();
        emit charactersChanged();
    }
}

void CharacterPanel::refreshDefaultLettersClicker()
{
    m_charset.refreshDefaultLettersClicker();
    showLetters();
    emit charactersChanged();
}

void CharacterPanel::selectLettersClicked()
{
    const QTextCursor cursor = m_allLetters->textCursor();
    const QString& text = m_charset.allLetters();
    const int start = std::clamp(cursor.selectionStart(), 0, int(text.size()));
    const int end = std::clamp(cursor.selectionEnd(), start, int(text.size()));
    m_charset.selectLettersClicked(text.mid(start, end - start));
}

} // namespace qm
