// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ScenarioReports.h"

#include "app/scenario/ControlReading.h"
#include "controls/ReportView.h"
#include "dao/Dao.h"
#include "support/PatientHeader.h"
#include "support/ui/ChartForm.h"
#include "values/JetValues.h"

#include <QJsonArray>

namespace orvale {

namespace {

QJsonValue jsonValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QJsonValue::Null;
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::Float:
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QDateTime:
    case QMetaType::QDate:
        return clivara::jet::storedDate(value.toDateTime());
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toHex());
    default:
        return value.toString();
    }
}

} // namespace

JsonLine formReport(const clivara::ChartForm *form)
{
    return JsonLine()
        .add(QStringLiteral("form"), form ? QJsonValue(form->objectName()) : QJsonValue())
        .add(QStringLiteral("caption"), form ? QJsonValue(form->windowTitle()) : QJsonValue());
}

JsonLine controlReport(const QString &name, const QWidget &control)
{
    JsonLine line;
    line.add(QStringLiteral("control"), name)
        .add(QStringLiteral("text"), shownText(control))
        .add(QStringLiteral("color"), shownColor(control).name())
        .add(QStringLiteral("enabled"), control.isEnabled())
        .add(QStringLiteral("visible"), control.isVisible());
    if (const auto checked = shownChecked(control))
        line.add(QStringLiteral("checked"), *checked);
    return line;
}

JsonLine rowsReport(const QString &name, const QWidget &control)
{
    const ShownRows shown = shownRows(control);
    QJsonArray rows;
    for (const QStringList &row : shown.rows)
        rows.append(QJsonArray::fromStringList(row));
    JsonLine line;
    line.add(QStringLiteral("control"), name)
        .add(QStringLiteral("columns"), QJsonArray::fromStringList(shown.columns))
        .add(QStringLiteral("rows"), rows)
        .add(QStringLiteral("selected"), shown.selected);
    if (const auto *const view = qobject_cast<const clivara::ReportView *>(&control);
        view && view->isUnread())
        line.add(QStringLiteral("unread"), true);
    return line;
}

JsonLine boxesReport(const QList<ScenarioPrompts::Box> &boxes)
{
    QList<JsonLine> lines;
    for (const auto &[prompt, answer] : boxes) {
        QJsonArray buttons;
        for (const clivara::PromptButton button : prompt.buttons)
            buttons.append(clivara::promptButtonName(button));
        lines.append(JsonLine()
                         .add(QStringLiteral("title"), prompt.title)
                         .add(QStringLiteral("text"), prompt.text)
                         .add(QStringLiteral("icon"), clivara::promptIconName(prompt.icon))
                         .add(QStringLiteral("buttons"), buttons)
                         .add(QStringLiteral("answer"), clivara::promptButtonName(answer)));
    }
    return JsonLine().add(QStringLiteral("boxes"), lines);
}

JsonLine headerReport(const clivara::PatientHeader &header)
{
    JsonLine values;
    values.add(QStringLiteral("patientCode"), header.patientCode)
        .add(QStringLiteral("fiscalCode"), header.fiscalCode)
        .add(QStringLiteral("telephone"), header.telephone)
        .add(QStringLiteral("birthplace"), header.birthplace)
        .add(QStringLiteral("birthDate"), header.birthDate)
        .add(QStringLiteral("age"), header.age)
        .add(QStringLiteral("address"), header.address)
        .add(QStringLiteral("city"), header.city)
        .add(QStringLiteral("province"), header.province)
        .add(QStringLiteral("sex"), header.sex)
        .add(QStringLiteral("healthCard"), header.healthCard)
        .add(QStringLiteral("exemptionPathology"), header.exemptionPathology)
        .add(QStringLiteral("exemptionInvalidity"), header.exemptionInvalidity)
        .add(QStringLiteral("surname"), header.surname)
        .add(QStringLiteral("name"), header.name);
    return JsonLine().add(QStringLiteral("header"), values);
}

JsonLine settingReport(const QString &name, const QVariant &value)
{
    return JsonLine()
        .add(QStringLiteral("setting"), name)
        .add(QStringLiteral("value"), value.isValid() ? QJsonValue(value.toString()) : QJsonValue());
}

JsonLine queryReport(dao::Database &database, const QString &sql)
{
    const auto recordset = database.OpenRecordset(sql, dao::RecordsetType::Snapshot);
    QJsonArray columns;
    for (int column = 0; column < recordset->FieldCount(); ++column)
        columns.append(recordset->Fields(column).Name());
    QJsonArray rows;
    for (; !recordset->Eof(); recordset->MoveNext()) {
        QJsonArray row;
        for (int column = 0; column < recordset->FieldCount(); ++column)
            row.append(jsonValue(recordset->Fields(column).Value()));
        rows.append(row);
    }
    return JsonLine().add(QStringLiteral("columns"), columns).add(QStringLiteral("rows"), rows);
}

} // namespace orvale
