#include "Classes/ui/FontPanel.h"

#include "Classes/fonts/FontList.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/StyledNameDelegate.h"

#include <QAbstractListModel>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>

namespace qm {

namespace {
/// The tint of families with usable kerning.
QColor kerningColor()
{
    return QColor::fromRgbF(0.1f, 0.3f, 0.1f);
}
} // namespace

/// The font list's rows as an item model: the family name, drawn in its own typeface.
class FontListModel : public QAbstractListModel
{
public:
    explicit FontListModel(QObject* parent) : QAbstractListModel(parent) {}

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : int(m_rows.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || index.row() >= m_rows.size())
            return {};
        const FontRow& row = m_rows.at(index.row());
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
        case StyledNameDelegate::FamilyRole:
            return row.familyName;
        case Qt::ToolTipRole:
            return row.hasKerning ? QObject::tr("%1 (with kerning pairs)").arg(row.familyName)
                                  : row.familyName;
        case StyledNameDelegate::ColorRole:
            return row.hasKerning ? kerningColor() : QColor(Qt::black);
        default:
            return {};
        }
    }

    /// Takes the rows, telling the view as little as needed: rows appended to the end keep the
    /// view's scroll position and selection.
    void setRows(const QList<FontRow>& rows)
    {
        if (rows == m_rows)
            return;
        if (rows.size() > m_rows.size() && rows.mid(0, m_rows.size()) == m_rows) {
            beginInsertRows({}, int(m_rows.size()), int(rows.size()) - 1);
            m_rows = rows;
            endInsertRows();
            return;
        }
        beginResetModel();
        m_rows = rows;
        endResetModel();
    }

private:
    QList<FontRow> m_rows;
};

FontPanel::FontPanel(FontList& fonts, sharedAppState& state, QWidget* parent)
    : QWidget(parent), m_fonts(fonts), m_state(state)
{
    setObjectName(QStringLiteral("fontPanel"));

    m_searchField = new QLineEdit(this);
    m_searchField->setObjectName(QStringLiteral("searchField"));
    m_searchField->setPlaceholderText(tr("Search families"));
    m_searchField->setClearButtonEnabled(true);
    m_searchField->setToolTip(tr("Lists only the families whose names contain this text"));

    m_model = new FontListModel(this);
    m_fontTableView = new QListView(this);
    m_fontTableView->setObjectName(QStringLiteral("fontTableView"));
    m_fontTableView->setModel(m_model);
    m_fontTableView->setUniformItemSizes(true);
    m_fontTableView->setSelectionMode(QAbstractItemView::SingleSelection);
    m_fontTableView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_fontTableView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_fontTableView->setMinimumHeight(8 * 30 + 4);
    m_fontTableView->setToolTip(
        tr("Font families, each in its own typeface; green ones carry kerning pairs"));
    StyledNameDelegate::Style style;
    style.largestSize = 18;
    style.smallestSize = 9;
    style.maxTextHeight = 26;
    style.rowHeight = 30;
    style.alignment = Qt::AlignHCenter;
    m_fontTableView->setItemDelegate(new StyledNameDelegate(style, m_fontTableView));
    StyledNameDelegate::useLightSelection(m_fontTableView);

    m_glyphTrait = new QComboBox(this);
    m_glyphTrait->setObjectName(QStringLiteral("glyphTrait"));
    m_glyphTrait->setToolTip(tr("The face of the family the glyphs are drawn with"));
    m_glyphTrait->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_glyphTrait->setMinimumContentsLength(12);
    auto* faceCaption = new QLabel(tr("Face:"), this);
    faceCaption->setObjectName(QStringLiteral("glyphTraitText"));
    faceCaption->setBuddy(m_glyphTrait);

    m_loadFont = new QPushButton(tr("Load Font File…"), this);
    m_loadFont->setObjectName(QStringLiteral("loadFont"));
    m_loadFont->setToolTip(tr("Use a TrueType or OpenType file (.ttf, .otf) that is not installed"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    grid->addWidget(m_searchField, 0, 0, 1, 2);
    grid->addWidget(m_fontTableView, 1, 0, 1, 2);
    grid->addWidget(faceCaption, 2, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(m_glyphTrait, 2, 1);
    grid->addWidget(m_loadFont, 3, 0, 1, 2, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);

    connect(m_searchField, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_fonts.searchFieldChanged(text);
        followFontList();
    });
    connect(m_fontTableView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FontPanel::rowClicked);
    connect(m_glyphTrait, &QComboBox::activated, this, &FontPanel::faceChosen);
    connect(m_loadFont, &QPushButton::clicked, this, &FontPanel::loadFontClicked);

    m_fonts.setChangedCallback([this] { followFontList(); });
    if (m_fonts.systemFonts().isEmpty())
        m_fonts.setUp();
    followFontList();
}

FontPanel::~FontPanel()
{
    m_fonts.setChangedCallback({});
}

void FontPanel::reloadFromSettings()
{
    if (m_searchField->text().isEmpty()) {
        m_fonts.searchFieldChanged(QString());
        followFontList();
    } else {
        m_searchField->clear(); // the text change lists every family again
    }
    if (m_fonts.selectedRow() >= 0)
        m_fontTableView->scrollTo(m_model->index(m_fonts.selectedRow()));
}

void FontPanel::followFontList()
{
    m_following = true;
    m_model->setRows(m_fonts.fontArray());
    const int row = m_fonts.selectedRow();
    QItemSelectionModel* selection = m_fontTableView->selectionModel();
    if (row < 0) {
        selection->clear();
    } else {
        const QModelIndex index = m_model->index(row);
        selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    }

    m_glyphTrait->clear();
    for (const FaceItem& item : m_fonts.glyphTraitItems())
        m_glyphTrait->addItem(item.title, item.tag);
    m_glyphTrait->setCurrentIndex(m_glyphTrait->findData(m_fonts.selectedTraitTag()));
    m_following = false;
}

void FontPanel::rowClicked()
{
    if (m_following)
        return;
    const QModelIndexList rows = m_fontTableView->selectionModel()->selectedRows();
    const int row = rows.isEmpty() ? -1 : rows.first().row();
    if (row == m_fonts.selectedRow())
        return;
    m_fonts.selectRow(row);
    followFontList();
    if (row >= 0)
        emit fontChanged();
}

void FontPanel::faceChosen(int index)
{
    if (m_following || index < 0)
        return;
    m_fonts.glyphTraitChanged(m_glyphTrait->itemData(index).toInt());
    emit fontChanged();
}

void FontPanel::loadFontClicked()
{
    const QString before = m_state.loadedFontPath();
    m_fonts.loadFontClicked();
    const QString path = m_state.loadedFontPath();
    if (path.isEmpty() || path == before)
        return;
    // The font service knows the file now; the list draws each family with Qt's own font
    // database, which has to be told separately.
    QFontDatabase::addApplicationFont(path);
    m_fontTableView->viewport()->update();
    followFontList();
    emit fontChanged();
}

} // namespace qm
