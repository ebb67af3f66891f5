// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordFields.h"
#include "chart/RecordSaving.h"

namespace clivara {

// A shared record (SharedRecord.h) that a form edits, in the versions that a save compares. The form moves
// it in and out of its controls; conflicts follow from the record's description.
template <typename Record>
class EditedRecord : public WrittenRecord {
protected:
    ~EditedRecord() = default;

    // What stands in the form.
    virtual Record entered() const = 0;
    // Fills the form, and makes the record m_shown. May throw dao::Error.
    virtual void show(const Record &record) = 0;
    virtual SaveResult<Record> save(Record &mine, const Record &read) = 0;
    // A field's text in the form of conflicts where the description alone cannot tell it, a code's name for
    // one. May throw dao::Error.
    virtual std::optional<QString> shownText(QLatin1String column, const Record &record) const
    {
        Q_UNUSED(column)
        Q_UNUSED(record)
        return std::nullopt;
    }

    void becomeNew() override { m_shown.id = 0; }

    Record m_shown; // what the controls were filled from
    Record m_read; // as it was read, or as it was when the doctor chose between two versions

private:
    WriteResult write() final
    {
        Record mine = entered();
        const SaveResult<Record> result = save(mine, m_read);
        if (result == WriteResult::Done)
            m_shown = mine;
        else if (result == WriteResult::Changed)
            m_elsewhere = result.stored;
        return result;
    }

    RecordConflict conflict() const final
    {
        RecordConflict conflict;
        conflict.event = QString::fromUtf8(Record::table.saved);
        conflict.before = m_read.written;
        conflict.there = m_elsewhere.written;
        const Record mine = entered();
        forEachField<Record>([&](const auto &field) {
            const auto text = [&](const Record &record) {
                return shownText(QLatin1String(field.column), record)
                    .value_or(fieldText(field, record.*field.member));
            };
            conflict.fields.append(
                {QString::fromUtf8(field.caption), text(m_read), text(mine), text(m_elsewhere)});
        });
        return conflict;
    }

    void keepMine() final
    {
        Record mine = entered();
        takeUntouched(mine, m_read, m_elsewhere);
        m_read = m_elsewhere;
        show(mine);
    }

    QString vanishedQuestion() const final { return QString::fromUtf8(Record::table.vanished); }

    Record m_elsewhere; // as another workstation has stored it, when a save found that
};

} // namespace clivara
