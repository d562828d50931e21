-- CONVERT and CAST: blanks around numbers are accepted, the empty text is 0, other text and values that do not fit are errors.
SELECT CONVERT(int, '42')
= 42
SELECT CONVERT(int, '   42  ')
= 42
SELECT CONVERT(int, '')
= 0
SELECT CONVERT(int, '   ')
= 0
SELECT CONVERT(int, '-7'), CONVERT(int, '+7')
= -7 | 7
SELECT CONVERT(int, '4x')
! 22018 245
SELECT CONVERT(int, '1.5')
! 22018 245
SELECT CONVERT(int, NULL)
= NULL
SELECT CONVERT(int, 1.9), CONVERT(int, -1.9)
= 1 | -1
SELECT CONVERT(int, '2147483648')
! 22003 248
SELECT CONVERT(int, 2147483648)
! 22003 8115
SELECT CONVERT(smallint, '32768')
! 22003 244
SELECT CONVERT(smallint, 32768)
! 22003 220
SELECT CONVERT(smallint, -32768)
= -32768
SELECT CONVERT(tinyint, 256)
! 22003 220
SELECT CONVERT(tinyint, -1)
! 22003 220
SELECT CONVERT(tinyint, 255)
= 255
SELECT CONVERT(bit, 0), CONVERT(bit, 2), CONVERT(bit, -1)
= 0 | 1 | 1
SELECT CONVERT(bit, 'TRUE'), CONVERT(bit, 'False')
= 1 | 0
SELECT CONVERT(bigint, '9223372036854775807')
= 9223372036854775807
SELECT CONVERT(varchar(12), 42)
= 42
SELECT CAST(42 AS varchar(12)) + '/%'
= 42/%
SELECT CONVERT(varchar(2), 'abc')
= ab
SELECT CAST('abc' AS varchar(2))
= ab
SELECT CONVERT(varchar(2), 123)
= *
SELECT CONVERT(char(5), 'ab') + '|'
= ab   |
SELECT CONVERT(varchar, 12)
= 12
SELECT LEN(CONVERT(varchar, 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'))
= 30
SELECT LEN(CONVERT(varchar(max), 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'))
= 50
SELECT CONVERT(nvarchar(3), N'äöüß')
= äöü
SELECT CONVERT(decimal(9,2), '12.345')
= 12.35
SELECT CONVERT(decimal(9,2), 12)
= 12.00
SELECT CONVERT(decimal(4,2), 100)
! 22003 8115
SELECT CONVERT(decimal(9,0), 2.5)
= 3
SELECT CONVERT(float, '1.25')
= 1.25
SELECT CONVERT(float, '1e3')
= 1000
SELECT CONVERT(float, 'x')
! 42000 8114
SELECT CONVERT(datetime, '2003-02-11 08:15:30')
= 2003-02-11 08:15:30.000
SELECT CONVERT(datetime, '2003-02-11T08:15:30.123')
= 2003-02-11 08:15:30.123
SELECT CONVERT(datetime, '2003-02-11T08:15:30.124')
= 2003-02-11 08:15:30.123
SELECT CONVERT(datetime, '2003-02-11T08:15:30.999')
= 2003-02-11 08:15:31.000
SELECT CONVERT(datetime, '20030211')
= 2003-02-11 00:00:00.000
SELECT CONVERT(datetime, '2003-02-30T00:00:00')
! 22007 242
SELECT CONVERT(datetime, 'yesterday')
! 22007 241
SELECT CONVERT(varchar(30), CONVERT(datetime, '2003-02-11T08:15:30'), 120)
= 2003-02-11 08:15:30
SELECT CONVERT(varchar(30), CONVERT(datetime, '2003-02-11T08:15:30'))
= Feb 11 2003  8:15AM
SELECT CAST(1 AS bit)
= 1
SELECT STR(CONVERT(int, '        41') + 1)
=         42
SELECT CASE WHEN 10 > '9' THEN 'as numbers' ELSE 'as texts' END
= as numbers
SELECT CASE WHEN '10' > '9' THEN 'as numbers' ELSE 'as texts' END
= as texts
SELECT DATEPART(year, CONVERT(datetime, '2003-02-11')), MONTH(CONVERT(datetime, '2003-02-11')), DAY(CONVERT(datetime, '20030211'))
= 2003 | 2 | 11
SELECT DATEDIFF(day, CONVERT(datetime, '20030211'), CONVERT(datetime, '20030301'))
= 18
SELECT DATEADD(month, 1, CONVERT(datetime, '20030131'))
= 2003-02-28 00:00:00.000
SELECT CASE WHEN GETDATE() > CONVERT(datetime, '20200101') THEN 'now' END
= now
SELECT DATEDIFF(month, '20030131', '20030201'), DATEDIFF(year, '20031231', '20040101'), DATEDIFF(minute, '20030101 00:59', '20030101 01:00')
= 1 | 1 | 1
SELECT DATEADD(day, -1, '20030301'), DATEADD(hour, 25, '20030301')
= 2003-02-28 00:00:00.000 | 2003-03-02 01:00:00.000
SELECT DATEPART(weekday, '20030211'), DATEPART(dayofyear, '20030211'), DATEPART(quarter, '20030211'), YEAR('20030211')
= 3 | 42 | 1 | 2003
