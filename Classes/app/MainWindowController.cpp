#include "Classes/app/MainWindowController.h"

#include "Classes/app/TopMenuController.h"
#include "Classes/atlas/TextureView.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CanvasWidget.h"
#include "Classes/ui/CharacterPanel.h"
#include "Classes/ui/ColorToolsPanel.h"
#include "Classes/ui/ColorWellGroup.h"
#include "Classes/ui/FontMetricsPanel.h"
#include "Classes/ui/FontPanel.h"
#include "Classes/ui/GlyphEditorPanel.h"
#include "Classes/ui/OutputPanel.h"
#include "Classes/ui/PackingPanel.h"
#include "Classes/ui/PublishSheet.h"
#include "Classes/ui/SFBInspectorView.h"
#include "Classes/ui/SFBViewSelectorBar.h"
#include "Classes/ui/TexturePanel.h"
#include "Classes/ui/WizardSheet.h"
#include "Platform/files/SaveFile.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace qm {

namespace {

QString filterFor(const QStringList& extensions)
{
    QStringList globs;
    for (const QString& e : extensions)
        globs.append(QStringLiteral("*.") + e);
    if (extensions == QStringList{QStringLiteral("quillmark")})
        return QObject::tr("Quillmark projects (*.quillmark)");
    return QObject::tr("Files (%1)").arg(globs.join(QLatin1Char(' ')));
}

} // namespace

MainWindowController::Prompts& MainWindowController::testPrompts()
{
    static Prompts prompts;
    return prompts;
}

