// SPDX-License-Identifier: Apache-2.0
#include "problems/ItemTreeView.h"

#include "controls/ReportDelegate.h"

#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <gtest/gtest.h>

namespace clivara {
namespace {

ItemRow visit(qint32 key, const QStringList &texts)
{
    ItemRow item;
    item.key = key;
    item.date = "21/11/26";
    item.description = "Visita ambulatoriale";
    for (const QString &text : texts)
        item.lines.append({{}, text});
    return item;
}

class ReportViewTest : public testing::Test {
protected:
    ReportViewTest()
    {
        view.setThirdColumn(ItemTreeModel::Third::Kind);
        view.resize(500, 200);
    }
    void show(const QList<ItemRow> &items)
    {
        view.showItems(items, ItemTreeView::Place::FromTheTop);
        view.show();
        QApplication::processEvents();
    }
    QModelIndex line(int item, int row) const
    {
        return view.model()->index(row, ItemTreeModel::Description, view.model()->index(item, 0));
    }
    int height(const QModelIndex &index) const { return view.visualRect(index).height(); }
    // The tool tip of a cell; empty when there is none.
    QString tip(const QModelIndex &index)
    {
        QHelpEvent event(QEvent::ToolTip, QPoint(), QPoint());
        view.itemDelegate()->helpEvent(&event, &view, {}, index);
        return QToolTip::text();
    }

    ItemTreeView view;
};

TEST_F(ReportViewTest, LongTextsTakeThreeLinesAndShowAllInTheTip)
{
    const QString words = QStringLiteral("parola & altra ").repeated(4000); // 60,000 characters
    show({visit(1, {"Note: breve", "Note: a\r\nb", QStringLiteral("Note: ") + words, QString(60000, u'x'),
                    "Note: 1\n2\n3\n4"})});
    const int single = height(line(0, 0));
    const int text = view.fontMetrics().height();
    EXPECT_EQ(height(line(0, 1)), single + text) << "a break in the text is a break in the list";
    for (const int row : {2, 3, 4})
        EXPECT_EQ(height(line(0, row)), single + 2 * text) << row;

    EXPECT_EQ(tip(line(0, 0)), "") << "all of it is to be seen";
    EXPECT_EQ(tip(line(0, 1)), "");
    EXPECT_EQ(tip(line(0, 4)), "<p>Note: 1<br>2<br>3<br>4</p>");
    const QString whole = tip(line(0, 2));
    EXPECT_TRUE(whole.startsWith("<p>Note: parola &amp; altra"));
    EXPECT_TRUE(whole.endsWith("(il testo continua)</p>"));
    EXPECT_LT(whole.size(), 5000) << "no larger than a screen";
    EXPECT_EQ(line(0, 2).data().toString().size(), 6 + words.size()) << "the model has all of it";
    QToolTip::hideText();
}

TEST_F(ReportViewTest, TheCurrentRowIsAlwaysInSight)
{
    QList<ItemRow> items;
    for (int i = 0; i < 30; ++i) // tall rows first, so that a page holds fewer of them than at the end
        items.append(visit(i, {QStringLiteral("lungo ").repeated(i < 15 ? 60 : 1)}));
    show(items);
    view.setFocus();
    for (int step = 0; step < 59; ++step) {
        QTest::keyClick(&view, Qt::Key_Down);
        const QRect row = view.visualRect(view.currentIndex());
        ASSERT_TRUE(view.viewport()->rect().contains(row.center())) << step;
        ASSERT_LE(row.bottom(), view.viewport()->rect().bottom()) << step;
    }
}

TEST_F(ReportViewTest, KeysAskForTheCommands)
{
    show({visit(1, {QStringLiteral("Note: ") + QStringLiteral("molte parole ").repeated(50)})});
    const std::pair<Qt::Key, void (ReportView::*)()> keys[]{{Qt::Key_Insert, &ReportView::insertRequested},
                                                            {Qt::Key_Return, &ReportView::editRequested},
                                                            {Qt::Key_Enter, &ReportView::editRequested},
                                                            {Qt::Key_Delete, &ReportView::deleteRequested}};
    for (const auto &[key, signal] : keys) {
        QSignalSpy spy(&view, signal);
        QTest::keyClick(&view, key);
        EXPECT_EQ(spy.count(), 1) << key;
        QTest::keyClick(&view, key, Qt::ControlModifier);
        EXPECT_EQ(spy.count(), 1) << "with Ctrl it means something else";
    }
    view.setCurrentIndex(line(0, 0));
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(QToolTip::text().count("molte parole"), 50) << "the whole text without a mouse";
    QToolTip::hideText();
}

TEST_F(ReportViewTest, ReadAgainTheListStaysWhereItWas)
{
    QList<ItemRow> items;
    for (int i = 0; i < 100; ++i)
        items.append(visit(i, {"Note: x"}));
    show(items);
    view.selectVisit(60);
    const QRect before = view.visualRect(view.currentIndex());
    items[60].description = "Altro";
    view.showItems(items, ItemTreeView::Place::AsBefore);
    EXPECT_EQ(view.selectedVisit(), 60);
    EXPECT_EQ(view.visualRect(view.currentIndex()), before);

    items.removeAt(60);
    view.showItems(items, ItemTreeView::Place::AsBefore);
    EXPECT_EQ(view.selectedVisit(), std::nullopt) << "never another one in its place";
    view.goTo(ItemRow::Kind::Test);
    EXPECT_EQ(view.selectedVisit(), std::nullopt) << "there is none to go to";
    view.goTo(ItemRow::Kind::Visit);
    EXPECT_EQ(view.selectedVisit(), 0);
}

TEST_F(ReportViewTest, ColumnsFillTheView)
{
    show({visit(1, {})});
    for (const int width : {400, 1200}) {
        view.resize(width, 200);
        QApplication::processEvents();
        int sum = 0;
        for (int column = 0; column < ItemTreeModel::ColumnCount; ++column)
            sum += view.isColumnHidden(column) ? 0 : view.columnWidth(column);
        EXPECT_EQ(sum, view.viewport()->width());
        EXPECT_TRUE(view.isColumnHidden(ItemTreeModel::CodPre) && view.isColumnHidden(ItemTreeModel::Minsan));
        EXPECT_GE(view.visualRect(view.model()->index(0, 0)).width(),
                  view.iconSize().width() + QFontMetrics(view.font()).horizontalAdvance("21/11/26"));
    }
}

} // namespace
} // namespace clivara
