// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Parser.h"

#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

struct TypeName {
    QStringView name;
    FieldType type;
};

constexpr TypeName typeNames[] = {
    {u"text", FieldType::Text},
    {u"varchar", FieldType::Text},
    {u"char", FieldType::Text},
    {u"character", FieldType::Text},
    {u"string", FieldType::Text},
    {u"alphanumeric", FieldType::Text},
    {u"memo", FieldType::Memo},
    {u"longtext", FieldType::Memo},
    {u"note", FieldType::Memo},
    {u"longchar", FieldType::Memo},
    {u"byte", FieldType::Byte},
    {u"integer1", FieldType::Byte},
    {u"short", FieldType::Integer},
    {u"smallint", FieldType::Integer},
    {u"integer2", FieldType::Integer},
    {u"integer", FieldType::Long},
    {u"long", FieldType::Long},
    {u"int", FieldType::Long},
    {u"integer4", FieldType::Long},
    {u"counter", FieldType::AutoNumber},
    {u"autoincrement", FieldType::AutoNumber},
    {u"single", FieldType::Single},
    {u"real", FieldType::Single},
    {u"float4", FieldType::Single},
    {u"double", FieldType::Double},
    {u"float", FieldType::Double},
    {u"float8", FieldType::Double},
    {u"number", FieldType::Double},
    {u"numeric", FieldType::Double},
    {u"currency", FieldType::Currency},
    {u"money", FieldType::Currency},
    {u"datetime", FieldType::Date},
    {u"date", FieldType::Date},
    {u"time", FieldType::Date},
    {u"timestamp", FieldType::Date},
    {u"yesno", FieldType::Boolean},
    {u"bit", FieldType::Boolean},
    {u"boolean", FieldType::Boolean},
    {u"logical", FieldType::Boolean},
    {u"logical1", FieldType::Boolean},
    {u"guid", FieldType::Guid},
    {u"uniqueidentifier", FieldType::Guid},
    {u"binary", FieldType::Binary},
    {u"varbinary", FieldType::Binary},
    {u"longbinary", FieldType::Binary},
    {u"image", FieldType::Binary},
    {u"general", FieldType::Binary},
    {u"oleobject", FieldType::Binary},
};

} // namespace

Statement Parser::create()
{
    Statement statement;
    if (accept(Word::Table)) {
        statement.kind = StatementKind::CreateTable;
        createTable(statement.definition);
        return statement;
    }
    const bool unique = accept(Word::Unique);
    expect(Word::Index);
    statement.kind = StatementKind::CreateIndex;
    IndexInfo index;
    index.unique = unique;
    index.name = name().toString();
    expect(Word::On);
    statement.definition.table = name().toString();
    index.fields = fieldList();
    if (accept(Word::With)) {
        if (accept(Word::Primary))
            index.primary = index.unique = true;
        else if (accept(Word::Ignore)) // of Null: only says what the index holds, not what the table may
            expect(Word::Null);
        else
            throwUnsupported(QStringView(current().source.begin(), m_sql.end()));
    }
    statement.definition.indexes.append(index);
    return statement;
}

void Parser::createTable(Definition &definition)
{
    definition.table = name().toString();
    expect(u'(');
    do {
        if (current().is(Word::Constraint) || (current().is(Word::Primary) && ahead().is(Word::Key))
            || (current().is(Word::Unique) && ahead().is(u'('))) {
            if (!constraint(definition, {}))
                fail();
        } else {
            definition.columns.append(columnDefinition(definition));
        }
    } while (accept(u','));
    expect(u')');
    for (const IndexInfo &index : std::as_const(definition.indexes)) {
        for (const QString &field : index.fields) {
            const bool known =
                std::any_of(definition.columns.cbegin(), definition.columns.cend(), [&](const ColumnInfo &c) {
                    return c.name.compare(field, Qt::CaseInsensitive) == 0;
                });
            if (!known)
                throwUnknownField(field);
        }
    }
}

