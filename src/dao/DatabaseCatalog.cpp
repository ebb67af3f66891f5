// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabaseCatalog.h"

#include <QRegularExpression>

namespace dao {
namespace {

const QString linksTable = QStringLiteral("engine_links");

QString folded(QStringView name)
{
    return name.toString().toCaseFolded();
}

QString nativeLinks(const Attachment &attachment)
{
    const Dialect &dialect = attachment.session->dialect();
    return dialect.identifier(attachment.schema) + u'.' + dialect.identifier(linksTable);
}

// A connect text is a list of KEY=value, each behind a semicolon. A folder's name may hold both signs, too; no
// value behind the path holds a slash.
QRegularExpressionMatch pathIn(const QString &connect)
{
    static const QRegularExpression path(
        QStringLiteral("(?:^|;)\\s*DATABASE=\\s*(.+?)\\s*(?:;[A-Za-z ]+=[^/]*)?;?$"),
        QRegularExpression::CaseInsensitiveOption);
    return path.match(connect);
}

Error tableNotFound(const QString &name)
{
    return Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(name));
}

} // namespace

QString TableLink::path(const QString &connect)
{
    return pathIn(connect).captured(1);
}

QString TableLink::withPath(QString connect, const QString &path)
{
    const QRegularExpressionMatch found = pathIn(connect);
    return found.hasMatch() ? connect.replace(found.capturedStart(1), found.capturedLength(1), path)
                            : connect;
}

DatabaseCatalog::DatabaseCatalog(std::shared_ptr<Attachment> attachment)
    : m_attachment(std::move(attachment))
{
}

std::shared_ptr<const TableSet> DatabaseCatalog::tables() const
{
    const Session &session = *m_attachment->session;
    if (m_tables && m_tables->generation == session.definitionsGeneration())
        return m_tables;
    auto tables = std::make_shared<TableSet>();
    tables->generation = session.definitionsGeneration();
    tables->version = session.storage().definitionVersion(m_attachment->schema);
    tables->names = session.storage().tables(m_attachment->schema);
    tables->hasLinks = tables->names.removeAll(linksTable) > 0;
    for (const QString &name : std::as_const(tables->names))
        tables->own.insert(folded(name), name);
    if (tables->hasLinks) {
        const auto links =
            session.select(QStringLiteral("SELECT name, connect, source FROM %1 ORDER BY position")
                               .arg(nativeLinks(*m_attachment)));
        while (links->next()) {
            const TableLink link{links->value(0).toString(), shownConnect(links->value(1).toString()),
                                 links->value(2).toString()};
            tables->names.append(link.name);
            tables->links.insert(folded(link.name), link);
        }
    }
    m_tables = tables;
    return m_tables;
}

QString DatabaseCatalog::storedConnect(const QString &connect) const
{
    const QString path = TableLink::path(connect);
    return path.isEmpty() ? connect
                          : TableLink::withPath(
                              connect, m_attachment->session->storage().linkedName(path, m_attachment->name));
}

QString DatabaseCatalog::shownConnect(const QString &connect) const
{
    const QString path = TableLink::path(connect);
    return path.isEmpty()
               ? connect
               : TableLink::withPath(connect,
                                     m_attachment->session->storage().nameOfLinked(path, m_attachment->name));
}

bool DatabaseCatalog::contains(QStringView name) const
{
    const QString key = folded(name);
    return tables()->own.contains(key) || tables()->links.contains(key);
}

const TableLink *DatabaseCatalog::link(QStringView name) const
{
    const std::shared_ptr<const TableSet> set = tables();
    const auto found = set->links.constFind(folded(name));
    return found == set->links.constEnd() ? nullptr : &*found;
}

const TableInfo *DatabaseCatalog::table(QStringView name) const
{
    const std::shared_ptr<const TableSet> set = tables();
    const QString key = folded(name);
    const auto described = set->described.constFind(key);
    if (described != set->described.constEnd())
        return described->get();
    std::shared_ptr<const TableInfo> info;
    if (const auto own = set->own.constFind(key); own != set->own.constEnd()) {
        const Session &session = *m_attachment->session;
        info = std::make_shared<TableInfo>(session.storage().describe(m_attachment->schema, *own));
    } else if (const auto link = set->links.constFind(key); link != set->links.constEnd()) {
        if (m_withheld.contains(key))
            throw Error(InvalidOperation,
                        QStringLiteral("La tabella '%1' non è collegata a questo archivio").arg(link->name));
        info = describeLink(*link, *set);
    } else {
        return nullptr;
    }
    set->described.insert(key, info);
    return info.get();
}

std::shared_ptr<const TableInfo> DatabaseCatalog::describeLink(const TableLink &link,
                                                               const TableSet &set) const
{
    Session &session = *m_attachment->session;
    const std::shared_ptr<Attachment> target = session.attach(TableLink::path(link.connect), false);
    const QStringList names = session.storage().tables(target->schema);
    for (const QString &name : names) {
        if (name.compare(link.source, Qt::CaseInsensitive) != 0)
            continue;
        auto info = std::make_shared<TableInfo>(session.storage().describe(target->schema, name));
        info->name = link.name;
        if (!set.attachments.contains(target))
            set.attachments.append(target);
        return info;
    }
    throw tableNotFound(link.source);
}

bool DatabaseCatalog::isOutdated() const
{
    if (!m_tables)
        return false;
    const Session &session = *m_attachment->session;
    return session.storage().definitionVersion(m_attachment->schema) != m_tables->version;
}

void DatabaseCatalog::setLink(const TableLink &link)
{
    const TableSet unused;
    describeLink(link, unused);
    Session &session = *m_attachment->session;
    const QString links = nativeLinks(*m_attachment);
    Atomic atomic(session);
    prepareLinks();
    const TableLink *existing = this->link(link.name);
    if (existing)
        session.execute(QStringLiteral("UPDATE %1 SET connect = ?, source = ? WHERE name = ?").arg(links),
                        {storedConnect(link.connect), link.source, existing->name});
    else
        session.execute(QStringLiteral("INSERT INTO %1 (name, connect, source) VALUES (?, ?, ?)").arg(links),
                        {link.name, storedConnect(link.connect), link.source});
    atomic.commit();
    m_withheld.remove(folded(link.name));
    session.definitionsChanged();
}

void DatabaseCatalog::withhold(const QString &name)
{
    m_withheld.insert(folded(name));
    invalidate(); // the table was described by the link that it has
}

void DatabaseCatalog::release(const QString &name)
{
    m_withheld.remove(folded(name));
}

void DatabaseCatalog::prepareLinks()
{
    if (tables()->hasLinks)
        return;
    Session &session = *m_attachment->session;
    session.execute(QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (position %2, name TEXT NOT NULL, "
                                   "connect TEXT NOT NULL, source TEXT NOT NULL)")
                        .arg(nativeLinks(*m_attachment), session.dialect().rowNumberDeclaration()));
    session.definitionsChanged();
}

void DatabaseCatalog::removeLink(const QString &name)
{
    Session &session = *m_attachment->session;
    session.execute(QStringLiteral("DELETE FROM %1 WHERE name = ?").arg(nativeLinks(*m_attachment)),
                    {link(name)->name});
    session.definitionsChanged();
}

} // namespace dao