MainWindowController::MainWindowController(TopMenuController* app, const QString& file, QWidget* parent)
    : QMainWindow(parent), m_app(app), m_loadfile(file), m_document(std::make_unique<ProjectDocument>(this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Quillmark[*]"));
    // The status labels come first: building the panels already packs the glyph set, and every
    // packing run reports through them.
    statusBar()->setObjectName(QStringLiteral("statusBar"));
    m_warningMessage = new QLabel(this);
    m_warningMessage->setObjectName(QStringLiteral("warningMessage"));
    m_warningMessage->setStyleSheet(QStringLiteral("color: #c62828; font-weight: bold;"));
    m_lastclickedglyph = new QLabel(this);
    m_lastclickedglyph->setObjectName(QStringLiteral("lastclickedglyph"));
    statusBar()->addWidget(m_lastclickedglyph, 1);
    statusBar()->addPermanentWidget(m_warningMessage);
    createActions();
    createMenus();
    createToolBar();
    createCentre();
    createInspector();
    resize(1200, 800);

    // The window reflects unsaved changes as they happen anywhere in the core.
    auto* watch = new QTimer(this);
    connect(watch, &QTimer::timeout, this, [this] {
        setWindowModified(m_document->state().configchanged());
        updateMenus();
    });
    watch->start(250);
}

MainWindowController::~MainWindowController()
{
    // The sheets, the panels and the canvas use the document, which members outlive only until
    // this body ends; QWidget would delete them later.
    delete m_publishSheet;
    delete takeCentralWidget();
}

QAction* MainWindowController::action(const QString& objectName) const
{
    return findChild<QAction*>(objectName);
}

void MainWindowController::createActions()
{
    auto make = [this](const char* name, const QString& text, QKeySequence shortcut, auto slot) {
        auto* a = new QAction(text, this);
        a->setObjectName(QLatin1String(name));
        if (!shortcut.isEmpty())
            a->setShortcut(shortcut);
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    make("actionNew", tr("&New"), QKeySequence::New, [this] { m_app->FileNew(); });
    make("actionOpen", tr("&Open…"), QKeySequence::Open, [this] { m_app->FileOpen(); });
    make("actionOpenHere", tr("Open in This &Window…"), QKeySequence(), [this] { m_document->buttonOpen(); });
    make("actionSave", tr("&Save"), QKeySequence::Save, [this] { m_document->buttonSave(); });
    make("actionSaveAs", tr("Save &As…"), QKeySequence::SaveAs, [this] { m_document->clickSaveAs(); });
    make("actionSaveAsCopy", tr("Save as Cop&y…"), QKeySequence(tr("Ctrl+Alt+S")),
         [this] { m_document->clickSaveAsCopy(); });
    make("actionClose", tr("&Close"), QKeySequence::Close, [this] { close(); });
    make("actionPrint", tr("&Print…"), QKeySequence::Print, [this] { m_app->print(); });
    make("actionQuit", tr("&Quit"), QKeySequence::Quit, [] { QApplication::closeAllWindows(); });
    make("actionSelectAll", tr("Select &All Glyphs"), QKeySequence::SelectAll,
         [this] { m_document->view().selectAll(); });
    make("actionSelectNone", tr("&Invert Selection"), QKeySequence(tr("Ctrl+Shift+A")),
         [this] { m_document->view().selectNone(); });
    make("actionDeleteSelected", tr("&Remove Selected Glyphs"), QKeySequence(),
         [this] { m_document->view().removeSelectedLayers(); });
    make("actionZoomIn", tr("Zoom &In"), QKeySequence::ZoomIn, [this] { m_canvas->zoomIn(); });
    make("actionZoomOut", tr("Zoom &Out"), QKeySequence::ZoomOut, [this] { m_canvas->zoomOut(); });
    make("actionActualSize", tr("&Actual Size"), QKeySequence(tr("Ctrl+0")), [this] { m_canvas->setZoom(1.0); });
    make("actionZoomToFit", tr("Zoom to &Fit"), QKeySequence(tr("Ctrl+9")),
         [this] { m_canvas->zoomToFit(m_canvasScroll->viewport()->size()); });
    make("actionSavePreviewPng", tr("Save Preview as &PNG…"), QKeySequence(), [this] { savePreviewPngClicked(); });
    make("actionHelp", tr("Quillmark &Help"), QKeySequence::HelpContents, [this] { m_app->showHelp(); });
    make("actionPublish", tr("&Publish…"), QKeySequence(tr("Ctrl+Shift+P")), [this] { openPublishSheet(); });
}

void MainWindowController::createMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("menuFile"));
    file->addAction(action(QStringLiteral("actionNew")));
    file->addAction(action(QStringLiteral("actionOpen")));
    QMenu* recent = file->addMenu(tr("Open &Recent"));
    recent->setObjectName(QStringLiteral("menuOpenRecent"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { m_app->fillRecentMenu(recent); });
    file->addAction(action(QStringLiteral("actionOpenHere")));
    file->addSeparator();
    file->addAction(action(QStringLiteral("actionSave")));
    file->addAction(action(QStringLiteral("actionSaveAs")));
    file->addAction(action(QStringLiteral("actionSaveAsCopy")));
    file->addAction(action(QStringLiteral("actionClose")));
    file->addSeparator();
    file->addAction(action(QStringLiteral("actionSavePreviewPng")));
    file->addAction(action(QStringLiteral("actionPrint")));
    file->addSeparator();
    file->addAction(action(QStringLiteral("actionQuit")));

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->setObjectName(QStringLiteral("menuEdit"));
    edit->addAction(action(QStringLiteral("actionSelectAll")));
    edit->addAction(action(QStringLiteral("actionSelectNone")));
    edit->addAction(action(QStringLiteral("actionDeleteSelected")));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("menuView"));
    view->addAction(action(QStringLiteral("actionZoomIn")));
    view->addAction(action(QStringLiteral("actionZoomOut")));
    view->addAction(action(QStringLiteral("actionActualSize")));
    view->addAction(action(QStringLiteral("actionZoomToFit")));

    QMenu* publish = menuBar()->addMenu(tr("&Publish"));
    publish->setObjectName(QStringLiteral("menuPublish"));
    publish->addAction(action(QStringLiteral("actionPublish")));

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->setObjectName(QStringLiteral("menuHelp"));
    help->addAction(action(QStringLiteral("actionHelp")));
}