ColumnInfo Parser::columnDefinition(Definition &definition)
{
    ColumnInfo column;
    column.name = name().toString();
    const Token &typeToken = current();
    const QStringView typeName = name();
    const auto known = std::find_if(std::begin(typeNames), std::end(typeNames), [&](const TypeName &t) {
        return typeName.compare(t.name, Qt::CaseInsensitive) == 0;
    });
    if (known == std::end(typeNames))
        throwSyntaxError(QStringView(typeToken.source.begin(), m_sql.end()));
    column.type = known->type;
    if (column.type == FieldType::Text)
        column.size = 255;
    if (accept(u'(')) {
        bool whole = false;
        const int size = current().kind == TokenKind::Number ? current().text.toInt(&whole) : 0;
        if (!whole || size < 1 || (column.type == FieldType::Text && size > 255))
            fail();
        ++m_at;
        expect(u')');
        if (column.type == FieldType::Text)
            column.size = size;
    }
    while (true) {
        if (current().is(Word::Not) && ahead().is(Word::Null)) {
            m_at += 2;
            column.required = true;
        } else if (!constraint(definition, column.name)) {
            break;
        }
    }
    return column;
}

// [CONSTRAINT name] PRIMARY KEY | UNIQUE, of the column or, without one, of the fields listed after it.
bool Parser::constraint(Definition &definition, const QString &column)
{
    IndexInfo index;
    const bool named = accept(Word::Constraint);
    if (named)
        index.name = name().toString();
    index.unique = true;
    if (accept(Word::Primary)) {
        expect(Word::Key);
        index.primary = true;
    } else if (!accept(Word::Unique)) {
        if (acceptName(u"references") || acceptName(u"foreign") || acceptName(u"check"))
            throwUnsupported(QStringView(m_tokens[m_at - 1].source.begin(), m_sql.end()));
        if (named)
            fail();
        return false;
    }
    index.fields = column.isEmpty() ? fieldList() : QStringList{column};
    if (index.name.isEmpty())
        index.name = index.primary ? QStringLiteral("PrimaryKey") : index.fields.join(u'_');
    definition.indexes.append(index);
    return true;
}

QStringList Parser::fieldList()
{
    QStringList fields;
    expect(u'(');
    do {
        fields.append(name().toString());
        if (!accept(Word::Desc))
            accept(Word::Asc);
    } while (accept(u','));
    expect(u')');
    return fields;
}

Statement Parser::alter()
{
    Statement statement;
    expect(Word::Table);
    Definition &definition = statement.definition;
    definition.table = name().toString();
    if (accept(Word::Add)) {
        if (current().is(Word::Constraint)) {
            statement.kind = StatementKind::CreateIndex;
            if (!constraint(definition, {}))
                fail();
            return statement;
        }
        accept(Word::Column);
        statement.kind = StatementKind::AddColumn;
        definition.columns.append(columnDefinition(definition));
        return statement;
    }
    expect(Word::Drop);
    if (accept(Word::Constraint)) {
        statement.kind = StatementKind::DropIndex;
        IndexInfo index;
        index.name = name().toString();
        definition.indexes.append(index);
        return statement;
    }
    accept(Word::Column);
    statement.kind = StatementKind::DropColumn;
    ColumnInfo column;
    column.name = name().toString();
    definition.columns.append(column);
    return statement;
}

Statement Parser::drop()
{
    Statement statement;
    if (accept(Word::Table)) {
        statement.kind = StatementKind::DropTable;
        statement.definition.table = name().toString();
        return statement;
    }
    expect(Word::Index);
    statement.kind = StatementKind::DropIndex;
    IndexInfo index;
    index.name = name().toString();
    statement.definition.indexes.append(index);
    expect(Word::On);
    statement.definition.table = name().toString();
    return statement;
}

} // namespace dao::sql
