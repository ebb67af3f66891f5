-- SPDX-License-Identifier: Apache-2.0
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
