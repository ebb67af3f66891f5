-- SPDX-License-Identifier: Apache-2.0
CREATE SCHEMA IF NOT EXISTS jet;
CREATE EXTENSION IF NOT EXISTS citext SCHEMA jet;

-- A domain for each of the language's field types. Definitions that may be there already are left alone.
DO $do$
BEGIN
    IF to_regtype('jet.memo') IS NULL THEN
        CREATE DOMAIN jet.byte AS smallint CHECK (VALUE BETWEEN 0 AND 255);
        CREATE DOMAIN jet.memo AS citext;
        CREATE DOMAIN jet.guid AS citext;
        FOR size IN 1..255 LOOP
            EXECUTE format('CREATE DOMAIN jet.text_%s AS citext CHECK (length(VALUE::text) <= %s)', size, size);
        END LOOP;
    END IF;
END $do$;

-- The last commit of each connection (PostgresCommit). Whoever may use the schema may note his own.
CREATE TABLE IF NOT EXISTS jet.commits (session bigint PRIMARY KEY, number bigint NOT NULL, at timestamptz NOT NULL);
GRANT SELECT, INSERT, UPDATE, DELETE ON jet.commits TO PUBLIC;
