-- The database of the second version, with the same commands and records as in first-version.sql.
CREATE TABLE commands (number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
  state TEXT NOT NULL DEFAULT 'queued'
    CHECK (state IN ('queued', 'delivered', 'completed', 'failed', 'cancelled', 'expired')),
  queued INTEGER NOT NULL, expires INTEGER, delivered INTEGER, finished INTEGER, records_before INTEGER, file_name TEXT,
  xml_type TEXT, error TEXT, xml_content TEXT);
CREATE INDEX commands_by_state ON commands (state, number);
CREATE TABLE contents (number INTEGER PRIMARY KEY AUTOINCREMENT, hash BLOB NOT NULL UNIQUE, bytes BLOB NOT NULL);
CREATE TABLE records (number INTEGER PRIMARY KEY AUTOINCREMENT, kind TEXT NOT NULL, name TEXT NOT NULL, label TEXT,
  received INTEGER NOT NULL, command TEXT REFERENCES commands (id),
  content INTEGER NOT NULL REFERENCES contents (number));
CREATE INDEX records_by_command ON records (command);
CREATE INDEX records_by_content ON records (content);
CREATE INDEX records_by_name ON records (kind, name, number);
INSERT INTO commands (id, type, queued) VALUES ('c1', 'LIST_FILES', 1);
INSERT INTO commands (id, type, state, queued) VALUES ('c2', 'LIST_FILES', 'completed', 1);
INSERT INTO contents (hash, bytes) VALUES (x'00', x'4100FF');
INSERT INTO records (kind, name, received, command, content) VALUES ('push', 'FILE_LIST', 2, 'c2', 1);
INSERT INTO contents (hash, bytes) VALUES
  (x'01', CAST('<fmxmlsnippet><Step id="93" name="Beep"/></fmxmlsnippet>' AS BLOB)),
  (x'02', CAST('<fmxmlsnippet>' AS BLOB));
INSERT INTO records (kind, name, label, received, content) VALUES
  ('push', 'XMSS', 'Sound', 3, 2), ('push', 'XMSS', NULL, 4, 2), ('push', 'XMFD', NULL, 5, 3);
PRAGMA user_version = 2;
