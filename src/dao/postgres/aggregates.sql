-- SPDX-License-Identifier: Apache-2.0
-- first() and last(): the value of the group's first or last row, Null included. And what keeps an autonumber field
-- above the numbers that rows are given.
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
