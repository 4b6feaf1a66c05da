#include "Classes/ui/PublishSheet.h"

#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/ui/PanelControls.h"
#include "Classes/ui/WizardSheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace qm {

PublishSheet::PublishSheet(PublishPanel& panel, BuildWizard& wizard, PublishRun& run, sharedAppState& state,
                           TextureController* controller, QWidget* parent)
    : QDialog(parent), m_panel(panel), m_run(run), m_state(state), m_controller(controller)
{
    setObjectName(QStringLiteral("publishWindow"));
    setWindowTitle(tr("Publish"));
    setWindowModality(Qt::WindowModal);

    // The target list and its buttons.
    m_targetTable = new QTableWidget(0, 1, this);
    m_targetTable->setObjectName(QStringLiteral("targetTable"));
    m_targetTable->setToolTip(tr("The publish targets; double-click a name to rename it"));
    m_targetTable->setHorizontalHeaderLabels({tr("Target")});
    m_targetTable->horizontalHeader()->setStretchLastSection(true);
    m_targetTable->horizontalHeader()->setHighlightSections(false);
    m_targetTable->verticalHeader()->hide();
    m_targetTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_targetTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_targetTable->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                   QAbstractItemView::SelectedClicked);
    m_targetTable->setMinimumWidth(170);

    const auto button = [this](const QString& name, const QString& title, const QString& toolTip) {
        auto* b = new QPushButton(title, this);
        b->setObjectName(name);
        b->setToolTip(toolTip);
        b->setAutoDefault(false);
        return b;
    };
    const auto smallButton = [this](const QString& name, const QString& title, const QString& toolTip) {
        auto* b = new QToolButton(this);
        b->setObjectName(name);
        b->setText(title);
        b->setToolTip(toolTip);
        b->setMinimumWidth(b->sizeHint().height() + 6);
        return b;
    };
    QToolButton* plus =
        smallButton(QStringLiteral("targetPlus"), QStringLiteral("+"), tr("Add a target named New"));
    QToolButton* minus = smallButton(QStringLiteral("targetMinus"), QStringLiteral("−"),
                                     tr("Remove the selected target (the first one always stays)"));
    QPushButton* duplicate =
        button(QStringLiteral("targetDuplicate"), tr("Duplicate"), tr("Copy the selected target"));
    QPushButton* scaled50 = button(QStringLiteral("target50"), QStringLiteral("50%"),
                                   tr("Add a copy of the selected target at half its scale"));
    QPushButton* scaled25 = button(QStringLiteral("target25"), QStringLiteral("25%"),
                                   tr("Add a copy of the selected target at a quarter of its scale"));
    QPushButton* scaled46 = button(QStringLiteral("target46"), QStringLiteral("46.8%"),
                                   tr("Add a copy of the selected target at 46.875 % of its scale"));
    QPushButton* scaled23 = button(QStringLiteral("target23"), QStringLiteral("23.4%"),
                                   tr("Add a copy of the selected target at 23.4375 % of its scale"));
    QPushButton* wizardButton = button(QStringLiteral("targetWizard"), tr("Wizard…"),
                                       tr("Replace every target by a ready-made set of sizes"));
    connect(plus, &QToolButton::clicked, this, &PublishSheet::targetPlus);
    connect(minus, &QToolButton::clicked, this, &PublishSheet::targetMinus);
    connect(duplicate, &QPushButton::clicked, this, &PublishSheet::targetDuplicate);
    connect(scaled50, &QPushButton::clicked, this, &PublishSheet::target50);
    connect(scaled25, &QPushButton::clicked, this, &PublishSheet::target25);
    connect(scaled46, &QPushButton::clicked, this, &PublishSheet::target46);
    connect(scaled23, &QPushButton::clicked, this, &PublishSheet::target23);
    connect(wizardButton, &QPushButton::clicked, this, &PublishSheet::targetWizard);

    auto* listColumn = new QVBoxLayout;
    listColumn->setSpacing(6);
    listColumn->addWidget(m_targetTable, 1);
    auto* editButtons = new QHBoxLayout;
    editButtons->setSpacing(4);
    editButtons->addWidget(plus);
    editButtons->addWidget(minus);
    editButtons->addWidget(duplicate);
    editButtons->addStretch(1);
    listColumn->addLayout(editButtons);
    auto* scaledCaption = makeCaption(this, QStringLiteral("scaledCopyText"), tr("Scaled copy:"));
    listColumn->addWidget(scaledCaption);
    auto* scaledButtons = new QHBoxLayout;
    scaledButtons->setSpacing(4);
    for (QPushButton* b : {scaled50, scaled25, scaled46, scaled23})
        scaledButtons->addWidget(b);
    scaledButtons->addStretch(1);
    listColumn->addLayout(scaledButtons);
    listColumn->addWidget(wizardButton, 0, Qt::AlignLeft);

    // The selected target.
    auto* details = new QGroupBox(tr("Selected target"), this);
    details->setObjectName(QStringLiteral("targetDetails"));
    const auto field = [details](const QString& name, const QString& toolTip) {
        auto* f = new QLineEdit(details);
        f->setObjectName(name);
        f->setToolTip(toolTip);
        return f;
    };
    m_targetPath =
        field(QStringLiteral("targetPath"),
              tr("The directory the files are written to; a relative path starts at the project file"));
    m_chooseTargetPath = new QPushButton(tr("Choose…"), details);
    m_chooseTargetPath->setObjectName(QStringLiteral("chooseTargetPath"));
    m_chooseTargetPath->setToolTip(tr("Choose the directory"));
    m_chooseTargetPath->setAutoDefault(false);
    m_targetFile = field(QStringLiteral("targetFile"), tr("Base name of the texture and descriptor files"));
    m_targetExtension = field(QStringLiteral("targetExtension"),
                              tr("Appended to the file name, e.g. -hd or @2x; may be empty"));
    m_targetFontFace = field(QStringLiteral("targetFontFace"),
                             tr("Face name written into the descriptor; empty: the project's font"));
    m_targetFontFace->setPlaceholderText(tr("project font"));
    m_targetScale = field(QStringLiteral("targetScale"), tr("Output scale in percent; 100 is as drawn"));
    m_targetScale->setAlignment(Qt::AlignRight);
    m_targetScale->setFixedWidth(m_targetScale->fontMetrics().horizontalAdvance(QStringLiteral("000.00000")) +
                                 16);
    m_targetScaleQuality = new QComboBox(details);
    m_targetScaleQuality->setObjectName(QStringLiteral("targetScaleQuality"));
    m_targetScaleQuality->setToolTip(tr("How the texture is resampled at a scale other than 100 %"));
    for (int code = 0; code <= 4; ++code)
        addTaggedItem(m_targetScaleQuality, scaleQualityTitle(code), code);
    m_targetFormat = new QComboBox(details);
    m_targetFormat->setObjectName(QStringLiteral("targetFormat"));
    m_targetFormat->setToolTip(tr("The descriptor format"));
    for (int code = 0; code <= 8; ++code)
        addTaggedItem(m_targetFormat, descriptorFormatTitle(code), code);
    m_targetCheckTexture = new QCheckBox(tr("Texture"), details);
    m_targetCheckTexture->setObjectName(QStringLiteral("targetCheckTexture"));
    m_targetCheckTexture->setToolTip(tr("Write the texture image"));
    m_targetCheckCoords = new QCheckBox(tr("Descriptor"), details);
    m_targetCheckCoords->setObjectName(QStringLiteral("targetCheckCoords"));
    m_targetCheckCoords->setToolTip(tr("Write the descriptor with the glyph coordinates"));
    m_targetRedraw = new QCheckBox(tr("Redraw at scale"), details);
    m_targetRedraw->setObjectName(QStringLiteral("targetRedraw"));
    m_targetRedraw->setToolTip(
        tr("Draw the glyphs again at this scale instead of scaling the finished texture"));

    auto* form = new QGridLayout(details);
    form->setHorizontalSpacing(6);
    form->setVerticalSpacing(6);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    const auto caption = [details](const QString& name, const QString& text, QWidget* buddy) {
        QLabel* label = makeCaption(details, name, text);
        label->setBuddy(buddy);
        return label;
    };
    form->addWidget(caption(QStringLiteral("targetPathText"), tr("Directory:"), m_targetPath), 0, 0, right);
    auto* path = new QHBoxLayout;
    path->setSpacing(4);
    path->addWidget(m_targetPath, 1);
    path->addWidget(m_chooseTargetPath);
    form->addLayout(path, 0, 1, 1, 3);
    form->addWidget(caption(QStringLiteral("targetFileText"), tr("File name:"), m_targetFile), 1, 0, right);
    form->addWidget(m_targetFile, 1, 1, 1, 3);
    form->addWidget(caption(QStringLiteral("targetExtensionText"), tr("Suffix:"), m_targetExtension), 2, 0,
                    right);
    form->addWidget(m_targetExtension, 2, 1);
    form->addWidget(caption(QStringLiteral("targetFontFaceText"), tr("Face:"), m_targetFontFace), 2, 2,
                    right);
    form->addWidget(m_targetFontFace, 2, 3);
    form->addWidget(caption(QStringLiteral("targetScaleText"), tr("Scale:"), m_targetScale), 3, 0, right);
    auto* scale = new QHBoxLayout;
    scale->setSpacing(4);
    scale->addWidget(m_targetScale);
    scale->addWidget(makeCaption(details, QStringLiteral("targetScaleUnit"), QStringLiteral("%")));
    scale->addStretch(1);
    form->addLayout(scale, 3, 1);
    form->addWidget(caption(QStringLiteral("targetScaleQualityText"), tr("Quality:"), m_targetScaleQuality),
                    3, 2, right);
    form->addWidget(m_targetScaleQuality, 3, 3, Qt::AlignLeft);
    form->addWidget(caption(QStringLiteral("targetFormatText"), tr("Format:"), m_targetFormat), 4, 0, right);
    form->addWidget(m_targetFormat, 4, 1, 1, 3, Qt::AlignLeft);
    auto* boxes = new QHBoxLayout;
    boxes->setSpacing(12);
    boxes->addWidget(m_targetCheckTexture);
    boxes->addWidget(m_targetCheckCoords);
    boxes->addWidget(m_targetRedraw);
    boxes->addStretch(1);
    form->addLayout(boxes, 5, 1, 1, 3);
    form->setColumnStretch(1, 1);
    form->setColumnStretch(3, 1);
    form->setRowStretch(6, 1);

    // The log, progress and the run.
    m_targetLog = new QPlainTextEdit(this);
    m_targetLog->setObjectName(QStringLiteral("targetLog"));
    m_targetLog->setReadOnly(true);
    m_targetLog->setToolTip(tr("What publishing did, file by file"));
    m_targetLog->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_targetLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_targetLog->setMinimumHeight(m_targetLog->fontMetrics().lineSpacing() * 7 + 12);
    auto* logCaption = makeCaption(this, QStringLiteral("targetLogText"), tr("Log:"));

    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("publishProgress"));
    m_progress->setToolTip(tr("Targets published"));
    m_progress->setFormat(tr("%v of %m targets"));
    QSizePolicy keepRoom = m_progress->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keepRoom);
    m_progress->hide();

    m_targetAutoClose = new QCheckBox(tr("Close after publishing"), this);
    m_targetAutoClose->setObjectName(QStringLiteral("targetAutoClose"));
    m_targetAutoClose->setToolTip(tr("Close this sheet by itself when publishing has finished"));
    QPushButton* close = button(QStringLiteral("closePublish"), tr("Close"), tr("Close this sheet"));
    m_publish = button(QStringLiteral("buttonPublish"), tr("Publish"), tr("Write the files of every target"));
    m_publish->setDefault(true);
    connect(m_targetAutoClose, &QCheckBox::clicked, this, &PublishSheet::publishAutoClose);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_publish, &QPushButton::clicked, this, &PublishSheet::buttonPublish);

    auto* top = new QHBoxLayout;
    top->setSpacing(12);
    top->addLayout(listColumn, 2);
    top->addWidget(details, 5);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_targetAutoClose);
    bottom->addSpacing(12);
    bottom->addWidget(m_progress, 1);
    bottom->addSpacing(12);
    bottom->addWidget(close);
    bottom->addWidget(m_publish);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 12, 14, 12);
    column->setSpacing(8);
    column->addLayout(top, 3);
    column->addWidget(logCaption);
    column->addWidget(m_targetLog, 2);
    column->addLayout(bottom);

    // Edits of the target's settings count as they are typed.
    for (QLineEdit* f : {m_targetPath, m_targetFile, m_targetExtension, m_targetFontFace, m_targetScale})
        connect(f, &QLineEdit::textEdited, this, &PublishSheet::updateTargetVisibleDetails);
    for (QComboBox* popup : {m_targetScaleQuality, m_targetFormat})
        connect(popup, &QComboBox::activated, this, &PublishSheet::updateTargetVisibleDetails);
    for (QCheckBox* box : {m_targetCheckTexture, m_targetCheckCoords, m_targetRedraw})
        connect(box, &QCheckBox::clicked, this, &PublishSheet::updateTargetVisibleDetails);
    connect(m_chooseTargetPath, &QPushButton::clicked, this, &PublishSheet::chooseTargetDirectory);
    connect(m_targetTable, &QTableWidget::itemSelectionChanged, this, &PublishSheet::tableSelectionChanged);
    connect(m_targetTable, &QTableWidget::cellChanged, this, &PublishSheet::nameEdited);

    m_panel.setReloadHandler([this] { reloadTable(); });
    m_panel.setDisplayHandler([this] { displayFields(); });
    m_run.setProgressHandler([this](int done, int total) { showProgress(done, total); });

    m_wizardSheet = new WizardSheet(wizard, parent);
    connect(m_wizardSheet, &WizardSheet::wizardClosed, this, &PublishSheet::openSheet);

    reloadTable();
    displayFields();
}

