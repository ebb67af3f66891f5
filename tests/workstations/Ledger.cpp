// SPDX-License-Identifier: Apache-2.0
#include "Ledger.h"

#include <QJsonDocument>
#include <stdexcept>
#include <unistd.h>

namespace workstations {

namespace {

const auto event = QStringLiteral("event");
const auto begin = QStringLiteral("begun");
const auto done = QStringLiteral("done");
const auto box = QStringLiteral("shown");

} // namespace

Ledger::Ledger(const QString &path)
    : m_file(path)
{
    if (!m_file.open(QIODevice::Append))
        throw std::runtime_error("the ledger cannot be written: " + path.toStdString());
}

void Ledger::write(const QJsonObject &line)
{
    m_file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    if (!m_file.flush() || ::fsync(m_file.handle()) != 0)
        throw std::runtime_error("the ledger cannot be written");
}

void Ledger::begun(const Save &save)
{
    QJsonObject line = save.toJson();
    line[event] = begin;
    write(line);
}

void Ledger::acknowledged(const Save &save, qint64 openedMs, qint64 savedMs)
{
    write({{event, done}, {"tag", save.tag}, {"opened", openedMs}, {"saved", savedMs}});
}

void Ledger::shown(const Save &save, const QString &text)
{
    write({{event, box}, {"tag", save.tag}, {"text", text}});
}

Account Account::read(const QString &path)
{
    Account account;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return account;
    while (!file.atEnd()) {
        const QJsonDocument document = QJsonDocument::fromJson(file.readLine());
        if (!document.isObject())
            continue;
        const QJsonObject line = document.object();
        const QString tag = line["tag"].toString();
        if (line[event] == begin) {
            account.entries.append({Save::fromJson(line)});
        } else if (line[event] == done && !account.entries.isEmpty()
                   && account.entries.last().save.tag == tag) {
            Entry &entry = account.entries.last();
            entry.isAcknowledged = true;
            entry.openedMs = line["opened"].toInteger();
            entry.savedMs = line["saved"].toInteger();
        } else if (line[event] == box) {
            account.shown.append(tag + QStringLiteral(": ") + line["text"].toString());
        }
    }
    return account;
}

} // namespace workstations
