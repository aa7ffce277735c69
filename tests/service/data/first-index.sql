-- The index of designs of the first version, which also had their labels. The second label belongs to a design that was
-- replaced.
CREATE TABLE designs (id INTEGER PRIMARY KEY, content INTEGER NOT NULL, received INTEGER NOT NULL,
  file_uuid TEXT NOT NULL, file_name TEXT NOT NULL, folded_name TEXT NOT NULL, version TEXT NOT NULL,
  bytes INTEGER NOT NULL, label TEXT, note TEXT, problem TEXT);
CREATE INDEX designs_by_content ON designs (content);
CREATE TABLE texts (number INTEGER PRIMARY KEY, hash BLOB NOT NULL UNIQUE, body BLOB NOT NULL);
CREATE TABLE elements (content INTEGER NOT NULL, text INTEGER NOT NULL REFERENCES texts (number), kind TEXT NOT NULL,
  uuid TEXT NOT NULL, name TEXT NOT NULL);
CREATE INDEX elements_by_content ON elements (content);
CREATE INDEX elements_by_text ON elements (text);
CREATE VIRTUAL TABLE words USING fts5(body, content = '', tokenize = 'trigram');
CREATE TABLE progress (record INTEGER NOT NULL);
INSERT INTO progress VALUES (2);
INSERT INTO designs VALUES (1, 1, 1000, '', 'Orders.fmp12', 'orders', '22.0.1', 9, 'release 1', 'as sold', NULL);
INSERT INTO designs VALUES (2, 2, 1500, '', 'Orders.fmp12', 'orders', '22.0.1', 9, 'lost', NULL, NULL);
INSERT INTO texts VALUES (1, x'00', 'text');
INSERT INTO elements VALUES (1, 1, 'script', '', 'Start');
PRAGMA user_version = 1;
