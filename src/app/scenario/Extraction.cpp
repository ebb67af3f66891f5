// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/Extraction.h"

#include "app/practice/UserError.h"
#include "chart/MeasuredText.h"
#include "regional/ModEstrazDati.h"

namespace orvale {

namespace {

using clivara::ModEstrazDati;

QStringList split(const QString &text)
{
    QStringList words;
    for (qsizetype i = 0; i < text.size();) {
        if (text.at(i).isSpace()) {
            ++i;
            continue;
        }
        QString word;
        if (text.at(i) != u'"') {
            while (i < text.size() && !text.at(i).isSpace())
                word += text.at(i++);
            words.append(word);
            continue;
        }
        for (++i;; ++i) {
            if (i == text.size())
                throw UserError(QStringLiteral("mancano le virgolette che chiudono"));
            if (text.at(i) != u'"')
                word += text.at(i);
            else if (text.mid(i + 1, 1) == QLatin1String("\""))
                word += text.at(i++);
            else
                break;
        }
        ++i;
        words.append(word);
    }
    return words;
}

// The arguments of a call, taken one after the other.
class Arguments {
public:
    explicit Arguments(const QString &text)
        : m_words(split(text))
    {
    }

    QString text(const QString &what)
    {
        if (m_words.isEmpty())
            throw UserError(QStringLiteral("manca %1").arg(what));
        return m_words.takeFirst();
    }
    QString optionalText() { return m_words.isEmpty() ? QString() : m_words.takeFirst(); }
    qint32 patient()
    {
        const QString word = text(QStringLiteral("il codice del paziente"));
        bool valid = false;
        const qint32 code = word.toInt(&valid);
        if (!valid)
            throw UserError(QStringLiteral("codice del paziente non valido: %1").arg(word));
        return code;
    }
    QDate day()
    {
        const QString word = text(QStringLiteral("una data"));
        if (word == QLatin1String("0"))
            return {};
        const QDate date = QDate::fromString(word, QStringLiteral("yyyy-MM-dd"));
        if (!date.isValid())
            throw UserError(QStringLiteral("la data si scrive AAAA-MM-GG o 0, non %1").arg(word));
        return date;
    }
    clivara::Period period()
    {
        const QDate from = day();
        return {from, day()};
    }
    bool flag()
    {
        const QString word = text(QStringLiteral("true o false"));
        if (word != QLatin1String("true") && word != QLatin1String("false"))
            throw UserError(QStringLiteral("un valore logico si scrive true o false, non %1").arg(word));
        return word == QLatin1String("true");
    }
    QString list() { return text(QStringLiteral("l'elenco dei codici (\"\" per un elenco vuoto)")); }
    QString exam() { return text(QStringLiteral("la condizione sull'esame")); }
    void end() const
    {
        if (!m_words.isEmpty())
            throw UserError(QStringLiteral("argomento di troppo: %1").arg(m_words.first()));
    }

private:
    QStringList m_words;
};

QString dayText(QDate date)
{
    return date.isValid() ? date.toString(QStringLiteral("yyyy-MM-dd")) : QStringLiteral("0");
}

struct Routine {
    const char *name;
    void (*call)(const ModEstrazDati &data, Arguments &arguments, JsonLine &out);
};

void addResult(JsonLine &out, const QJsonValue &value)
{
    out.add(QStringLiteral("result"), value);
}

template <bool (ModEstrazDati::*pressure)(qint32, const clivara::Period &, clivara::Pressure &) const>
void callPressure(const ModEstrazDati &data, Arguments &arguments, JsonLine &out)
{
    const qint32 patient = arguments.patient();
    const auto period = arguments.period();
    arguments.end();
    clivara::Pressure found;
    addResult(out, (data.*pressure)(patient, period, found));
    out.add(QStringLiteral("systolic"), found.systolic).add(QStringLiteral("diastolic"), found.diastolic);
}

template <qint32 (ModEstrazDati::*sum)(qint32, const QString &, const clivara::Period &) const>
void callSum(const ModEstrazDati &data, Arguments &arguments, JsonLine &out)
{
    const qint32 patient = arguments.patient();
    const QString list = arguments.list();
    const auto period = arguments.period();
    arguments.end();
    addResult(out, (data.*sum)(patient, list, period));
}

void callExam(const ModEstrazDati &data, Arguments &arguments, JsonLine &out)
{
    const qint32 patient = arguments.patient();
    const auto period = arguments.period();
    const QString exam = arguments.exam();
    arguments.end();
    clivara::LabResult found;
    addResult(out, data.UltimoEsameLab(patient, period, exam, found));
    out.add(QStringLiteral("value"), found.value)
        .add(QStringLiteral("date"), dayText(found.date))
        .add(QStringLiteral("answer"), found.answer)
        .add(QStringLiteral("unit"), found.unit);
}

void callBody(const ModEstrazDati &data, Arguments &arguments, JsonLine &out)
{
    const qint32 patient = arguments.patient();
    const auto period = arguments.period();
    arguments.end();
    clivara::Anthropometry found;
    addResult(out, data.DatiAntropometrici(patient, period, found));
    out.add(QStringLiteral("height"), found.heightM)
        .add(QStringLiteral("weight"), found.weightKg)
        .add(QStringLiteral("index"), found.massIndex)
        .add(QStringLiteral("date"), dayText(found.date));
}

constexpr Routine routines[]{
    {"NormalizzaNumero",
     [](const ModEstrazDati &, Arguments &arguments, JsonLine &out) {
         const QString text = arguments.text(QStringLiteral("il testo"));
         arguments.end();
         addResult(out, clivara::NormalizzaNumero(text));
     }},
    {"FormattaValore",
     [](const ModEstrazDati &, Arguments &arguments, JsonLine &out) {
         const QString text = arguments.text(QStringLiteral("il testo"));
         const bool wholeNumber = arguments.flag();
         arguments.end();
         addResult(out, clivara::FormattaValore(text, wholeNumber));
     }},
    {"ContaPrescrizioniOspedaliere",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         const auto period = arguments.period();
         const QString condition = arguments.optionalText();
         arguments.end();
         addResult(out, data.ContaPrescrizioniOspedaliere(patient, period, condition));
     }},
    {"SommaConfezioniATC", callSum<&ModEstrazDati::SommaConfezioniATC>},
    {"SommaConfezioniCodSan", callSum<&ModEstrazDati::SommaConfezioniCodSan>},
    {"UltimoRischioCardio",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         const auto period = arguments.period();
         arguments.end();
         addResult(out, data.UltimoRischioCardio(patient, period));
     }},
    {"UltimoEsameLab", callExam},
    {"EsisteEsameLab",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         const auto period = arguments.period();
         const QString exam = arguments.exam();
         arguments.end();
         addResult(out, data.EsisteEsameLab(patient, period, exam));
     }},
    {"DatiAntropometrici", callBody},
    {"PressioneMassima", callPressure<&ModEstrazDati::PressioneMassima>},
    {"PressioneMinima", callPressure<&ModEstrazDati::PressioneMinima>},
    {"EsisteProblemaICD",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         const QString list = arguments.list();
         const QString condition = arguments.optionalText();
         arguments.end();
         addResult(out, data.EsisteProblemaICD(patient, list, condition));
     }},
    {"UltimoProblemaICD",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         const QString list = arguments.list();
         const QString condition = arguments.optionalText();
         arguments.end();
         addResult(out, data.UltimoProblemaICD(patient, list, condition));
     }},
    {"StatoFumo",
     [](const ModEstrazDati &data, Arguments &arguments, JsonLine &out) {
         const qint32 patient = arguments.patient();
         arguments.end();
         QDate date;
         addResult(out, data.StatoFumo(patient, date));
         out.add(QStringLiteral("date"), dayText(date));
     }},
};

} // namespace

JsonLine extractionReport(const ModEstrazDati &data, const QString &routine, const QString &arguments)
{
    for (const Routine &known : routines) {
        const QString name = QLatin1String(known.name);
        if (name.compare(routine, Qt::CaseInsensitive) != 0)
            continue;
        JsonLine line;
        line.add(QStringLiteral("routine"), name);
        Arguments given(arguments);
        known.call(data, given, line);
        return line;
    }
    throw UserError(QStringLiteral("routine sconosciuta: %1").arg(routine));
}

} // namespace orvale
