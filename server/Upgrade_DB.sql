-- Upgrade_DB.sql: gives a database that an earlier Create_DB.sql set up what a new one has: change stamps that take no
-- room, and the journal of changed rows, by which programs see each other's work without reading everything anew.
--
--     psql -X -d DATABASE -f Upgrade_DB.sql
--
-- Run by the owner of the database, at any time, as often as one likes; programs may be open. All of it happens in
-- one transaction. Create_DB.sql ends with this script, too, so that both make the same. docs/SERVER.md tells more.

\if :{?vorna_set_up}
\else
\set ON_ERROR_STOP on
\set QUIET on
\set SHOW_CONTEXT never

BEGIN ISOLATION LEVEL READ COMMITTED;
SET LOCAL client_min_messages = error;
SET LOCAL search_path = public;
SET LOCAL lock_timeout = '30s';
\endif

DO $$
DECLARE
    owner_name name := (SELECT pg_get_userbyid(datdba) FROM pg_database WHERE datname = current_database());
BEGIN
    IF current_setting('server_version_num')::integer < 130000 THEN
        RAISE EXCEPTION 'Vorna needs PostgreSQL 13 or later, this server is %.',
            current_setting('server_version');
    END IF;
    IF to_regclass('public.tables_modification_date') IS NULL OR to_regclass('public.files') IS NULL
       OR to_regclass('public.tables_modification_date_last_date_seq') IS NULL THEN
        RAISE EXCEPTION 'The database "%" was not set up by Create_DB.sql.', current_database()
            USING HINT = 'Nothing was changed.';
    END IF;
    IF NOT pg_has_role(owner_name, 'MEMBER') THEN
        RAISE EXCEPTION 'The database "%" belongs to "%".', current_database(), owner_name
            USING HINT = 'Run this script as the owner of the database.';
    END IF;
    EXECUTE format('SET LOCAL ROLE %I', owner_name);
END
$$;

-- The journal --------------------------------------------------------------------------------------------------

-- Which rows each transaction has changed. A statement leaves a note for its table when it is through; the notes of
-- one transaction find their place among those of others by its commit alone, as keys drawn from a sequence would
-- come to light in another order, and whoever reads up to the last one would pass over those that come later.

CREATE TABLE IF NOT EXISTS change_journal (
    transaction_id xid8 NOT NULL,
    table_name text NOT NULL,
    kind text NOT NULL,          -- insert, update, delete, all, or other: of rows that no program keeps
    keys bigint[],               -- null where all rows count as changed
    paths text[],                -- the keys of tag_relationships
    is_first boolean NOT NULL    -- of its transaction
);
CREATE INDEX IF NOT EXISTS change_journal_transaction_id_idx ON change_journal (transaction_id);

-- The commits that left notes, by their stamps, which rise in the order in which they come to light.
CREATE TABLE IF NOT EXISTS change_commits (
    stamp bigint PRIMARY KEY,    -- milliseconds since 1970, as the last_date of its time
    transaction_id xid8 NOT NULL,
    client text                  -- whose commit it is: each program looks for those of others only
);

-- Journal and stamps are short-lived rows: they go before they are many, and a page is worth cleaning early.
ALTER TABLE change_journal SET (autovacuum_vacuum_scale_factor = 0.05);
ALTER TABLE change_commits SET (autovacuum_vacuum_scale_factor = 0.05);

-- Whose file has a path that changed.
CREATE INDEX IF NOT EXISTS files_path_idx ON files (storage_id) WHERE internal = 0;

-- Stamps -------------------------------------------------------------------------------------------------------

-- One row a client, which gets the new time in place: with room on the page, and no index, the old version goes at the
-- next look at the page, so that the table stays as it is.
DROP TRIGGER IF EXISTS stamp_change ON tables_modification_date;
DELETE FROM tables_modification_date WHERE last_date IS NULL;
ALTER TABLE tables_modification_date ADD COLUMN IF NOT EXISTS client text;
ALTER TABLE tables_modification_date DROP COLUMN IF EXISTS transaction_id;
ALTER TABLE tables_modification_date SET (fillfactor = 25);

CREATE OR REPLACE FUNCTION stamp_change() RETURNS trigger
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp
AS $$
DECLARE
    most_notes CONSTANT integer := 50;
    most_keys CONSTANT integer := 20000;
    -- A program names itself on each of its connections; all of psql and the like count as one more client.
    author text := nullif(current_setting('vorna.client', true), '');
    is_read_committed boolean := current_setting('transaction_isolation') = 'read committed';
    own_stamp bigint;
    stamp_date timestamp without time zone;
    milliseconds_ahead double precision;
    is_long boolean;
