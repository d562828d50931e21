SELECT b, pn = (select b From u WHERE t.a = a)
FROM t WHERE a IN (SELECT a FROM t
 WHERE a = 1 OR 
 (SELECT b FROM t WHERE a = 1) like '%/' +
RTRIM(CAST(a as varchar(12))) + '/%')
ORDER BY pn, b ASC;