-- Permessi delle postazioni: leggono e scrivono le righe, non cambiano le tabelle.
-- Da eseguire nel database dell'archivio come suo proprietario; si può ripetere.
BEGIN;
DO $$
BEGIN
    IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = %1) THEN
        CREATE ROLE %2 NOLOGIN;
    END IF;
    EXECUTE format('REVOKE ALL ON DATABASE %I FROM PUBLIC', current_database());
    EXECUTE format('GRANT CONNECT ON DATABASE %I TO %I', current_database(), %1);
END $$;
GRANT USAGE ON SCHEMA jet, %3 TO %2;
GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA %3 TO %2;
GRANT USAGE, SELECT, UPDATE ON ALL SEQUENCES IN SCHEMA %3 TO %2;
ALTER DEFAULT PRIVILEGES IN SCHEMA %3
    GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO %2;
ALTER DEFAULT PRIVILEGES IN SCHEMA %3
    GRANT USAGE, SELECT, UPDATE ON SEQUENCES TO %2;
-- La versione delle tabelle la scrive solo chi le cambia.
REVOKE INSERT, UPDATE, DELETE ON clinical.orvale_properties FROM %2;
COMMIT;
