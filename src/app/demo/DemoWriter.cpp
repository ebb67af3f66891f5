// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoWriter.h"

#include "app/demo/DemoPatient.h"
#include "values/JetValues.h"

namespace orvale {

namespace {

dao::Database &databaseOf(const Practice &practice, const QString &role)
{
    const clivara::HostEnvironment &environment = practice.environment();
    if (role == QLatin1String("codes"))
        return *environment.codes;
    if (role == QLatin1String("third"))
        return *environment.third;
    if (role == QLatin1String("doctors"))
        return *environment.doctors;
    if (role == QLatin1String("events"))
        return *environment.events;
    return *environment.clinical;
}

} // namespace

DemoWriter::DemoWriter(Practice &practice, quint64 seed, QDate lastDay, int years)
    : random(seed)
    , today(lastDay)
    , first(lastDay.addYears(-years).addDays(1))
    , m_practice(practice)
{
}

void DemoWriter::add(const char *database, const char *table, const QVariantList &values)
{
    const QString role = QString::fromLatin1(database);
    const QString name = QString::fromLatin1(table);
    Rows &rows = m_rows[{role, name}];
    if (!rows.insert) {
        dao::Database &target = databaseOf(m_practice, role);
        QStringList fields;
        for (const dao::ColumnInfo &column : target.TableDefs()[name].Fields())
            fields.append(column.name);
        rows.insert = std::make_unique<dao::BulkInsert>(target, name, fields);
    }
    rows.waiting.append(values);
    constexpr qsizetype most = 500;
    if (rows.waiting.size() >= most)
        rows.write();
}

void DemoWriter::Rows::write()
{
    insert->addRows(waiting, [](qsizetype, const dao::Error &error) { throw error; });
    waiting.clear();
}

void DemoWriter::commit(dao::Transaction &transaction)
{
    for (auto &[table, rows] : m_rows)
        rows.write();
    transaction.commit();
}

QVariantList DemoWriter::stamps(const DemoPatient &patient, const QString &section, QDate day)
{
    const QDateTime created = at(day);
    QDateTime modified = created;
    if (random.chance(0.1)) { // changed later, perhaps by a colleague
        const QDate changed = day.addDays(random.between(1, 200));
        if (changed <= today)
            modified = at(changed);
    }
    const QString author = random.chance(0.15) ? random.pick(doctors).uid : patient.owner;
    return {braced(random.uid()), random.uid(),  patient.owner, created, section,
            patient.uid,          patient.owner, modified,      author};
}

QVariant DemoWriter::sentences(const QString &section, double missing, int most)
{
    if (random.chance(missing))
        return {};
    QStringList chosen;
    const int count = random.between(1, most);
    for (int i = 0; i < count; ++i) {
        const QString &sentence = random.pick(lists.words(section));
        if (!chosen.contains(sentence))
            chosen.append(sentence);
    }
    return chosen.join(u' ');
}

QDateTime DemoWriter::at(QDate day)
{
    return clivara::jet::dateTime(day, QTime(random.between(8, 19), random.below(60), random.below(60)));
}

QDateTime DemoWriter::midnight(QDate day)
{
    return clivara::jet::dateTime(day);
}

QString DemoWriter::braced(const QString &uid)
{
    return u'{' + uid.toUpper() + u'}';
}

} // namespace orvale