PublishSheet::~PublishSheet()
{
    m_panel.setReloadHandler({});
    m_panel.setDisplayHandler({});
    m_run.setProgressHandler({});
    delete m_wizardSheet;
}

QAbstractButton* PublishSheet::button(const QString& objectName) const
{
    return findChild<QAbstractButton*>(objectName);
}

void PublishSheet::reloadFromSettings()
{
    m_panel.fields().targetAutoClose = m_state.publishautoclose();
    m_panel.loadPublishSettings();
    reloadTable();
}

void PublishSheet::openSheet()
{
    // Without a selection the panel works on the first target; show it selected.
    if (m_panel.selectedRow() == PublishPanel::noSelection)
        m_panel.setSelectedRow(0);
    reloadTable();
    m_panel.targetselectionchanged();
    displayFields();
    open();
}

void PublishSheet::reloadTable()
{
    m_showing = true;
    const QStringList& names = m_panel.targetArray();
    m_targetTable->setRowCount(int(names.size()));
    for (int row = 0; row < names.size(); ++row) {
        QTableWidgetItem* item = m_targetTable->item(row, 0);
        if (!item) {
            item = new QTableWidgetItem;
            m_targetTable->setItem(row, 0, item);
        }
        item->setText(names.at(row));
    }
    const int selected = m_panel.selectedRow();
    if (selected >= 0)
        m_targetTable->setCurrentCell(selected, 0);
    else
        m_targetTable->clearSelection();
    m_showing = false;
}

