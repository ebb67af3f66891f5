// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormFixture.h"
#include "FormNotes.h"
#include "ProblemFixture.h"

#include <QAction>
#include <QTreeView>

namespace clivara {

// Forms with lists, driven by their controls.
class ListFixture : public FormFixture<ProblemFixture> {
protected:
    ListFixture() { state.forms = &forms; }

    void trigger(const char *entry) const { control<QAction>(entry)->trigger(); }
    void key(const char *list, Qt::Key pressed) const { QTest::keyClick(control(list), pressed); }
    // With the mouse, by its place in the model: "2" or "2.0" for the first line below row 2.
    void clickRow(const char *list, const char *row, bool twice = false,
                  Qt::KeyboardModifiers keys = {}) const
    {
        auto *view = control<QTreeView>(list);
        QModelIndex index;
        for (const QString &part : QString(row).split('.'))
            index = view->model()->index(part.toInt(), index.isValid() ? 0 : 1, index.siblingAtColumn(0));
        view->scrollTo(index);
        const QPoint place = view->visualRect(index.siblingAtColumn(1)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, keys, place);
        if (twice)
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, keys, place);
    }

    // The visible columns of all rows, the lines below a row after "  ".
    QStringList rows(const char *list) const
    {
        const auto *view = control<QTreeView>(list);
        QStringList texts;
        const std::function<void(const QModelIndex &, const QString &)> append =
            [&](const QModelIndex &parent, const QString &indent) {
                for (int row = 0; row < view->model()->rowCount(parent); ++row) {
                    QStringList cells;
                    for (int column = 0; column < view->model()->columnCount(); ++column) {
                        if (!view->isColumnHidden(column))
                            cells.append(view->model()->index(row, column, parent).data().toString());
                    }
                    texts.append(indent + cells.join(u'|'));
                    append(view->model()->index(row, 0, parent), indent + QStringLiteral("  "));
                }
            };
        append({}, {});
        return texts;
    }
    QStringList columns(const char *list) const
    {
        const auto *view = control<QTreeView>(list);
        QStringList titles;
        for (int column = 0; column < view->model()->columnCount(); ++column) {
            if (!view->isColumnHidden(column))
                titles.append(view->model()->headerData(column, Qt::Horizontal).toString());
        }
        return titles;
    }

    qint32 addVisit(const QString &problem, const QString &date, const QString &fields = {},
                    const QString &values = {})
    {
        execute(
            QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl, DataReg, idtipo%1) "
                           "VALUES (%2, 17, %3, %4, 1%5)")
                .arg(fields.isEmpty() ? QString() : ", " + fields)
                .arg(++m_visits)
                .arg(problem, date, values.isEmpty() ? QString() : ", " + values));
        return m_visits;
    }
    void addDrug(int key, const QString &date, const QString &diagnosis)
    {
        execute(
            QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre, num_conf, cod_dia) "
                           "VALUES (%1, 17, 0, 'M1', %2, 2, %3)")
                .arg(key)
                .arg(date, diagnosis));
    }

    FormNotes forms;

private:
    qint32 m_visits = 0;
};

} // namespace clivara
