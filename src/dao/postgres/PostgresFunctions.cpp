// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresFunctions.h"

#include "dao/postgres/PostgresNumberFunctions.h"

namespace dao {
namespace {

// Helpers: errors, whole numbers, the number and the date that a text stands for, a pattern as a regular
// expression. Texts are taken as text, so that the server's own functions see them; where a result may be compared
// it is citext.
const char *const helpers = R"sql(
CREATE OR REPLACE FUNCTION jet.fail(number int, message text) RETURNS int LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
    RAISE EXCEPTION 'JET:%:%', number, message;
END $$;

CREATE OR REPLACE FUNCTION jet.long(n float8) RETURNS int LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT round(n) BETWEEN -2147483648 AND 2147483647 THEN PERFORM jet.fail(6, 'Overflow'); END IF;
    RETURN round(n)::int;
END $$;

-- A count or position; `lowest` is the smallest that makes sense.
CREATE OR REPLACE FUNCTION jet.count_of(n float8, lowest int) RETURNS int LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT round(n) BETWEEN lowest AND 2147483647 THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN round(n)::int;
END $$;

CREATE OR REPLACE FUNCTION jet.repetitions(n float8) RETURNS int LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT round(n) BETWEEN 0 AND 16777216 THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN round(n)::int;
END $$;

-- A number as written by people; null when it is too large or too small for one.
CREATE OR REPLACE FUNCTION jet.read_number(t text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    exponent text := substring(t from '[eE][+-]?0*([0-9]*)$');
    n numeric;
BEGIN
    IF exponent IS NULL AND length(t) < 300 THEN RETURN t::float8; END IF;
    IF length(exponent) > 4 THEN RETURN NULL; END IF;
    n := abs(t::numeric);
    IF n > 1.7976931348623157e308 OR (n > 0 AND n < 4.95e-324) THEN RETURN NULL; END IF;
    RETURN t::float8;
END $$;

CREATE OR REPLACE FUNCTION jet.val(t text) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT coalesce(jet.read_number(substring(t from
        E'^[ \t\r\n\u00a0]*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)')), 0) $$;

CREATE OR REPLACE FUNCTION jet.numberornull(t text) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT jet.read_number(substring(t from
        E'^[ \t\r\n\u00a0]*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)[ \t\r\n\u00a0]*$')) $$;

CREATE OR REPLACE FUNCTION jet.in_range(d timestamp) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
    IF d IS NULL OR d < '0100-01-01' OR d >= '10000-01-01' THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN d;
END $$;

CREATE OR REPLACE FUNCTION jet.valid_date(y int, m int, d int) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT CASE WHEN y BETWEEN 100 AND 9999 AND m BETWEEN 1 AND 12 AND d BETWEEN 1
                     AND extract(day FROM make_date(y, m, 1) + interval '1 month' - interval '1 day')
                THEN make_timestamp(y, m, d, 0, 0, 0) END $$;

-- A time of two or three groups of digits between points and colons, as a time of day zero.
CREATE OR REPLACE FUNCTION jet.time_of(t text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    p text[] := regexp_match(t, '^([0-9]{1,2})[.:]([0-9]{1,2})(?:[.:]([0-9]{1,2}))?$');
BEGIN
    IF p IS NULL OR p[1]::int > 23 OR p[2]::int > 59 OR coalesce(p[3], '0')::int > 59 THEN RETURN NULL; END IF;
    RETURN make_timestamp(1899, 12, 30, p[1]::int, p[2]::int, coalesce(p[3], '0')::int);
END $$;

CREATE OR REPLACE FUNCTION jet.day_of(t text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    p text[] := regexp_match(t, '^([0-9]{1,4})[/.-]([0-9]{1,4})[/.-]([0-9]{1,4})$');
    y int;
BEGIN
    IF p IS NULL THEN RETURN NULL; END IF;
    IF length(p[1]) > 2 THEN
        IF length(p[2]) > 2 OR length(p[3]) > 2 THEN RETURN NULL; END IF;
        RETURN jet.valid_date(p[1]::int, p[2]::int, p[3]::int);
    END IF;
    y := p[3]::int;
    IF length(p[3]) <= 2 THEN y := y + CASE WHEN y < 30 THEN 2000 ELSE 1900 END; END IF;
    RETURN coalesce(jet.valid_date(y, p[2]::int, p[1]::int), jet.valid_date(y, p[1]::int, p[2]::int));
END $$;

CREATE OR REPLACE FUNCTION jet.dateornull(t text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    all_of_it text := btrim(t, E' \t\r\n\f\v\u00a0');
    blank int := strpos(all_of_it, ' ');
BEGIN
    IF blank = 0 THEN RETURN coalesce(jet.time_of(all_of_it), jet.day_of(all_of_it)); END IF;
    RETURN jet.day_of(left(all_of_it, blank - 1))
           + (jet.time_of(btrim(substr(all_of_it, blank + 1), E' \t\r\n\f\v\u00a0')) - '1899-12-30'::timestamp);
END $$;

-- One character as a regular expression has it.
CREATE OR REPLACE FUNCTION jet.escaped(c text) RETURNS text LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT CASE WHEN c ~ '[][\\^$.|?*+(){}/-]' THEN '\' || c ELSE c END $$;

CREATE OR REPLACE FUNCTION jet.regex(pattern text) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    p text := lower(pattern);
    result text := '^';
    at int := 1;
    c text;
    closing int;
    members text;
    class text;
    negated boolean;
    i int;
BEGIN
    WHILE at <= length(p) LOOP
        c := substr(p, at, 1);
        at := at + 1;
        IF c = '*' THEN result := result || '.*';
        ELSIF c = '?' THEN result := result || '.';
        ELSIF c = '#' THEN result := result || '[0-9]';
        ELSIF c = '[' THEN
            closing := strpos(substr(p, at), ']');
            IF closing = 0 THEN RETURN '(?=a)b'; END IF; -- not closed: matches nothing
            members := substr(p, at, closing - 1);
            at := at + closing;
            CONTINUE WHEN members = '';
            negated := length(members) > 1 AND left(members, 1) = '!';
            IF negated THEN members := substr(members, 2); END IF;
            class := '';
            i := 1;
            WHILE i <= length(members) LOOP
                IF i + 2 <= length(members) AND substr(members, i + 1, 1) = '-' THEN
                    IF substr(members, i, 1) COLLATE "C" <= substr(members, i + 2, 1) COLLATE "C" THEN
                        class := class || jet.escaped(substr(members, i, 1)) || '-'
                                 || jet.escaped(substr(members, i + 2, 1));
                    END IF;
                    i := i + 3;
                ELSE
                    class := class || jet.escaped(substr(members, i, 1));
                    i := i + 1;
                END IF;
            END LOOP;
            result := result || CASE WHEN class = '' AND negated THEN '.' WHEN class = '' THEN '(?=a)b'
                                     WHEN negated THEN '[^' || class || ']' ELSE '[' || class || ']' END;
        ELSE result := result || jet.escaped(c);
        END IF;
    END LOOP;
    RETURN result || '$';
END $$;

CREATE OR REPLACE FUNCTION jet.like(pattern text, t text) RETURNS boolean LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT lower(t) ~ jet.regex(pattern) $$;
)sql";

const char *const textFunctions = R"sql(
CREATE OR REPLACE FUNCTION jet.mid(t text, n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT substr(t, jet.count_of(n, 1))::citext $$;
CREATE OR REPLACE FUNCTION jet.mid(t text, n float8, l float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT substr(t, jet.count_of(n, 1), jet.count_of(l, 0))::citext $$;
CREATE OR REPLACE FUNCTION jet.left(t text, n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT left(t, jet.count_of(n, 0))::citext $$;
CREATE OR REPLACE FUNCTION jet.right(t text, n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT right(t, jet.count_of(n, 0))::citext $$;
CREATE OR REPLACE FUNCTION jet.len(t text) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT length(t) $$;
CREATE OR REPLACE FUNCTION jet.trim(t text) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT btrim(t, ' ')::citext $$;
CREATE OR REPLACE FUNCTION jet.ltrim(t text) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT ltrim(t, ' ')::citext $$;
CREATE OR REPLACE FUNCTION jet.rtrim(t text) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT rtrim(t, ' ')::citext $$;
-- Letter by letter: "ß" stays one letter.
CREATE OR REPLACE FUNCTION jet.ucase(t text) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT (CASE WHEN length(upper(t)) = length(t) THEN upper(t)
                 ELSE (SELECT string_agg(CASE WHEN length(upper(c)) = 1 THEN upper(c) ELSE c END, '' ORDER BY i)
                       FROM regexp_split_to_table(t, '') WITH ORDINALITY AS letters(c, i)) END)::citext $$;
CREATE OR REPLACE FUNCTION jet.lcase(t text) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT lower(t)::citext $$;
CREATE OR REPLACE FUNCTION jet.instrfrom(n float8, t text, sought text, mode float8 = 1) RETURNS int
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    start int := jet.count_of(n, 1);
    found int;
BEGIN
    IF start > length(t) THEN RETURN 0; END IF;
    found := CASE WHEN mode = 0 THEN strpos(substr(t, start), sought)
                  ELSE strpos(lower(substr(t, start)), lower(sought)) END;
    RETURN CASE WHEN found = 0 THEN 0 ELSE found + start - 1 END;
END $$;
CREATE OR REPLACE FUNCTION jet.instr(t text, sought text) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT jet.instrfrom(1, t, sought) $$;
CREATE OR REPLACE FUNCTION jet.replace(t text, sought text, other text) RETURNS citext
LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT (CASE WHEN sought = '' THEN t
                 ELSE regexp_replace(t, regexp_replace(sought, '([][\\^$.|?*+(){}])', '\\\1', 'g'),
                                     replace(other, '\', '\\'), 'gi') END)::citext $$;
CREATE OR REPLACE FUNCTION jet.strcomp(a text, b text, mode float8 = 1) RETURNS int
LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT CASE WHEN mode = 0 THEN (a COLLATE "C" > b COLLATE "C")::int - (a COLLATE "C" < b COLLATE "C")::int
                ELSE (a::citext > b::citext)::int - (a::citext < b::citext)::int END $$;
CREATE OR REPLACE FUNCTION jet.space(n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT repeat(' ', jet.repetitions(n))::citext $$;
CREATE OR REPLACE FUNCTION jet.string(n float8, c text) RETURNS citext LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF c = '' THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN repeat(left(c, 1), jet.repetitions(n));
END $$;
CREATE OR REPLACE FUNCTION jet.asc(t text) RETURNS int LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF t = '' THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN ascii(t);
END $$;
CREATE OR REPLACE FUNCTION jet.chr(n float8) RETURNS citext LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    -- The server has no texts with the character 0.
    IF NOT round(n) BETWEEN 1 AND 255 THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN chr(round(n)::int);
END $$;
CREATE OR REPLACE FUNCTION jet.assigntext(t text, size float8) RETURNS citext LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF length(t) > size THEN PERFORM jet.fail(3163, 'Il testo è troppo lungo per il campo'); END IF;
    RETURN t;
END $$;
CREATE OR REPLACE FUNCTION jet.assignguid(t text) RETURNS citext LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF btrim(t) = '' THEN RETURN NULL; END IF;
    IF btrim(t) !~ '^(\{[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}\}|[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12})$' THEN
        PERFORM jet.fail(3421, 'Il testo non è un identificatore');
    END IF;
    RETURN '{' || upper(btrim(btrim(t), '{}')) || '}';
END $$;
)sql";

// first() and last(): the value of the group's first or last row, Null included. And what keeps an autonumber field
// above the numbers that rows are given.
const char *const aggregatesAndTriggers = R"sql(
CREATE OR REPLACE FUNCTION jet.first_step(kept anyarray, value anyelement) RETURNS anyarray
LANGUAGE sql IMMUTABLE AS $$ SELECT coalesce(kept, ARRAY[value]) $$;
CREATE OR REPLACE FUNCTION jet.last_step(kept anyarray, value anyelement) RETURNS anyarray
LANGUAGE sql IMMUTABLE AS $$ SELECT ARRAY[value] $$;
CREATE OR REPLACE FUNCTION jet.kept(kept anyarray) RETURNS anyelement LANGUAGE sql IMMUTABLE AS $$ SELECT kept[1] $$;
CREATE OR REPLACE AGGREGATE jet.first(anyelement) (SFUNC = jet.first_step, STYPE = anyarray, FINALFUNC = jet.kept);
CREATE OR REPLACE AGGREGATE jet.last(anyelement) (SFUNC = jet.last_step, STYPE = anyarray, FINALFUNC = jet.kept);

CREATE OR REPLACE FUNCTION jet.keep_number() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
    PERFORM setval(pg_get_serial_sequence(format('%I.%I', TG_TABLE_SCHEMA, TG_TABLE_NAME), TG_ARGV[0]),
                   (to_jsonb(NEW) ->> TG_ARGV[0])::bigint);
    RETURN NULL;
END $$;
)sql";

} // namespace

QStringList postgresDefinitions()
{
    QStringList statements{
        QStringLiteral("CREATE SCHEMA IF NOT EXISTS jet"),
        QStringLiteral("CREATE EXTENSION IF NOT EXISTS citext SCHEMA jet"),
        // Definitions that may be there already are left alone.
        QStringLiteral("DO $do$ BEGIN "
                       "IF to_regtype('jet.memo') IS NULL THEN "
                       "CREATE DOMAIN jet.byte AS smallint CHECK (VALUE BETWEEN 0 AND 255); "
                       "CREATE DOMAIN jet.memo AS citext; "
                       "CREATE DOMAIN jet.guid AS citext; "
                       "FOR size IN 1..255 LOOP "
                       "EXECUTE format('CREATE DOMAIN jet.text_%s AS citext "
                       "CHECK (length(VALUE::text) <= %s)', size, size); "
                       "END LOOP; END IF; END $do$")};
    // The last commit of each connection (PostgresCommit). Whoever may use the schema may note his own.
    statements.append(QStringLiteral("CREATE TABLE IF NOT EXISTS jet.commits (session bigint PRIMARY KEY, "
                                     "number bigint NOT NULL, at timestamptz NOT NULL)"));
    statements.append(QStringLiteral("GRANT SELECT, INSERT, UPDATE, DELETE ON jet.commits TO PUBLIC"));
    for (const char *part :
         {helpers, textFunctions, postgresNumberFunctions, postgresDateFunctions, aggregatesAndTriggers})
        statements.append(QString::fromUtf8(part));
    statements.append(QStringLiteral("COMMENT ON SCHEMA jet IS 'orvale %1'").arg(postgresDefinitionsVersion));
    return statements;
}

} // namespace dao
