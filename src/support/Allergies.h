// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

// What is known of a patient's allergies, and in which words it stands wherever the patient is shown.
namespace clivara {

enum class AllergyState {
    Unread, // the database or the stored string could not be read, or only in part
    NotRecorded, // nothing was written about allergies
    NoneKnown, // somebody has written that there are none
    Known
};

// What a free text says of allergies: how far it is a statement that there are none.
enum class NoAllergyStatement {
    None, // it is empty or says something else
    Limited, // only of some kinds ("nessuna allergia nota a farmaci")
    Whole
};
// A text is such a statement when each of its sentences is one of the known ways to say it; anything else,
// also a doubtful one ("allergie non note"), is a text to be read. Case and accents do not count.
NoAllergyStatement noAllergyStatement(const QString &text);

struct Allergies {
    AllergyState state = AllergyState::Unread;
    // Ticked in the catalogue, by their names; of a damaged string those that can be read.
    QStringList allergens;
    QString text; // what is written beside them, on one line; empty when it holds no letter or digit
    bool isAnswered = false; // the questionnaire of allergens was saved, with or without a tick

    bool operator==(const Allergies &) const = default;
};

// Lower-case words without accents, with a blank between them; whatever is no letter or digit parts words.
QString plainWords(const QString &text);

// The state that follows from what is stored. A saved questionnaire without a tick proves nothing: an allergy
// to a drug has no box. A damaged one leaves open what was ticked, whatever the text says.
Allergies judgedAllergies(const QStringList &allergens, bool isAnswered, bool isIntact, const QString &text);

// One line that begins with a sign of its own for each state, so that it is told apart without colour. What
// is written comes before what is ticked, since only there are drugs named.
QString allergyLine(const Allergies &allergies);
// The same without the sign, to be spoken.
QString allergyWords(const Allergies &allergies);

} // namespace clivara
