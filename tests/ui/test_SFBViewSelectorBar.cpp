// The view-selector bar keeps exactly one item selected, by clicks, keys and program.

#include "Classes/ui/SFBViewSelectorBar.h"
#include "Classes/ui/SFBViewSelectorBarItem.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace qm;

TEST(SFBViewSelectorBar, ExactlyOneItemIsSelected)
{
    SFBViewSelectorBar bar;
    EXPECT_EQ(bar.selectedIndex(), -1);
    QSignalSpy spy(&bar, &SFBViewSelectorBar::selectedIndexChanged);
    SFBViewSelectorBarItem* texture = bar.addItem(QStringLiteral("texture"), QStringLiteral("Texture"));
    SFBViewSelectorBarItem* font = bar.addItem(QStringLiteral("font"), QStringLiteral("Font"));
    SFBViewSelectorBarItem* colour = bar.addItem(QStringLiteral("colour"), QStringLiteral("Colour"));
    bar.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar));
    EXPECT_EQ(bar.selectedItem(), texture);
    const auto checkedCount = [&] {
        int n = 0;
        for (int i = 0; i < bar.count(); ++i)
            n += bar.itemAtIndex(i)->isChecked();
        return n;
    };

    QTest::mouseClick(colour, Qt::LeftButton);
    EXPECT_EQ(bar.selectedIndex(), 2);
    EXPECT_EQ(checkedCount(), 1);
    QTest::mouseClick(colour, Qt::LeftButton); // clicking the selected item keeps it
    EXPECT_EQ(bar.selectedItem(), colour);
    EXPECT_EQ(checkedCount(), 1);

    colour->setFocus();
    QTest::keyClick(colour, Qt::Key_Left);
    EXPECT_EQ(bar.selectedItem(), font);

    ASSERT_TRUE(bar.selectItemWithIdentifier(QStringLiteral("texture")));
    EXPECT_FALSE(bar.selectItemWithIdentifier(QStringLiteral("nothing")));
    bar.setSelectedIndex(7);
    EXPECT_EQ(bar.selectedItem(), texture);
    // Once per change: first item, colour, font, texture.
    QList<int> reported;
    for (const QList<QVariant>& args : spy)
        reported.append(args.at(0).toInt());
    EXPECT_EQ(reported, QList<int>({0, 2, 1, 0}));

    bar.removeItem(texture); // the selected one: its neighbour takes over
    EXPECT_EQ(bar.selectedItem(), font);
    EXPECT_EQ(checkedCount(), 1);
}
