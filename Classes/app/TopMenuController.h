#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QMenu;

namespace qm {

class MainWindowController;

/// What happens before and outside any document window: the first window at launch, New and
/// Open (each in a window of its own), files handed over by the system, recent documents, help
/// and printing.
class TopMenuController : public QObject
{
    Q_OBJECT
public:
    explicit TopMenuController(QObject* parent = nullptr);
    ~TopMenuController() override;

    /// True once a file was handed over at launch: then no empty window is made.
    bool fileopenedonstartup() const { return m_fileopenedonstartup; }

    /// Launch finished: an empty project window unless a file was opened.
    void applicationDidFinishLaunching();
    /// A new window with a new project.
    MainWindowController* FileNew();
    /// Asks for a project file and opens it in a new window.
    void FileOpen();
    /// A file handed over by the system or the command line: opens it in a new window.
    bool openFile(const QString& path);
    /// Opens the help page in the default browser.
    void showHelp();
    /// Prints the canvas of the active window.
    void print();

    QList<MainWindowController*> windows() const;
    /// The recent documents, most recent first.
    QStringList recentDocuments() const;
    void noteRecentDocument(const QString& path);
    void clearRecentDocuments();
    /// Fills a menu with the recent documents (Open Recent).
    void fillRecentMenu(QMenu* menu);

    /// File choosers of the application (tests replace them).
    static QString (*chooseProjectToOpen)(QWidget* parent);

private:
    MainWindowController* makeWindow(const QString& file);

    bool m_fileopenedonstartup = false;
    QList<QPointer<MainWindowController>> m_windows;
};

} // namespace qm