void PublishSheet::displayFields()
{
    m_showing = true;
    const PublishPanel::Fields& f = m_panel.fields();
    m_targetPath->setText(f.targetPath);
    m_targetFile->setText(f.targetFile);
    m_targetExtension->setText(f.targetExtension);
    m_targetFontFace->setText(f.targetFontFace);
    m_targetScale->setText(f.targetScale);
    selectOrInsertTag(m_targetScaleQuality, f.targetScaleQuality, scaleQualityTitle(f.targetScaleQuality));
    selectOrInsertTag(m_targetFormat, f.targetFormat, descriptorFormatTitle(f.targetFormat));
    m_targetCheckTexture->setChecked(f.targetCheckTexture);
    m_targetCheckCoords->setChecked(f.targetCheckCoords);
    m_targetRedraw->setChecked(f.targetRedraw);
    m_targetAutoClose->setChecked(f.targetAutoClose);
    m_showing = false;
}

void PublishSheet::updateTargetVisibleDetails()
{
    if (m_showing)
        return;
    PublishPanel::Fields& f = m_panel.fields();
    f.targetPath = m_targetPath->text();
    f.targetFile = m_targetFile->text();
    f.targetExtension = m_targetExtension->text();
    f.targetFontFace = m_targetFontFace->text();
    f.targetScale = m_targetScale->text();
    f.targetScaleQuality = selectedTag(m_targetScaleQuality);
    f.targetFormat = selectedTag(m_targetFormat);
    f.targetCheckTexture = m_targetCheckTexture->isChecked();
    f.targetCheckCoords = m_targetCheckCoords->isChecked();
    f.targetRedraw = m_targetRedraw->isChecked();
    m_panel.updateTargetVisibleDetails();
}

