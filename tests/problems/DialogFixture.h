// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ListFixture.h"
#include "TestConflicts.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSqlQuery>

namespace clivara {

// Dialogs in which the doctor writes, driven by their controls.
class DialogFixture : public ListFixture {
protected:
    // Enters a field, replaces its text by typing and stays there; CR is a line end.
    void type(const char *name, const QString &text) const
    {
        QWidget *const field = control(name);
        field->setFocus(Qt::TabFocusReason);
        if (auto *line = qobject_cast<QLineEdit *>(field))
            line->selectAll();
        else
            control<QPlainTextEdit>(name)->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        if (auto *line = qobject_cast<QLineEdit *>(field))
            line->home(false);
        int lines = 0;
        for (const QString &line : text.split(u'\r')) {
            if (lines++ > 0)
                QTest::keyClick(field, Qt::Key_Return);
            QTest::keyClicks(field, line);
        }
    }
    std::string value(const char *name) const
    {
        QWidget *const field = control(name);
        if (const auto *line = qobject_cast<QLineEdit *>(field))
            return line->displayText().toStdString();
        if (const auto *list = qobject_cast<QComboBox *>(field))
            return list->currentText().toStdString();
        if (const auto *button = qobject_cast<QAbstractButton *>(field))
            return button->text().toStdString();
        return control<QPlainTextEdit>(name)->toPlainText().toStdString();
    }
    void choose(const char *list, const char *entry) const
    {
        auto *box = control<QComboBox>(list);
        const int index = box->findText(QString::fromUtf8(entry));
        ASSERT_GE(index, 0) << entry;
        box->setCurrentIndex(index);
    }
    // What is to be done after the current change of focus.
    static void settle() { QCoreApplication::processEvents(); }

    // While it lives no row of the table can be added or, with "UPDATE", changed.
    class RefusedRows {
    public:
        RefusedRows(dao::Database &database, const char *table, const char *event)
            : m_database(database)
        {
            run(QStringLiteral(
                    "CREATE TRIGGER \"%1\".refuse BEFORE %3 ON %2 BEGIN SELECT RAISE(ABORT, 'no'); END")
                    .arg(database.nativeSchema(), table, event));
        }
        ~RefusedRows() { run(QStringLiteral("DROP TRIGGER \"%1\".refuse").arg(m_database.nativeSchema())); }

    private:
        void run(const QString &sql)
        {
            QSqlQuery query(m_database.nativeConnection());
            EXPECT_TRUE(query.exec(sql)) << sql.toStdString();
        }
        dao::Database &m_database;
    };
    struct NoNewRows : RefusedRows {
        NoNewRows(dao::Database &database, const char *table)
            : RefusedRows(database, table, "INSERT")
        {
        }
    };
    struct NoUpdates : RefusedRows {
        NoUpdates(dao::Database &database, const char *table)
            : RefusedRows(database, table, "UPDATE")
        {
        }
    };

    // Presses a button that brings up one box; the box as "title|text|icon".
    std::string boxOf(const char *button, PromptButton answer = PromptButton::Ok)
    {
        const auto before = prompts.boxes.size();
        prompts.queue(answer);
        control(button)->setFocus(Qt::MouseFocusReason);
        click(button);
        settle();
        EXPECT_EQ(prompts.boxes.size(), before + 1);
        return prompts.last().toStdString();
    }

    // Saves with the button while another workstation has changed the record; what the doctor is told.
    std::string conflictOf(const char *button, ConflictChoice choice)
    {
        std::string told;
        forms.act = [&] {
            told = toldOf(state);
            state.conflict.choice = choice;
        };
        click(button);
        settle();
        EXPECT_EQ(forms.take(), "Conflitto");
        forms.act = {};
        return told;
    }

    static constexpr auto save = "chameleonButton1_0";
    static constexpr auto leave = "chameleonButton1_1";
    inline static const std::string notSaved =
        "Attenzione!|Salvataggio non riuscito: l'archivio è occupato o non si può scrivere.\n"
        "Niente è stato salvato. Quanto scritto resta nella finestra: riprovare tra poco.|warning";
};

} // namespace clivara
