-- SPDX-License-Identifier: Apache-2.0
CREATE OR REPLACE FUNCTION jet.divide(a float8, b float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF b = 0 THEN PERFORM jet.fail(11, 'Divisione per zero'); END IF;
    RETURN a / b;
END $$;
CREATE OR REPLACE FUNCTION jet.integerdivide(a float8, b float8) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF jet.long(b) = 0 THEN PERFORM jet.fail(11, 'Divisione per zero'); END IF;
    RETURN jet.long(a)::bigint / jet.long(b);
END $$;
CREATE OR REPLACE FUNCTION jet.modulo(a float8, b float8) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF jet.long(b) = 0 THEN PERFORM jet.fail(11, 'Divisione per zero'); END IF;
    RETURN jet.long(a)::bigint % jet.long(b);
END $$;
CREATE OR REPLACE FUNCTION jet.power(a float8, b float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF (a < 0 AND b <> trunc(b)) OR (a = 0 AND b < 0) THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN power(a, b);
END $$;
CREATE OR REPLACE FUNCTION jet.abs(n float8) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT abs(n) $$;
CREATE OR REPLACE FUNCTION jet.sgn(n float8) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT sign(n)::int $$;
CREATE OR REPLACE FUNCTION jet.int(n float8) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT floor(n) $$;
CREATE OR REPLACE FUNCTION jet.fix(n float8) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT trunc(n) $$;
-- Halves of the decimal value to the even digit.
CREATE OR REPLACE FUNCTION jet.round(n float8, places float8 = 0) RETURNS float8
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    p int := jet.long(places);
    x numeric;
    shifted numeric;
BEGIN
    IF p < 0 THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    x := abs(n::text::numeric);
    shifted := x * 10::numeric ^ least(p, 20);
    IF shifted - trunc(shifted) = 0.5 AND trunc(shifted) % 2 = 0 THEN x := trunc(x, least(p, 20));
    ELSE x := round(x, least(p, 20));
    END IF;
    RETURN CASE WHEN n < 0 THEN -x ELSE x END;
END $$;
CREATE OR REPLACE FUNCTION jet.sqr(n float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF n < 0 THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN sqrt(n);
END $$;
CREATE OR REPLACE FUNCTION jet.exp(n float8) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT exp(n) $$;
CREATE OR REPLACE FUNCTION jet.log(n float8) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF n <= 0 THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN ln(n);
END $$;
CREATE OR REPLACE FUNCTION jet.cint(n float8) RETURNS smallint LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT round(n) BETWEEN -32768 AND 32767 THEN PERFORM jet.fail(6, 'Overflow'); END IF;
    RETURN round(n)::smallint;
END $$;
CREATE OR REPLACE FUNCTION jet.clng(n float8) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT jet.long(n) $$;
CREATE OR REPLACE FUNCTION jet.cbyte(n float8) RETURNS smallint LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT round(n) BETWEEN 0 AND 255 THEN PERFORM jet.fail(6, 'Overflow'); END IF;
    RETURN round(n)::smallint;
END $$;
CREATE OR REPLACE FUNCTION jet.cdbl(n float8) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT n $$;
CREATE OR REPLACE FUNCTION jet.csng(n float8) RETURNS real LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF abs(n) > 3.4028235677973366e38 THEN PERFORM jet.fail(6, 'Overflow'); END IF;
    RETURN CASE WHEN abs(n) < 1e-45 THEN 0 ELSE n::real END;
END $$;
CREATE OR REPLACE FUNCTION jet.ccur(n float8) RETURNS numeric LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF abs(n) > 922337203685477.5 THEN PERFORM jet.fail(6, 'Overflow'); END IF;
    RETURN jet.round(n, 4)::text::numeric;
END $$;
CREATE OR REPLACE FUNCTION jet.cbool(n float8) RETURNS boolean LANGUAGE sql IMMUTABLE STRICT AS $$ SELECT n <> 0 $$;
CREATE OR REPLACE FUNCTION jet.number(t text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    n float8 := jet.numberornull(t);
BEGIN
    IF n IS NULL THEN PERFORM jet.fail(13, 'Il testo non è un numero'); END IF;
    RETURN n;
END $$;
CREATE OR REPLACE FUNCTION jet.assignednumber(t text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    n float8 := jet.numberornull(t);
BEGIN
    IF n IS NULL AND btrim(t, E' \t\r\n\u00a0') <> '' THEN PERFORM jet.fail(3421, 'Il testo non è un numero'); END IF;
    RETURN n;
END $$;
CREATE OR REPLACE FUNCTION jet.isnumerictext(t text) RETURNS boolean LANGUAGE sql IMMUTABLE AS $$
    SELECT jet.numberornull(t) IS NOT NULL $$;
-- The server's shortest text, with a capital E and plain digits down to 0.000001.
CREATE OR REPLACE FUNCTION jet.numbertext(n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT (CASE WHEN n = 0 THEN '0' WHEN n::text ~ 'e-0[56]$' THEN n::text::numeric::text
                 ELSE upper(n::text) END)::citext $$;
CREATE OR REPLACE FUNCTION jet.str(n float8) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT (CASE WHEN n < 0 THEN '' ELSE ' ' END || jet.numbertext(n)::text)::citext $$;
-- Halves of the decimal value away from zero.
CREATE OR REPLACE FUNCTION jet.formatnumber(n float8, pattern text) RETURNS citext
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    parts text[] := regexp_match(pattern, '^([^0]*)(0+)(\.?)(0*)(.*)$');
    x numeric;
    digits text;
BEGIN
    IF parts IS NULL THEN RETURN pattern; END IF;
    IF parts[3] = '' THEN
        parts := regexp_match(pattern, '^([^0]*)(0+)()()(.*)$');
    END IF;
    x := round(abs(n::text::numeric) * CASE WHEN strpos(pattern, '%') > 0 THEN 100 ELSE 1 END, length(parts[4]));
    digits := split_part(x::text, '.', 1);
    digits := lpad(digits, greatest(length(digits), length(parts[2])), '0') || parts[3]
              || split_part(x::text, '.', 2);
    RETURN CASE WHEN n < 0 AND x <> 0 THEN '-' ELSE '' END || parts[1] || digits || parts[5];
END $$;
