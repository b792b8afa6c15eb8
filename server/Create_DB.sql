-- Create_DB.sql: turns an empty database of a PostgreSQL server into one that Vorna clients share.
--
--     psql -X -d DATABASE -f Create_DB.sql
--
-- Run once, by the owner of an empty UTF-8 database on PostgreSQL 13 or later, with Upgrade_DB.sql beside this file. All
-- of it happens in one transaction: when something is amiss, psql says what, ends with a failure, and the database is
-- as before. docs/SERVER.md tells the rest: roles, rights, backup, upgrade.

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
-- a long one would come to light under a time that others have passed already. So a transaction only leaves
-- notes when it writes, rows under its own number that wait for nobody, and is stamped while it commits.

CREATE TABLE tables_modification_date (
    last_date timestamp without time zone, -- UTC, whole milliseconds
    client text                            -- whose stamp it is: each looks for those of others only
);

-- The last stamp given, in milliseconds since 1970: unlike a row it is the same for every transaction, also
-- for one that works on a snapshot from before the last commit.
CREATE SEQUENCE tables_modification_date_last_date_seq
    MINVALUE 0 OWNED BY tables_modification_date.last_date;

-- Rights -------------------------------------------------------------------------------------------------------

-- Default privileges of this server may have handed out more than this.
REVOKE ALL ON ALL TABLES IN SCHEMA public FROM PUBLIC, vorna_writer, vorna_reader;
REVOKE ALL ON ALL SEQUENCES IN SCHEMA public FROM PUBLIC, vorna_writer, vorna_reader;

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

-- How clients notice each other's changes ------------------------------------------------------------------------

\set vorna_set_up 1
\ir Upgrade_DB.sql

COMMIT;

\echo 'The database is ready. Let people in by GRANT vorna_writer TO ... or GRANT vorna_reader TO ...'
