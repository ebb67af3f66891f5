-- SPDX-License-Identifier: Apache-2.0
-- Helpers: errors, whole numbers, the number and the date that a text stands for, a pattern as a regular
-- expression. Texts are taken as text, so that the server's own functions see them; where a result may be compared
-- it is citext.
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
