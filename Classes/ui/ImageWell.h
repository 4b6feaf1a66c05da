#pragma once

#include <QAbstractButton>
#include <QPixmap>

#include <functional>

class QMimeData;

namespace qm {

/// A small well showing a picture file: a click asks for a file, or a picture file is dropped
/// onto it. Reports the file's path.
class ImageWell : public QAbstractButton
{
    Q_OBJECT
public:
    explicit ImageWell(QWidget* parent = nullptr);

    const QString& path() const { return m_path; }
    /// Shows a file without imageChanged(); an empty path shows the empty well.
    void setPath(const QString& path);
    /// Asks the user for a picture file on a click; empty when cancelled.
    void setChooser(std::function<QString()> chooser) { m_chooser = std::move(chooser); }

    /// The extensions taken, without dot.
    static const QStringList& extensions();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user chose or dropped a picture file.
    void imageChanged(const QString& path);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void choose();
    void take(const QString& path);
    static QString droppedPicture(const QMimeData* mime);

    QString m_path;
    QPixmap m_thumbnail;
    std::function<QString()> m_chooser;
};

} // namespace qm
