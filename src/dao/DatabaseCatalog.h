// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Session.h"
#include "dao/Translator.h"
#include "jetsql/Catalog.h"

#include <QCache>
#include <QHash>
#include <QSet>
#include <memory>

namespace dao {

// A link to a table of another database, as it is kept in the database that holds it.
struct TableLink {
    QString name;
    QString connect; // ";DATABASE=" & path
    QString source; // the table's name there

    // The path in a connect text; empty when there is none.
    static QString path(const QString &connect);
    // The connect text with another path.
    static QString withPath(QString connect, const QString &path);
};

// The definitions of one database as they were read at one time. Recordsets hold on to it, so that what they
// know of their tables stays valid when a definition changes.
struct TableSet {
    static constexpr int translationsKept = 200;

    QStringList names; // own tables and links, in order of creation
    QHash<QString, QString> own; // stored name by folded name
    QHash<QString, TableLink> links; // by folded name
    qint64 version = 0; // of the database's definitions
    int generation = 0; // of the session's definitions
    bool hasLinks = false; // the table of links is there

    mutable QHash<QString, std::shared_ptr<const TableInfo>> described;
    mutable QList<std::shared_ptr<Attachment>> attachments; // of the links used so far
    // Statements by their text, those asked for last: forms ask the same again each time that they are shown, and to
    // translate a short query takes longer than to run it.
    mutable QCache<QString, const Translation> translations{translationsKept};
};

// Looks up and changes a database's tables and links.
class DatabaseCatalog final : public Catalog {
public:
    explicit DatabaseCatalog(std::shared_ptr<Attachment> attachment);

    // Describes a table when it is first asked for. A link's target is attached then; throws CannotFindFile
    // or ObjectNotFound when it is not there.
    const TableInfo *table(QStringView name) const override;
    std::shared_ptr<const TableSet> tables() const;
    bool contains(QStringView name) const;
    // Null when it is no linked table. Valid as long as a table's description.
    const TableLink *link(QStringView name) const;

    void invalidate() { m_tables.reset(); }
    // True when another connection changed the definitions since they were read.
    bool isOutdated() const;

    // Adds the link, or replaces the one of that name. The target must be there, else nothing changes.
    void setLink(const TableLink &link);
    void removeLink(const QString &name);
    // Refuses queries of that linked table until setLink() succeeds for it or release() is called: its link
    // may lead to another practice. Nothing is written.
    void withhold(const QString &name);
    void release(const QString &name);
    // Makes the table in which links are kept, unless it is there.
    void prepareLinks();

private:
    // A link's connect text as it is stored in the database, and as everybody else sees it.
    QString storedConnect(const QString &connect) const;
    QString shownConnect(const QString &connect) const;
    std::shared_ptr<const TableInfo> describeLink(const TableLink &link, const TableSet &tables) const;

    std::shared_ptr<Attachment> m_attachment;
    mutable std::shared_ptr<const TableSet> m_tables;
    QSet<QString> m_withheld; // folded names
};

} // namespace dao