void PublishSheet::tableSelectionChanged()
{
    if (m_showing)
        return;
    const QList<QTableWidgetItem*> items = m_targetTable->selectedItems();
    m_panel.selectRow(items.isEmpty() ? PublishPanel::noSelection : items.first()->row());
}

void PublishSheet::nameEdited(int row, int column)
{
    if (m_showing || column != 0 || row < 0 || row >= m_panel.targetArray().size())
        return;
    const QString name = m_targetTable->item(row, 0)->text();
    // Only a real change renames; an empty name is no name, so the old one comes back.
    if (name == m_panel.targetArray().at(row) || name.trimmed().isEmpty()) {
        reloadTable();
        return;
    }
    m_panel.setObjectValue(name, row);
}

void PublishSheet::appendPublishLog(const QString& text)
{
    QTextCursor end = m_targetLog->textCursor();
    end.movePosition(QTextCursor::End);
    end.insertText(text);
    m_targetLog->setTextCursor(end);
    m_targetLog->ensureCursorVisible();
    m_targetLog->verticalScrollBar()->setValue(m_targetLog->verticalScrollBar()->maximum());
}

void PublishSheet::targetPlus()
{
    m_panel.targetPlus();
}

void PublishSheet::targetMinus()
{
    m_panel.targetMinus();
    reloadTable();
}

