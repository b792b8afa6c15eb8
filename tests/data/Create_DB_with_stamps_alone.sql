-- Create_DB.sql: turns an empty database of a PostgreSQL server into one that Vorna clients share.
--
--     psql -X -d DATABASE -f Create_DB.sql
--
-- Run once, by the owner of an empty UTF-8 database on PostgreSQL 13 or later. All of it happens in one
-- transaction: when something is amiss, psql says what, ends with a failure, and the database is as before.
-- docs/SERVER.md tells the rest: roles, rights, backup, upgrade.

\set ON_ERROR_STOP on
\set QUIET on
\set SHOW_CONTEXT never

BEGIN ISOLATION LEVEL READ COMMITTED;
SET LOCAL client_min_messages = error;
SET LOCAL search_path = public;

-- Is this the place? -----------------------------------------------------------------------------------------

DO $$
DECLARE
    owner_name name := (SELECT pg_get_userbyid(datdba) FROM pg_database WHERE datname = current_database());
    found_object text;
BEGIN
    IF current_setting('server_version_num')::integer < 130000 THEN
        RAISE EXCEPTION 'Vorna needs PostgreSQL 13 or later, this server is %.',
            current_setting('server_version');
    END IF;
    IF getdatabaseencoding() <> 'UTF8' THEN
        RAISE EXCEPTION 'Vorna needs a database in UTF8, "%" is in %.', current_database(),
            getdatabaseencoding()
            USING HINT = 'Make a new one: createdb --encoding=UTF8 --template=template0 NAME';
    END IF;
    IF NOT pg_has_role(owner_name, 'MEMBER') THEN
        RAISE EXCEPTION 'The database "%" belongs to "%".', current_database(), owner_name
            USING HINT = 'Run this script as the owner of the database.';
    END IF;

    -- What an extension brings along does not count.
    SELECT format('%I.%I', nspname, object_name) INTO found_object
    FROM (SELECT 'pg_class'::regclass AS catalog, oid, relnamespace AS namespace, relname AS object_name
          FROM pg_class WHERE relkind IN ('r', 'p', 'f', 'v', 'm', 'S')
          UNION ALL
          SELECT 'pg_proc'::regclass, oid, pronamespace, proname FROM pg_proc) AS object
    JOIN pg_namespace ON pg_namespace.oid = namespace
    WHERE nspname !~ '^pg_' AND nspname <> 'information_schema'
      AND NOT EXISTS (SELECT FROM pg_depend
                      WHERE classid = catalog AND objid = object.oid AND deptype = 'e')
    ORDER BY object_name <> 'files', object_name
    LIMIT 1;
    IF found_object IS NOT NULL THEN
        RAISE EXCEPTION 'The database "%" is not empty: it holds %.', current_database(), found_object
            USING HINT = 'Vorna needs a database of its own. One that is set up already stays as it is.';
    END IF;
END
$$;

-- Roles --------------------------------------------------------------------------------------------------------

-- Roles belong to the whole server: another database may have brought them already.
DO $$
DECLARE
    role_name name;
BEGIN
    FOREACH role_name IN ARRAY ARRAY['vorna_writer', 'vorna_reader'] LOOP
        CONTINUE WHEN EXISTS (SELECT FROM pg_roles WHERE rolname = role_name);
        BEGIN
            EXECUTE format('CREATE ROLE %I NOLOGIN', role_name);
        EXCEPTION
            WHEN duplicate_object OR unique_violation THEN
                NULL; -- the set-up of another database was a moment faster
            WHEN insufficient_privilege THEN
                RAISE EXCEPTION 'The role "%" is missing, and "%" may not create roles.', role_name,
                    current_user
                    USING HINT = 'Let an administrator run: CREATE ROLE vorna_writer NOLOGIN; '
                                 'CREATE ROLE vorna_reader NOLOGIN;';
        END;
    END LOOP;
END
$$;

-- Where an administrator runs this in somebody's place, all is to belong to the owner of the database.
DO $$
BEGIN
    EXECUTE format('SET LOCAL ROLE %I',
                   (SELECT pg_get_userbyid(datdba) FROM pg_database WHERE datname = current_database()));
END
$$;

-- Tables -------------------------------------------------------------------------------------------------------

-- Some clients insert by position: the order of the columns is part of the format. Dates are whole seconds
-- since 1970. Each bigserial brings the sequence <table>_<column>_seq, out of which clients draw keys too.

CREATE TABLE files (
    file_id bigserial PRIMARY KEY,
    file_name text,
    file_description text,
    file_size bigint NOT NULL,
    addition_date bigint NOT NULL,
    modification_date bigint NOT NULL,
    id_code character(7) NOT NULL UNIQUE,
    load_id bigint NOT NULL,
    storage_id bigint NOT NULL CONSTRAINT files_storage_id_check CHECK (storage_id >= 0),
    thumbnail_id bigint,
    data_checksum bigint NOT NULL,
    internal integer NOT NULL,
    CONSTRAINT checksum_valid CHECK (data_checksum >= 0)
);

