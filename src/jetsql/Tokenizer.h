// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringView>
#include <vector>

namespace dao::sql {

// The words of the language. A word is only a keyword where the grammar expects one; elsewhere it may be a
// name.
enum class Word : quint8 {
    None,
    Add,
    All,
    Alter,
    And,
    As,
    Asc,
    Between,
    By,
    Column,
    Constraint,
    Create,
    Delete,
    Desc,
    Disallow,
    Distinct,
    Distinctrow,
    Drop,
    Exists,
    False,
    From,
    Group,
    Having,
    Ignore,
    In,
    Index,
    Inner,
    Insert,
    Into,
    Is,
    Join,
    Key,
    Left,
    Like,
    Mod,
    No,
    Not,
    Null,
    Off,
    On,
    Or,
    Order,
    Outer,
    Percent,
    Primary,
    Right,
    Select,
    Set,
    Table,
    Top,
    True,
    Union,
    Unique,
    Update,
    Values,
    Where,
    With,
    Xor,
    Yes
};

enum class TokenKind : quint8 { End, Name, BracketedName, Number, Text, Date, Guid, Symbol };

// Signs of two characters are tokens of one.
constexpr char16_t lessOrEqual = u'\u2264';
constexpr char16_t greaterOrEqual = u'\u2265';
constexpr char16_t notEqual = u'\u2260';

struct Token {
    TokenKind kind = TokenKind::End;
    Word word = Word::None; // of a Name
    char16_t symbol = 0; // of a Symbol
    bool doubledQuotes = false; // of a Text: quotes inside stand twice
    QStringView
        text; // a name without its brackets, a text without its quotes, a date, the inside of a GUID's braces
    QStringView source; // the token as written; empty at the end

    bool is(char16_t sign) const { return kind == TokenKind::Symbol && symbol == sign; }
    bool is(Word keyword) const { return kind == TokenKind::Name && word == keyword; }
    // The value of a Text token.
    QString textValue() const;
};

// Cuts the SQL into tokens that refer to it; the last one is End. A number ends where no more of it can follow
// ("12AND" is 12 and AND). Throws Error (SyntaxError) for an unknown character or a quote that is never closed.
std::vector<Token> tokenize(QStringView sql);

} // namespace dao::sql
