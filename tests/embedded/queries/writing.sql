-- Writing and defining: counts, conversions into columns, NOT NULL, keys, ranges, lengths; a failed statement leaves nothing.
CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(5) NULL, flag bit NULL, n int NULL)
ok
INSERT INTO t (id, name) VALUES (1, 'one')
INSERT INTO T (ID, NAME, FLAG, N) VALUES (2, 'two', 5, '12')
INSERT t (id) VALUES (3)
INSERT INTO t VALUES (4, 'four', 0, 1)
~ 1
SELECT * FROM t ORDER BY id
= 1 | one | NULL | NULL
= 2 | two | 1 | 12
= 3 | NULL | NULL | NULL
= 4 | four | 0 | 1
INSERT INTO t (id, name) VALUES (1, 'again')
! 23000 2627
INSERT INTO t (name) VALUES ('noid')
! 23000 515
INSERT INTO t (id, n) VALUES (9, NULL)
~ 1
INSERT INTO t (id, name) VALUES (9, 'sixsix')
! 22001 8152
INSERT INTO t (id, name) VALUES (9, 'five ')
! 23000 2627
SELECT name + '|' FROM t WHERE id = 9
= NULL
INSERT INTO t (id, name) VALUES (10, 'five ')
~ 1
SELECT name + '|' FROM t WHERE id = 10
= five |
INSERT INTO t (id) VALUES (32768)
INSERT INTO t (id) VALUES (-32769)
! 22003 220
INSERT INTO t (id) VALUES ('abc')
! 22018 245
INSERT INTO t (id) VALUES (' 11 ')
INSERT INTO t (id, name) VALUES (12, 12345)
~ 1
SELECT name FROM t WHERE id = 12
= 12345
INSERT INTO t (nothing) VALUES (1)
! 42S22 207
SELECT COUNT(*) FROM t
= 8
UPDATE t SET name = 'x' WHERE id > 8
~ 4
UPDATE t SET name = UPPER(name), n = n + 1 WHERE id = 1
~ 1
SELECT name, n FROM t WHERE id = 1
= ONE | NULL
UPDATE t SET name = NULL WHERE id = 8
~ 0
UPDATE t SET id = 2 WHERE id = 3
! 23000 2627
UPDATE t SET name = 'toolong' WHERE id = 2
! 22001 8152
UPDATE t SET name = 'toolong' WHERE id = 777
~ 0
SELECT id, name, n FROM t WHERE id < 5 ORDER BY id
= 1 | ONE | NULL
= 2 | two | 12
= 3 | NULL | NULL
= 4 | four | 1
DELETE FROM t WHERE id = 777
~ 0
DELETE FROM t WHERE name = 'X   '
~ 4
INSERT INTO t (id, name) SELECT id + 100, name FROM t
~ 4
SELECT COUNT(*) FROM t
= 8
INSERT INTO t (id, name) SELECT id + 200, 'toolong' FROM t
! 22001 8152
INSERT INTO t (id) SELECT 300 UNION ALL SELECT 2
! 23000 2627
SELECT COUNT(*) FROM t
= 8
INSERT INTO t (id, n) VALUES (50, 1), (51, 2), (52, 3)
~ 3
INSERT INTO t (id, n) VALUES (60, 1), (50, 2)
! 23000 2627
SELECT COUNT(*) FROM t WHERE id BETWEEN 50 AND 60
= 3
DELETE FROM t
~ 11
INSERT INTO t (id, name) VALUES (1, N'ÄÖÜß')
~ 1
SELECT name FROM t WHERE name = N'äöüß'
= ÄÖÜß
CREATE TABLE keyed (a varchar(10) NOT NULL, b int NOT NULL, PRIMARY KEY (a, b))
ok
INSERT INTO keyed VALUES ('Key', 1)
~ 1
INSERT INTO keyed VALUES ('KEY', 1)
! 23000 2627
CREATE TABLE moments (at datetime NULL)
ok
INSERT INTO moments VALUES ('2003-02-11T08:15:30')
INSERT INTO moments VALUES (GETDATE())
~ 1
SELECT at FROM moments WHERE at < '2010-01-01T00:00:00'
= 2003-02-11 08:15:30.000
CREATE TABLE a (id int NOT NULL, t varchar(10) NULL, PRIMARY KEY (id))
ok
INSERT INTO a VALUES (1, 'x')
~ 1
INSERT INTO a VALUES (1, 'x')
! 23000 2627
CREATE INDEX a_t ON a (t)
ok
INSERT INTO a VALUES (2, 'X')
~ 1
INSERT INTO a VALUES (2, 'X')
! 23000 2627
UPDATE t SET missing = 1
! 42S22 207
UPDATE missing SET a = 1
DELETE FROM missing
DROP TABLE missing
! 42S02 208
CREATE TABLE c (a varchar(10)
CREATE TABLE c ()
! 42000 102
SELECT a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p FROM types
! 42S02 208
