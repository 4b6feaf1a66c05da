#include "Classes/app/TopMenuController.h"

#include "Classes/app/MainWindowController.h"
#include "Classes/ui/CanvasWidget.h"
#include "Platform/defaults/UserDefaults.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QUrl>

namespace qm {

namespace {

const char* const kRecentKey = "recentDocuments";
constexpr int kMaxRecent = 10;

QString defaultChooser(QWidget* parent)
{
    return QFileDialog::getOpenFileName(parent, QObject::tr("Open Project"), QString(),
                                        QObject::tr("Quillmark projects (*.quillmark)"));
}

} // namespace

QString (*TopMenuController::chooseProjectToOpen)(QWidget* parent) = defaultChooser;

TopMenuController::TopMenuController(QObject* parent) : QObject(parent) {}

TopMenuController::~TopMenuController() = default;

void TopMenuController::applicationDidFinishLaunching()
{
    if (!m_fileopenedonstartup)
        FileNew();
}

MainWindowController* TopMenuController::makeWindow(const QString& file)
{
    auto* window = new MainWindowController(this, file);
    m_windows.append(window);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

MainWindowController* TopMenuController::FileNew()
{
    return makeWindow(QString());
}

void TopMenuController::FileOpen()
{
    const QString path = chooseProjectToOpen(QApplication::activeWindow());
    if (!path.isEmpty())
        makeWindow(path);
}

bool TopMenuController::openFile(const QString& path)
{
    m_fileopenedonstartup = true;
    return makeWindow(path) != nullptr;
}

void TopMenuController::showHelp()
{
    // The page travels inside the program; the browser gets a copy it can read.
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    const QString path = QDir(dir).filePath(QStringLiteral("quillmark-help.html"));
    QFile::remove(path);
    if (QFile::copy(QStringLiteral(":/quillmark/help.html"), path)) {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    }
}

void TopMenuController::print()
{
    auto* window = qobject_cast<MainWindowController*>(QApplication::activeWindow());
    if (!window)
        return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QImage image = window->canvas()->grab().toImage();
    QPainter painter(&printer);
    const QRect page = painter.viewport();
    const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.setViewport(page.x(), page.y(), size.width(), size.height());
    painter.setWindow(image.rect());
    painter.drawImage(0, 0, image);
}

QList<MainWindowController*> TopMenuController::windows() const
{
    QList<MainWindowController*> open;
    for (const auto& w : m_windows)
        if (w)
            open.append(w);
    return open;
}

QStringList TopMenuController::recentDocuments() const
{
    return UserDefaults::standardUserDefaults().objectForKey(QLatin1String(kRecentKey)).toStringList();
}

void TopMenuController::noteRecentDocument(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList recent = recentDocuments();
    recent.removeAll(absolute);
    recent.prepend(absolute);
    while (recent.size() > kMaxRecent)
        recent.removeLast();
    UserDefaults::standardUserDefaults().setObject(recent, QLatin1String(kRecentKey));
}

void TopMenuController::clearRecentDocuments()
{
    UserDefaults::standardUserDefaults().removeObjectForKey(QLatin1String(kRecentKey));
}

void TopMenuController::fillRecentMenu(QMenu* menu)
{
    menu->clear();
    const QStringList recent = recentDocuments();
    for (const QString& path : recent) {
        QAction* a = menu->addAction(QFileInfo(path).fileName());
        a->setToolTip(path);
        a->setEnabled(QFileInfo::exists(path));
        connect(a, &QAction::triggered, this, [this, path] { makeWindow(path); });
    }
    if (!recent.isEmpty())
        menu->addSeparator();
    QAction* clear = menu->addAction(tr("Clear Menu"));
    clear->setObjectName(QStringLiteral("actionClearRecent"));
    clear->setEnabled(!recent.isEmpty());
    connect(clear, &QAction::triggered, this, [this] { clearRecentDocuments(); });
}

} // namespace qm
