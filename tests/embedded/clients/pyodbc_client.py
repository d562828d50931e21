"""What a Python program does with the embedded database through pyodbc; prints what it sees. Argument: the file."""
import sys

import pyodbc

connection = pyodbc.connect("Driver={SQL Server};Create=yes;Database=" + sys.argv[1], autocommit=True)
cursor = connection.cursor()
cursor.execute(
    "CREATE TABLE p (id int NOT NULL PRIMARY KEY, name nvarchar(50) NULL, at datetime NULL, "
    "f float NULL, b bit NULL)"
)
cursor.execute("INSERT INTO p VALUES (1, N'Grüße ''x'' \U0001F600', '2003-02-11T08:15:30.500', CONVERT(float, '1.5'), 1)")
cursor.execute("BEGIN TRANSACTION")
cursor.execute("DELETE FROM p")
cursor.execute("ROLLBACK TRANSACTION")
cursor.execute("INSERT INTO p VALUES (2, NULL, NULL, NULL, NULL)")
for i in range(3, 6):
    cursor.execute("INSERT INTO p (id, name) VALUES (%d, 'row %d')" % (i, i))
for each in cursor.execute("SELECT * FROM p ORDER BY id"):
    print([ascii(value) for value in each])
print([(d[0], d[1].__name__, d[3]) for d in cursor.description])
def rows():
    return [tuple(row) for row in cursor.fetchall()] # versions print rows differently
cursor.execute("SELECT id FROM p WHERE name LIKE 'ROW%' AND id < 5")
print("like", rows())
cursor.execute("SELECT 1 UPDATE p SET b = 0 WHERE id > 3 SELECT 2")
print("batch", rows(), cursor.nextset(), cursor.rowcount, cursor.nextset(), rows(), cursor.nextset())
for sql in (
    "SELECT nothing FROM p",
    "INSERT INTO p (id) VALUES (1)",
    "SELECT FROM",
    "SELECT CONVERT(int, 'x')",
):
    try:
        cursor.execute(sql).fetchall()
        print(sql, "gave no error")
    except pyodbc.Error as error:
        print(sql, "->", type(error).__name__, error.args[0])
connection.close()
