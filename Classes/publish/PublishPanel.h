#pragma once

#include "Classes/model/PublishTarget.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace qm {

class TextureController;
class sharedAppState;

/// The publish targets of one project as the publish sheet shows them: the ordered names of the
/// target table (`targetArray`), its selected row, the detail fields bound to the selected
/// record, and every operation of the sheet's target buttons. Records live in the project's
/// `targetsPublish`; this object keeps only what the sheet shows. Messages go to the
/// controller's publish log; without a controller they are dropped.
class PublishPanel
{
public:
    /// The sheet's detail fields, named after the controls they stand for. A desktop sheet binds
    /// its widgets to them; the quality and format pop-ups are given by tag.
    struct Fields
    {
        QString targetPath;
        QString targetFile;
        QString targetExtension = PublishTarget::unsetSuffix;
        QString targetFontFace;
        QString targetScale = QStringLiteral("100.0000");
        int targetScaleQuality = 1;
        int targetFormat = 0;
        bool targetCheckTexture = true;
        bool targetCheckCoords = true;
        bool targetRedraw = false;
        bool targetAutoClose = false;

        bool operator==(const Fields&) const = default;
    };

    /// No row is selected.
    static constexpr int noSelection = -1;

    PublishPanel(sharedAppState& state, TextureController* controller);

    const QStringList& targetArray() const { return m_targetArray; }
    Fields& fields() { return m_fields; }
    const Fields& fields() const { return m_fields; }

    /// The table's selected row, or noSelection. A row past the end of the list counts as none.
    int selectedRow() const;
    /// Stores the selection only; the sheet calls targetselectionchanged() after it, as the
    /// table's notification does.
    void setSelectedRow(int row) { m_selectedRow = row; }
    /// What a click on a row does: select it and show its record.
    void selectRow(int row);

    /// Called whenever the names changed and the table has to reload.
    void setReloadHandler(std::function<void()> handler) { m_reload = std::move(handler); }
    /// Called after displayTargetDetails() refilled the fields.
    void setDisplayHandler(std::function<void()> handler) { m_display = std::move(handler); }

    /// Stores a record with the new-target defaults under the name at that row.
    void createDetailsAtIndex(int row);
    /// Shows the selected row's record (row 0 when none is selected), creating it first when
    /// that name has no record yet.
    void targetselectionchanged();
    /// Copies a record into the fields.
    void displayTargetDetails(const PublishTarget& record);
    /// Stores the fields as the record of the selected row (row 0 when none is selected) and
    /// marks the project changed; called after any edit of a field.
    void updateTargetVisibleDetails();
    /// Stores a record under a name.
    void setTargetDetails(const PublishTarget& record, const QString& name);

    /// Appends "New" unless the list already holds it. Its record is made on first selection.
    void targetPlus();
    /// Removes the selected target; the first row is never removed. Refreshes the fields.
    void targetMinus();
    /// Adds "<name> copy" of the selected target with an unset suffix, unless a record of
    /// that name exists.
    void targetDuplicate();
    /// The table's commit of an edited name: renames the target at that row unless a record of
    /// the new name exists. A row whose record was never made gets one with the defaults.
    void setObjectValue(const QString& newName, int row);

    /// Scaled copies of the selected target, named "50%", "25%", "46.8%" and "23.4%", at
    /// exactly 50, 25, 46.875 and 23.4375 percent of its scale.
    void target50();
    void target25();
    void target46();
    void target23();

    /// Fills the last target's record from the record at `sourceRow`, its scale multiplied by
    /// `factor` percent and its suffix unset.
    void UpdateDetailsScale(int sourceRow, double factor);
    /// Stores a complete record under `name` (texture, coordinates and redraw on, quality 1, no
    /// face). `row` is where the wizard has put the name; the record is found by name.
    void updateDetailsAtIndex(int row, const QString& directory, const QString& file, const QString& suffix,
                              const QString& scale, const QString& name, int format);
    /// True, after reporting it, when the list already holds the name.
    bool checkDuplicate(const QString& name);
    /// Logs "\n[error] Target '<name>' already exists.".
    void targetAlreadyExists(const QString& name);

    /// Rebuilds the list from the stored records after a project was opened, and derives
    /// targets from the older single-output settings when there are none. Clears the selection.
    void loadPublishSettings();
    /// Copies the auto-close box into the project's `publishautoclose`.
    void publishAutoClose();

    /// Empties the list and removes every stored record (the wizard's start).
    void removeAllTargets();
    /// Appends a name to the list without any check.
    void appendTarget(const QString& name);
    /// Tells the sheet to reload the table.
    void reloadData();

    /// A record with the new-target defaults: "file" is the project file's base name, or empty
    /// while the project has not been saved.
    PublishTarget defaultRecord(const QString& name) const;

private:
    void addScaledCopy(const QString& name, double factor);
    /// The selected row, or 0 when none is selected; -1 when the list is empty.
    int rowOrFirst() const;
    bool hasRecordNamed(const QString& mainname) const;
    PublishTarget recordAt(int row);

    sharedAppState& m_state;
    TextureController* m_controller;
    QStringList m_targetArray;
    int m_selectedRow = noSelection;
    Fields m_fields;
    std::function<void()> m_reload;
    std::function<void()> m_display;
};

} // namespace qm
