#!/bin/sh
# What a user does in isql and iusql (the programs that come with unixODBC); prints what they show. Argument: the file.
set -e
export LC_ALL=C.UTF-8
odbc=$(mktemp -d)
trap 'rm -rf "$odbc"' EXIT
cp "$ODBCSYSINI/odbcinst.ini" "$odbc"
printf '[client]\nDriver=SQL Server\nCreate=yes\nDatabase=%s\n' "$1" >"$odbc/odbc.ini"
export ODBCSYSINI="$odbc" ODBCINI="$odbc/odbc.ini"
# -x: columns separated by one character, without a frame
isql -v -b -x0x7c client sa <<'SQL'
CREATE TABLE p (id int NOT NULL PRIMARY KEY, name varchar(20) NULL)
INSERT INTO p VALUES (1, 'one'), (2, NULL), (3, 'it''s three')
SELECT id, name FROM p ORDER BY id DESC
SELECT nothing FROM p
SQL
echo 'SELECT id, name FROM p WHERE id = 3' | isql -b client sa
echo 'SELECT COUNT(*), MIN(name) FROM p' | iusql -b -x0x7c client sa
