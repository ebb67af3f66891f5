// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"

#include <QRegularExpression>
#include <algorithm>
#include <cstdio>

namespace orvale {

CommandLine::CommandLine(const QString &synopsis, const QString &description)
    : m_synopsis(synopsis)
    , m_description(description)
{
}

void CommandLine::addOption(const QString &name, const QString &valueName, const QString &text)
{
    m_options.append({name, valueName, text});
}

void CommandLine::addArgument(const QString &name, const QString &text)
{
    m_parameters.append({name, {}, text});
}

const CommandLine::Option *CommandLine::find(const QString &name) const
{
    const auto option =
        std::find_if(m_options.begin(), m_options.end(), [&](const Option &o) { return o.name == name; });
    return option == m_options.end() ? nullptr : &*option;
}

bool CommandLine::parse(const QStringList &arguments)
{
    m_values.clear();
    m_arguments.clear();
    if (arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h"))) {
        printLine(help());
        return false;
    }
    bool optionsEnded = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (optionsEnded || !argument.startsWith(u'-') || argument == QLatin1String("-")) {
            m_arguments.append(argument);
            continue;
        }
        if (argument == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        const QString name = argument.mid(2).section(u'=', 0, 0);
        const Option *option = argument.startsWith(QLatin1String("--")) ? find(name) : nullptr;
        if (!option)
            throw UsageError(QStringLiteral("Opzione sconosciuta: %1. Vedere --help.").arg(argument));
        const bool attached = argument.contains(u'=');
        if (option->valueName.isEmpty()) {
            if (attached)
                throw UsageError(QStringLiteral("L'opzione --%1 non vuole un valore.").arg(name));
            m_values.insert(name, {});
        } else if (attached) {
            m_values.insert(name, argument.section(u'=', 1));
        } else if (++i < arguments.size()) {
            m_values.insert(name, arguments.at(i));
        } else {
            throw UsageError(
                QStringLiteral("All'opzione --%1 manca il valore (%2).").arg(name, option->valueName));
        }
    }
    if (m_arguments.size() < m_parameters.size())
        throw UsageError(QStringLiteral("Manca l'argomento %1. Uso: orvale %2")
                             .arg(m_parameters.at(m_arguments.size()).name, m_synopsis));
    if (m_arguments.size() > m_parameters.size())
        throw UsageError(QStringLiteral("Argomento di troppo: %1. Uso: orvale %2")
                             .arg(m_arguments.at(m_parameters.size()), m_synopsis));
    return true;
}

int CommandLine::number(const QString &option, int missing, int least, int most) const
{
    if (!isSet(option))
        return missing;
    bool valid = false;
    const int number = value(option).toInt(&valid);
    if (!valid || number < least || number > most)
        throw UsageError(QStringLiteral("--%1 vuole un numero intero da %2 a %3, non \"%4\".")
                             .arg(option)
                             .arg(least)
                             .arg(most)
                             .arg(value(option)));
    return number;
}

QDate CommandLine::date(const QString &option, QDate missing) const
{
    if (!isSet(option))
        return missing;
    const QDate date = QDate::fromString(value(option), QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid())
        throw UsageError(
            QStringLiteral("--%1 vuole una data AAAA-MM-GG, non \"%2\".").arg(option, value(option)));
    return date;
}

QString CommandLine::help() const
{
    QList<QPair<QString, QString>> rows;
    for (const Option &parameter : m_parameters)
        rows.append({parameter.name, parameter.text});
    for (const Option &option : m_options)
        rows.append({QStringLiteral("--") + option.name
                         + (option.valueName.isEmpty() ? QString() : u' ' + option.valueName),
                     option.text});
    rows.append({QStringLiteral("--help"), QStringLiteral("mostra questo aiuto")});
    qsizetype width = 0;
    for (const auto &row : rows)
        width = std::max(width, row.first.size());
    QString text = QStringLiteral("Uso: orvale %1\n\n%2\n\n").arg(m_synopsis, m_description);
    for (const auto &row : rows)
        text += QStringLiteral("  %1  %2\n").arg(row.first.leftJustified(width), row.second);
    text.chop(1);
    return text;
}

void printError(const QString &line)
{
    // An address that was mistaken for something else may hold a password.
    static const QRegularExpression password(QStringLiteral("(postgresql://[^/@\\s:]*):[^/@\\s]*@"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QString shown = QString(line).replace(password, QStringLiteral("\\1@"));
    std::fprintf(stderr, "%s\n", shown.toUtf8().constData());
}

void printLine(const QString &line)
{
    std::fprintf(stdout, "%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace orvale