CREATE TABLE file_paths (
    path_id bigserial PRIMARY KEY,
    path text NOT NULL,
    rel_path text NOT NULL
);

CREATE TABLE thumbnails (
    thumbnail_id bigserial PRIMARY KEY,
    thumbnail bytea NOT NULL
);

CREATE TABLE file_tag (
    file_id bigint NOT NULL,
    tag_id bigint NOT NULL,
    PRIMARY KEY (file_id, tag_id)
);

CREATE TABLE storage (
    storage_id bigserial PRIMARY KEY,
    data bytea
);
-- Most contents are compressed already, and trying again costs more than the write.
ALTER TABLE storage ALTER COLUMN data SET STORAGE EXTERNAL;

CREATE TABLE storage_info (
    storage_id bigint PRIMARY KEY,
    continue_id bigint
);

CREATE TABLE tags (
    tag_id bigserial PRIMARY KEY,
    tag_name text,
    tag_description text,
    creation_date bigint NOT NULL,
    created_by text
);

CREATE TABLE tag_group_links (
    tag_id bigint NOT NULL,
    tag_group_id bigint NOT NULL,
    PRIMARY KEY (tag_id, tag_group_id)
);

CREATE TABLE tag_groups (
    tag_group_id bigserial PRIMARY KEY,
    name text
);

CREATE TABLE tb_node_links (
    parent_id bigint NOT NULL,
    child_id bigint NOT NULL PRIMARY KEY,
    browsing_tree_id bigint NOT NULL DEFAULT 1
);

CREATE TABLE tb_nodes (
    node_id bigserial PRIMARY KEY,
    tag_id bigint NOT NULL,
    tr_options integer NOT NULL,
    inverted integer NOT NULL,
    CONSTRAINT valid_node_id CHECK (node_id > 0)
);

CREATE TABLE tb_autolinks (
    link_id text PRIMARY KEY,
    link_abs_path text,
    link_rel_path text
);

CREATE TABLE tb_nodes_autolinks (
    link_id text,
    node_id bigint
);

CREATE TABLE tag_relationships (
    relationship_path text PRIMARY KEY
);

CREATE TABLE browsing_trees (
    tree_id bigserial PRIMARY KEY,
    tree_name text
);

CREATE TABLE vorna_version (version text);
CREATE TABLE scheme_version (version text);

-- Seeds --------------------------------------------------------------------------------------------------------

INSERT INTO vorna_version VALUES ('4.1.3');
INSERT INTO scheme_version VALUES ('4.1.0');
INSERT INTO browsing_trees (tree_name) VALUES ('Default'); -- takes id 1, the default tree

-- The change stamp ---------------------------------------------------------------------------------------------

-- max(last_date) tells a client whether anything was written since it last looked. For that the stamps must
-- rise in the order in which commits become visible. The time at which a transaction began or wrote does not:
-- a long one would come to light under a time that others have passed already. So a transaction only leaves a
-- note when it writes, a row under its own number that waits for nobody, and is stamped while it commits.

CREATE TABLE tables_modification_date (
    last_date timestamp without time zone, -- UTC, whole milliseconds; null in a note
    transaction_id xid8 UNIQUE,            -- null in a stamp
    client text                            -- whose stamp it is: each looks for those of others only
);

-- The last stamp given, in milliseconds since 1970: unlike a row it is the same for every transaction, also
-- for one that works on a snapshot from before the last commit.
CREATE SEQUENCE tables_modification_date_last_date_seq
    MINVALUE 0 OWNED BY tables_modification_date.last_date;

CREATE FUNCTION note_change() RETURNS trigger
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp
AS $$
BEGIN
    -- The note goes with a savepoint that is rolled back; the next statement leaves another one.
    INSERT INTO public.tables_modification_date (transaction_id)
    VALUES (pg_current_xact_id())
    ON CONFLICT DO NOTHING;
    RETURN NULL;
END
$$;

CREATE FUNCTION stamp_change() RETURNS trigger
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog, pg_temp
AS $$
DECLARE
    -- A program names itself on each of its connections; all of psql and the like count as one more client.
    author text := nullif(current_setting('vorna.client', true), '');
    stamp bigint;
    stamp_date timestamp without time zone;
    milliseconds_ahead double precision;