BEGIN
    -- Of many notes on one table becomes one, before anybody waits.
    SELECT count(*) > most_notes INTO is_long
    FROM (SELECT FROM public.change_journal WHERE transaction_id = NEW.transaction_id LIMIT most_notes + 1)
        AS notes;
    IF is_long THEN
        WITH notes AS (
            DELETE FROM public.change_journal WHERE transaction_id = NEW.transaction_id
            RETURNING table_name, kind, keys, paths
        ), sums AS (
            SELECT table_name, kind, count(DISTINCT key) + count(DISTINCT path) AS size,
                   coalesce(array_agg(DISTINCT key) FILTER (WHERE key IS NOT NULL), '{}') AS keys,
                   array_agg(DISTINCT path) FILTER (WHERE path IS NOT NULL) AS paths
            FROM notes LEFT JOIN LATERAL unnest(keys) AS key ON true
                 LEFT JOIN LATERAL unnest(paths) AS path ON true
            GROUP BY table_name, kind
        ), tables AS (
            SELECT table_name, bool_or(kind = 'all') OR sum(size) > most_keys AS is_all
            FROM sums GROUP BY table_name
        )
        INSERT INTO public.change_journal
        SELECT DISTINCT NEW.transaction_id, table_name, CASE WHEN is_all THEN 'all' ELSE kind END,
               CASE WHEN NOT is_all THEN keys END, CASE WHEN NOT is_all THEN paths END, false
        FROM sums JOIN tables USING (table_name);
    END IF;

    -- Kept until others see the commit, so that none can overtake another one between stamp and commit.
    PERFORM pg_advisory_xact_lock('public.tables_modification_date'::regclass::oid::bigint);

    -- Never the same millisecond twice, and never back, whatever the server's clock does.
    SELECT greatest(last_value + 1, floor(extract(epoch FROM clock_timestamp()) * 1000)::bigint) INTO own_stamp
    FROM public.tables_modification_date_last_date_seq;
    PERFORM setval('public.tables_modification_date_last_date_seq', own_stamp);
    stamp_date := timestamp 'epoch' + own_stamp * interval '1 millisecond';

    -- Nothing comes to light before the time on its stamp: of commits in one millisecond, each waits for its
    -- own. A clock that was put back is not waited for.
    milliseconds_ahead := own_stamp - extract(epoch FROM clock_timestamp()) * 1000;
    IF milliseconds_ahead BETWEEN 0 AND 10 THEN
        PERFORM pg_sleep(milliseconds_ahead / 1000);
    END IF;

    -- What is older than a day goes, some commits at a time. A transaction on a snapshot leaves it to the next one,
    -- as what was changed since its snapshot would make it fail; so it does with its client's older stamp.
    IF is_read_committed THEN
        UPDATE public.tables_modification_date SET last_date = stamp_date
        WHERE client IS NOT DISTINCT FROM author;
        IF FOUND THEN
            stamp_date := NULL;
        END IF;
        DELETE FROM public.tables_modification_date AS one
        WHERE last_date < timestamp 'epoch' + own_stamp * interval '1 millisecond' - interval '1 day'
           OR (client IS NOT DISTINCT FROM author AND EXISTS (
                   SELECT FROM public.tables_modification_date AS other
                   WHERE other.client IS NOT DISTINCT FROM author AND other.ctid < one.ctid));
        WITH aged_commits AS (
            DELETE FROM public.change_commits WHERE change_commits.stamp IN (
                SELECT aged.stamp FROM public.change_commits AS aged
                WHERE aged.stamp < own_stamp - 86400000 ORDER BY aged.stamp LIMIT 20)
            RETURNING transaction_id
        )
        DELETE FROM public.change_journal USING aged_commits
        WHERE change_journal.transaction_id = aged_commits.transaction_id;
    END IF;
    IF stamp_date IS NOT NULL THEN
        INSERT INTO public.tables_modification_date (last_date, client) VALUES (stamp_date, author);
    END IF;
    INSERT INTO public.change_commits VALUES (own_stamp, NEW.transaction_id, author);

    -- It goes out with the commit; whoever listens then reads the journal from where it was.
    PERFORM pg_notify('vorna_changes', left(coalesce(author, ''), 100));
    RETURN NULL;
END
$$;

-- Notes --------------------------------------------------------------------------------------------------------

