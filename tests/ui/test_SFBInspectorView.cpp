// Collapsible inspector panes, driven by clicks and keys.

#include "Classes/ui/SFBInspectorView.h"

#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace qm;

TEST(SFBInspectorView, HeaderClicksAndKeysCollapseAndExpandTheBody)
{
    SFBInspectorView view;
    auto* texture = new QLabel(QStringLiteral("texture settings"));
    auto* packing = new QLabel(QStringLiteral("packing settings"));
    ASSERT_TRUE(view.addPane(QStringLiteral("texture"), QStringLiteral("Texture"), texture));
    ASSERT_TRUE(view.addPane(QStringLiteral("packing"), QStringLiteral("Packing"), packing));
    EXPECT_FALSE(view.addPane(QStringLiteral("packing"), QStringLiteral("Again"), new QLabel(&view)));
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QSignalSpy spy(&view, &SFBInspectorView::paneExpandedChanged);

    QWidget* header = view.paneHeader(QStringLiteral("texture"));
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->objectName(), QStringLiteral("textureHeader"));
    EXPECT_TRUE(texture->isVisible());
    const int packingTop = packing->mapTo(&view, QPoint()).y();

    QTest::mouseClick(header, Qt::LeftButton);
    EXPECT_FALSE(texture->isVisible());
    EXPECT_FALSE(view.isPaneExpanded(QStringLiteral("texture")));
    EXPECT_TRUE(packing->isVisible());
    // Layout requests travel up one level per round of posted events.
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    EXPECT_LT(packing->mapTo(&view, QPoint()).y(), packingTop) << "the next pane moves up";

    QTest::keyClick(header, Qt::Key_Space);
    EXPECT_TRUE(texture->isVisible());
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("texture"));
    EXPECT_FALSE(spy.at(0).at(1).toBool());
    EXPECT_TRUE(spy.at(1).at(1).toBool());
    // Asking for the state a pane is in already tells nobody.
    view.setPaneExpanded(QStringLiteral("texture"), true);
    EXPECT_EQ(spy.count(), 2);
}

TEST(SFBInspectorView, PanesRememberTheirStateAcrossRemovalAndSessions)
{
    SFBInspectorView view;
    view.addPane(QStringLiteral("font"), QStringLiteral("Font"), new QLabel);
    view.addPane(QStringLiteral("output"), QStringLiteral("Output"), new QLabel);
    view.insertPane(0, QStringLiteral("colour"), QStringLiteral("Colour"), new QLabel);
    EXPECT_EQ(view.paneIdentifiers(), QStringList({"colour", "font", "output"}));

    view.setPaneExpanded(QStringLiteral("font"), false);
    QPointer<QWidget> body = view.takePane(QStringLiteral("font"));
    ASSERT_FALSE(body.isNull());
    EXPECT_EQ(body->parent(), nullptr);
    EXPECT_EQ(view.count(), 2);
    view.addPane(QStringLiteral("font"), QStringLiteral("Font"), body);
    EXPECT_FALSE(view.isPaneExpanded(QStringLiteral("font")));
    EXPECT_FALSE(body->isVisibleTo(&view));

    const QByteArray saved = view.saveState();
    SFBInspectorView next;
    ASSERT_TRUE(next.restoreState(saved));
    next.addPane(QStringLiteral("output"), QStringLiteral("Output"), new QLabel);
    next.addPane(QStringLiteral("font"), QStringLiteral("Font"), new QLabel);
    EXPECT_TRUE(next.isPaneExpanded(QStringLiteral("output")));
    EXPECT_FALSE(next.isPaneExpanded(QStringLiteral("font")));
    EXPECT_FALSE(next.restoreState(QByteArray("not a saved state")));

    view.removePane(QStringLiteral("font"));
    EXPECT_TRUE(body.isNull()) << "a removed pane's body is deleted";
}
