-- Texts: joining, lengths, parts, case, searching. A trailing blank counts nowhere but in the value.
SELECT 'a' + 'b'
= ab
SELECT 'a' + NULL
= NULL
SELECT 'it''s'
= it's
SELECT ''
= 
SELECT N'Grüße'
= Grüße
SELECT 'a' + 'b' + N'ü'
= abü
SELECT LEN('abc')
= 3
SELECT LEN('abc   ')
= 3
SELECT LEN('   abc')
= 6
SELECT LEN('')
= 0
SELECT LEN(N'Grüße')
= 5
SELECT LEN(NULL)
= NULL
SELECT LEFT('abcdef', 2)
= ab
SELECT LEFT('abc', 10)
= abc
SELECT LEFT('abc', 0)
= 
SELECT LEFT('abc', -1)
! 42000 536
SELECT LEFT(N'Üüü', 1)
= Ü
SELECT RIGHT('abcdef', 2)
= ef
SELECT RIGHT('abc', 10)
= abc
SELECT RIGHT('abc', -1)
! 42000 536
SELECT SUBSTRING('abcdef', 2, 3)
= bcd
SELECT SUBSTRING('abcdef', 5, 10)
= ef
SELECT SUBSTRING('abcdef', 0, 3)
= ab
SELECT SUBSTRING('abcdef', -1, 3)
= a
SELECT SUBSTRING('abcdef', 10, 3)
= 
SELECT SUBSTRING('abcdef', 2, -1)
! 42000 536
SELECT UPPER('abcÄö'), LOWER('ABCÄÖ')
= ABCÄÖ | abcäö
SELECT LTRIM('  ab  ') + '|', RTRIM('  ab  ') + '|'
= ab  | |   ab|
SELECT RTRIM(CAST(12 AS varchar(12))) + '/%'
= 12/%
SELECT REPLACE('aXbxc', 'x', '-')
= a-b-c
SELECT CHARINDEX('c', 'abcabc')
= 3
SELECT CHARINDEX('C', 'abcabc')
= 3
SELECT CHARINDEX('c', 'abcabc', 4)
= 6
SELECT CHARINDEX('z', 'abc')
= 0
SELECT CHARINDEX('', 'abc')
= 0
SELECT STR(42)
=         42
SELECT STR(42, 5)
=    42
SELECT STR(3.14159, 6, 2)
=   3.14
SELECT STR(-7)
=         -7
SELECT STR(123456, 3)
= ***
SELECT STR(2.5)
=          3
SELECT 'a\tb\r\nc'
= a\tb\r\nc
SELECT ISNULL(NULL, 'x')
= x
SELECT ISNULL('abc', 'x')
= abc
SELECT COALESCE(NULL, NULL, 'third')
= third
SELECT NULLIF('a', 'A'), NULLIF('a', 'b')
= NULL | a
SELECT CASE WHEN 1 = 2 THEN 'no' WHEN 'a' = 'A' THEN 'yes' ELSE 'other' END
= yes
SELECT CASE 3 WHEN 1 THEN 'one' WHEN 3 THEN 'three' END
= three
SELECT CASE 4 WHEN 1 THEN 'one' END
= NULL

SELECT LEFT('abc', NULL), SUBSTRING(NULL, 1, 1)
= NULL | NULL
SELECT LEN('a' + 'b  ' + '')
= 2
SELECT LTRIM(STR(42)) + 'x'
= 42x
SELECT LEFT('O''Brien', 3)
= O'B
SELECT REPLACE('O''Brien', '''', '''''')
= O''Brien
SELECT DATALENGTH('abc  '), DATALENGTH(N'abc'), DATALENGTH(''), DATALENGTH(NULL)
= 5 | 6 | 0 | NULL
SELECT DATALENGTH(5), DATALENGTH(CONVERT(smallint, 5)), DATALENGTH(CONVERT(bit, 1)), DATALENGTH(1.5), DATALENGTH(GETDATE())
= 4 | 2 | 1 | 5 | 8
SELECT REPLICATE('ab', 3), REPLICATE('ab', 0), REPLICATE('ab', -1), REPLICATE(NULL, 2)
= ababab |  | NULL | NULL
SELECT LEN(REPLICATE('x', 9000)), REPLICATE(N'ü', 2)
= 8000 | üü
SELECT 'a' + SPACE(3) + 'b', DATALENGTH(SPACE(2)), SPACE(-1)
= a   b | 2 | NULL
SELECT CHAR(65), CHAR(13), CHAR(256), CHAR(-1)
= A | \r | NULL | NULL
SELECT ASCII('A'), ASCII('abc'), ASCII(''), ASCII(5)
= 65 | 97 | NULL | 53
SELECT NCHAR(228), NCHAR(65), UNICODE(N'ä'), UNICODE(N''), NCHAR(-1)
= ä | A | 228 | NULL | NULL
SELECT REVERSE('abc'), REVERSE(N'aü'), REVERSE(''), REVERSE(123)
= cba | üa |  | 321
