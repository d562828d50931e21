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
IF 1 = 1 SELECT 'yes'
= yes
IF 1 = 2 SELECT 'yes'
ok
IF 1 = 2 SELECT 'yes' ELSE SELECT 'no'
= no
IF 1 = 2 SELECT 'a' ELSE IF 2 = 2 SELECT 'b' ELSE SELECT 'c'
= b
IF NULL = 1 SELECT 'yes' ELSE SELECT 'unknown is not yes'
= unknown is not yes
IF 1 = 1 BEGIN SELECT 'one' SELECT 'two' END
= one
+ another
= two
IF 1 = 2 BEGIN SELECT 'one' SELECT 'two' END SELECT 'three'
= three
BEGIN SELECT 1 END
= 1
DECLARE @a int SET @a = 5 SELECT @a + 1
= 6
DECLARE @a int SELECT @a
= NULL
DECLARE @a int, @b varchar(10) SELECT @a = 2, @b = 'x' SELECT @b, @a
= x | 2
DECLARE @a int SET @a = 'abc'
! 22018 245
DECLARE @a smallint SET @a = 40000
! 22003 220
DECLARE @t varchar(3) SET @t = 'abcdef' SELECT @t
= abc
DECLARE @n int SELECT @n = COUNT(*) FROM c SELECT @n
= 2
DECLARE @v varchar(20) SELECT @v = k FROM c WHERE k = 'none' SELECT @v
= NULL
DECLARE @A int SET @a = 1 SELECT @A
= 1
SELECT @missing
! 42000 137
DECLARE @d datetime SELECT @d = GETDATE() INSERT INTO c (k, v) VALUES ('now', CASE WHEN @d > '20200101' THEN 'late' END)
~ 1
SELECT v FROM c WHERE k = 'now'
= late
DECLARE @n int SET @n = 1 IF @n = 1 SELECT 'one' ELSE SELECT 'other'
= one
SELECT 1 SELECT 2
= 1
+ another
= 2
SELECT 1;SELECT 2;
= 1
+ another
= 2
;SELECT 1
= 1
SELECT 1 -- a comment SELECT 2
= 1
SELECT 1 /* SELECT 2 */ + 1
= 2
SELECT /* one /* two */ still */ 3
= 3
PRINT 'told' SELECT 1
= 1
SELECT 1 SELECT 1 FROM missing
= 1
! 42S02 208
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
SET NOCOUNT ON UPDATE c SET v = v SET NOCOUNT OFF UPDATE c SET v = v
~ 3
SELECT 1 WHERE 1 = 2
= none
BEGIN TRANSACTION DELETE FROM c ROLLBACK TRANSACTION
~ 3
SELECT COUNT(*) FROM c
= 3
BEGIN TRAN DELETE FROM c WHERE k = 'a' COMMIT
~ 1
SELECT COUNT(*) FROM c
= 2
