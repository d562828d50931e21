SELECT [a], "b" FROM db..[t] -- comment
/* nested /* comment */ */ WHERE (a) = (1)