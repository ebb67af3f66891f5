// SPDX-License-Identifier: Apache-2.0
#include "support/ui/PatientStrip.h"

#include "support/PatientHeader.h"
#include "support/ui/ElidedLabel.h"
#include "values/JetValues.h"

#include <QVBoxLayout>

namespace clivara {

namespace {

QString sexText(const QString &sex)
{
    if (jet::sameText(sex, u"M"))
        return QStringLiteral("Maschio");
    if (jet::sameText(sex, u"F"))
        return QStringLiteral("Femmina");
    return QStringLiteral("sesso non indicato");
}

QString birthText(QDate birth, QDate today)
{
    if (!birth.isValid())
        return QStringLiteral("data di nascita mancante");
    const QString date = jet::slashedDate(birth);
    const QString age = ageText(birth, today);
    return age.isEmpty() ? QStringLiteral("data di nascita futura: %1").arg(date)
                         : QStringLiteral("%1 (%2)").arg(age, date);
}

} // namespace

QString ageText(QDate birth, QDate today)
{
    const int years = exactAge(birth, today);
    if (years < 0)
        return {};
    if (years == 1)
        return QStringLiteral("1 anno");
    if (years > 1)
        return QStringLiteral("%1 anni").arg(years);
    int months = 12 * (today.year() - birth.year()) + today.month() - birth.month();
    if (today.day() < birth.day())
        --months;
    return months == 1 ? QStringLiteral("1 mese") : QStringLiteral("%1 mesi").arg(months);
}

PatientStrip::PatientStrip(QWidget *parent)
    : QFrame(parent)
    , m_name(new ElidedLabel(this))
    , m_details(new ElidedLabel(this))
    , m_allergies(new ElidedLabel(this))
{
    setObjectName(QStringLiteral("PatientStrip"));
    m_name->setObjectName(QStringLiteral("lblPaziente"));
    m_details->setObjectName(QStringLiteral("lblDatiPaziente"));
    m_allergies->setObjectName(QStringLiteral("lblAllergie"));
    for (ElidedLabel *const label : {m_name, m_details, m_allergies})
        label->setTextFormat(Qt::PlainText);

    // Fixed colours, independent of the workstation's theme.
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(0x1b, 0x4a, 0x60));
    colours.setColor(QPalette::WindowText, Qt::white);
    setPalette(colours);

    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    m_name->setFont(large);
    m_allergies->setContentsMargins(6, 0, 6, 1);
    // A long list does not make the form wider.
    m_allergies->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 6, 16, 6);
    layout->setSpacing(0);
    layout->addWidget(m_name);
    layout->addWidget(m_details);
    layout->addSpacing(2);
    layout->addWidget(m_allergies);
}

// What the doctor must not miss stands out by its ground and weight; sign and words tell the states apart
// without them.
void PatientStrip::showAllergies(const PatientHeader &header)
{
    const AllergyState state = header.allergies.state;
    const bool isWarning = state == AllergyState::Known || state == AllergyState::Unread;
    m_allergies->setText(allergyLine(header.allergies));
    m_allergies->setAccessibleName(allergyWords(header.allergies));
    QFont font = m_details->font();
    font.setBold(isWarning);
    font.setItalic(state == AllergyState::NotRecorded);
    m_allergies->setFont(font);
    m_allergies->setAutoFillBackground(isWarning);
    QPalette colours = palette();
    if (isWarning) {
        colours.setColor(QPalette::Window, QColor(0xff, 0xe2, 0xa8));
        colours.setColor(QPalette::WindowText, QColor(0x4a, 0x12, 0x00));
    }
    m_allergies->setPalette(colours);
    m_allergies->setVisible(header.identified);
}

void PatientStrip::showPatient(const PatientHeader &header, QDate today)
{
    QString name;
    QStringList details;
    if (header.identified) {
        // Only what the patient's own rows say: the header's texts may be left over from another.
        const PatientIdentity &identity = header.identity;
        name = (identity.surname.trimmed() + QLatin1Char(' ') + identity.name.trimmed()).trimmed();
        if (name.isEmpty())
            name = QStringLiteral("Paziente %1, senza nome").arg(header.patientCode);
        details << sexText(identity.sex.trimmed()) << birthText(header.birthDay, today);
        if (const QString code = identity.fiscalCode.trimmed(); !code.isEmpty())
            details << code;
    } else if (header.patientCode >= 0) {
        name = QStringLiteral("Paziente %1").arg(header.patientCode);
        details << QStringLiteral("non trovato in archivio");
    }
    m_name->setText(name.isEmpty() ? QStringLiteral("Nessun paziente") : name);
    m_details->setText(details.join(QStringLiteral("  ·  ")));
    showAllergies(header);
    setAccessibleName(
        QStringLiteral("Paziente: %1, %2").arg(m_name->text(), details.join(QStringLiteral(", ")))
        + (header.identified ? QStringLiteral(". ") + allergyWords(header.allergies) : QString()));
}

} // namespace clivara
