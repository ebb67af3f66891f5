// SPDX-License-Identifier: Apache-2.0
#include "Save.h"

namespace workstations {

namespace {

// A text of 20 to some 3000 characters: from one that fits beside others in a page to one that needs pages of
// its own.
QString textFor(const QString &tag, int number)
{
    const QString sentence = " L'età è 100% \"nota\" [x] {y}; dopo – €.";
    return tag + sentence.repeated(1 + number * 7 % 75);
}

} // namespace

Save makeSave(int worker, int number, int saves)
{
    Save save;
    save.kind = Kind(number % kinds);
    save.worker = worker;
    save.number = number;
    save.patient =
        firstPatient
        + (save.kind == Kind::Allergies ? sharedPatients + worker * (saves / kinds + 1) + number / kinds
                                        : number / kinds % sharedPatients);
    save.date = QDate(1990, 1, 1).addDays(worker * saves + number);
    save.tag = QStringLiteral("w%1-%2").arg(worker).arg(number, 6, 10, QLatin1Char('0'));
    save.text = textFor(save.tag, number);
    return save;
}

int patientsNeeded(int workers, int saves)
{
    return sharedPatients + workers * (saves / kinds + 1);
}

int systolicOf(const Save &save)
{
    return 100 + save.number % 90;
}

int cholesterolOf(const Save &save)
{
    return 150 + save.worker * 10 + save.number % 7;
}

QString hospitalOf(const Save &save)
{
    return QStringLiteral("Ospedale ") + save.tag;
}

QJsonObject Save::toJson() const
{
    return {{"kind", int(kind)},
            {"worker", worker},
            {"number", number},
            {"patient", patient},
            {"date", date.toString(Qt::ISODate)},
            {"tag", tag},
            {"text", text}};
}

Save Save::fromJson(const QJsonObject &object)
{
    Save save;
    save.kind = Kind(object["kind"].toInt());
    save.worker = object["worker"].toInt();
    save.number = object["number"].toInt();
    save.patient = object["patient"].toInt();
    save.date = QDate::fromString(object["date"].toString(), Qt::ISODate);
    save.tag = object["tag"].toString();
    save.text = object["text"].toString();
    return save;
}

} // namespace workstations
