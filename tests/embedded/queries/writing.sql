-- INSERT, UPDATE, DELETE: counts, conversions into columns, NOT NULL, keys, ranges, lengths; a failed statement leaves nothing.
CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(5) NULL, flag bit NULL, n int NOT NULL DEFAULT 7)
ok
INSERT INTO t (id, name) VALUES (1, 'one')
~ 1
INSERT INTO T (ID, NAME, FLAG, N) VALUES (2, 'two', 5, '12')
~ 1
INSERT t (id) VALUES (3)
~ 1
INSERT INTO t VALUES (4, 'four', 0, 1)
~ 1
SELECT * FROM t ORDER BY id
= 1 | one | NULL | 7
= 2 | two | 1 | 12
= 3 | NULL | NULL | 7
= 4 | four | 0 | 1
INSERT INTO t (id, name) VALUES (1, 'again')
! 23000 2627
INSERT INTO t (name) VALUES ('noid')
! 23000 515
INSERT INTO t (id, n) VALUES (9, NULL)
! 23000 515
INSERT INTO t (id, name) VALUES (9, 'sixsix')
! 22001 8152
INSERT INTO t (id, name) VALUES (9, 'five ')
~ 1
SELECT name + '|' FROM t WHERE id = 9
= five |
INSERT INTO t (id, name) VALUES (10, 'five     ')
~ 1
SELECT name + '|' FROM t WHERE id = 10
= five |
INSERT INTO t (id) VALUES (32768)
! 22003 220
INSERT INTO t (id) VALUES (-32769)
! 22003 220
INSERT INTO t (id) VALUES ('abc')
! 22018 245
INSERT INTO t (id) VALUES (' 11 ')
~ 1
INSERT INTO t (id, name) VALUES (12, 12345)
~ 1
SELECT name FROM t WHERE id = 12
= 12345
INSERT INTO t (id, id) VALUES (14, 15)
! 42000 264
INSERT INTO t (id, name) VALUES (14)
! 21S01 109
INSERT INTO t (id) VALUES (14, 15)
! 21S01 110
INSERT INTO t (nothing) VALUES (1)
! 42S22 207
SELECT COUNT(*) FROM t
= 8
UPDATE t SET name = 'x' WHERE id > 8
~ 4
UPDATE t SET name = UPPER(name), n = n + 1 WHERE id = 1
~ 1
SELECT name, n FROM t WHERE id = 1
= ONE | 8
UPDATE t SET id = n, n = id WHERE id = 1
~ 1
SELECT id, n FROM t WHERE name = 'one'
= 8 | 1
UPDATE t SET name = NULL WHERE id = 8
~ 1
UPDATE t SET n = NULL WHERE id = 8
! 23000 515
UPDATE t SET id = 2 WHERE id = 3
! 23000 2627
UPDATE t SET name = 'toolong' WHERE id = 2
! 22001 8152
UPDATE t SET name = 'toolong' WHERE id = 777
~ 0
UPDATE t SET n = 1 / 0 WHERE id = 2
! 22012 8134
UPDATE t SET n = n * 1000000000 WHERE id = 2
! 22003 8115
UPDATE t SET missing = 1
! 42S22 207
UPDATE missing SET a = 1
! 42S02 208
SELECT id, name, n FROM t WHERE id < 5 ORDER BY id
= 2 | two | 12
= 3 | NULL | 7
= 4 | four | 1
DELETE FROM t WHERE id = 777
~ 0
DELETE FROM t WHERE name = 'X   '
~ 4
DELETE t WHERE id = 8
~ 1
DELETE FROM missing
! 42S02 208
INSERT INTO t (id, name) SELECT id + 100, name FROM t
~ 3
SELECT COUNT(*) FROM t
= 6
INSERT INTO t (id, name) SELECT id + 200, 'toolong' FROM t
! 22001 8152
INSERT INTO t (id) SELECT 300 UNION ALL SELECT 2
! 23000 2627
SELECT COUNT(*) FROM t
= 6
INSERT INTO t (id) SELECT 400 WHERE 1 = 2
~ 0
INSERT INTO t (id, n) VALUES (50, 1), (51, 2), (52, 3)
~ 3
INSERT INTO t (id, n) VALUES (60, 1), (50, 2)
! 23000 2627
SELECT COUNT(*) FROM t WHERE id BETWEEN 50 AND 60
= 3
DELETE FROM t
~ 9
INSERT INTO t (id, name) VALUES (1, N'ÄÖÜß')
~ 1
SELECT name FROM t WHERE name = N'äöüß'
= ÄÖÜß
INSERT INTO t (id, name) VALUES (2, 'O''B')
~ 1
SELECT name FROM t WHERE name LIKE 'o''%'
= O'B
UPDATE t SET flag = 'True' WHERE id = 1
~ 1
SELECT flag FROM t WHERE id = 1
= 1
CREATE TABLE keyed (a varchar(10) NOT NULL, b int NOT NULL, PRIMARY KEY (a, b))
ok
INSERT INTO keyed VALUES ('Key', 1)
~ 1
INSERT INTO keyed VALUES ('Key', 2)
~ 1
INSERT INTO keyed VALUES ('KEY', 1)
! 23000 2627
INSERT INTO keyed VALUES ('key  ', 2)
! 23000 2627
CREATE TABLE moments (at datetime NULL)
ok
INSERT INTO moments VALUES ('2003-02-11T08:15:30')
~ 1
INSERT INTO moments VALUES (GETDATE())
~ 1
INSERT INTO moments VALUES ('not a date')
! 22007 241
SELECT at FROM moments WHERE at < '2010-01-01'
= 2003-02-11 08:15:30.000
SELECT COUNT(*) FROM moments WHERE at IS NULL
= 0
-- Keys are looked at when the statement is through.
CREATE TABLE chain (id int NOT NULL PRIMARY KEY, name varchar(5) NULL, at datetime NULL, CONSTRAINT names UNIQUE (name))
ok
INSERT INTO chain VALUES (1, 'a', '20030211'), (2, 'b', NULL), (3, 'c', NULL)
~ 3
UPDATE chain SET id = id + 1
~ 3
SELECT id, name, at FROM chain ORDER BY id
= 2 | a | 2003-02-11 00:00:00.000
= 3 | b | NULL
= 4 | c | NULL
UPDATE chain SET name = CASE name WHEN 'a' THEN 'b' WHEN 'b' THEN 'a' ELSE name END
~ 3
SELECT name FROM chain ORDER BY id
= b
= a
= c
UPDATE chain SET id = id + 1 WHERE id < 4
! 23000 2627
UPDATE chain SET id = 9
! 23000 2627
BEGIN TRAN UPDATE chain SET id = id + 1 UPDATE chain SET id = 7 WHERE id > 3 COMMIT
~ 3
! 23000 2627
SELECT id, name FROM chain ORDER BY id
= 3 | b
= 4 | a
= 5 | c
UPDATE chain SET id = other.id + 1 FROM chain JOIN (SELECT id FROM chain) AS other ON other.id = chain.id
~ 3
SELECT id, name FROM chain ORDER BY id
= 4 | b
= 5 | a
= 6 | c
