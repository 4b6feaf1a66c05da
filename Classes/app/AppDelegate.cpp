#include "Classes/app/AppDelegate.h"

#include "Classes/app/TopMenuController.h"

#include <QApplication>
#include <QIcon>

namespace qm {

int AppDelegate::run(const QStringList& files)
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/quillmark/quillmark.svg")));
    QApplication::setDesktopFileName(QStringLiteral("quillmark"));
    TopMenuController top;
    for (const QString& file : files)
        top.openFile(file);
    top.applicationDidFinishLaunching();
    return QApplication::exec();
}

} // namespace qm