void MainWindowController::createToolBar()
{
    QToolBar* bar = addToolBar(tr("Canvas"));
    bar->setObjectName(QStringLiteral("canvasToolBar"));
    bar->setMovable(false);

    auto* texture = new QToolButton(bar);
    texture->setObjectName(QStringLiteral("showTexture"));
    texture->setText(tr("Texture"));
    texture->setCheckable(true);
    texture->setChecked(true);
    auto* preview = new QToolButton(bar);
    preview->setObjectName(QStringLiteral("showPreview"));
    preview->setText(tr("Preview"));
    preview->setCheckable(true);
    m_previewOrTexture = new QButtonGroup(this);
    m_previewOrTexture->setObjectName(QStringLiteral("previewOrTexture2"));
    m_previewOrTexture->addButton(texture, 0);
    m_previewOrTexture->addButton(preview, 1);
    connect(m_previewOrTexture, &QButtonGroup::idClicked, this, [this](int id) { previewOrTextureChanged(id == 1); });
    bar->addWidget(texture);
    bar->addWidget(preview);
    bar->addSeparator();

    m_previewText = new QLineEdit(bar);
    m_previewText->setObjectName(QStringLiteral("previewText"));
    m_previewText->setPlaceholderText(tr("Preview text (\\n for a new line)"));
    m_previewText->setToolTip(tr("Sample text laid out with the glyphs; write \\n for a line break"));
    m_previewText->setMinimumWidth(220);
    connect(m_previewText, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_document->previewTextChanged(text); });
    bar->addWidget(m_previewText);

    m_previewBackground = new QComboBox(bar);
    m_previewBackground->setObjectName(QStringLiteral("previewBackground"));
    m_previewBackground->setToolTip(tr("Screen size of the preview background"));
    const struct
    {
        int tag;
        const char* title;
    } sizes[] = {{1, "320 × 480"},   {2, "640 × 960"},   {3, "640 × 1136"},  {4, "768 × 1024"},
                 {5, "1536 × 2048"}, {6, "750 × 1334"}, {7, "1242 × 2208"}};
    for (const auto& s : sizes)
        m_previewBackground->addItem(QString::fromUtf8(s.title), s.tag);
    connect(m_previewBackground, &QComboBox::activated, this, [this] {
        const int tag = m_previewBackground->currentData().toInt();
        m_document->view().loadpreviewbgSizeAndColor(TextureView::previewBackgroundSize(tag),
                                                     m_document->state().prevBgColor());
    });
    bar->addWidget(m_previewBackground);
    bar->addSeparator();
    bar->addAction(action(QStringLiteral("actionZoomOut")));
    bar->addAction(action(QStringLiteral("actionZoomIn")));
    bar->addAction(action(QStringLiteral("actionActualSize")));
    bar->addAction(action(QStringLiteral("actionZoomToFit")));
    bar->addSeparator();
    bar->addAction(action(QStringLiteral("actionPublish")));
}

void MainWindowController::createCentre()
{
    m_canvas = new CanvasWidget(&m_document->view());
    m_canvasScroll = new QScrollArea(this);
    m_canvasScroll->setObjectName(QStringLiteral("canvasScroll"));
    m_canvasScroll->setWidget(m_canvas);
    m_canvasScroll->setWidgetResizable(false);
    m_canvasScroll->setAlignment(Qt::AlignCenter);
    m_canvasScroll->setBackgroundRole(QPalette::Dark);
}

SFBInspectorView* MainWindowController::addInspectorPage(const QString& identifier, const QString& label,
                                                         const QString& toolTip)
{
    m_selector->addItem(identifier, label, QIcon(), toolTip);
    auto* inspector = new SFBInspectorView;
    inspector->setObjectName(identifier + QStringLiteral("Inspector"));
    auto* scroll = new QScrollArea;
    scroll->setObjectName(identifier + QStringLiteral("Scroll"));
    scroll->setWidget(inspector);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_inspectorPages->addWidget(scroll);
    return inspector;
}

