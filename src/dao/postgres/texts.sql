-- SPDX-License-Identifier: Apache-2.0
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
