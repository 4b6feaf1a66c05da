#pragma once

#include <QHash>
#include <QWidget>

#include <memory>
#include <vector>

class QVBoxLayout;

namespace qm {

/// A vertical stack of collapsible panes. Each pane is a header (a disclosure triangle and a
/// title; a click, Space or Return toggles it) over a body widget that the host fills. The view
/// remembers each identifier's expanded state, also across removing and adding the pane again,
/// and can save and restore those states. Put it in a QScrollArea (widgetResizable) when the
/// panes may be taller than the window.
class SFBInspectorView : public QWidget
{
    Q_OBJECT
public:
    explicit SFBInspectorView(QWidget* parent = nullptr);
    ~SFBInspectorView() override;

    /// Adds a pane at the end (see insertPane).
    bool addPane(const QString& identifier, const QString& title, QWidget* body);
    /// Inserts a pane before `index` (clamped to 0..count). The view takes `body` (reparented,
    /// deleted with the pane). A pane starts in its remembered state, expanded when there is
    /// none. False, taking nothing, for an empty or already used identifier or a null body.
    bool insertPane(int index, const QString& identifier, const QString& title, QWidget* body);
    /// Removes a pane and hands its body back unparented (the caller owns it); null when there
    /// is no such pane. The pane's expanded state stays remembered.
    QWidget* takePane(const QString& identifier);
    /// Removes a pane and deletes its body.
    void removePane(const QString& identifier);

    int count() const { return int(m_panes.size()); }
    QStringList paneIdentifiers() const;
    int indexOfPane(const QString& identifier) const;
    QWidget* paneBody(const QString& identifier) const;
    /// The clickable header; its objectName is the identifier followed by "Header".
    QWidget* paneHeader(const QString& identifier) const;
    QString paneTitle(const QString& identifier) const;
    void setPaneTitle(const QString& identifier, const QString& title);

    bool isPaneExpanded(const QString& identifier) const;
    /// Shows or hides the pane's body; remembered for the identifier. Unknown identifiers are
    /// only remembered.
    void setPaneExpanded(const QString& identifier, bool expanded);
    void togglePane(const QString& identifier);

    /// The remembered states of every identifier seen, for the host to keep between sessions.
    QByteArray saveState() const;
    /// Applies saved states to the panes present and remembers them for panes added later.
    /// False, changing nothing, for data that saveState() did not write.
    bool restoreState(const QByteArray& state);

signals:
    /// A pane was expanded or collapsed (by the user or by setPaneExpanded).
    void paneExpandedChanged(const QString& identifier, bool expanded);

private:
    struct Pane;
    Pane* find(const QString& identifier) const;
    void apply(Pane& pane, bool expanded);

    std::vector<std::unique_ptr<Pane>> m_panes;
    QHash<QString, bool> m_rememberedStates;
    QVBoxLayout* m_layout;
};

} // namespace qm