void MainWindowController::createInspector()
{
    ProjectDocument& doc = *m_document;
    sharedAppState& state = doc.state();
    TextureView& view = doc.view();
    m_wells = new ColorWellGroup(this);
    m_fontPanel = new FontPanel(doc.fontList(), state);
    m_metricsPanel = new FontMetricsPanel(state, view);
    m_characterPanel = new CharacterPanel(doc.characterSet(), state);
    m_texturePanel = new TexturePanel(state, *m_wells);
    m_packingPanel = new PackingPanel(state);
    m_colorPanel = new ColorToolsPanel(state, *m_wells, this);
    m_outputPanel = new OutputPanel(state, this);
    m_glyphEditor = new GlyphEditorPanel;
    m_glyphEditor->setState(&state);

    m_selector = new SFBViewSelectorBar;
    m_selector->setObjectName(QStringLiteral("viewSelector"));
    m_inspectorPages = new QStackedWidget;
    m_inspectorPages->setObjectName(QStringLiteral("inspectorPages"));
    SFBInspectorView* font = addInspectorPage(QStringLiteral("font"), tr("Font"), tr("Font, face and metrics"));
    font->addPane(QStringLiteral("fontList"), tr("Font"), m_fontPanel);
    font->addPane(QStringLiteral("fontMetrics"), tr("Size and Spacing"), m_metricsPanel);
    SFBInspectorView* chars =
        addInspectorPage(QStringLiteral("characters"), tr("Characters"), tr("The characters of the font"));
    chars->addPane(QStringLiteral("characterSet"), tr("Characters"), m_characterPanel);
    SFBInspectorView* style = addInspectorPage(QStringLiteral("style"), tr("Style"), tr("Fill, outline and shadow"));
    style->addPane(QStringLiteral("colorTools"), tr("Fill, Outline, Shadow"), m_colorPanel);
    SFBInspectorView* texture =
        addInspectorPage(QStringLiteral("texture"), tr("Texture"), tr("Texture size and packing"));
    texture->addPane(QStringLiteral("textureSize"), tr("Texture"), m_texturePanel);
    texture->addPane(QStringLiteral("packing"), tr("Packing"), m_packingPanel);
    SFBInspectorView* glyph =
        addInspectorPage(QStringLiteral("glyph"), tr("Glyph"), tr("Corrections of single glyphs; output"));
    glyph->addPane(QStringLiteral("glyphEditor"), tr("Glyph Editor"), m_glyphEditor);
    glyph->addPane(QStringLiteral("output"), tr("Output"), m_outputPanel);
    connect(m_selector, &SFBViewSelectorBar::selectedIndexChanged, m_inspectorPages, &QStackedWidget::setCurrentIndex);

    auto* side = new QWidget;
    side->setObjectName(QStringLiteral("inspector"));
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_selector);
    layout->addWidget(m_inspectorPages, 1);
    side->setMinimumWidth(m_selector->sizeHint().width() + 8); // every selector label in full

    auto* split = new QSplitter(Qt::Horizontal, this);
    split->setObjectName(QStringLiteral("mainSplitter"));
    split->addWidget(side);
    split->addWidget(m_canvasScroll);
    split->setStretchFactor(1, 1);
    split->setSizes({390, 810});
    setCentralWidget(split);

    // Changes that the text preview shows lay it out again.
    const auto preview = [this] { updatePreview(); };
    connect(m_texturePanel, &TexturePanel::previewNeedsUpdate, this, preview);
    connect(m_packingPanel, &PackingPanel::previewNeedsUpdate, this, preview);
    connect(m_metricsPanel, &FontMetricsPanel::previewNeedsUpdate, this, preview);
    connect(m_colorPanel, &ColorToolsPanel::previewNeedsUpdate, this, preview);
    connect(m_glyphEditor, &GlyphEditorPanel::glyphEdited, this, preview);
    connect(m_fontPanel, &FontPanel::fontChanged, m_metricsPanel, &FontMetricsPanel::showLineMetrics);
    connect(m_colorPanel, &ColorToolsPanel::previewBackgroundColorChanged, this, [this](const Color& color) {
        m_document->view().loadpreviewbgSizeAndColor(
            TextureView::previewBackgroundSize(m_previewBackground->currentData().toInt()), color);
    });

    m_publishRun = std::make_unique<PublishRun>(state, view, this);
    m_publishSheet = new PublishSheet(doc.publishPanel(), doc.buildWizard(), *m_publishRun, state, this, this);
}

void MainWindowController::openPublishSheet()
{
    m_publishSheet->openSheet();
}

void MainWindowController::updateMenus()
{
    const bool preview = m_document->view().showsPreview();
    action(QStringLiteral("actionSavePreviewPng"))->setEnabled(preview);
    action(QStringLiteral("actionDeleteSelected"))->setEnabled(!preview);
}

void MainWindowController::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (m_loaded)
        return;
    // Once the window stands: the new project is set up, then a file it was made for is opened
    // into it.
    m_loaded = true;
    activateWindow();
    raise();
    m_document->setUpWindow();
    if (!m_loadfile.isEmpty()) {
        QString error;
        if (!m_document->openfileproject(m_loadfile, &error))
            runAlert(tr("Open"), tr("The project '%1' could not be opened: %2").arg(m_loadfile, error), {tr("Ok")});
    }
}

void MainWindowController::closeEvent(QCloseEvent* event)
{
    if (m_document->windowShouldClose())
        event->accept();
    else
        event->ignore();
}

void MainWindowController::previewOrTextureChanged(bool preview)
{
    TextureView& view = m_document->view();
    if (preview && view.bgpreviewLayer()->bounds().isEmpty())
        view.loadpreviewbgSizeAndColor(TextureView::previewBackgroundSize(m_previewBackground->currentData().toInt()),
                                       m_document->state().prevBgColor());
    m_document->previewOrTextureChanged(preview);
    m_previewOrTexture->button(preview ? 1 : 0)->setChecked(true);
    m_canvas->refresh();
    if (preview) {
        // The preview canvas is large: show the laid-out text in the middle of the view.
        const QPointF centre = m_canvas->widgetPoint(view.boundingBoxPreview()->position());
        m_canvasScroll->ensureVisible(int(centre.x()), int(centre.y()), m_canvasScroll->viewport()->width() / 2,
                                      m_canvasScroll->viewport()->height() / 2);
    }
    updateMenus();
}

