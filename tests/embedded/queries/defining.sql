-- CREATE and DROP of tables and indexes.
CREATE TABLE a (i int IDENTITY(1,1) NOT NULL)
! 42000 102
CREATE TABLE a (id int NOT NULL, t varchar(10) NULL, CONSTRAINT pk_a PRIMARY KEY (id))
ok
INSERT INTO a VALUES (1, 'x')
~ 1
INSERT INTO a VALUES (1, 'x')
! 23000 2627
CREATE INDEX a_t ON a (t)
ok
CREATE UNIQUE INDEX a_u ON a (t)
ok
INSERT INTO a VALUES (2, 'X')
! 23000 2601
CREATE INDEX a_t ON a (id)
! 42S11 1913
DROP INDEX a.a_u
ok
INSERT INTO a VALUES (2, 'X')
~ 1
DROP TABLE a
ok
DROP TABLE a
! 42S02 3701
CREATE TABLE b (id int NOT NULL PRIMARY KEY CLUSTERED, d decimal(5,2) NOT NULL DEFAULT 1.5, s char(3) NOT NULL DEFAULT ('x'))
ok
INSERT INTO b (id) VALUES (1)
~ 1
SELECT id, d, s + '|' FROM b
= 1 | 1.50 | x  |
INSERT INTO b (id, d) VALUES (2, 999.99)
~ 1
INSERT INTO b (id, d) VALUES (3, 1000)
! 22003 8115
INSERT INTO b (id, d) VALUES (3, 1.006)
~ 1
SELECT d FROM b WHERE id = 3
= 1.01
CREATE TABLE c (a unknowntype)
! 42000 2715
CREATE TABLE c (a varchar(10)
! 42000 102
CREATE TABLE c ()
! 42000 102
CREATE TABLE c (a varchar(9000))
! 42000 131
CREATE TABLE types (a tinyint, b smallint, c int, d bigint, e bit, f decimal(9,2), g numeric(5), h float, i real, j char(2), k varchar(3), l nchar(2), m nvarchar(3), n datetime, o varchar(max), p text)
ok
INSERT INTO types VALUES (255, -1, -1, -1, 1, 1.25, 12345, 0.5, 0.25, 'a', 'abc', N'ä', N'äöü', '20030211', 'long', 'longer')
~ 1
SELECT a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p FROM types
= 255 | -1 | -1 | -1 | 1 | 1.25 | 12345 | 0.5 | 0.25 | a  | abc | ä  | äöü | 2003-02-11 00:00:00.000 | long | longer
