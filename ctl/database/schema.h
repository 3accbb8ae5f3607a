// The tables and views of a conversation in a database.
#pragma once

namespace zelt::ctl {

// A file that is thrown away when something fails needs no journal.
inline constexpr char kBeginTables[] = R"sql(
PRAGMA journal_mode = OFF;
PRAGMA synchronous = OFF;
BEGIN;
CREATE TABLE source (name TEXT PRIMARY KEY, value TEXT) WITHOUT ROWID;
CREATE TABLE calls (
  id INTEGER PRIMARY KEY,                 -- in the order in which they begin
  parent INTEGER REFERENCES calls(id),    -- the call during which it was made
  depth INTEGER NOT NULL,
  line INTEGER,                           -- of the log
  direction TEXT NOT NULL,                -- in: the simulator calls the component; out: the component calls the simulator
  interface TEXT NOT NULL,
  method TEXT NOT NULL,
  object TEXT NOT NULL,
  result TEXT NOT NULL,                   -- ok, warning, violation, failed, or open
  failure TEXT,
  start_ns INTEGER, duration_ns INTEGER, inside_ns INTEGER  -- of a recording; inside: in the called object
);
CREATE TABLE arguments (
  id INTEGER PRIMARY KEY,
  call INTEGER NOT NULL REFERENCES calls(id),
  line INTEGER,
  name TEXT NOT NULL,
  direction TEXT NOT NULL,
  type TEXT NOT NULL
);
CREATE TABLE argument_values (
  argument INTEGER NOT NULL REFERENCES arguments(id),
  place INTEGER NOT NULL,                 -- from 1
  text TEXT NOT NULL,
  number REAL,                            -- the text as a number, if it is one
  PRIMARY KEY (argument, place)
) WITHOUT ROWID;
CREATE TABLE messages (
  id INTEGER PRIMARY KEY,
  call INTEGER REFERENCES calls(id),
  line INTEGER,
  kind TEXT NOT NULL,                     -- info, warning or error
  meaning TEXT NOT NULL,                  -- info, query (of the system), warning, violation or failure
  text TEXT NOT NULL
);
)sql";

inline constexpr char kEndTables[] = R"sql(
CREATE INDEX calls_by_parent ON calls(parent);
CREATE INDEX calls_by_method ON calls(method, interface);
CREATE INDEX arguments_by_call ON arguments(call, name);
CREATE INDEX messages_by_call ON messages(call);

CREATE VIEW failures AS
  SELECT id AS call, line, interface || '::' || method AS member, object, direction, failure
  FROM calls WHERE result = 'failed' ORDER BY id;

CREATE VIEW findings AS
  SELECT m.id AS message, m.call, m.line, m.meaning, c.interface || '::' || c.method AS member, c.object, m.text
  FROM messages m LEFT JOIN calls c ON c.id = m.call
  WHERE m.meaning IN ('warning', 'violation', 'failure') ORDER BY m.id;

CREATE VIEW slowest_calls AS
  SELECT id AS call, interface || '::' || method AS member, object, direction, start_ns, duration_ns, inside_ns,
         max(inside_ns - coalesce((SELECT sum(n.duration_ns) FROM calls n WHERE n.parent = c.id), 0), 0) AS self_ns
  FROM calls c WHERE duration_ns IS NOT NULL ORDER BY duration_ns DESC, id;

CREATE VIEW members AS
  SELECT interface || '::' || method AS member, direction, count(*) AS calls, sum(result = 'failed') AS failed,
         sum(duration_ns) AS total_ns, max(duration_ns) AS longest_ns
  FROM calls GROUP BY member, direction ORDER BY calls DESC, member;

CREATE VIEW objects AS
  SELECT object, direction, count(*) AS calls, sum(result = 'failed') AS failed, sum(duration_ns) AS total_ns
  FROM calls GROUP BY object, direction ORDER BY calls DESC, object;

CREATE VIEW argument_texts AS
  SELECT a.call, a.name, a.direction, a.type, (
    SELECT group_concat(text, ' ') FROM (
      SELECT v.text FROM argument_values v WHERE v.argument = a.id ORDER BY v.place)) AS text
  FROM arguments a ORDER BY a.id;

-- What properties were read, set and calculated, over time: those that a call names, and those that its arguments are.
CREATE VIEW property_values AS
  SELECT c.id AS call, c.line, c.start_ns, c.object, c.interface || '::' || c.method AS member,
         p.text AS property, (
    SELECT v.text FROM arguments f JOIN argument_values v ON v.argument = f.id
    WHERE f.call = c.id AND f.name IN ('phase', 'phaseLabel') AND v.place = 1) AS phase, (
    SELECT v.text FROM arguments f JOIN argument_values v ON v.argument = f.id
    WHERE f.call = c.id AND f.name = 'basis' AND v.place = 1) AS basis,
         v.place, v.text, v.number
  FROM calls c
  JOIN arguments n ON n.call = c.id AND n.name = 'property'
  JOIN argument_values p ON p.argument = n.id AND p.place = 1
  JOIN arguments a ON a.call = c.id AND a.name IN ('values', 'results')
  JOIN argument_values v ON v.argument = a.id
  UNION ALL
  SELECT c.id, c.line, c.start_ns, c.object, c.interface || '::' || c.method,
         CASE a.name WHEN 'composition' THEN 'fraction' ELSE a.name END, (
    SELECT v.text FROM arguments f JOIN argument_values v ON v.argument = f.id
    WHERE f.call = c.id AND f.name IN ('phase', 'phaseLabel') AND v.place = 1),
         CASE a.name WHEN 'composition' THEN 'mole' END, v.place, v.text, v.number
  FROM calls c
  JOIN arguments a ON a.call = c.id AND a.name IN ('temperature', 'pressure', 'composition')
  JOIN argument_values v ON v.argument = a.id
  WHERE c.method IN ('GetTPFraction', 'GetOverallTPFraction')
  ORDER BY 1, 6, 9;
COMMIT;
)sql";

}  // namespace zelt::ctl
