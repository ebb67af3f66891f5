// SPDX-License-Identifier: Apache-2.0
#include "app/practice/DamageWatch.h"

#include "app/practice/Practice.h"

#include <QThread>

namespace orvale {

DamageWatch::DamageWatch(const QString &practice, QObject *parent)
    : QObject(parent)
    , m_thread(QThread::create([this, practice] { emit finished(Practice::damagedFile(practice)); }))
{
    m_thread->start(QThread::LowPriority);
}

DamageWatch::~DamageWatch()
{
    m_thread->wait();
}

} // namespace orvale
