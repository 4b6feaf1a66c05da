#pragma once

#include "Classes/model/TextureController.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QAction;
class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QScrollArea;
class QStackedWidget;

namespace qm {

class CanvasWidget;
class CharacterPanel;
class ColorToolsPanel;
class ColorWellGroup;
class FontMetricsPanel;
class FontPanel;
class GlyphEditorPanel;
class OutputPanel;
class PackingPanel;
class ProjectDocument;
class PublishRun;
class PublishSheet;
class SFBInspectorView;
class SFBViewSelectorBar;
class TexturePanel;
class TopMenuController;

/// One document window: a project, its canvas and its panels. It is the window controller the
/// core talks to (alerts, file choosers, the publish log, panel refreshes), implemented with Qt
/// dialogs; the document logic itself is headless and shared with the command line.
class MainWindowController : public QMainWindow, public TextureController
{
    Q_OBJECT
public:
    /// A window for a new project, or for the project file `file` (opened once shown).
    MainWindowController(TopMenuController* app, const QString& file = QString(), QWidget* parent = nullptr);
    ~MainWindowController() override;

    /// The file the window was made for (`loadfile`).
    const QString& loadfile() const { return m_loadfile; }
    ProjectDocument& document() { return *m_document; }
    CanvasWidget* canvas() const { return m_canvas; }
    QAction* action(const QString& objectName) const;

    // TextureController
    void updateWarningMessage(const QString& message) override;
    void updateClickedGlyph(const QString& text) override;
    void showGlyphDetails(CAGlyphLayer* layer) override;
    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override;
    void appendPublishLog(const QString& text) override;
    QString chooseFileToOpen(const QString& title, const QStringList& extensions) override;
    QString chooseFileToSave(const QString& title, const QStringList& extensions) override;
    QString chooseDirectory(const QString& title) override;
    void reloadInterfaceParamters() override;
    void setDocumentTitle(const QString& title) override;
    void noteRecentDocument(const QString& path) override;
    void openInNewWindow(const QString& path) override;

    /// Replaceable file choosers and alert answers, so tests drive the window without modal
    /// dialogs. Null means the real dialog.
    struct Prompts
    {
        std::function<int(const QString& message, const QStringList& buttons)> alert;
        std::function<QString(const QString& title, const QStringList& extensions, bool save)> file;
        std::function<QString(const QString& title)> directory;
    };
    static Prompts& testPrompts();

    /// Shows the texture or the preview.
    void previewOrTextureChanged(bool preview);
    /// Rebuilds the preview from the preview field.
    void updatePreview();
    /// Saves the laid-out preview as a PNG.
    void savePreviewPngClicked();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void createActions();
    void createMenus();
    void createToolBar();
    void createCentre();
    void createInspector();
    /// One inspector page of collapsible panes, chosen by an item of the selector bar.
    SFBInspectorView* addInspectorPage(const QString& identifier, const QString& label, const QString& toolTip);
    void openPublishSheet();
    void updateMenus();
    void setZoomFromControl();

    TopMenuController* m_app;
    QString m_loadfile;
    bool m_loaded = false;
    std::unique_ptr<ProjectDocument> m_document;
    CanvasWidget* m_canvas = nullptr;
    QScrollArea* m_canvasScroll = nullptr;
    QButtonGroup* m_previewOrTexture = nullptr;
    QLineEdit* m_previewText = nullptr;
    QComboBox* m_previewBackground = nullptr;
    QLabel* m_warningMessage = nullptr;
    QLabel* m_lastclickedglyph = nullptr;

    SFBViewSelectorBar* m_selector = nullptr;
    QStackedWidget* m_inspectorPages = nullptr;
    ColorWellGroup* m_wells = nullptr;
    FontPanel* m_fontPanel = nullptr;
    FontMetricsPanel* m_metricsPanel = nullptr;
    CharacterPanel* m_characterPanel = nullptr;
    TexturePanel* m_texturePanel = nullptr;
    PackingPanel* m_packingPanel = nullptr;
    ColorToolsPanel* m_colorPanel = nullptr;
    OutputPanel* m_outputPanel = nullptr;
    GlyphEditorPanel* m_glyphEditor = nullptr;
    std::unique_ptr<PublishRun> m_publishRun;
    PublishSheet* m_publishSheet = nullptr;
};

} // namespace qm