BEGIN
    -- Kept until others see the commit, so that none can overtake another one between stamp and commit.
    PERFORM pg_advisory_xact_lock('public.tables_modification_date'::regclass::oid::bigint);

    -- Never the same millisecond twice, and never back, whatever the server's clock does.
    SELECT greatest(last_value + 1, floor(extract(epoch FROM clock_timestamp()) * 1000)::bigint) INTO stamp
    FROM public.tables_modification_date_last_date_seq;
    PERFORM setval('public.tables_modification_date_last_date_seq', stamp);
    stamp_date := timestamp 'epoch' + stamp * interval '1 millisecond';

    -- Nothing comes to light before the time on its stamp: of commits in one millisecond, each waits for its
    -- own. A clock that was put back is not waited for.
    milliseconds_ahead := stamp - extract(epoch FROM clock_timestamp()) * 1000;
    IF milliseconds_ahead BETWEEN 0 AND 10 THEN
        PERFORM pg_sleep(milliseconds_ahead / 1000);
    END IF;

    -- The note becomes the stamp. The same client's older one goes, and those of clients that are silent for
    -- long: whoever reads a stamp of its own still sees the latest of the others. A transaction on a snapshot
    -- leaves them to the next one, as what was removed since its snapshot would make it fail.
    DELETE FROM public.tables_modification_date
    WHERE transaction_id = NEW.transaction_id
       OR (last_date < stamp_date AND current_setting('transaction_isolation') = 'read committed'
           AND (client IS NOT DISTINCT FROM author OR last_date < stamp_date - interval '1 day'));
    INSERT INTO public.tables_modification_date (last_date, client) VALUES (stamp_date, author);
    RETURN NULL;
END
$$;

CREATE CONSTRAINT TRIGGER stamp_change
    AFTER INSERT ON tables_modification_date DEFERRABLE INITIALLY DEFERRED
    FOR EACH ROW WHEN (NEW.last_date IS NULL) EXECUTE FUNCTION stamp_change();

-- A table of stamps that its owner empties is filled again at the commit: without a stamp nobody can write.
CREATE TRIGGER note_change
    AFTER TRUNCATE ON tables_modification_date
    FOR EACH STATEMENT EXECUTE FUNCTION note_change();

DO $$
DECLARE
    table_name name;
BEGIN
    FOR table_name IN
        SELECT tablename FROM pg_tables
        WHERE schemaname = 'public' AND tablename <> 'tables_modification_date'
          AND tableowner = current_user
    LOOP
        EXECUTE format('CREATE TRIGGER note_change AFTER INSERT OR UPDATE OR DELETE OR TRUNCATE '
                       'ON public.%I FOR EACH STATEMENT EXECUTE FUNCTION public.note_change()', table_name);
    END LOOP;
END
$$;

-- The first stamp comes with this very transaction.
INSERT INTO tables_modification_date (transaction_id) VALUES (pg_current_xact_id());

-- Rights -------------------------------------------------------------------------------------------------------

-- Default privileges of this server may have handed out more than this.
REVOKE ALL ON ALL TABLES IN SCHEMA public FROM PUBLIC, vorna_writer, vorna_reader;
REVOKE ALL ON ALL SEQUENCES IN SCHEMA public FROM PUBLIC, vorna_writer, vorna_reader;
REVOKE ALL ON FUNCTION note_change(), stamp_change() FROM PUBLIC, vorna_writer, vorna_reader;

GRANT USAGE ON SCHEMA public TO vorna_writer, vorna_reader;

-- The stamps and the versions are for reading only; an upgrade is the owner's.
GRANT SELECT ON
    tables_modification_date, vorna_version, scheme_version,
    files, file_paths, thumbnails, file_tag, storage, storage_info, tags, tag_groups, tag_group_links,
    tb_nodes, tb_node_links, tb_autolinks, tb_nodes_autolinks, tag_relationships, browsing_trees
    TO vorna_writer, vorna_reader;

GRANT INSERT, UPDATE, DELETE ON
    files, file_paths, thumbnails, file_tag, storage, storage_info, tags, tag_groups, tag_group_links,
    tb_nodes, tb_node_links, tb_autolinks, tb_nodes_autolinks, tag_relationships, browsing_trees
    TO vorna_writer;

GRANT USAGE ON SEQUENCE
    files_file_id_seq, file_paths_path_id_seq, thumbnails_thumbnail_id_seq, storage_storage_id_seq,
    tags_tag_id_seq, tag_groups_tag_group_id_seq, tb_nodes_node_id_seq, browsing_trees_tree_id_seq
    TO vorna_writer;

DO $$
BEGIN
    EXECUTE format('GRANT CONNECT ON DATABASE %I TO vorna_writer, vorna_reader', current_database());
END
$$;

COMMIT;

\echo 'The database is ready. Let people in by GRANT vorna_writer TO ... or GRANT vorna_reader TO ...'