-- Of a table whose rows no program keeps, one is enough for the stamp. "all" stands for changes after which nothing
-- that was read holds any more.
CREATE OR REPLACE FUNCTION note_change() RETURNS trigger
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp
AS $$
DECLARE
    is_all boolean := TG_NARGS > 0 OR (TG_OP = 'TRUNCATE' AND TG_TABLE_NAME <> 'tables_modification_date');
    is_first boolean := NOT EXISTS (SELECT FROM public.change_journal
                                    WHERE transaction_id = pg_current_xact_id());
BEGIN
    IF is_all OR is_first THEN
        INSERT INTO public.change_journal
        VALUES (pg_current_xact_id(), TG_TABLE_NAME, CASE WHEN is_all THEN 'all' ELSE 'other' END,
                CASE WHEN NOT is_all THEN '{}'::bigint[] END, NULL, is_first);
    END IF;
    RETURN NULL;
END
$$;

-- The tables whose rows programs keep, each with the key by which they ask for a row again: a function each, as its
-- statements stay planned.
DO $$
DECLARE
    noted record;
    event record;
    most_rows CONSTANT integer := 20000;
    body CONSTANT text := $body$
DECLARE
    changed %2$s[];
    is_all boolean;
BEGIN
    CASE TG_OP
    WHEN 'INSERT' THEN
        is_all := (SELECT count(*) > %3$s FROM (SELECT FROM new_rows LIMIT %3$s + 1) AS first_rows);
        changed := CASE WHEN NOT is_all THEN (SELECT array_agg(DISTINCT %1$I) FROM new_rows) END;
    WHEN 'DELETE' THEN
        is_all := (SELECT count(*) > %3$s FROM (SELECT FROM old_rows LIMIT %3$s + 1) AS first_rows);
        changed := CASE WHEN NOT is_all THEN (SELECT array_agg(DISTINCT %1$I) FROM old_rows) END;
    ELSE
        is_all := (SELECT count(*) > %3$s FROM (SELECT FROM new_rows LIMIT %3$s + 1) AS first_rows);
        changed := CASE WHEN NOT is_all THEN
            (SELECT array_agg(%1$I) FROM (SELECT %1$I FROM old_rows UNION SELECT %1$I FROM new_rows) AS met_rows) END;
    END CASE;
    -- A statement that met no row has changed nothing. The note goes with a savepoint that is rolled back.
    IF is_all OR changed IS NOT NULL THEN
        INSERT INTO public.change_journal
        VALUES (pg_current_xact_id(), TG_TABLE_NAME, CASE WHEN is_all THEN 'all' ELSE lower(TG_OP) END,
                %4$s, NOT EXISTS (SELECT FROM public.change_journal
                                  WHERE transaction_id = pg_current_xact_id()));
    END IF;
    RETURN NULL;
END
$body$;
BEGIN
    FOR noted IN
        SELECT tablename, column1 IS NOT NULL AS has_key, coalesce(column2, '') AS key_column,
               'note_rows_of_' || tablename AS function_name
        FROM pg_tables LEFT JOIN (VALUES
            ('files', 'file_id'), ('file_paths', 'path_id'), ('thumbnails', 'thumbnail_id'),
            ('file_tag', 'file_id'), ('tags', 'tag_id'), ('tag_groups', 'tag_group_id'),
            ('tag_group_links', 'tag_group_id'), ('tb_nodes', 'node_id'), ('tb_node_links', 'child_id'),
            ('tag_relationships', 'relationship_path'), ('browsing_trees', 'tree_id')) AS keys
            ON column1 = tablename
        WHERE schemaname = 'public' AND tableowner = current_user
          AND tablename NOT IN ('change_journal', 'change_commits')
    LOOP
        EXECUTE format('DROP TRIGGER IF EXISTS note_change ON public.%I', noted.tablename);
        IF noted.tablename = 'tables_modification_date' THEN
            -- A table of stamps that its owner empties is filled again at the commit: without a stamp nobody can write.
            CREATE TRIGGER note_change AFTER TRUNCATE ON public.tables_modification_date
                FOR EACH STATEMENT EXECUTE FUNCTION public.note_change();
            CONTINUE;
        END IF;
        EXECUTE format('CREATE TRIGGER note_change AFTER %s ON public.%I FOR EACH STATEMENT '
                       'EXECUTE FUNCTION public.note_change(%s)',
                       CASE WHEN noted.has_key THEN 'TRUNCATE' ELSE 'INSERT OR UPDATE OR DELETE OR TRUNCATE' END,
                       noted.tablename,
                       CASE WHEN noted.tablename IN ('vorna_version', 'scheme_version') THEN '''all''' END);
        CONTINUE WHEN NOT noted.has_key;
        EXECUTE format('CREATE OR REPLACE FUNCTION public.%I() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER '
                       'SET search_path = pg_catalog, pg_temp AS %L', noted.function_name,
                       format(body, noted.key_column,
                              CASE WHEN noted.tablename = 'tag_relationships' THEN 'text' ELSE 'bigint' END,
                              most_rows,
                              CASE WHEN noted.tablename = 'tag_relationships'
                                   THEN 'CASE WHEN NOT is_all THEN ''{}''::bigint[] END, changed'
                                   ELSE 'changed, NULL' END));
        EXECUTE format('REVOKE ALL ON FUNCTION public.%I() FROM PUBLIC, vorna_writer, vorna_reader',
                       noted.function_name);
        FOR event IN
            SELECT * FROM (VALUES ('insert', 'NEW TABLE AS new_rows'),
                                  ('delete', 'OLD TABLE AS old_rows'),
                                  ('update', 'OLD TABLE AS old_rows NEW TABLE AS new_rows'))
                AS events (name, rows)
        LOOP
            EXECUTE format('DROP TRIGGER IF EXISTS %I ON public.%I', 'note_' || event.name, noted.tablename);
            EXECUTE format('CREATE TRIGGER %I AFTER %s ON public.%I REFERENCING %s FOR EACH STATEMENT '
                           'EXECUTE FUNCTION public.%I()', 'note_' || event.name, event.name, noted.tablename,
                           event.rows, noted.function_name);
        END LOOP;
    END LOOP;
