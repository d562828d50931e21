-- Queries and names.
CREATE TABLE p (id int NOT NULL PRIMARY KEY, name varchar(20) NULL, parent int NULL)
ok
INSERT INTO p VALUES (1, 'root', NULL), (2, 'beta', 1), (3, 'Alpha', 1), (4, 'gamma', 2), (5, NULL, 2)
~ 5
CREATE TABLE q (pid int NOT NULL, v smallint NOT NULL)
ok
INSERT INTO q (pid, v) VALUES (1, 10), (1, 20), (2, 5), (9, 7)
~ 4
SELECT name FROM p ORDER BY name DESC
= root
= gamma
= beta
= Alpha
= NULL
SELECT * FROM q ORDER BY pid, v
= 1 | 10
= 1 | 20
= 2 | 5
= 9 | 7
SELECT ISNULL(MAX(id), 0) + 1 FROM p WHERE id > 100
= 1
SELECT parent, COUNT(*) FROM p GROUP BY parent HAVING COUNT(*) > 1 ORDER BY parent
= 1 | 2
= 2 | 2
SELECT DISTINCT parent FROM p WHERE parent IS NOT NULL ORDER BY parent
= 1
= 2
SELECT p.name, q.v FROM p, q WHERE p.id = q.pid ORDER BY q.v
= beta | 5
= root | 10
= root | 20
SELECT p.name, q.v FROM p INNER JOIN q ON p.id = q.pid WHERE q.v > 5 ORDER BY v
= root | 10
= root | 20
SELECT a.name, b.v FROM p AS a LEFT OUTER JOIN q b ON a.id = b.pid WHERE a.id > 1 ORDER BY a.id
= beta | 5
= Alpha | NULL
= gamma | NULL
= NULL | NULL
SELECT child.id, parent.name FROM p child LEFT JOIN p parent ON child.parent = parent.id WHERE child.id < 3 ORDER BY child.id
= 1 | NULL
= 2 | root
SELECT id FROM p WHERE id IN (SELECT pid FROM q) ORDER BY id
= 1
= 2
SELECT id FROM p WHERE NOT EXISTS (SELECT * FROM q WHERE q.pid = p.id) ORDER BY id
= 3
= 4
= 5
SELECT (SELECT id FROM p WHERE parent = 1)
SELECT id FROM p WHERE id = (SELECT id FROM p WHERE parent = 2)
! 21000 512
SELECT DISTINCT id, name FROM p WHERE id < 3 GROUP BY id, name ORDER BY id
= 1 | root
= 2 | beta
SELECT id AS [the id], name "the name" FROM p WHERE id = 1
= 1 | root
SELECT id FROM p ORDER BY name, id DESC
= 5
= 3
= 2
= 4
= 1
SELECT MIN(name), MAX(name) FROM p
= Alpha | root
