-- Batches.
CREATE TABLE c (k varchar(20) NOT NULL, v varchar(20) NULL)
ok
IF NOT EXISTS (SELECT * FROM c WHERE k = 'a') INSERT INTO c VALUES ('a', 1) ELSE UPDATE c SET v = STR(CONVERT(int, v) + 1) WHERE k = 'a'
~ 1
SELECT v FROM c
= 1
IF NOT EXISTS (SELECT * FROM c WHERE k = 'a') INSERT INTO c VALUES ('a', 1) ELSE UPDATE c SET v = STR(CONVERT(int, v) + 1) WHERE k = 'a'
~ 1
SELECT v FROM c
=          2
IF EXISTS (SELECT * FROM c WHERE k = 'zz')\r\nUPDATE c SET v = '9'\r\nELSE\r\nINSERT INTO c (k, v)\r\nVALUES('zz', 3)
~ 1
SELECT CONVERT(int, v) FROM c ORDER BY k
= 2
= 3
IF 1 = 2 SELECT 'yes'
ok
IF 1 = 2 SELECT 'yes' ELSE SELECT 'no'
= no
IF NULL = 1 SELECT 'yes' ELSE SELECT 'unknown is not yes'
= unknown is not yes
DECLARE @a int SELECT @a
= NULL
DECLARE @a int, @b varchar(10) SELECT @a = 2, @b = 'x' SELECT @b, @a
= x | 2
DECLARE @v varchar(20) SELECT @v = k FROM c WHERE k = 'none' SELECT @v
= NULL
SELECT @missing
! 42000 137
DECLARE @d datetime SELECT @d = GETDATE() INSERT INTO c (k, v) VALUES ('now', CASE WHEN @d > '2020-01-01T00:00:00' THEN 'late' END)
~ 1
SELECT v FROM c WHERE k = 'now'
= late
SELECT 1 SELECT 2
SELECT 1;SELECT 2;
= 1
+ another
= 2
;SELECT 1
SELECT 1 -- a comment SELECT 2
= 1
SELECT 1 INSERT INTO c (k) VALUES (NULL) SELECT 2
= 1
! 23000 515
+ another
= 2
SELECT COUNT(*) FROM c
= 3
INSERT INTO c (k) VALUES ('n1') INSERT INTO c (k) VALUES ('n2') DELETE FROM c WHERE k LIKE 'n_'
~ 1
~ 1
~ 2
SELECT 1 WHERE 1 = 2
= none
BEGIN TRANSACTION DELETE FROM c ROLLBACK TRANSACTION
~ 3
SELECT COUNT(*) FROM c
= 3
SELECT COUNT(*) FROM c
= 3