END
$$;

DROP TRIGGER IF EXISTS stamp_change ON change_journal;
CREATE CONSTRAINT TRIGGER stamp_change
    AFTER INSERT ON change_journal DEFERRABLE INITIALLY DEFERRED
    FOR EACH ROW WHEN (NEW.is_first) EXECUTE FUNCTION stamp_change();

-- What a program asks as the last thing before the commit of an edit: whether others have changed, since the commit that
-- it knows, what the edit rests on. From the answer on nobody else can commit.
CREATE OR REPLACE FUNCTION refuse_if_changed(since bigint, file_ids bigint[], tag_ids bigint[], group_ids bigint[],
                                             node_ids bigint[], tree_ids bigint[], tag_paths text[])
    RETURNS void LANGUAGE plpgsql SET search_path = pg_catalog, pg_temp
AS $$
BEGIN
    PERFORM pg_advisory_xact_lock('public.tables_modification_date'::regclass::oid::bigint);
    PERFORM FROM public.change_commits JOIN public.change_journal USING (transaction_id)
    WHERE stamp > since AND client IS DISTINCT FROM nullif(current_setting('vorna.client', true), '')
      AND (kind = 'all' OR paths && tag_paths OR keys && CASE
          WHEN table_name IN ('files', 'file_tag') THEN file_ids
          WHEN table_name = 'tags' THEN tag_ids
          WHEN table_name IN ('tag_groups', 'tag_group_links') THEN group_ids
          WHEN table_name IN ('tb_nodes', 'tb_node_links') THEN node_ids
          WHEN table_name = 'browsing_trees' THEN tree_ids
          END);
    IF FOUND THEN
        RAISE EXCEPTION 'Others have changed what this edit rests on.' USING ERRCODE = 'VO001';
    END IF;
END
$$;

REVOKE ALL ON FUNCTION note_change(), stamp_change() FROM PUBLIC, vorna_writer, vorna_reader;
REVOKE ALL ON change_journal, change_commits FROM PUBLIC, vorna_writer, vorna_reader;
REVOKE ALL ON FUNCTION refuse_if_changed(bigint, bigint[], bigint[], bigint[], bigint[], bigint[], text[])
    FROM PUBLIC, vorna_writer, vorna_reader;
GRANT SELECT ON change_journal, change_commits TO vorna_writer, vorna_reader;
GRANT EXECUTE ON FUNCTION refuse_if_changed(bigint, bigint[], bigint[], bigint[], bigint[], bigint[], text[])
    TO vorna_writer;

-- This transaction is a commit like any other: it brings the first stamp, and programs that are open read everything
-- anew.
INSERT INTO change_journal (transaction_id, table_name, kind, is_first)
VALUES (pg_current_xact_id(), 'scheme_version', 'all', true);

\if :{?vorna_set_up}
\else
COMMIT;

\echo 'The database is up to date.'
\endif
