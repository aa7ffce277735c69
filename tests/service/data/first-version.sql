-- The database of the first version, with a command that is queued and one that has its result, and with clipboard XML.
CREATE TABLE commands (number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
  state TEXT NOT NULL DEFAULT 'queued' CHECK (state IN ('queued', 'delivered', 'completed', 'failed')),
  queued INTEGER NOT NULL, delivered INTEGER, finished INTEGER, records_before INTEGER, file_name TEXT,
  xml_type TEXT, error TEXT, xml_content TEXT);
CREATE INDEX commands_by_state ON commands (state, number);
CREATE TABLE records (number INTEGER PRIMARY KEY AUTOINCREMENT, kind TEXT NOT NULL, name TEXT NOT NULL, label TEXT,
  received INTEGER NOT NULL, command TEXT REFERENCES commands (id), content BLOB NOT NULL);
CREATE INDEX records_by_command ON records (command);
INSERT INTO commands (id, type, queued) VALUES ('c1', 'LIST_FILES', 1);
INSERT INTO commands (id, type, state, queued) VALUES ('c2', 'LIST_FILES', 'completed', 1);
INSERT INTO records (kind, name, received, command, content) VALUES ('push', 'FILE_LIST', 2, 'c2', x'4100FF');
INSERT INTO records (kind, name, label, received, content) VALUES
  ('push', 'XMSS', 'Sound', 3, CAST('<fmxmlsnippet><Step id="93" name="Beep"/></fmxmlsnippet>' AS BLOB)),
  ('push', 'XMSS', NULL, 4, CAST('<fmxmlsnippet><Step id="93" name="Beep"/></fmxmlsnippet>' AS BLOB)),
  ('push', 'XMFD', NULL, 5, CAST('<fmxmlsnippet>' AS BLOB));
PRAGMA user_version = 1;
