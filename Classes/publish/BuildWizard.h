#pragma once

#include <QList>
#include <QString>

namespace qm {

class PublishPanel;
class TextureController;
class sharedAppState;

/// The build-settings wizard: replaces every publish target of a project with a ready-made set
/// for a family of screen densities. The fields stand for the wizard sheet's controls; the
/// targets are stored through the publish panel, which also keeps the target list.
class BuildWizard
{
public:
    /// The sheet's controls: directory and font name text, preset and format pop-ups by tag.
    struct Fields
    {
        QString wizDirectory;
        QString wizFontName;
        int wizOption = 0;
        int wizFormat = 1;
    };

    BuildWizard(sharedAppState& state, PublishPanel& panel, TextureController* controller);

    Fields& fields() { return m_fields; }
    const Fields& fields() const { return m_fields; }

    /// The format codes of the format pop-up's items, in menu order. The first item is code 1,
    /// the one presets 4 and 5 force, so that it is the item those presets leave visible.
    static const QList<int>& wizFormatItems();
    /// Whether the format item at that menu index is shown.
    bool wizFormatItemVisible(int index) const;

    /// The preset pop-up changed to `tag`: presets 4 and 5 select format 1 and hide the other
    /// items among the first seven; any other preset shows the first seven again. Items past
    /// the seventh keep their state.
    void wizOption(int tag);

    /// Asks for a directory and puts the chosen path into the directory field.
    void wizDirectoryButton();

    /// Checks the fields, asks for confirmation, replaces all targets by the chosen preset and
    /// closes. Answers true when the targets were replaced (and the wizard closed), false when
    /// the wizard stays open.
    bool wizBuild();
    /// Refreshes the target panel, reloads the target table and marks the project changed; the
    /// sheet then goes back to the publish sheet.
    void wizClose();
    /// Asks whether to replace the targets; true for the first button ("yes"). Without a
    /// controller nobody can object, so the answer is yes.
    bool wizCanBuild();
    /// Shows the incomplete-settings alert.
    void alertWizIncomplete();

    /// The directory of a preset-4/5 target: the directory field extended by
    /// "<font name>.bmfont/<resources>". A "file:" URL in the field is used as its local path;
    /// any other text is taken as a plain path as typed (so paths with blanks, which are no
    /// valid URL text, still work).
    QString resourcesDirectory(const QString& resources) const;

private:
    sharedAppState& m_state;
    PublishPanel& m_panel;
    TextureController* m_controller;
    Fields m_fields;
    QList<bool> m_formatItemVisible;
};

} // namespace qm
