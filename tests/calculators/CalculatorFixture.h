// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FormFixture.h"

namespace clivara {

// The clinical database of a practice in region 03 with patient 17, a man of 60 on 21/11/2026, and nothing else.
class CalculatorFixture : public FormFixture<> {
protected:
    CalculatorFixture()
    {
        createClinical();
        environment.events = create("Eventi.sqlite", {});
        execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (17, 'M', #03/12/1966#)");
        for (const char *row : {"'PED', 'peso', 9, 5", "'EOG', 'peso', 4, 5", "'EOG', 'circonf_addom', 9, 5"})
            execute(QStringLiteral("INSERT INTO DEFCAMPI VALUES ('A', %1)").arg(row));
        state.doctor.region = "03";
    }

    // A day before today as the SQL has it.
    QString daysAgo(int days) const { return clock.today().addDays(-days).toString(u"'#'MM'/'dd'/'yyyy'#'"); }
    // A laboratory result; date and value as the SQL has them.
    void addResult(const char *code, const QString &date, const char *value, int type = 1, int patient = 17)
    {
        ++m_results;
        execute(QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre) VALUES (%1, %2, "
                               "%3, 'E%1', %4)")
                    .arg(m_results)
                    .arg(patient)
                    .arg(type)
                    .arg(date));
        addToLast(code, value);
    }
    // One more result under the header of the last.
    void addToLast(const char *code, const char *value)
    {
        execute(QStringLiteral(
                    "INSERT INTO riepil2 (idriepil2, cod_rie, codice, unita) VALUES (%1, 'E%2', '%3', %4)")
                    .arg(++m_lines)
                    .arg(m_results)
                    .arg(code, value));
    }
    // Sets a field of the last result's line ("unita_Mis = 'µmol/l'").
    void setOfLast(const QString &field)
    {
        execute(QStringLiteral("UPDATE riepil2 SET %1 WHERE idriepil2 = %2").arg(field).arg(m_lines));
    }
    void addPressure(const QString &date, const char *systolic, const char *diastolic)
    {
        execute(QStringLiteral("INSERT INTO esa_ob VALUES (17, %1, %2, %3)").arg(date, systolic, diastolic));
    }
    // An objective examination ("A") or a questionnaire; date and text as the SQL has them. Without a key it
    // gets the next number.
    void addExamination(const char *kind, const QString &date, const QString &text, const QString &key = {})
    {
        ++m_examinations;
        execute(QStringLiteral("INSERT INTO ESAME_OB VALUES (17, '%1', '%2', %3, %4)")
                    .arg(kind, key.isEmpty() ? QString::number(m_examinations) : key, date, text));
    }
    // The lifestyle questionnaire with a code in the characters 96 and 97.
    static QString lifestyle(const char *smoking) { return u'\'' + QString(95, '0') + smoking + "00'"; }

    std::string colour(const char *label) const
    {
        return control(label)->palette().color(QPalette::Active, QPalette::WindowText).name().toStdString();
    }
    // What is remarked beside a field, in red; empty when nothing is.
    std::string remark(const char *field) const
    {
        const auto *const label = control<QLabel>(QStringLiteral("avviso_") + field);
        EXPECT_EQ(label->isVisible(), !label->text().isEmpty()) << field;
        EXPECT_EQ(label->palette().color(QPalette::Active, QPalette::WindowText), QColor(192, 0, 0)) << field;
        return label->text().toStdString();
    }
    void expectRemarks(std::initializer_list<std::pair<const char *, const char *>> ofFields) const
    {
        for (const auto &[field, expected] : ofFields)
            EXPECT_EQ(remark(field), expected) << field;
    }
    std::string focused() const
    {
        return m_form->focusWidget() ? m_form->focusWidget()->objectName().toStdString() : std::string();
    }
    bool enabled(const char *name) const { return control(name)->isEnabled(); }
    // Presses the compute button, which warns and puts the focus on the field that lacks its value.
    void expectWarning(const char *warning, const char *field, const char *box = "Attenzione!|%|warning")
    {
        EXPECT_EQ(boxOf("Button2_0"), QString(box).replace('%', warning).toStdString());
        EXPECT_EQ(m_form->focusWidget(), control(field));
    }
    // The name and the number, as the host gets them.
    QString handedBack() const
    {
        const QVariantList list = state.result.toList();
        return list.size() == 2 ? list[0].toString() + ' ' + QString::number(list[1].toDouble(), 'f', 2)
                                : QStringLiteral("?");
    }

private:
    int m_results = 0;
    int m_lines = 0;
    int m_examinations = 0;
};

} // namespace clivara
