// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "server/TestEngine.h"
#include "support/Clock.h"
#include "support/Log.h"
#include "support/SettingsStore.h"
#include "values/JetValues.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// A folder with a log and databases made for one test.
class DataFixture : public testing::Test {
protected:
    DataFixture()
    {
        QDir(folder.path()).mkdir("logOrvale");
        settings.write("ORVALE_WORK", folder.path());
        log.start(settings, "start");
    }

    // Of a database the name that it has in the engine that the run is for.
    QString path(const QString &file) const
    {
        return file.endsWith(".sqlite") ? testengine::databaseName(folder.path(), file)
                                        : QDir::toNativeSeparators(folder.filePath(file));
    }

    std::shared_ptr<dao::Database> create(const QString &file, const QStringList &statements)
    {
        auto database = engine.DefaultWorkspace().CreateDatabase(path(file));
        dao::Transaction transaction(engine.DefaultWorkspace()); // one write to the disk
        for (const QString &statement : statements)
            database->Execute(statement);
        transaction.commit();
        return database;
    }

    // The lines written since the log's first, without their stamps.
    QStringList logged() const
    {
        QFile file(folder.filePath("logOrvale/log_26_11_21.log"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QStringList lines;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (!line.isEmpty())
                lines.append(QString::fromLatin1(line.mid(24, line.size() - 25)));
        }
        return lines.mid(1);
    }

    // A query's rows, fields joined by '|', Null shown as such.
    static QStringList rowsOf(dao::Database &database, const QString &sql)
    {
        QStringList lines;
        for (const auto found = database.OpenRecordset(sql); !found->Eof(); found->MoveNext()) {
            QStringList fields;
            for (int i = 0; i < found->FieldCount(); ++i) {
                const dao::Field field = found->Fields(i);
                fields.append(field.isNull()                         ? QStringLiteral("Null")
                              : field.Type() == dao::FieldType::Date ? clivara::jet::storedDate(field.date())
                                                                     : field.text());
            }
            lines.append(fields.join('|'));
        }
        return lines;
    }

    QTemporaryDir folder;
    clivara::MemorySettings settings;
    clivara::FixedClock clock{QDate(2026, 11, 21)};
    clivara::Log log{clock};
    dao::DBEngine engine;
};