void MainWindowController::updatePreview()
{
    m_document->view().updatePreview(m_document->previewText());
}

void MainWindowController::savePreviewPngClicked()
{
    const QString path = chooseFileToSave(tr("Save Preview"), {QStringLiteral("png")});
    if (path.isEmpty())
        return;
    const QImage image = m_document->view().getPreviewImg();
    if (image.isNull() || !savePngFile(image, path))
        runAlert(tr("Save Preview"), tr("The preview could not be saved to '%1'.").arg(path), {tr("Ok")});
}

void MainWindowController::updateWarningMessage(const QString& message)
{
    // Every packing run ends here, and automatic sizing may have changed the texture size.
    m_warningMessage->setText(message);
    if (m_texturePanel)
        m_texturePanel->showTextureSize();
}

void MainWindowController::updateClickedGlyph(const QString& text)
{
    m_lastclickedglyph->setText(text);
}

void MainWindowController::showGlyphDetails(CAGlyphLayer* layer)
{
    m_glyphEditor->showGlyphDetails(layer);
    if (layer && m_selector)
        m_selector->selectItemWithIdentifier(QStringLiteral("glyph"));
}

int MainWindowController::runAlert(const QString& message, const QString& informativeText, const QStringList& buttons)
{
    if (testPrompts().alert)
        return testPrompts().alert(message, buttons);
    QMessageBox box(this);
    box.setWindowModality(Qt::WindowModal);
    box.setText(message);
    box.setInformativeText(informativeText);
    QList<QPushButton*> added;
    for (const QString& title : buttons)
        added.append(box.addButton(title, QMessageBox::ActionRole));
    if (!added.isEmpty())
        box.setDefaultButton(added.first());
    box.exec();
    // A dismissed alert (Escape, closing it) answers -1, which no caller takes for its first
    // button ("Save Document" and the like).
    return int(added.indexOf(static_cast<QPushButton*>(box.clickedButton())));
}

void MainWindowController::appendPublishLog(const QString& text)
{
    if (m_publishSheet)
        m_publishSheet->appendPublishLog(text);
}

QString MainWindowController::chooseFileToOpen(const QString& title, const QStringList& extensions)
{
    if (testPrompts().file)
        return testPrompts().file(title, extensions, false);
    return QFileDialog::getOpenFileName(this, title, QString(), filterFor(extensions));
}

QString MainWindowController::chooseFileToSave(const QString& title, const QStringList& extensions)
{
    if (testPrompts().file)
        return testPrompts().file(title, extensions, true);
    QString path = QFileDialog::getSaveFileName(this, title, QString(), filterFor(extensions));
    if (!path.isEmpty() && !extensions.isEmpty() && !extensions.contains(QFileInfo(path).suffix()))
        path += QLatin1Char('.') + extensions.first();
    return path;
}

QString MainWindowController::chooseDirectory(const QString& title)
{
    if (testPrompts().directory)
        return testPrompts().directory(title);
    return QFileDialog::getExistingDirectory(this, title);
}

void MainWindowController::reloadInterfaceParamters()
{
    m_fontPanel->reloadFromSettings();
    m_metricsPanel->reloadFromSettings();
    m_characterPanel->reloadFromSettings();
    m_texturePanel->reloadFromSettings();
    m_packingPanel->reloadFromSettings();
    m_colorPanel->reloadFromSettings();
    m_outputPanel->reloadFromSettings();
    m_publishSheet->reloadFromSettings();
    m_glyphEditor->updateCurrentGlyphDetails();
    m_previewText->setText(m_document->previewText());
    m_previewOrTexture->button(m_document->state().isinpreviewmode() ? 1 : 0)->setChecked(true);
    setWindowModified(m_document->state().configchanged());
    updateMenus();
}

void MainWindowController::setDocumentTitle(const QString& title)
{
    setWindowTitle(title + QStringLiteral("[*]"));
}

void MainWindowController::noteRecentDocument(const QString& path)
{
    m_app->noteRecentDocument(path);
}

void MainWindowController::openInNewWindow(const QString& path)
{
    m_app->openFile(path);
}

} // namespace qm
