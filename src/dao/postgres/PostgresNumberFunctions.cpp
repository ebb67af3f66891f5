// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresNumberFunctions.h"

namespace dao {

const char *const postgresNumberFunctions = R"sql(
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
)sql";

const char *const postgresDateFunctions = R"sql(
CREATE OR REPLACE FUNCTION jet.datefromtext(t text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    d timestamp := jet.dateornull(t);
BEGIN
    IF d IS NULL THEN PERFORM jet.fail(13, 'Il testo non è una data'); END IF;
    RETURN d;
END $$;
CREATE OR REPLACE FUNCTION jet.assigneddate(t text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    d timestamp := jet.dateornull(t);
BEGIN
    IF d IS NULL AND btrim(t, E' \t\r\n\u00a0') <> '' THEN PERFORM jet.fail(3421, 'Il testo non è una data'); END IF;
    RETURN d;
END $$;
CREATE OR REPLACE FUNCTION jet.isdatetext(t text) RETURNS boolean LANGUAGE sql IMMUTABLE AS $$
    SELECT jet.dateornull(t) IS NOT NULL $$;
-- The fraction is the time of day on both sides of day zero.
CREATE OR REPLACE FUNCTION jet.serial(d timestamp) RETURNS float8 LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT CASE WHEN d::date < date '1899-12-30'
                THEN (d::date - date '1899-12-30') - extract(epoch FROM d::time)::float8 / 86400
                ELSE (d::date - date '1899-12-30') + extract(epoch FROM d::time)::float8 / 86400 END $$;
CREATE OR REPLACE FUNCTION jet.datefromserial(n float8) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT (n > -657435 AND n < 2958466) THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN jet.in_range('1899-12-30'::timestamp + make_interval(days => trunc(n)::int)
                        + make_interval(secs => floor(abs(n - trunc(n)) * 86400 + 0.5)));
END $$;
CREATE OR REPLACE FUNCTION jet.formatdate(d timestamp, pattern text) RETURNS citext
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    result text := '';
    part text;
    after_hours boolean := false;
    number int;
BEGIN
    FOR part IN SELECT (regexp_matches(pattern, 'yyyy|yy|dd?|mm?|hh?|nn?|ss?|.', 'gi'))[1] LOOP
        number := CASE lower(left(part, 1))
            WHEN 'd' THEN extract(day FROM d)
            WHEN 'm' THEN CASE WHEN after_hours THEN extract(minute FROM d) ELSE extract(month FROM d) END
            WHEN 'h' THEN extract(hour FROM d)
            WHEN 'n' THEN extract(minute FROM d)
            WHEN 's' THEN extract(second FROM d)
            WHEN 'y' THEN CASE length(part) WHEN 4 THEN extract(year FROM d)
                                            WHEN 2 THEN extract(year FROM d)::int % 100 END END;
        IF lower(left(part, 1)) IN ('d', 'm', 'h', 'n', 's', 'y') THEN after_hours := lower(left(part, 1)) = 'h'; END IF;
        result := result || coalesce(lpad(number::text, greatest(length(part), length(number::text)), '0'), part);
    END LOOP;
    RETURN result;
END $$;
CREATE OR REPLACE FUNCTION jet.datetext(d timestamp) RETURNS citext LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT jet.formatdate(d, CASE WHEN d::date = date '1899-12-30' THEN 'hh:nn:ss'
                                  WHEN d::time = '00:00' THEN 'dd/mm/yyyy' ELSE 'dd/mm/yyyy hh:nn:ss' END) $$;
CREATE OR REPLACE FUNCTION jet.datevalue(d timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT date_trunc('day', d) $$;
CREATE OR REPLACE FUNCTION jet.timevalue(d timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT date '1899-12-30' + d::time $$;
CREATE OR REPLACE FUNCTION jet.dateserial(y float8, m float8, d float8) RETURNS timestamp
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    year_of int := jet.long(y);
BEGIN
    IF year_of BETWEEN 0 AND 99 THEN year_of := year_of + CASE WHEN year_of < 30 THEN 2000 ELSE 1900 END; END IF;
    IF NOT year_of BETWEEN 100 AND 9999 OR abs(m) > 120000 OR abs(d) > 4000000 THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN jet.in_range(make_timestamp(year_of, 1, 1, 0, 0, 0) + make_interval(months => jet.long(m) - 1)
                        + make_interval(days => jet.long(d) - 1));
END $$;
CREATE OR REPLACE FUNCTION jet.timeserial(h float8, m float8, s float8) RETURNS timestamp
LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT jet.in_range('1899-12-30'::timestamp
                        + make_interval(secs => jet.long(h)::float8 * 3600 + jet.long(m)::float8 * 60 + jet.long(s))) $$;
CREATE OR REPLACE FUNCTION jet.year(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(year FROM d)::int $$;
CREATE OR REPLACE FUNCTION jet.month(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(month FROM d)::int $$;
CREATE OR REPLACE FUNCTION jet.day(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(day FROM d)::int $$;
CREATE OR REPLACE FUNCTION jet.hour(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(hour FROM d)::int $$;
CREATE OR REPLACE FUNCTION jet.minute(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(minute FROM d)::int $$;
CREATE OR REPLACE FUNCTION jet.second(d timestamp) RETURNS int LANGUAGE sql IMMUTABLE STRICT AS $$
    SELECT extract(second FROM d)::int $$;
-- 1 is the first day of the week; days are numbered 1 Sunday to 7 Saturday.
CREATE OR REPLACE FUNCTION jet.weekday(d timestamp, first float8 = 1) RETURNS int
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF NOT jet.long(first) BETWEEN 1 AND 7 THEN PERFORM jet.fail(5, 'Chiamata di funzione non valida'); END IF;
    RETURN (extract(dow FROM d)::int + 1 - jet.long(first) + 7) % 7 + 1;
END $$;
CREATE OR REPLACE FUNCTION jet.datediff(part text, a timestamp, b timestamp, first float8 = 1) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    years int := jet.year(b) - jet.year(a);
    days int := b::date - a::date;
BEGIN
    CASE lower(part)
        WHEN 'yyyy' THEN RETURN years;
        WHEN 'q' THEN RETURN years * 4 + (jet.month(b) - 1) / 3 - (jet.month(a) - 1) / 3;
        WHEN 'm' THEN RETURN years * 12 + jet.month(b) - jet.month(a);
        WHEN 'y', 'd' THEN RETURN days;
        WHEN 'w' THEN RETURN days / 7; -- whole weeks
        WHEN 'ww' THEN RETURN (days - jet.weekday(b, first) + jet.weekday(a, first)) / 7; -- first days crossed
        WHEN 'h' THEN RETURN floor(extract(epoch FROM b) / 3600) - floor(extract(epoch FROM a) / 3600);
        WHEN 'n' THEN RETURN floor(extract(epoch FROM b) / 60) - floor(extract(epoch FROM a) / 60);
        WHEN 's' THEN RETURN extract(epoch FROM b) - extract(epoch FROM a);
        ELSE RETURN jet.fail(5, 'Chiamata di funzione non valida');
    END CASE;
END $$;
-- By months clipped to the month's end.
CREATE OR REPLACE FUNCTION jet.dateadd(part text, n float8, d timestamp) RETURNS timestamp
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
    number int := jet.long(trunc(n));
    months int := CASE lower(part) WHEN 'yyyy' THEN 12 WHEN 'q' THEN 3 WHEN 'm' THEN 1 END;
    days int := CASE WHEN lower(part) IN ('y', 'd', 'w') THEN 1 WHEN lower(part) = 'ww' THEN 7 END;
    seconds int := CASE lower(part) WHEN 'h' THEN 3600 WHEN 'n' THEN 60 WHEN 's' THEN 1 END;
BEGIN
    IF coalesce(months, days, seconds) IS NULL OR abs(number::bigint * months) > 120000
       OR abs(number::bigint * days) > 4000000 THEN
        PERFORM jet.fail(5, 'Chiamata di funzione non valida');
    END IF;
    RETURN jet.in_range(d + make_interval(months => coalesce(number * months, 0), days => coalesce(number * days, 0),
                                          secs => coalesce(number::float8 * seconds, 0)));
END $$;
CREATE OR REPLACE FUNCTION jet.datepart(part text, d timestamp, first float8 = 1) RETURNS int
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    CASE lower(part)
        WHEN 'yyyy' THEN RETURN jet.year(d);
        WHEN 'q' THEN RETURN extract(quarter FROM d)::int;
        WHEN 'm' THEN RETURN jet.month(d);
        WHEN 'y' THEN RETURN extract(doy FROM d)::int;
        WHEN 'd' THEN RETURN jet.day(d);
        WHEN 'w' THEN RETURN jet.weekday(d, first);
        -- the week of 1 January is the first
        WHEN 'ww' THEN RETURN (extract(doy FROM d)::int - 1 + jet.weekday(date_trunc('year', d), first) - 1) / 7 + 1;
        WHEN 'h' THEN RETURN jet.hour(d);
        WHEN 'n' THEN RETURN jet.minute(d);
        WHEN 's' THEN RETURN jet.second(d);
        ELSE RETURN jet.fail(5, 'Chiamata di funzione non valida');
    END CASE;
END $$;
-- By a number's pattern, a date's pattern, or as it is, by what the text can be read as.
CREATE OR REPLACE FUNCTION jet.formattext(t text, pattern text) RETURNS citext
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
    IF strpos(pattern, '0') > 0 THEN RETURN coalesce(jet.formatnumber(jet.numberornull(t), pattern), t::citext); END IF;
    RETURN coalesce(jet.formatdate(jet.dateornull(t), pattern), t::citext);
END $$;
)sql";

} // namespace dao
