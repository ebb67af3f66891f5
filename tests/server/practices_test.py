#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What the program does with practices on a database server: errors, import, copies, the workstations' role,
backups.

usage: with-postgres practices_test.py ORVALE SOURCES

The server is the one that with-postgres has started; its accounts need no password but for "conparola".
"""

import os
import pathlib
import re
import shutil
import signal
import socket
import sqlite3
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest

ORVALE, SOURCES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
SERVER = os.environ["CLIVARA_TEST_SERVER"].rsplit("/", 1)[0]
SCHEMAS = {
    "clinical": "Orvale", "codes": "Tabelle", "third": "Terzo", "doctors": "Medici", "local": "Locale", "events": "Eventi",
}
PASSWORD = "segreto-di-prova"


def orvale(*arguments, **environment):
    return subprocess.run(
        [ORVALE, *map(str, arguments)], capture_output=True, encoding="utf-8", timeout=100,
        env={**os.environ, **environment},
    )


def psql(database, sql, user="orvale"):
    run = subprocess.run(
        ["psql", "-X", "-q", "-A", "-t", "-v", "ON_ERROR_STOP=1", "-U", user, "-d", database, "-c", sql],
        capture_output=True, encoding="utf-8", timeout=60,
    )
    if run.returncode != 0:
        raise AssertionError(run.stderr)
    return run.stdout.strip().splitlines()


def copy_of(database, name):
    subprocess.run(["createdb", "--template", database, name], check=True)
    return name


def address(database):
    return f"{SERVER}/{database}"


class OldServer(threading.Thread):
    """Answers as a server of an older version does: it lets everybody in and says its version."""

    def __init__(self):
        super().__init__(daemon=True)
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]

    @staticmethod
    def message(kind, body):
        return kind + struct.pack("!I", len(body) + 4) + body

    def run(self):
        while True:
            connection, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    @staticmethod
    def received(connection):
        try:
            return connection.recv(8192)
        except ConnectionResetError:
            return b""

    def serve(self, connection):
        ready = self.message(b"Z", b"I")
        with connection:
            while len(start := connection.recv(8192)) == 8:
                connection.sendall(b"N")  # neither TLS nor GSS
            if not start:
                return
            status = b"server_version\0" + b"13.9\0"
            encoding = b"client_encoding\0UTF8\0"
            connection.sendall(
                self.message(b"R", struct.pack("!I", 0)) + self.message(b"S", status)
                + self.message(b"S", encoding) + ready
            )
            while question := self.received(connection):
                if not question[5:].upper().startswith(b"SELECT"):
                    connection.sendall(self.message(b"C", b"SET\0") + ready)
                    continue
                column = b"version\0" + struct.pack("!IHIhih", 0, 0, 25, -1, -1, 0)
                text = b"PostgreSQL 13.9"
                connection.sendall(
                    self.message(b"T", struct.pack("!H", 1) + column)
                    + self.message(b"D", struct.pack("!HI", 1, len(text)) + text)
                    + self.message(b"C", b"SELECT 1\0") + ready
                )


class PracticesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        run = orvale("demo", address("studio"), "--patients", "5", "--years", "1", "--seed", "7")
        assert run.returncode == 0, run.stderr
        psql("orvale", f"CREATE ROLE conparola LOGIN PASSWORD '{PASSWORD}'; CREATE ROLE senzadiritti LOGIN")

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def refuses(self, words, *arguments, **environment):
        run = orvale(*arguments, **environment)
        self.assertEqual(len(run.stderr.splitlines()), 1, run.stderr)
        self.assertIn(words, run.stderr)
        self.assertNotEqual(run.returncode, 0)
        self.assertNotIn(PASSWORD, run.stdout + run.stderr)

    def succeeds(self, *arguments, **environment):
        run = orvale(*arguments, **environment)
        self.assertEqual((run.returncode, run.stderr), (0, ""), run.stdout)
        return run.stdout

    def test_what_cannot_be_opened_is_told_in_one_line(self):
        psql("orvale", "CREATE DATABASE altrarazza TEMPLATE template0 LOCALE_PROVIDER libc LOCALE 'C'")
        copy_of("studio", "nuovo")
        psql("nuovo", "UPDATE clinical.orvale_properties SET value = '99' WHERE name = 'schema_version'")
        copy_of("studio", "nuovefunzioni")
        psql("nuovefunzioni", "COMMENT ON SCHEMA jet IS 'orvale 99'")
        copy_of("studio", "fermo")
        psql("orvale", "ALTER DATABASE fermo SET default_transaction_read_only = on")
        copy_of("studio", "chiuso")
        psql("orvale", "REVOKE CONNECT ON DATABASE chiuso FROM PUBLIC")
        copy_of("studio", "a_meta")
        psql("a_meta", "GRANT USAGE ON SCHEMA jet, clinical, codes, third, doctors, local, events TO senzadiritti")
        old = OldServer()
        old.start()
        no_answer = "a questo indirizzo non risponde nessun server"
        with_password = f"postgresql://conparola:{PASSWORD}@"
        for given, words in [
            ("postgresql://server", "L'indirizzo del database non è valido"),
            ("postgresql:///a/b", "L'indirizzo del database non è valido"),
            ("postgresql://non-esiste.invalid/studio", no_answer),
            ("postgresql://127.0.0.1:1/studio", no_answer),
            (f"{with_password[:-1]}@127.0.0.1:1/studio", no_answer),
            (f"postgresql:///studio?host={self.folder}", no_answer),
            ("postgresql:///studio?colore=rosso", "un'opzione sbagliata"),
            (address("nessuno"), "il server non ha questo database"),
            ("postgresql://nessuno@/studio", "il server rifiuta il collegamento"),
            ("postgresql://conparola:sbagliata@/studio", "il nome o la password non sono quelli di un utente"),
            ("postgresql://conparola@/studio", "manca la password"),
            (f"{with_password}/nessuno", "il server non ha questo database"),
            ("postgresql://senzadiritti@/chiuso", "non permette a questo utente"),
            ("postgresql://senzadiritti@/studio", "Manca il permesso di usare il database"),
            ("postgresql://senzadiritti@/a_meta", "Manca il permesso"),
            (address("orvale"), "Impossibile trovare il database"),
            (address("altrarazza"), "le regole ICU che occorrono"),
            (address("nuovo"), "di una versione più nuova (99)"),
            (address("nuovefunzioni"), "di una versione più recente del programma"),
            (address("fermo"), "è di sola lettura"),
            (f"postgresql://127.0.0.1:{old.port}/studio", "è PostgreSQL 13: occorre la versione 15"),
        ]:
            with self.subTest(given):
                self.refuses(words, "check", given)
        self.refuses("il server non ha questo database", "play", "--practice", address("nessuno"), "-")
        with self.subTest("making a practice without the right to"):
            self.refuses("Manca il permesso", "demo", "postgresql://senzadiritti@/mai")
            self.refuses("Manca il permesso", "demo", "postgresql://senzadiritti@/orvale")
            self.refuses("contiene già un archivio", "demo", address("studio"))
        self.assertEqual(psql("orvale", "SELECT count(*) FROM pg_database WHERE datname = 'mai'"), ["0"])

    def test_accounts_come_from_the_address_the_host_and_the_environment(self):
        copy_of("studio", "conti")
        psql("conti", "GRANT USAGE ON SCHEMA jet, clinical, codes, third, doctors, local, events TO conparola; "
                      "GRANT SELECT ON ALL TABLES IN SCHEMA clinical, codes, third, doctors, local, events TO conparola")
        pgpass = self.folder / "pgpass"
        pgpass.write_text(f"*:*:conti:conparola:{PASSWORD}\n")
        pgpass.chmod(0o600)
        wrong = {"PGPASSWORD": "sbagliata"}
        for given, environment, works in [
            (f"postgresql://conparola:{PASSWORD}@/conti", {}, True),
            (f"postgresql:///conti?user=conparola&password={PASSWORD}", wrong, True),
            ("postgresql://conparola@/conti", {"PGPASSWORD": PASSWORD}, True),
            (address("conti"), {"PGUSER": "conparola", "PGPASSWORD": PASSWORD}, True),
            ("postgresql://conparola@/conti", {"PGPASSFILE": str(pgpass)}, True),
            (address("conti"), {"CLIVARA_DB_USER": "conparola", "CLIVARA_DB_PASSWORD": PASSWORD, **wrong}, True),
            ("postgresql://conparola@/conti", {"CLIVARA_DB_USER": "conparola", "CLIVARA_DB_PASSWORD": PASSWORD}, True),
            # Somebody else's password is not tried.
            ("postgresql://conparola@/conti", {"CLIVARA_DB_USER": "altro", "CLIVARA_DB_PASSWORD": PASSWORD}, False),
            ("postgresql://conparola@/conti", wrong, False),
        ]:
            with self.subTest(given=given, environment=environment):
                run = orvale("check", given, **environment)
                self.assertEqual(run.returncode == 0, works, run.stderr)
                self.assertNotIn(PASSWORD, run.stdout + run.stderr)
        # Nothing of it stays in the practice or in what the program says on its way.
        made = self.succeeds("demo", f"postgresql://orvale:{PASSWORD}@/fatto", "--patients", "1", "--years", "1")
        self.assertNotIn(PASSWORD, made)
        dump = subprocess.run(["pg_dump", "fatto"], capture_output=True, encoding="utf-8", check=True).stdout
        self.assertNotIn(PASSWORD, dump)

    def test_import_arrives_whole_and_a_second_one_is_refused(self):
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        said = self.succeeds("import", SOURCES / "practice-tiny", address("importato"), "--region", "15")
        self.assertIn("La prova è riuscita", said)
        report = (self.folder / "importato.import.tsv").read_text(encoding="utf-8")
        self.assertTrue("clinical\tarchivio" in report and "diverso" not in report)
        self.succeeds("import", SOURCES / "practice-tiny", self.folder / "cartella")
        self.same_rows("importato", self.folder / "cartella")
        for further in [], ["--replace"]:
            self.refuses("archivio", "import", SOURCES / "practice-tiny", address("importato"), *further)
        # One that fails on its way leaves no database that was not there before, and nothing in one that was.
        broken = self.folder / "rotta"
        shutil.copytree(SOURCES / "practice-tiny", broken)
        clinical = next(path for path in broken.iterdir() if path.name.lower() == "orvale.mdb")
        clinical.chmod(0o600)
        os.truncate(clinical, clinical.stat().st_size // 2)
        psql("orvale", "CREATE DATABASE vuoto TEMPLATE template0 LOCALE_PROVIDER icu ICU_LOCALE 'und' LC_COLLATE 'C'")
        for target in "mai_fatto", "vuoto":
            self.assertNotEqual(orvale("import", broken, address(target)).returncode, 0)
        self.nothing_left("mai_fatto", "vuoto")

    def nothing_left(self, missing, empty):
        self.assertEqual(psql("orvale", f"SELECT count(*) FROM pg_database WHERE datname = '{missing}'"), ["0"])
        schemas = psql(empty, "SELECT nspname FROM pg_namespace WHERE nspname !~ '^pg_|^information_schema$'")
        self.assertEqual(schemas, ["public"])
        self.assertEqual(psql(empty, "SELECT extname FROM pg_extension"), ["plpgsql"])

    def same_rows(self, database, folder):
        """Counts the rows of each table on both sides, and compares the texts of every column, without the program."""
        tables = 0
        for schema, name in SCHEMAS.items():
            file = sqlite3.connect(folder / f"{name}.sqlite")
            file.create_collation("JET", lambda a, b: (a > b) - (a < b))
            known = [row[0] for row in file.execute("SELECT name FROM sqlite_master WHERE type = 'table'")]
            for table in known:
                if re.match("sqlite_|engine_", table) or table in ("orvale_properties", "orvale_refused_rows"):
                    continue
                columns = psql(database, "SELECT attname FROM pg_attribute JOIN pg_type t ON t.oid = atttypid WHERE "
                               f"attrelid = '{schema}.\"{table}\"'::regclass AND attnum > 0 AND attname <> 'engine_row' "
                               "AND t.typname ~ '^(text_|memo|guid|integer|int4|smallint|byte)' ORDER BY attnum")
                lengths = " || '/' || ".join(
                    f"coalesce(sum(length(cast(\"{column}\" AS text))), 0)" for column in columns
                ) or "''"
                query = f'SELECT count(*) || \'/\' || {lengths} FROM {{}}"{table}"'
                self.assertEqual(psql(database, query.format(schema + ".")), [file.execute(query.format("")).fetchone()[0]],
                                 f"{schema}.{table}")
                tables += 1
            file.close()
        self.assertGreater(tables, 30)

    def test_copies_are_the_same_in_every_direction(self):
        copy_of("studio", "originale")
        psql("originale", "UPDATE clinical.archivio SET cognome = E'D''A\\tc\\\\o\\nè€😀' WHERE cod_paz = 1")
        # A number that was given to a row which is gone is not given again.
        psql("originale", "SELECT setval(pg_get_serial_sequence('clinical.\"PROBLEMS\"', 'idproblems'), 5000) "
                          "FROM pg_attribute WHERE attrelid = 'clinical.\"PROBLEMS\"'::regclass "
                          "AND attname = 'idproblems' AND attidentity <> ''")
        first, second = self.folder / "prima", self.folder / "seconda"
        chain = [address("originale"), first, second, address("ritorno"), address("ancora")]
        for source, target in zip(chain, chain[1:]):
            said = self.succeeds("copy", source, target)
            self.assertIn("la prova è riuscita", said)
        self.assertIn("Nessuna incoerenza", self.succeeds("check", address("ancora")))
        self.same_rows("originale", first)
        self.same_rows("ancora", second)
        surname = "SELECT cognome FROM clinical.archivio WHERE cod_paz = 1"
        self.assertEqual(psql("ancora", surname), psql("originale", surname))
        definitions = ["pg_dump", "--schema-only", "--no-owner", "--schema=clinical", "--schema=doctors"]
        dumps = [
            sorted(subprocess.run([*definitions, name], capture_output=True, encoding="utf-8", check=True).stdout.splitlines())
            for name in ("originale", "ancora")
        ]
        self.assertEqual(*[[line for line in dump if "restrict " not in line] for dump in dumps])
        for source, target in [(first, second), (first, address("ancora")), (address("ancora"), first)]:
            before = psql("ancora", "SELECT count(*) FROM clinical.archivio")
            self.refuses("già", "copy", source, target)
            self.assertEqual(psql("ancora", "SELECT count(*) FROM clinical.archivio"), before)

    def test_copy_that_fails_leaves_nothing_behind(self):
        source = self.folder / "sorgente"
        self.succeeds("demo", source, "--patients", "1", "--years", "1")
        file = sqlite3.connect(source / "Eventi.sqlite")
        with file:  # a text that the server does not take, in the last database
            file.execute("CREATE TABLE APPUNTI (testo TEXT)")
            file.execute("INSERT INTO APPUNTI VALUES ('a' || char(0) || 'b')")
        file.close()
        psql("orvale", "CREATE DATABASE deserto TEMPLATE template0 LOCALE_PROVIDER icu ICU_LOCALE 'und' LC_COLLATE 'C'")
        for target in "mai_copiato", "deserto":
            self.refuses("events.APPUNTI", "copy", source, address(target))
        self.nothing_left("mai_copiato", "deserto")
        self.refuses("non esiste", "copy", self.folder / "nessuna", self.folder / "copia")
        self.refuses("il server non ha questo database", "copy", address("nessuno"), self.folder / "copia")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["sorgente"])

    def test_copy_that_is_interrupted_leaves_nothing_behind(self):
        target = self.folder / "copia"

        def has_begun():
            return list(self.folder.iterdir()) or psql("orvale", databases) == ["1"]

        databases = "SELECT count(*) FROM pg_database WHERE datname = 'interrotto'"
        for arguments in [(address("studio"), target), (address("studio"), address("interrotto"))]:
            process = subprocess.Popen([ORVALE, "copy", *map(str, arguments)], stderr=subprocess.PIPE)
            while not has_begun():
                time.sleep(0.02)
            process.send_signal(signal.SIGINT)
            _, error = process.communicate(timeout=60)
            self.assertEqual((process.returncode, b"interrotta" in error), (130, True), error)
        self.assertEqual(list(self.folder.iterdir()), [])
        self.assertEqual(psql("orvale", databases), ["0"])

    def test_workstations_write_rows_and_change_no_definition(self):
        copy_of("studio", "ambulatorio")
        for _ in range(2):  # it can be run again
            psql("ambulatorio", self.succeeds("role", "postazioni del gruppo"))
        psql("orvale", 'CREATE ROLE stanza1 LOGIN IN ROLE "postazioni del gruppo"')
        scenarios = pathlib.Path(__file__).parents[1] / "scenarios"
        self.succeeds("play", "--practice", address("ambulatorio"), scenarios / "patients.txt")
        expected = (scenarios / "problems.jsonl").read_text(encoding="utf-8")
        printed = self.succeeds("play", "--practice", address("ambulatorio"), "--shots", self.folder,
                                scenarios / "problems.scenario", PGUSER="stanza1")
        self.assertEqual(printed, expected)
        for definition in [
            "CREATE TABLE clinical.x (a int)", "CREATE TABLE public.x (a int)", "CREATE SCHEMA x", "CREATE TEMP TABLE x (a int)",
            "DROP TABLE clinical.archivio", "ALTER TABLE clinical.archivio ADD x int", "TRUNCATE clinical.archivio",
            "CREATE INDEX ON clinical.archivio (cognome)", "DROP SCHEMA clinical CASCADE", "DROP FUNCTION jet.val",
            "CREATE OR REPLACE FUNCTION jet.val(t text) RETURNS float8 LANGUAGE sql AS 'SELECT 1.0::float8'",
            "UPDATE clinical.orvale_properties SET value = '1'",
        ]:
            with self.subTest(definition):
                self.assertRaisesRegex(AssertionError, "permission denied|must be owner", psql, "ambulatorio", definition,
                                       "stanza1")
        scenario = self.folder / "definizioni.scenario"
        scenario.write_text("today 2026-11-21\nexec clinical CREATE TABLE x (a LONG)\n")
        self.refuses("Manca il permesso", "play", "--practice", address("ambulatorio"), scenario, PGUSER="stanza1")

    def test_definitions_of_an_earlier_program_are_renewed_by_the_owner(self):
        copy_of("studio", "dipassato")
        psql("dipassato", "GRANT USAGE ON SCHEMA jet, clinical, codes, third, doctors, local, events TO senzadiritti; "
                          "GRANT SELECT ON ALL TABLES IN SCHEMA clinical, codes, third, doctors, local, events TO senzadiritti; "
                          "DROP TABLE jet.commits; COMMENT ON SCHEMA jet IS 'orvale 1'")
        self.refuses("deve aprirlo per primo il suo proprietario", "check", "postgresql://senzadiritti@/dipassato")
        self.succeeds("check", address("dipassato"))
        self.assertEqual(psql("dipassato", "SELECT count(*) FROM jet.commits"), ["1"])
        self.succeeds("check", "postgresql://senzadiritti@/dipassato")

    def test_backup_is_restored_into_a_new_database(self):
        backup = self.folder / "studio.dump"
        subprocess.run(["pg_dump", "-Fc", "-f", backup, "studio"], check=True)
        subprocess.run(["createdb", "--template=template0", "--encoding=UTF8", "--locale-provider=icu", "--icu-locale=und",
                        "--lc-collate=C", "--lc-ctype=C.UTF-8", "ripristinato"], check=True)
        subprocess.run(["pg_restore", "--exit-on-error", "-d", "ripristinato", backup], check=True)
        self.assertIn("Nessuna incoerenza", self.succeeds("check", address("ripristinato")))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
