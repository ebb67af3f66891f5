// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/Practice.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// Every file below a folder with a digest of its bytes, folders with an empty one.
inline QMap<QString, QByteArray> filesBelow(const QString &folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        QByteArray digest;
        QFile file(it.filePath());
        if (it.fileInfo().isFile() && file.open(QIODevice::ReadOnly))
            digest = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex();
        files.insert(it.filePath(), digest);
    }
    return files;
}

inline std::string refusal(const std::function<void()> &attempt)
{
    try {
        attempt();
    } catch (const orvale::UserError &error) {
        return error.text().toStdString();
    }
    return {};
}

// A folder to make practices in.
class PracticeFixture : public ::testing::Test {
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void writeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray readFile(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
};
