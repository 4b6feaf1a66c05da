#pragma once

// What the panel tests share: a controller that answers from queues, a project wired to a real
// canvas (DejaVu Sans), and user input helpers that go through the widgets' event handlers.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/ColorWellGroup.h"
#include "Classes/ui/Stepper.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <functional>

#include <gtest/gtest.h>

namespace qm::test {

/// The window's side as the panels see it: alerts answered from a queue (the first button when
/// it is empty), choosers answered from queues (cancelled when empty), the publish log kept and
/// handed on.
class QueueController : public TextureController
{
public:
    struct Alert
    {
        QString message;
        QString informativeText;
        QStringList buttons;
    };
    QList<Alert> alerts;
    QList<int> answers;
    QStringList directories;
    QStringList files;
    QString log;
    std::function<void(const QString&)> forwardLog;

    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override
    {
        alerts.append({message, informativeText, buttons});
        return answers.isEmpty() ? 0 : answers.takeFirst();
    }
    void appendPublishLog(const QString& text) override
    {
        log += text;
        if (forwardLog)
            forwardLog(text);
    }
    QString chooseDirectory(const QString&) override
    {
        return directories.isEmpty() ? QString() : directories.takeFirst();
    }
    QString chooseFileToOpen(const QString&, const QStringList&) override
    {
        return files.isEmpty() ? QString() : files.takeFirst();
    }
};

/// The real canvas, counting the glyph-size changes that reach it.
class CountingView : public TextureView
{
public:
    int sizeChanges = 0;
    void changeAllGlyphsSize(int size) override
    {
        ++sizeChanges;
        TextureView::changeAllGlyphsSize(size);
    }
};

/// A project of a few DejaVu Sans glyphs with its canvas, controller and colour-well group.
struct Project
{
    QueueController controller;
    sharedAppState state;
    CountingView view;
    ColorWellGroup wells;

    explicit Project(const QString& letters = QStringLiteral(" ABC"))
    {
        state.setTxtView(&view);
        state.setTxtCont(&controller);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setTextGlyph(letters);
        state.setConfigchanged(false);
    }
};

/// Shows a widget and waits until it is on screen.
inline void present(QWidget& w)
{
    w.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&w));
}

/// A click where the user clicks: on a check box's or radio button's indicator, elsewhere on
/// the middle.
inline void click(QAbstractButton* button)
{
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled()) << button->objectName().toStdString();
    const bool indicator = button->inherits("QCheckBox") || button->inherits("QRadioButton");
    const QPoint at = indicator ? QPoint(8, button->height() / 2) : button->rect().center();
    QTest::mouseClick(button, Qt::LeftButton, {}, at);
}

/// Replaces a field's text by typing, as the user does.
inline void type(QLineEdit* field, const QString& text)
{
    ASSERT_NE(field, nullptr);
    field->setFocus();
    field->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Delete);
    else
        QTest::keyClicks(field, text);
}

/// Types and confirms with Return.
inline void enter(QLineEdit* field, const QString& text)
{
    type(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

/// Chooses the item with a tag in a pop-up with the keyboard (which reports the choice).
inline void choose(QComboBox* popup, int tag)
{
    ASSERT_NE(popup, nullptr);
    const int target = popup->findData(tag);
    ASSERT_GE(target, 0) << "no item tagged " << tag;
    popup->setFocus();
    for (int guard = 0; popup->currentIndex() != target && guard < popup->count(); ++guard)
        QTest::keyClick(popup, popup->currentIndex() < target ? Qt::Key_Down : Qt::Key_Up);
    ASSERT_EQ(popup->currentIndex(), target);
}

/// Lets the event loop run until `done` answers true or the time is up; answers `done`.
inline bool waitUntil(const std::function<bool()>& done, int milliseconds = 5000)
{
    for (int waited = 0; !done() && waited < milliseconds; waited += 10)
        QTest::qWait(10);
    return done();
}

/// A double click as the user's second click arrives.
inline void doubleClick(QWidget* w, QPoint at)
{
    QTest::mouseClick(w, Qt::LeftButton, {}, at);
    QTest::mouseDClick(w, Qt::LeftButton, {}, at);
    QTest::mouseRelease(w, Qt::LeftButton, {}, at);
}

/// One click on a stepper's up (positive) or down (negative) arrow, per step.
inline void step(Stepper* stepper, int steps)
{
    for (int i = 0; i < std::abs(steps); ++i)
        QTest::mouseClick(steps > 0 ? stepper->upButton() : stepper->downButton(), Qt::LeftButton);
}

} // namespace qm::test