void PublishSheet::targetDuplicate()
{
    m_panel.targetDuplicate();
}

void PublishSheet::target50()
{
    m_panel.target50();
}

void PublishSheet::target25()
{
    m_panel.target25();
}

void PublishSheet::target46()
{
    m_panel.target46();
}

void PublishSheet::target23()
{
    m_panel.target23();
}

void PublishSheet::targetWizard()
{
    QDialog::done(QDialog::Accepted);
    m_panel.targetselectionchanged();
    m_wizardSheet->openSheet();
}

void PublishSheet::chooseTargetDirectory()
{
    if (!m_controller)
        return;
    const QString directory = m_controller->chooseDirectory(tr("Target directory"));
    if (directory.isEmpty())
        return;
    m_targetPath->setText(directory);
    updateTargetVisibleDetails();
}

void PublishSheet::publishAutoClose()
{
    m_panel.fields().targetAutoClose = m_targetAutoClose->isChecked();
    m_panel.publishAutoClose();
}

void PublishSheet::showProgress(int done, int total)
{
    m_progress->setRange(0, std::max(total, 1));
    m_progress->setValue(done);
    m_progress->show();
    // The run keeps the event loop waiting: paint the bar now.
    m_progress->repaint();
}

void PublishSheet::buttonPublish()
{
    m_publish->setEnabled(false);
    emit publishStarted();
    const PublishResult result = m_run.buttonPublish();
    m_progress->hide();
    m_publish->setEnabled(true);
    emit publishFinished(result.succeeded());
    if (result.autoClose)
        QDialog::done(QDialog::Accepted);
}

} // namespace qm
