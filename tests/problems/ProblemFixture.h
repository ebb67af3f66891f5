// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ChartFixture.h"
#include "chart/SharedRecord.h"
#include "data/LockHolder.h"
#include "problems/ProblemItems.h"

namespace clivara {

// A practice with empty tables as every practice has them, two patients and two doctors; patient 17 is
// current.
class ProblemFixture : public ChartFixture {
protected:
    ProblemFixture()
    {
        createClinical();
        environment.codes = create("Tabelle.sqlite", schemaStatements("codes"));
        environment.doctors = create("Medici.sqlite", schemaStatements("doctors"));
        environment.local = create("Locale.sqlite", {});
        execute("INSERT INTO archivio (cod_paz, idRowGuid, sOwnerUid) VALUES (17, "
                "'{11111111-2222-3333-4444-555555555555}', '{6C4C00A9-60AC-45AF-B5C3-FD30774041A6}')");
        execute("INSERT INTO archivio (cod_paz) VALUES (18)");
        for (const char *row : {"TIPOVISITA (IdTipo, descr_tipo) VALUES (1, 'Visita ambulatoriale')",
                                "TIPOVISITA (IdTipo, descr_tipo) VALUES (2, ' Visita domiciliare ')",
                                "SINTOMI VALUES ('S01', 'Tosse')", "SINTOMI VALUES ('S02', 'Febbre')",
                                "icd9 VALUES ('250.00', 'Diabete mellito tipo 2')",
                                "malattie VALUES ('ML001', 'CATARRO D''ESTATE')"})
            environment.codes->Execute(QStringLiteral("INSERT INTO ") + QString::fromUtf8(row));
        state.uidAuthor = anna;
    }

    // Saves and deletes a record as whoever has just read it.
    template <auto save, typename Record>
    WriteResult saveRead(Record &record)
    {
        return save(state, record, readRecord<Record>(database(), record.id).value_or(Record()));
    }
    template <typename Record, auto remove>
    WriteResult removeRead(qint32 id)
    {
        const auto stored = readRecord<Record>(database(), id);
        LastWrite seen = stored ? stored->written : LastWrite();
        return remove(state, id, seen);
    }

    // The clinical database as another workstation has it open.
    std::shared_ptr<dao::Database> otherWorkstation()
    {
        return m_otherEngine.OpenDatabase(path("Orvale.sqlite"));
    }
    dao::Workspace &otherWorkspace() { return m_otherEngine.DefaultWorkspace(); }

    // A new problem of the current patient; its id.
    qint32 addProblem(const QString &code, const QString &description, QDate start = {},
                      qint16 problemState = 1)
    {
        const auto table = environment.clinical->OpenRecordset("PROBLEMS");
        table->AddNew();
        table->Fields("cod_paz").setValue(state.header.patientCode);
        table->Fields("CodICDSospetto").setValue(code);
        table->Fields("descr_mal").setValue(description);
        table->Fields("DataInizio").setValue(start.isValid() ? QVariant(jet::dateTime(start)) : QVariant());
        table->Fields("stato_probl").setValue(problemState);
        table->Update();
        return qint32(table->LastAutoNumber());
    }

    inline static const auto anna = QStringLiteral("0f8fad5b-d9cb-469f-a165-70867728950e"); // works
    inline static const auto bruno =
        QStringLiteral("6c4c00a9-60ac-45af-b5c3-fd30774041a6"); // owns patient 17
    // The stamps of a row, to be selected from PROBLEMS or VISITAPROBL.
    inline static const auto stamps =
        QStringLiteral("sRecordUid, idRowGuid, sOwnerUid, dCreationDate, sCodSezCli, sPatientUid, "
                       "sPatientRecordOwnerUid, dLastModifiedDate, sAuthorUid");
    // Those of a new row of patient 17: its record UID is the guid of that number, its own the next.
    static QString newStamps(int number, const QString &section)
    {
        return QStringLiteral("%1|{%2}|%3|2026-11-21 10:00:00|%4|11111111-2222-3333-4444-555555555555|%3|"
                              "2026-11-21 10:00:00|%5")
            .arg(guid(number), guid(number + 1), bruno, section, anna);
    }

    // What must come back as it was typed.
    static QString awkwardText(int length = 60000)
    {
        const QString signs = QString::fromUtf8("L'ètà 100% *\"[a-z]#?_{}|\\ ''; DROP TABLE x -- €\r\n\t");
        return signs.repeated(length / int(signs.size()) + 1).left(length);
    }

private:
    dao::DBEngine m_otherEngine;
};

} // namespace clivara
